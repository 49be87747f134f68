// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/JsonWriter.h"

#include <cmath>
#include <ostream>

#include "cli/CleanText.h"
#include "support/NumberText.h"

namespace cli {
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
