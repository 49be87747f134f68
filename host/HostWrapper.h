// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "ports/RunDisplay.h"
#include "support/RunTimeError.h"

namespace veltra {

/// " (Error N: text)." of a failure: the host's own number and text where it reported one.
std::string ErrorSuffix(const std::exception_ptr& error);

/// Runs the body. Whatever it throws is a failure, except ports::RunTornDown, which passes through.
/// @return the failure's ErrorSuffix, or nothing when there was none
template <class Body>
[[nodiscard]] std::optional<std::string> FailureOf(Body&& body) {
    try {
        body();
        return std::nullopt;
    } catch (const ports::RunTornDown&) {
        throw;
    } catch (...) {
        return ErrorSuffix(std::current_exception());
    }
}

/// Runs the body like FailureOf and drops its failure.
/// @param reason why nobody has to know of it, for the reader of the call
template <class Body>
void IgnoreFailure([[maybe_unused]] const char* reason, Body&& body) {
    static_cast<void>(FailureOf(std::forward<Body>(body)));
}

/// A handle that the host has given, or should have. @throws support::RunTimeError when it is none
template <class Handle>
Handle& Required(const std::unique_ptr<Handle>& handle) {
    if (!handle) throw support::RunTimeError::ObjectNotSet();
    return *handle;
}

/// A number that the host has answered. @throws support::RunTimeError when no single-precision number can hold it: not
/// a number, infinite, or too large
double Finite(double answer);
float Finite(float answer);

/// What every wrapper around a host service shares: the first failure is kept as ErrorOccurred and ErrorDescription,
/// and an operation of a failed object does nothing. Failures are never thrown to callers.
class HostWrapper {
  public:
    bool ErrorOccurred() const { return errorOccurred_; }
    void ErrorOccurred(bool blnError) { errorOccurred_ = blnError; }
    const std::string& ErrorDescription() const { return errorDescription_; }
    void ErrorDescription(std::string strErrorDescription) { errorDescription_ = std::move(strErrorDescription); }

    void ResetError() {
        errorOccurred_ = false;
        errorDescription_.clear();
    }

  protected:
    HostWrapper() = default;
    ~HostWrapper() = default;
    HostWrapper(const HostWrapper&) = delete;
    HostWrapper& operator=(const HostWrapper&) = delete;

    void Fail(std::string description) {
        errorOccurred_ = true;
        errorDescription_ = std::move(description);
    }

    /// Runs the body unless the object has failed already. A failure becomes message() + " (Error N: text).".
    template <class Body, class Message>
    void Step(Body&& body, Message&& message) {
        if (!errorOccurred_) Attempt(std::forward<Body>(body), std::forward<Message>(message));
    }

    /// The same without looking at earlier failures.
    template <class Body, class Message>
    void Attempt(Body&& body, Message&& message) {
        if (const auto failure = FailureOf(std::forward<Body>(body))) Fail(message() + *failure);
    }

  private:
    bool errorOccurred_ = false;
    std::string errorDescription_;
};

/// Gives a message without values.
inline auto FixedMessage(const char* message) {
    return [message] { return std::string(message); };
}

}  // namespace veltra
