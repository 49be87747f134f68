#include "cli/JsonWriter.h"

#include <cmath>
#include <cstddef>
#include <ostream>

#include "support/NumberText.h"

namespace cli {
namespace {

/// The length of the well-formed UTF-8 sequence that a text begins with (Unicode Standard, table 3-7); 0 when it begins
/// with none.
std::size_t SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    // Overlong forms, surrogates and what lies above U+10FFFF begin within these.
    const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byte(1) < low || byte(1) > high) return 0;
    for (std::size_t i = 2; i < length; ++i)
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    return length;
}

bool IsControl(std::string_view sequence) {
    const auto first = static_cast<unsigned char>(sequence[0]);
    if (sequence.size() == 1) return first < 0x20 || first == 0x7F;
    return first == 0xC2 && static_cast<unsigned char>(sequence[1]) < 0xA0;
}

}  // namespace

std::string CleanText(std::string_view text) {
    std::string clean;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        if (length == 0 || IsControl(text.substr(0, length)))
            clean += "\xEF\xBF\xBD";
        else
            clean += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return clean;
}

std::ostream& JsonWriter::Next() {
    if (needsComma_) out_ << ", ";
    needsComma_ = true;
    return out_;
}

JsonWriter& JsonWriter::Open(char bracket) {
    Next() << bracket;
    needsComma_ = false;
    return *this;
}

JsonWriter& JsonWriter::Close(char bracket) {
    out_ << bracket;
    needsComma_ = true;
    return *this;
}

JsonWriter& JsonWriter::Key(std::string_view name) {
    Text(name);
    out_ << ": ";
    needsComma_ = false;
    return *this;
}

JsonWriter& JsonWriter::Text(std::string_view text) {
    Next() << '"';
    for (const char c : CleanText(text)) {
        if (c == '"' || c == '\\') out_ << '\\';
        out_ << c;
    }
    out_ << '"';
    return *this;
}

JsonWriter& JsonWriter::Number(double value) {
    if (!std::isfinite(value)) return Null();
    Next() << support::GeneralText(value);
    return *this;
}

JsonWriter& JsonWriter::Truth(bool value) {
    Next() << (value ? "true" : "false");
    return *this;
}

JsonWriter& JsonWriter::Null() {
    Next() << "null";
    return *this;
}

}  // namespace cli
