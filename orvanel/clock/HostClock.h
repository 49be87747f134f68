// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>

#include "ports/Clock.h"
#include "support/DateTexts.h"

namespace orvanel {

/// The one clock of a host: log, queue, timestamps and pauses all go by it.
///
/// Factor 1 is real time; factor f > 0 runs f times faster, pauses too; factor 0 is virtual: only Sleep advances it.
/// What a real clock shows follows the system's date, which goes on while the machine sleeps and may be set; what it
/// measures does not.
class HostClock : public ports::Clock {
  public:
    using TimePoint = std::chrono::system_clock::time_point;

    /// The system's clocks, or others.
    struct Sources {
        std::function<TimePoint()> date = std::chrono::system_clock::now;
        std::function<std::chrono::steady_clock::time_point()> monotonic = std::chrono::steady_clock::now;
    };

    /// @param start what the clock shows at first
    /// @param utc texts in UTC instead of local time
    HostClock(double factor, TimePoint start, support::DateFormat format, bool utc = false);
    HostClock(double factor, TimePoint start, support::DateFormat format, bool utc, Sources sources);

    ports::DateTimeTexts Now() const override;
    TimePoint Time() const;
    /// Milliseconds on this clock since its start.
    double ElapsedMs() const;
    /// Returns when so much time has passed on this clock. May return early, at once, only when the clock is virtual.
    void Sleep(double milliseconds);

  private:
    double factor_;
    TimePoint start_;
    Sources sources_;
    TimePoint dateAtStart_;
    std::chrono::steady_clock::time_point realStart_;
    std::atomic<std::int64_t> sleptNs_{0};  ///< virtual time only
    support::DateFormat format_;
    bool utc_;
};

}  // namespace orvanel
