// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/DataReader.h"

#include <algorithm>

#include "orvanel/data/DataErrors.h"
#include "orvanel/data/Gzip.h"
#include "orvanel/data/IndexedFile.h"
#include "orvanel/data/MzmlAdapter.h"
#include "ports/HostError.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {
namespace {

constexpr std::uint64_t fileSizeLimit = std::uint64_t{1} << 30;
constexpr std::size_t pointLimit = 40'000'000;
constexpr std::size_t cachedFiles = 3;
constexpr std::size_t longestReasonBytes = 500;

[[noreturn]] void FailToRead(const std::string& path, const std::string& reason) {
    throw ports::HostError(dataFileUnreadable, "The data file \"" + path + "\" cannot be read: " + reason);
}

support::PathStatus StatusOfFile(const std::string& path, const support::Disk& disk) {
    support::PathStatus status;
    try {
        status = disk.Status(support::NativePath(path));
    } catch (const support::DiskError& error) {
        FailToRead(path, error.what());
    }
    if (status.kind != support::PathKind::File)
        throw ports::HostError(dataFileNotFound, "The data file \"" + path + "\" does not exist");
    return status;
}

/// A library's message in one line without the full stop at its end.
std::string OneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    while (!text.empty() && (text.back() == '.' || text.back() == ' '))
        text.pop_back();
    return text.empty() ? "it is not sound mzML" : support::Excerpt(text, longestReasonBytes);
}

/// The text of the file, unpacked where it is a gzip file.
std::string ReadText(const std::string& path, const support::Disk& disk) {
    std::string bytes = support::ReadWholeFile(path, fileSizeLimit, disk);
    if (!IsGzip(bytes)) return bytes;
    auto text = Gunzip(bytes, fileSizeLimit);
    if (!text) throw ports::HostError(dataFileTooLarge, "The data file \"" + path + "\" unpacks to more than 1 GiB");
    return std::move(*text);
}

/// Only what is needed of the file, where its index allows that. Whatever is wrong, the reading of the whole file finds
/// it too, or does without.
std::optional<DataFileContent> ReadByIndex(const std::string& path, const MzmlSelection& selection,
                                           const support::Disk& disk) {
    try {
        IndexedFile file(path, disk);
        return ReadMzmlParts({file.Outline(), file.SpectrumCount(),
                              [&](const std::vector<std::size_t>& wanted) { return file.DocumentWith(wanted); }},
                             selection);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

DataFileContent Read(const std::string& path, const MzmlSelection& selection, const support::Disk& disk) {
    if (StatusOfFile(path, disk).size > fileSizeLimit)
        throw ports::HostError(dataFileTooLarge, "The data file \"" + path + "\" is larger than 1 GiB");
    if (selection.cycle)
        if (auto content = ReadByIndex(path, selection, disk)) return std::move(*content);
    try {
        return ReadMzml(ReadText(path, disk), selection);
    } catch (const ports::HostError&) {
        throw;
    } catch (const std::exception& error) {
        FailToRead(path, OneLine(error.what()));
    }
}

}  // namespace

DataFileContent ReadDataFile(const std::string& path, std::size_t experiment, const support::Disk& disk) {
    return Read(path, {pointLimit, experiment, {}}, disk);
}

DataFileContent ReadCycle(const std::string& path, std::size_t experiment, int cycle, const support::Disk& disk) {
    return Read(path, {pointLimit, experiment, cycle}, disk);
}

DataFileContent ReadExperiments(const std::string& path, const support::Disk& disk) {
    constexpr int none = 0;  // cycles count from 1
    return Read(path, {pointLimit, 0, none}, disk);
}

std::shared_ptr<const DataFileContent> DataFileCache::Open(const std::string& path) {
    if (check_) check_(path);
    Entry wanted{path, StatusOfFile(path, disk_), nullptr};
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return entry.path == wanted.path && entry.status == wanted.status;
    });
    if (found != entries_.end()) {
        std::rotate(entries_.begin(), found, found + 1);
        return entries_.front().content;
    }
    wanted.content = std::make_shared<const DataFileContent>(ReadDataFile(path, 0, disk_));
    auto content = wanted.content;
    std::erase_if(entries_, [&](const Entry& entry) { return entry.path == path; });
    entries_.insert(entries_.begin(), std::move(wanted));
    if (entries_.size() > cachedFiles) entries_.pop_back();
    return content;
}

}  // namespace orvanel
