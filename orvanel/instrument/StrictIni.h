// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "orvanel/instrument/InstrumentModel.h"
#include "support/Disk.h"
#include "support/IniDocument.h"

namespace orvanel {

/// A hand-written INI file read strictly: a repeated section or key, a line that is none of section, key and comment or
/// not UTF-8, a key above the first section, more than 4 MiB, 1000 sections or 1000 keys a section, a number outside
/// its range and an unknown key are refused. Every refusal is a ports::HostError that names file, line and key and says
/// what is allowed.
class StrictIni {
  public:
    using Entry = support::IniDocument::Entry;
    using Section = support::IniDocument::Section;

    /// @param errorNumber of every error that this file gives
    StrictIni(const std::string& path, std::int32_t errorNumber, const support::Disk& disk);

    const std::vector<Section>& Sections() const { return document_.Sections(); }
    /// @throws ports::HostError when it is missing
    const Section& Required(const std::string& section) const;

    std::optional<Entry> Find(const std::string& section, const std::string& key);
    std::string RequiredText(const std::string& section, const std::string& key);
    double RequiredNumber(const std::string& section, const std::string& key, const Limits& allowed);
    double Number(const std::string& section, const std::string& key, const Limits& allowed, double defaultValue);
    int WholeNumber(const std::string& section, const std::string& key, const Limits& allowed, int defaultValue);

    /// The numbers of a value that separates them by commas. Marks the entry as read.
    std::vector<double> Numbers(const Section& section, const Entry& entry, std::size_t count, const Limits& allowed);

    /// Refuses keys and sections that nothing has asked for.
    void RefuseUnread() const;

    [[noreturn]] void Fail(int line, const std::string& text) const;
    [[noreturn]] void Fail(const Section& section, const Entry& entry, const std::string& text) const;

  private:
    double NumberOf(const std::string& section, const Entry& entry, const std::string& text,
                    const Limits& allowed) const;
    void CheckLines(const std::string& text) const;
    void CheckNames() const;
    void CheckLength(int line, const std::string& name) const;

    std::string path_;
    std::int32_t errorNumber_;
    support::IniDocument document_;
    std::set<int> readLines_;
};

}  // namespace orvanel
