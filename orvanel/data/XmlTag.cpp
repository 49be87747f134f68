// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/XmlTag.h"

namespace orvanel {
namespace {

/// Walks through one tag.
class TagScanner {
  public:
    TagScanner(std::string_view text, std::size_t at) : text_(text), at_(at) {}

    std::optional<XmlTag> Read() {
        Take("<");
        tag_.closing = Take("/");
        tag_.name = TakeName();
        if (tag_.name.empty()) return std::nullopt;
        for (;;) {
            const bool blank = TakeBlanks();
            tag_.empty = Take("/>");
            if (tag_.empty || Take(">")) {
                tag_.end = at_;
                return std::move(tag_);
            }
            if (!blank || !TakeAttribute()) return std::nullopt;
        }
    }

  private:
    bool Take(std::string_view expected) {
        if (!text_.substr(at_).starts_with(expected)) return false;
        at_ += expected.size();
        return true;
    }
    bool TakeBlanks() {
        const std::size_t before = at_;
        while (at_ < text_.size() && IsXmlBlank(text_[at_]))
            ++at_;
        return at_ > before;
    }
    std::string_view TakeName() {
        const std::size_t before = at_;
        while (at_ < text_.size() && !IsXmlBlank(text_[at_]) &&
               std::string_view("<>/=\"'&!?").find(text_[at_]) == std::string_view::npos)
            ++at_;
        return text_.substr(before, at_ - before);
    }
    bool TakeAttribute() {
        const auto name = TakeName();
        if (name.empty()) return false;
        TakeBlanks();
        if (!Take("=")) return false;
        TakeBlanks();
        const char quote = at_ < text_.size() ? text_[at_] : ' ';
        if (quote != '"' && quote != '\'') return false;
        const std::size_t closing = text_.find(quote, at_ + 1);
        if (closing == std::string_view::npos) return false;
        const auto value = text_.substr(at_ + 1, closing - at_ - 1);
        if (value.find('<') != std::string_view::npos) return false;
        tag_.attributes.emplace_back(name, value);
        at_ = closing + 1;
        return true;
    }

    std::string_view text_;
    std::size_t at_;
    XmlTag tag_;
};

}  // namespace

std::optional<std::string_view> XmlTag::Value(std::string_view attribute) const {
    for (const auto& [given, value] : attributes)
        if (given == attribute) return value;
    return std::nullopt;
}

std::optional<XmlTag> XmlTagAt(std::string_view text, std::size_t at) {
    return TagScanner(text, at).Read();
}

}  // namespace orvanel
