// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/CompoundImport.h"

#include <cmath>

#include "orvanel/CompoundFolder.h"
#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/import/RecordText.h"
#include "orvanel/import/SpectrumReaders.h"
#include "orvanel/instrument/Fragmentation.h"
#include "orvanel/instrument/InstrumentErrors.h"
#include "ports/HostError.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace orvanel {
namespace {

/// Adds up differences of shares.
class Comparison {
  public:
    void Add(double error, const std::string& node, double volts) {
        sum_ += error;
        ++count_;
        if (error <= deviation_.largest) return;
        deviation_.largest = error;
        deviation_.node = node;
        deviation_.volts = volts;
    }

    Deviation Result() {
        if (count_ > 0) deviation_.mean = sum_ / static_cast<double>(count_);
        return deviation_;
    }

  private:
    Deviation deviation_;
    double sum_ = 0;
    std::size_t count_ = 0;
};

Deviation DeviationOf(const Compound& compound, const ImportResult& result) {
    const FragmentationTree tree(compound);
    Comparison comparison;
    for (std::size_t i = 0; i < result.ion.spectra.size(); ++i) {
        const double volts = result.ion.spectra[i].volts;
        const IonShares ions = tree.Dissociate(0, volts);
        for (std::size_t k = 0; k < result.fitted.order.size(); ++k) {
            const std::size_t index = tree.IndexOf(result.fitted.order[k]);
            const double given = index < tree.Size() ? ions.byNode[index] : 0;
            const double measured = result.binned.bins[result.fitted.bins[k]].shares[i];
            comparison.Add(std::fabs(given - measured), result.fitted.order[k], volts);
        }
    }
    return comparison.Result();
}

/// What the curves give at each energy but the first and the last when that energy is taken out of them.
Deviation LeaveOneOut(const MeasuredBreakdown& measured) {
    Comparison comparison;
    for (std::size_t left = 1; left + 1 < measured.voltages.size(); ++left) {
        const auto without = [left](std::vector<double> values) {
            values.erase(values.begin() + static_cast<std::ptrdiff_t>(left));
            return values;
        };
        const auto voltages = without(measured.voltages);
        for (const auto& [node, shares] : measured.shares)
            comparison.Add(
                std::fabs(MonotoneCurve(voltages, without(shares)).At(measured.voltages[left]) - shares[left]), node,
                measured.voltages[left]);
    }
    return comparison.Result();
}

std::string TargetOf(const CompoundImport& import, const support::Disk& disk) {
    if (!support::IsPortableName(import.name))
        throw ports::HostError(
            spectrumFileFaulty,
            "\"" + import.name + "\" is no name of a compound, expected is a file's name without .ini");
    const std::string file = import.name + compoundFileExtension;
    std::string path = import.toFolder.empty() ? file : support::JoinPath(import.toFolder, file);
    if (support::FileExists(path, disk))
        throw ports::HostError(spectrumFileFaulty,
                               path + " is there already: choose another name or folder, or remove it");
    return path;
}

/// A comment or value must not end its line, and a file's own words must not become keys.
void DropLineEnds(SpectrumRecord& record) {
    for (StatedText SpectrumRecord::*field :
         {&SpectrumRecord::accession, &SpectrumRecord::license, &SpectrumRecord::authors, &SpectrumRecord::copyright,
          &SpectrumRecord::name, &SpectrumRecord::instrumentType})
        std::erase_if((record.*field).text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

}  // namespace

ImportResult ImportCompound(const CompoundImport& import, const support::Disk& disk) {
    ImportResult result;
    result.path = TargetOf(import, disk);
    const auto elements = OpenElementTableFile(ElementTablePath(import.appLocation), disk);
    std::vector<SpectrumRecord> records;
    for (const std::string& file : SpectrumFiles(import.from, disk))
        for (SpectrumRecord& record : ReadSpectrumFile(file, disk)) {
            if (records.size() == maximumSpectra)
                FailImport(record.path, record.line,
                           "is one spectrum too many, at most " + std::to_string(maximumSpectra) + " are imported");
            DropLineEnds(record);
            records.push_back(std::move(record));
        }
    result.ion = JudgeRecords(records, import.energyScale, *elements);
    result.binned = BinSpectra(result.ion);
    result.fitted = FitBreakdown(result.ion, result.binned, *elements);

    if (!import.toFolder.empty()) support::CreateFolders(import.toFolder, disk);
    support::WholeFileWriter writer(result.path, CompoundFileText(result.ion, result.fitted), disk);
    Compound readBack = LoadCompound(writer.TemporaryPath(), *elements, disk);
    if (readBack.title != result.fitted.compound.title)
        throw ports::HostError(spectrumFileFaulty, "The name \"" + result.fitted.compound.title +
                                                       "\" cannot be kept in a compound file, change the record's");
    writer.Commit();
    result.curves = DeviationOf(readBack, result);
    result.leftOut = LeaveOneOut(readBack.breakdown);
    readBack.breakdown = {};
    result.treeOnly = DeviationOf(readBack, result);
    return result;
}

}  // namespace orvanel
