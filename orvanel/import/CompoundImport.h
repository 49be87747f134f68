// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvanel/import/BreakdownFit.h"
#include "orvanel/import/MeasuredIon.h"
#include "support/Disk.h"

namespace orvanel {

struct CompoundImport {
    std::string name;               ///< of the compound; the file is NAME.ini
    std::vector<std::string> from;  ///< files and folders with spectra
    std::string toFolder;           ///< made where it is missing; empty: the current folder
    std::optional<double> energyScale;
    std::string appLocation;
};

/// How far shares lie from those of the records, over all records and all fragments that were kept.
struct Deviation {
    double largest = 0;
    double mean = 0;
    std::string node;  ///< of the largest
    double volts = 0;
};

struct ImportResult {
    std::string path;  ///< of the compound file
    MeasuredIon ion;
    FittedCompound fitted;
    BinnedSpectra binned;
    Deviation curves;    ///< of what the file gives
    Deviation leftOut;   ///< of each inner energy from the curves without it: how sure the curves are in between
    Deviation treeOnly;  ///< of what its tree would give without the curves
};

/// Makes a compound file from spectra of one ion at several collision energies. The file is read back before it is put
/// in place, and is never written over another one.
/// @throws ports::HostError naming file and line; support::FileError when the file cannot be written
ImportResult ImportCompound(const CompoundImport& import, const support::Disk& disk = support::SystemDisk());

/// The text of a compound file: an ion, its measured breakdown and its tree, with comments that say where all comes
/// from.
std::string CompoundFileText(const MeasuredIon& ion, const FittedCompound& fitted);

}  // namespace orvanel
