#pragma once

#include <exception>
#include <string>
#include <utility>

namespace veltra {

/// " (Error N: text)." of a failure: the host's own number and text where it reported one.
std::string ErrorSuffix(const std::exception& error);

/// What every wrapper around a host service shares: the first failure is kept as ErrorOccurred and ErrorDescription,
/// and an operation of a failed object does nothing. Failures are never thrown to callers.
///
/// Only failures (std::exception) are caught here. A run that is being torn down unwinds through the wrappers.
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
        try {
            body();
        } catch (const std::exception& error) {
            Fail(message() + ErrorSuffix(error));
        }
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
