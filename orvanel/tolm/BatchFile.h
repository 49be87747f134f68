// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "support/Disk.h"

namespace orvanel {

struct BatchSample {
    std::string dataFile;  ///< relative to the project's data folder
    std::string sampleName;
    std::string sampleId;
    std::string rackPosition;
    friend bool operator==(const BatchSample&, const BatchSample&) = default;
};

struct BatchSet {
    std::string name;
    std::string acquisitionMethod;  ///< bare file name
    std::string processingMethod;
    std::vector<BatchSample> samples;
    friend bool operator==(const BatchSet&, const BatchSet&) = default;
};

/// A ".xbt" acquisition batch.
struct BatchRecord {
    std::string name;  ///< file name
    std::string user;
    std::string text;
    std::string project;  ///< full path of the project's folder
    std::vector<BatchSet> sets;
    friend bool operator==(const BatchRecord&, const BatchRecord&) = default;
};

inline constexpr std::size_t maximumBatchSets = 100;
inline constexpr std::size_t maximumSamplesPerSet = 1000;

/// @throws ports::HostError naming file, line, what is wrong and what is expected
BatchRecord ReadBatchFile(const std::string& path, const support::Disk& disk = support::SystemDisk());
/// Writes the whole batch, or leaves an existing file untouched. @throws ports::HostError
void WriteBatchFile(const std::string& path, const BatchRecord& batch,
                    const support::Disk& disk = support::SystemDisk());

}  // namespace orvanel
