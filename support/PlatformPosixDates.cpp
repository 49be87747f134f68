// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef _WIN32

#include <iconv.h>
#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <memory>
#include <string>

#include "support/Platform.h"
#include "support/PlatformPosixText.h"

namespace support {
namespace {

struct LocaleRelease {
    void operator()(locale_t locale) const { ::freelocale(locale); }
};
using LocalePointer = std::unique_ptr<std::remove_pointer_t<locale_t>, LocaleRelease>;

LocalePointer OpenLocale(const std::string& name) {
    return LocalePointer(::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, name.c_str(), nullptr));
}

/// Closes a converter on every way out.
struct ConverterClose {
    using pointer = iconv_t;
    void operator()(iconv_t converter) const { ::iconv_close(converter); }
};

bool IsAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::string Utf8From(std::string text, const std::string& codeset) {
    if (codeset == "UTF-8" || IsAscii(text)) return text;
    const iconv_t opened = ::iconv_open("UTF-8", codeset.c_str());
    if (reinterpret_cast<std::intptr_t>(opened) == -1) {
        std::replace_if(
            text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '?');
        return text;
    }
    const std::unique_ptr<iconv_t, ConverterClose> converter(opened);
    std::string converted;
    char* from = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        std::array<char, 256> part{};
        char* to = part.data();
        std::size_t room = part.size();
        const bool isDone = ::iconv(converter.get(), &from, &left, &to, &room) != static_cast<std::size_t>(-1);
        const int error = errno;
        converted.append(part.data(), to);
        if (isDone || error == E2BIG) continue;
        // Not a character of that encoding.
        converted += '?';
        ++from;
        --left;
    }
    return converted;
}

std::string FormatTime(const std::string& localeName, const std::string& pattern, const std::tm& time) {
    if (pattern.empty()) return {};
    auto locale = OpenLocale(localeName);
    if (!locale) locale = OpenLocale("C");
    std::array<char, 256> text{};
    const std::size_t length = ::strftime_l(text.data(), text.size(), pattern.c_str(), &time, locale.get());
    return Utf8From({text.data(), length}, ::nl_langinfo_l(CODESET, locale.get()));
}

bool LocaleDatePatterns(const std::string& localeName, std::string& shortDate, std::string& longTime) {
    const auto locale = OpenLocale(localeName);
    const std::string base = localeName.substr(0, localeName.find('.'));
    if (!locale || base == "C" || base == "POSIX") return false;
    shortDate = ::nl_langinfo_l(D_FMT, locale.get());
    longTime = ::nl_langinfo_l(T_FMT, locale.get());
    return true;
}

}  // namespace support

#endif
