// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifdef _WIN32

#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <stdexcept>
#include <utility>

#include "support/Platform.h"
#include "support/PlatformWindowsText.h"

namespace support {
namespace {

std::wstring LocaleText(const std::wstring& locale, LCTYPE what) {
    std::array<wchar_t, 256> text{};
    const int length = ::GetLocaleInfoEx(locale.c_str(), what, text.data(), static_cast<int>(text.size()));
    return length > 0 ? std::wstring(text.data(), static_cast<std::size_t>(length) - 1) : std::wstring();
}

/// The system's name of a locale, also for "de_DE.UTF-8"; empty for "C" and where the system does not know it.
std::wstring KnownLocale(const std::string& name) {
    std::string base = name.substr(0, name.find_first_of(".@"));
    std::replace(base.begin(), base.end(), '_', '-');
    if (base.empty() || base == "C" || base == "POSIX") return {};
    std::wstring locale = Wide(base);
    return LocaleText(locale, LOCALE_SNAME).empty() ? std::wstring() : locale;
}

/// One letter of a date or time picture, written count times in a row, as a strftime pattern.
std::wstring PatternOf(wchar_t letter, std::size_t count) {
    const auto choose = [count](std::initializer_list<const wchar_t*> forms) {
        return std::wstring(forms.begin()[std::min(count, forms.size()) - 1]);
    };
    switch (letter) {
        case L'd':
            return choose({L"%-d", L"%d", L"%a", L"%A"});
        case L'M':
            return choose({L"%-m", L"%m", L"%b", L"%B"});
        case L'y':
            return choose({L"%-y", L"%y", L"%Y"});
        case L'h':
            return choose({L"%-I", L"%I"});
        case L'H':
            return choose({L"%-H", L"%H"});
        case L'm':
            return choose({L"%-M", L"%M"});
        case L's':
            return choose({L"%-S", L"%S"});
        case L't':
            return L"%p";
        case L'g':  // the era, which strftime does not write
            return {};
        default:
            return std::wstring(letter == L'%' ? count * 2 : count, letter);
    }
}

/// The strftime pattern of a date or time picture such as "dd.MM.yyyy" or "h:mm:ss tt", in which text stands in single
/// quotes and a quote in it is doubled.
std::string PatternOfPicture(std::wstring_view picture) {
    std::wstring pattern;
    bool quoted = false;
    for (std::size_t at = 0; at < picture.size();) {
        const wchar_t letter = picture[at];
        if (letter == L'\'') {
            const bool doubled = quoted && at + 1 < picture.size() && picture[at + 1] == letter;
            if (doubled) pattern += letter;
            if (!doubled) quoted = !quoted;
            at += doubled ? 2 : 1;
            continue;
        }
        const std::size_t end = std::min(picture.find_first_not_of(letter, at), picture.size());
        if (quoted)
            pattern.append(letter == L'%' ? 2 * (end - at) : end - at, letter);
        else
            pattern += PatternOf(letter, end - at);
        at = end;
    }
    return Utf8(pattern);
}

constexpr std::array<const char*, 7> englishWeekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                     "Thursday", "Friday", "Saturday"};
constexpr std::array<const char*, 12> englishMonths{"January",   "February", "March",    "April",
                                                    "May",       "June",     "July",     "August",
                                                    "September", "October",  "November", "December"};

/// @param locale as KnownLocale gives it
std::string WeekdayName(const std::wstring& locale, int daysSinceSunday, bool abbreviated) {
    const std::string english = englishWeekdays.at(static_cast<std::size_t>(daysSinceSunday));
    if (locale.empty()) return abbreviated ? english.substr(0, 3) : english;
    const auto daysSinceMonday = static_cast<LCTYPE>((daysSinceSunday + 6) % 7);
    return Utf8(LocaleText(locale, (abbreviated ? LOCALE_SABBREVDAYNAME1 : LOCALE_SDAYNAME1) + daysSinceMonday));
}

std::string MonthName(const std::wstring& locale, int monthsSinceJanuary, bool abbreviated) {
    const std::string english = englishMonths.at(static_cast<std::size_t>(monthsSinceJanuary));
    if (locale.empty()) return abbreviated ? english.substr(0, 3) : english;
    const auto month = static_cast<LCTYPE>(monthsSinceJanuary);
    return Utf8(LocaleText(locale, (abbreviated ? LOCALE_SABBREVMONTHNAME1 : LOCALE_SMONTHNAME1) + month));
}

std::string HalfOfDay(const std::wstring& locale, int hour) {
    if (locale.empty()) return hour < 12 ? "AM" : "PM";
    return Utf8(LocaleText(locale, hour < 12 ? LOCALE_S1159 : LOCALE_S2359));
}

/// What strftime writes for "%" and the letter, or for "%-" and the letter, which drops leading zeros. The C library's
/// own knows neither the flag nor every letter, and no locale but the one that the whole program has set.
std::string Conversion(char letter, bool dropZeros, const std::wstring& locale, const std::tm& time) {
    const auto number = [dropZeros](int value, std::size_t digits) {
        std::string text = std::to_string(value);
        if (!dropZeros && text.size() < digits) text.insert(0, digits - text.size(), '0');
        return text;
    };
    const int year = time.tm_year + 1900;
    switch (letter) {
        case 'a':
            return WeekdayName(locale, time.tm_wday, true);
        case 'A':
            return WeekdayName(locale, time.tm_wday, false);
        case 'b':
            return MonthName(locale, time.tm_mon, true);
        case 'B':
            return MonthName(locale, time.tm_mon, false);
        case 'd':
            return number(time.tm_mday, 2);
        case 'm':
            return number(time.tm_mon + 1, 2);
        case 'y':
            return number(year % 100, 2);
        case 'Y':
            return number(year, 1);
        case 'H':
            return number(time.tm_hour, 2);
        case 'I':
            return number((time.tm_hour + 11) % 12 + 1, 2);
        case 'M':
            return number(time.tm_min, 2);
        case 'S':
            return number(time.tm_sec, 2);
        case 'p':
            return HalfOfDay(locale, time.tm_hour);
        case '%':
            return "%";
        default:
            throw std::invalid_argument(std::string("Cannot write a date: % must not stand before ") + letter);
    }
}

/// The pattern with every letter that stands for several others written out.
std::string WrittenOut(std::string pattern) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 5> longForms{{
        {"%F", "%Y-%m-%d"},
        {"%D", "%m/%d/%y"},
        {"%T", "%H:%M:%S"},
        {"%R", "%H:%M"},
        {"%r", "%I:%M:%S %p"},
    }};
    for (std::size_t at = pattern.find('%'); at < pattern.size(); at = pattern.find('%', at + 2)) {
        for (const auto& [shortForm, longForm] : longForms)
            if (pattern.compare(at, shortForm.size(), shortForm) == 0) pattern.replace(at, shortForm.size(), longForm);
    }
    return pattern;
}

}  // namespace

