// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support_files/ShortRun.h"

#include <filesystem>

#include "support/Files.h"
#include "support/Paths.h"

std::vector<std::string> ShortRun::LinesBeforeFault() const {
    const auto end = display.log.begin() + static_cast<std::ptrdiff_t>(linesBeforeFault_.value_or(display.log.size()));
    return {display.log.begin(), end};
}

/// Data are looked at once an acquisition has been waited for, under the name that its sample was given.
void ShortRun::Witness() {
    calls.onFirstFired = [this] {
        if (!linesBeforeFault_) linesBeforeFault_ = display.log.size();
    };
    calls.witnesses.push_back([this, acquisition = std::string()](const std::string& text) mutable {
        if (text.starts_with("TolmSetSampleDataFile(")) {
            const auto last = text.rfind('"');
            const auto first = text.rfind('"', last - 1);
            const std::string name = support::FileNameOf(text.substr(first + 1, last - first - 1));
            acquisition = name.substr(0, name.rfind('.'));
        }
        if (text.starts_with("TolmSubmitBatch(") && !boxes.shown.empty()) ++submittedAfterFailure;
        if (text.starts_with("CreateDataExploration(")) RememberFilesOf(acquisition);
    });
}

void ShortRun::RememberFilesOf(const std::string& acquisition) {
    namespace fs = std::filesystem;
    for (const auto& entry : fs::recursive_directory_iterator(project.folder.File("Projects")))
        if (entry.is_regular_file() && entry.path().stem() == acquisition)
            finished[entry.path().string()] = support::ReadWholeFile(entry.path().string());
}
