// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/Disk.h"

namespace orvanel {

/// An indexed mzML file of which only parts are read: all but the arrays of its spectra, and the spectra that are
/// wanted.
///
/// An index is not trusted. It must name as many spectra as their list announces, in rising order. At each of its
/// places the spectrum of that id and number must begin, right behind the end of the one before it; the first right
/// behind the beginning of the list. Everything throws std::exception where this does not hold or the file cannot be
/// read: then only the whole file tells what is in it.
class IndexedFile {
  public:
    IndexedFile(const std::string& path, const support::Disk& disk);

    std::size_t SpectrumCount() const { return spectra_.size(); }
    /// The document without the arrays of its spectra.
    std::string Outline();
    /// A document with the spectra of these numbers only, in that order. Needs the outline.
    std::string DocumentWith(const std::vector<std::size_t>& wanted);

  private:
    struct Place {
        std::string id;  ///< as it is written
        std::uint64_t begin;
    };

    std::string Read(std::uint64_t begin, std::uint64_t end);
    std::uint64_t FindIndex();
    void ReadPlaces(const std::string& index);
    std::uint64_t EndOf(std::size_t number) const;
    void ReadBeginning();
    std::string HeaderOf(std::size_t number);
    void RequireEnd(std::size_t number, const std::string& read);

    std::unique_ptr<support::OpenFile> file_;
    std::uint64_t size_;
    std::uint64_t indexBegin_;
    std::vector<Place> spectra_;
    std::string beginning_;  ///< of the document, up to the first spectrum
    std::uint64_t end_ = 0;  ///< of the last spectrum
};

}  // namespace orvanel