std::tm LocalTime(std::time_t time) {
    std::tm result{};
    ::localtime_s(&result, &time);
    return result;
}

std::tm UtcTime(std::time_t time) {
    std::tm result{};
    ::gmtime_s(&result, &time);
    return result;
}

std::string ProcessLocaleName() {
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
    const int length = ::GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size()));
    return length > 0 ? Utf8({name.data(), static_cast<std::size_t>(length) - 1}) : std::string();
}

std::string FormatTime(const std::string& localeName, const std::string& pattern, const std::tm& time) {
    const std::wstring locale = KnownLocale(localeName);
    const std::string letters = WrittenOut(pattern);
    std::string text;
    for (std::size_t at = 0; at < letters.size(); ++at) {
        if (letters[at] != '%' || at + 1 == letters.size()) {
            text += letters[at];
            continue;
        }
        const bool dropZeros = letters[at + 1] == '-' && at + 2 < letters.size();
        at += dropZeros ? 2 : 1;
        text += Conversion(letters[at], dropZeros, locale, time);
    }
    return text;
}

bool LocaleDatePatterns(const std::string& localeName, std::string& shortDate, std::string& longTime) {
    const std::wstring locale = KnownLocale(localeName);
    if (locale.empty()) return false;
    const std::string date = PatternOfPicture(LocaleText(locale, LOCALE_SSHORTDATE));
    const std::string time = PatternOfPicture(LocaleText(locale, LOCALE_STIMEFORMAT));
    if (date.empty() || time.empty()) return false;
    shortDate = date;
    longTime = time;
    return true;
}

}  // namespace support

#endif
