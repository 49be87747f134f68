// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <pwiz/data/msdata/MSData.hpp>
#include <string>
#include <vector>

#include "orvanel/data/DataReader.h"

namespace orvanel {

/// How many points may still be read.
class PointBudget {
  public:
    explicit PointBudget(std::size_t points) : left_(points) {}
    /// @throws std::runtime_error when there are fewer
    void Take(std::size_t points);
    /// The same without taking them.
    void Require(std::size_t points) const;

  private:
    std::size_t left_;
};

/// Reads the spectra of one experiment of a document.
class MzmlSpectra {
  public:
    using Document = std::shared_ptr<const pwiz::msdata::MSData>;
    /// Gives the spectra of these numbers, in that order, with their points.
    using PointSource = std::function<Document(const std::vector<std::size_t>& wanted)>;

    /// @param outline has the headers of all spectra
    /// @param points empty where the outline has the points too
    MzmlSpectra(Document outline, PointSource points, PointBudget& budget)
        : outline_(std::move(outline)), points_(std::move(points)), budget_(budget) {}

    /// Fills in all that the content says of spectra.
    /// @param cycle the one whose spectra are read, all where there is none
    /// @throws std::runtime_error also where the points are elsewhere and needed to tell what the spectra are
    void ReadInto(DataFileContent& content, std::size_t experiment, std::optional<int> cycle);

  private:
    /// A mass spectrum as its header has it.
    struct Header {
        std::size_t number;  ///< of the spectrum in the document, from 0
        ExperimentKind kind;
        bool statesRepresentation;
        std::string id;
        pwiz::msdata::CVParam startTime;
        std::string cycle;
        std::string rampValue;
        std::string rampParameter;
        std::size_t points;  ///< as announced
    };

    void ReadHeaders(DataFileContent& content);
    Header HeaderOf(const pwiz::msdata::Spectrum& spectrum, std::size_t number) const;
    void DecideRepresentation();
    std::optional<double> EvenShareOf(const Header& header) const;
    void AddSpectrum(const Header& header, DataFileContent& content) const;
    void ReadPoints(const std::vector<const Header*>& headers, std::vector<StoredSpectrum>& spectra);
    void TakePoints(const pwiz::msdata::Spectrum& spectrum, const std::string& where, StoredSpectrum& stored);

    Document outline_;
    PointSource points_;
    PointBudget& budget_;
    std::vector<Header> headers_;
};

}  // namespace orvanel
