// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "tests/support_files/HostCalls.h"

/// Overrides an operation of Port by one that tells HostCalls of the call and passes it on.
#define VELTRA_OBSERVED(Result, Name, Parameters, Qualifiers, ...)        \
    Result Name Parameters Qualifiers {                                   \
        return this->Pass(#Name, &Port::Name __VA_OPT__(, ) __VA_ARGS__); \
    }
/// The same for an operation that gives a handle of the kind, which is observed in its turn.
#define VELTRA_OBSERVED_HANDLE(Kind, Name, Parameters, ...)                                      \
    std::unique_ptr<ports::Kind> Name Parameters override {                                      \
        return Wrap<Observed##Kind>(#Kind, Pass(#Name, &Port::Name __VA_OPT__(, ) __VA_ARGS__)); \
    }

/// A port that tells HostCalls of every call before it passes it on. The derived class states the operations.
template <class ObservedPort>
class Observed : public ObservedPort {
  public:
    using Port = ObservedPort;
    Observed(std::string kind, std::unique_ptr<Port> inner, HostCalls& calls)
        : calls_(calls), kind_(std::move(kind)), owned_(std::move(inner)), inner_(*owned_) {}
    /// Of a port that outlives this one; nobody is told of its release.
    Observed(Port& inner, HostCalls& calls) : calls_(calls), inner_(inner) {}
    ~Observed() override {
        if (owned_) calls_.Released(kind_);
    }

    Port& Inner() const { return inner_; }

  protected:
    template <class Operation, class... Args>
    auto Pass(const char* name, Operation operation, const Args&... args) const {
        calls_.Before(name, args...);
        return calls_.Answer(name, [&] { return std::invoke(operation, inner_, args...); });
    }
    template <class Wrapper, class Handle>
    std::unique_ptr<Handle> Wrap(const char* kind, std::unique_ptr<Handle> handle) const {
        if (!handle) return nullptr;
        return std::make_unique<Wrapper>(kind, std::move(handle), calls_);
    }

    HostCalls& calls_;

  private:
    std::string kind_;
    std::unique_ptr<Port> owned_;
    Port& inner_;
};

/// What the host itself must be given when one of its handles comes back to it.
template <class Wrapper, class Handle>
auto& Unwrapped(Handle& handle) {
    return dynamic_cast<Wrapper&>(handle).Inner();
}
