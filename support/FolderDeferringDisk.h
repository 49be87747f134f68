// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "support/Disk.h"

namespace support {

/// Another disk whose folders are flushed together and each once, when their files are complete, and not after every
/// file. Until then a file that was put in place is there for every process, and after a power cut there, as it was
/// before, or missing; its content is flushed as ever. Not thread-safe.
class FolderDeferringDisk : public Disk {
  public:
    /// @param disk must outlive this
    explicit FolderDeferringDisk(const Disk& disk) : disk_(disk) {}

    /// Flushes the folders for which FlushFolder was called since the last time. Failures are ignored, as everywhere:
    /// the files are in place, and not every disk can flush a folder.
    void FlushDeferred() const noexcept;

    /// Notes the folder for FlushDeferred.
    void FlushFolder(const std::string& path) const override { folders_.insert(path); }

    PathStatus Status(const std::string& path) const override { return disk_.Status(path); }
    std::vector<FolderEntry> List(const std::string& path) const override { return disk_.List(path); }
    std::string RealPath(const std::string& path) const override { return disk_.RealPath(path); }
    std::unique_ptr<OpenFile> Open(const std::string& path, OpenFor purpose) const override {
        return disk_.Open(path, purpose);
    }
    std::unique_ptr<OpenFile> Create(const std::string& path) const override { return disk_.Create(path); }
    void Rename(const std::string& from, const std::string& to) const override { disk_.Rename(from, to); }
    void Remove(const std::string& path) const override { disk_.Remove(path); }
    void MakeFolder(const std::string& path) const override { disk_.MakeFolder(path); }

  private:
    const Disk& disk_;
    mutable std::set<std::string> folders_;  ///< a disk is handed around as constant
};

}  // namespace support
