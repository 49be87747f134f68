// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

#include <chrono>
#include <string_view>
#include <thread>

/// Under the name of a desktop's opener this program is one, so that tests need no other: it knows one document, and
/// one for whose program it waits.
int main(int argc, char** argv) {
    if (std::string_view(argv[0]).ends_with("/xdg-open")) {
        const std::string_view document = argc == 2 ? argv[1] : "";
        if (document.ends_with("/waits for its program")) std::this_thread::sleep_for(std::chrono::seconds(1));
        return document.ends_with("/a document's name") || document.ends_with("program") ? 0 : 3;
    }
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
