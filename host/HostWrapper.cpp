// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/HostWrapper.h"

#include <cmath>
#include <limits>
#include <new>

#include "ports/HostError.h"
#include "support/NumberText.h"
#include "support/RunTimeError.h"

namespace veltra {
namespace {

constexpr std::int32_t overflow = 6;
constexpr std::int32_t outOfMemory = 7;
constexpr std::int32_t internalError = 51;

std::int32_t NumberOf(const std::exception& error) {
    if (const auto* host = dynamic_cast<const ports::HostError*>(&error)) return host->Number();
    if (const auto* runTime = dynamic_cast<const support::RunTimeError*>(&error)) return runTime->Number();
    return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? outOfMemory : internalError;
}

}  // namespace

std::string ErrorSuffix(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& known) {
        return " (Error " + support::GeneralText(NumberOf(known)) + ": " + known.what() + ").";
    } catch (...) {
        return " (Error " + support::GeneralText(internalError) + ": Unknown failure).";
    }
}

double Finite(double answer) {
    if (!(std::abs(answer) <= std::numeric_limits<float>::max()))
        throw support::RunTimeError(overflow, "The host answered " + support::GeneralText(answer));
    return answer;
}
float Finite(float answer) {
    return static_cast<float>(Finite(static_cast<double>(answer)));
}

}  // namespace veltra
