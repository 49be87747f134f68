#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace support {

inline constexpr const char* crLf = "\r\n";

/// ASCII characters, whatever the locale.
inline bool IsUpper(char c) {
    return c >= 'A' && c <= 'Z';
}
inline bool IsLower(char c) {
    return c >= 'a' && c <= 'z';
}
inline bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Without blanks and tabs at both ends.
std::string_view Trim(std::string_view text);
/// ASCII letters only.
std::string ToUpper(std::string_view text);
/// Without regard to the case of ASCII letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);
bool EndsWithIgnoringCase(std::string_view text, std::string_view end);
/// The lines with CR LF between them.
std::string JoinLines(const std::vector<std::string>& lines);
std::vector<std::string> Split(std::string_view text, char separator);
/// The text with blanks behind it up to the width; unchanged when it is longer.
std::string PadRight(std::string text, std::size_t width);
/// The text with blanks before it up to the width; unchanged when it is longer.
std::string PadLeft(std::string text, std::size_t width);

}  // namespace support
