// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Fuzz.h"
#include "orvanel/tolm/BatchFile.h"
#include "support/FileNames.h"
#include "support/Paths.h"
#include "support/Text.h"

void fuzz::Try(std::string_view input) {
    const std::string path = FileWith("b.xbt", input);
    const auto batch = ReadOrRefuse(path, [&] { return orvanel::ReadBatchFile(path); });
    if (!batch) return;
    for (const auto& set : batch->sets) {
        Require(set.acquisitionMethod.empty() || support::IsPortableName(set.acquisitionMethod),
                "a method is named without folder");
        for (const auto& sample : set.samples)
            for (const auto& part : support::Split(support::NativePath(sample.dataFile), support::PathSeparator()))
                Require(sample.dataFile.empty() || support::IsPortableName(part), "a data file stays in its project");
    }
    orvanel::WriteBatchFile(PathOf("again.xbt"), *batch);
    Require(orvanel::ReadBatchFile(PathOf("again.xbt")) == *batch, "a batch that was read and written reads the same");
}
