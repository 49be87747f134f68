// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <deque>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "ports/MessageBoxes.h"

/// Keeps what was shown. Questions are answered from a queue, and with No once that is empty.
class RecordedMessageBoxes : public ports::MessageBoxes {
  public:
    struct Box {
        std::string text;
        ports::MessageIcon icon = ports::MessageIcon::None;
        friend bool operator==(const Box&, const Box&) = default;
        friend void PrintTo(const Box& box, std::ostream* out) {
            *out << '"' << box.text << "\" with icon " << static_cast<int>(box.icon);
        }
    };

    void Show(const std::string& strText, ports::MessageIcon icon) override {
        shown.push_back({strText, icon});
        if (onShow) onShow(shown.back());
    }
    bool AskYesNo(const std::string& strQuestion) override {
        questions.push_back(strQuestion);
        if (answers.empty()) return false;
        const bool answer = answers.front();
        answers.pop_front();
        return answer;
    }

    std::vector<Box> shown;
    std::function<void(const Box& box)> onShow;  ///< told as each is shown
    std::vector<std::string> questions;
    std::deque<bool> answers;
};
