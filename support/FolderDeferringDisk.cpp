// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/FolderDeferringDisk.h"

#include <utility>

namespace support {

void FolderDeferringDisk::FlushDeferred() const noexcept {
    for (const auto& folder : std::exchange(folders_, {})) {
        try {
            disk_.FlushFolder(folder);
        } catch (const DiskError&) {
            // The other folders do not suffer from it.
        }
    }
}

}  // namespace support
