#include "host/HostWrapper.h"

#include <new>

#include "ports/HostError.h"
#include "support/NumberText.h"
#include "support/RunTimeError.h"

namespace veltra {
namespace {

std::int32_t NumberOf(const std::exception& error) {
    constexpr std::int32_t outOfMemory = 7;
    constexpr std::int32_t internalError = 51;
    if (const auto* host = dynamic_cast<const ports::HostError*>(&error)) return host->Number();
    if (const auto* runTime = dynamic_cast<const support::RunTimeError*>(&error)) return runTime->Number();
    return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? outOfMemory : internalError;
}

}  // namespace

std::string ErrorSuffix(const std::exception& error) {
    return " (Error " + support::GeneralText(NumberOf(error)) + ": " + error.what() + ").";
}

}  // namespace veltra
