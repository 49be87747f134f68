#pragma once

#include <algorithm>
#include <concepts>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ports/DataExploration.h"
#include "ports/TolmService.h"
#include "support/NumberText.h"

/// The calls that went through an ObservedHost, as texts such as "HostSetMassRange(594.3, 624.3, 0.06)", and the
/// failures that are to happen among them. A released handle stands as "~TolmBatch". Outlives every handle of the host.
class HostCalls {
  public:
    static constexpr const char* anyOperation = "*";
    enum class Times { Once, FromThenOn };

    /// Told before every call, and before it can fail.
    std::function<void(const std::string& text)> beforeCall;
    std::vector<std::string> texts;

    /// Lets a call of the operation throw the error.
    /// @param call from 1, counted from now on
    template <class Error>
    void Fail(std::string operation, Error error, int call = 1, Times times = Times::Once) {
        failures_.push_back({std::move(operation), call, times, [error] { throw error; }});
    }
    /// How many calls have failed so.
    int FiredCount() const { return fired_; }

    template <class... Args>
    void Before(const std::string& operation, const Args&... args) {
        std::string list;
        ((list += (list.empty() ? "" : ", ") + ArgumentText(args)), ...);
        Note(operation + "(" + list + ")");
        const Failure* due = nullptr;
        for (auto& failure : failures_) {
            if (failure.operation != operation && failure.operation != anyOperation) continue;
            --failure.callsBefore;
            const bool fails = failure.callsBefore == 0 || (failure.callsBefore < 0 && failure.times != Times::Once);
            if (fails && due == nullptr) due = &failure;
        }
        if (due == nullptr) return;
        ++fired_;
        due->raise();
    }
    /// Records something that cannot fail.
    void Note(const std::string& text) {
        texts.push_back(text);
        if (beforeCall) beforeCall(text);
    }
    void Released(const std::string& kind) noexcept { texts.push_back("~" + kind); }

    /// Without the releases.
    std::vector<std::string> Operations() const {
        return Filtered([](const std::string& text) { return text.front() != '~'; });
    }
    /// Only those of the named operations; a release is named as it stands.
    std::vector<std::string> Only(std::initializer_list<std::string_view> names) const {
        return Filtered([&](const std::string& text) {
            return std::find(names.begin(), names.end(), std::string_view(text).substr(0, text.find('('))) !=
                   names.end();
        });
    }
    int CountOf(std::string_view operation) const { return static_cast<int>(Only({operation}).size()); }
    void Forget() { texts.clear(); }

  private:
    struct Failure {
        std::string operation;
        int callsBefore;
        Times times;
        std::function<void()> raise;
    };

    template <class Keeps>
    std::vector<std::string> Filtered(const Keeps& keeps) const {
        std::vector<std::string> kept;
        std::copy_if(texts.begin(), texts.end(), std::back_inserter(kept), keeps);
        return kept;
    }

    static std::string ArgumentText(double value) { return support::GeneralText(value); }
    static std::string ArgumentText(float value) { return support::GeneralText(value); }
    static std::string ArgumentText(bool value) { return value ? "true" : "false"; }
    static std::string ArgumentText(const std::string& value) { return "\"" + value + "\""; }
    static std::string ArgumentText(const std::vector<double>& values) {
        return std::to_string(values.size()) + " values";
    }
    static std::string ArgumentText(const ports::AxisRange& range) {
        return support::GeneralText(range.minimum) + ".." + support::GeneralText(range.maximum);
    }
    static std::string ArgumentText(ports::TolmBatch::SampleField field) {
        using Field = ports::TolmBatch::SampleField;
        return field == Field::SampleName ? "SampleName" : field == Field::SampleId ? "SampleId" : "RackPosition";
    }
    template <std::integral Whole>
    static std::string ArgumentText(Whole value) {
        return std::to_string(value);
    }

    std::vector<Failure> failures_;
    int fired_ = 0;
};
