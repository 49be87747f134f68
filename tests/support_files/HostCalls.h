// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <any>
#include <concepts>
#include <functional>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "ports/DataExploration.h"
#include "ports/InstrumentHelper.h"
#include "ports/TolmService.h"
#include "support/NumberText.h"
#include "tests/support_files/Garbage.h"

/// The calls that went through an ObservedHost, as texts such as "HostSetMassRange(594.3, 624.3, 0.06)", and the
/// failures that are to happen among them. A released handle stands as "~TolmBatch". Outlives every handle of the host.
class HostCalls {
  public:
    static constexpr const char* anyOperation = "*";
    enum class Times { Once, FromThenOn };

    /// Told before every call, and before it can fail.
    std::function<void(const std::string& text)> beforeCall;
    std::vector<std::function<void(const std::string& text)>> witnesses;  ///< told the same before that
    std::vector<std::string> texts;

    /// Lets a call of the operation throw the error, whatever its type.
    /// @param call from 1, counted from now on
    template <class Error>
    void Fail(std::string operation, Error error, int call = 1, Times times = Times::Once) {
        faults_.push_back({std::move(operation), call, times, Garbage::None, [error] { throw error; }});
    }
    /// Lets a call of the operation answer garbage, or do nothing when it answers nothing.
    void Spoil(std::string operation, Garbage garbage, int call = 1, Times times = Times::Once) {
        faults_.push_back({std::move(operation), call, times, garbage, {}});
    }
    /// How many calls have failed or answered so.
    int FiredCount() const { return fired_; }
    /// How many texts there were when the first one did, its own included.
    std::size_t FirstFiredAt() const { return firstFiredAt_; }
    std::function<void()> onFirstFired;
    /// No more faults, and nothing has fired.
    void Mend() {
        faults_.clear();
        frozen_.clear();
        fired_ = 0;
        firstFiredAt_ = 0;
    }

    template <class... Args>
    void Before(const std::string& operation, const Args&... args) {
        std::string list;
        ((list += (list.empty() ? "" : ", ") + ArgumentText(args)), ...);
        Note(operation + "(" + list + ")");
        const Fault* due = nullptr;
        for (auto& fault : faults_) {
            if (fault.operation != operation && fault.operation != anyOperation) continue;
            --fault.callsBefore;
            const bool fails = fault.callsBefore == 0 || (fault.callsBefore < 0 && fault.times != Times::Once);
            if (fails && due == nullptr) due = &fault;
        }
        spoils_ = due == nullptr ? Garbage::None : due->garbage;
        if (due == nullptr || !due->raise) return;
        HasFired();
        due->raise();
    }
    /// Passes a call on, or spoils it where that is due.
    template <class Body>
    auto Answer(const std::string& operation, Body&& body) {
        using Result = std::invoke_result_t<Body>;
        const Garbage garbage = std::exchange(spoils_, Garbage::None);
        if constexpr (std::is_void_v<Result>) {
            if (garbage == Garbage::None)
                body();
            else
                HasFired();
            ++succeeded_[operation];
        } else {
            Result result = body();
            ++succeeded_[operation];
            (std::is_copy_constructible_v<Result> ? valued_ : handles_).insert(operation);
            if (garbage == Garbage::None) return result;
            if constexpr (std::is_copy_constructible_v<Result>) {
                if (garbage == Garbage::Frozen) {
                    std::any& first = frozen_[operation];
                    if (!first.has_value()) first = result;
                    HasFired();
                    return std::any_cast<Result>(first);
                }
            }
            HasFired();
            return Result(Spoilt(std::move(result), garbage));
        }
    }
    /// Records something that cannot fail.
    void Note(const std::string& text) {
        texts.push_back(text);
        for (const auto& witness : witnesses)
            witness(text);
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
    /// How many calls of the operation have returned, spoilt or not.
    int SucceededCount(const std::string& operation) const {
        const auto found = succeeded_.find(operation);
        return found == succeeded_.end() ? 0 : found->second;
    }
    /// Whether the operation, called at least once, answers more than a handle.
    bool AnswersAValue(const std::string& operation) const { return valued_.contains(operation); }
    bool AnswersAHandle(const std::string& operation) const { return handles_.contains(operation); }
    void Forget() {
        texts.clear();
        succeeded_.clear();
    }

  private:
    struct Fault {
        std::string operation;
        int callsBefore;
        Times times;
        Garbage garbage;
        std::function<void()> raise;
    };

    void HasFired() {
        if (++fired_ > 1) return;
        firstFiredAt_ = texts.size();
        if (onFirstFired) onFirstFired();
    }

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
    static std::string ArgumentText(const ports::PlannedAcquisition& plan) {
        return "scan type " + std::to_string(plan.scanType);
    }
    template <std::integral Whole>
    static std::string ArgumentText(Whole value) {
        return std::to_string(value);
    }

    std::vector<Fault> faults_;
    std::map<std::string, int> succeeded_;
    std::map<std::string, std::any> frozen_;
    std::set<std::string> valued_;
    std::set<std::string> handles_;
    Garbage spoils_ = Garbage::None;
    int fired_ = 0;
    std::size_t firstFiredAt_ = 0;
};
