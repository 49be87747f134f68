// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/clock/HostClock.h"

#include <ctime>
#include <thread>
#include <utility>

#include "support/Platform.h"

namespace orvanel {

HostClock::HostClock(double factor, TimePoint start, support::DateFormat format, bool utc)
    : HostClock(factor, start, std::move(format), utc, Sources()) {}

HostClock::HostClock(double factor, TimePoint start, support::DateFormat format, bool utc, Sources sources)
    : factor_(factor),
      start_(start),
      sources_(std::move(sources)),
      dateAtStart_(sources_.date()),
      realStart_(sources_.monotonic()),
      format_(std::move(format)),
      utc_(utc) {}

ports::DateTimeTexts HostClock::Now() const {
    const std::time_t now = std::chrono::system_clock::to_time_t(Time());
    const std::tm time = utc_ ? support::UtcTime(now) : support::LocalTime(now);
    ports::DateTimeTexts texts;
    texts.generalDate = support::GeneralDateText(format_, time);
    texts.longTime = support::FormatDateText(format_, format_.longTime, time);
    texts.weekdayName = support::FormatDateText(format_, "%A", time);
    texts.monthName = support::FormatDateText(format_, "%B", time);
    texts.dayOfMonth = time.tm_mday;
    texts.year = time.tm_year + 1900;
    return texts;
}

HostClock::TimePoint HostClock::Time() const {
    if (factor_ == 1) return start_ + (sources_.date() - dateAtStart_);
    return start_ +
           std::chrono::duration_cast<TimePoint::duration>(std::chrono::duration<double, std::milli>(ElapsedMs()));
}

double HostClock::ElapsedMs() const {
    if (factor_ <= 0) return static_cast<double>(sleptNs_.load()) / 1e6;
    const std::chrono::duration<double, std::milli> real = sources_.monotonic() - realStart_;
    return real.count() * factor_;
}

void HostClock::Sleep(double milliseconds) {
    if (!(milliseconds > 0)) return;
    if (factor_ <= 0)
        sleptNs_ += static_cast<std::int64_t>(milliseconds * 1e6);
    else
        std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(milliseconds / factor_));
}

}  // namespace orvanel
