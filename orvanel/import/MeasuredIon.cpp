// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/MeasuredIon.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "orvanel/import/CollisionEnergyText.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {
namespace {

constexpr double mzToleranceDa = 0.5;  ///< triple quadrupoles state whole masses
constexpr double highestVolts = 1000;
constexpr double voltageGrid = 100;  ///< per V

using support::GeneralText;

[[noreturn]] void Fail(const SpectrumRecord& record, const StatedText& stated, const std::string& text) {
    FailImport(record.path, stated.IsGiven() ? stated.line : record.line, text);
}

/// The reason why a record is not used; empty when it can be.
std::string ReasonToLeaveOut(const SpectrumRecord& record, const StatedEnergy& energy) {
    const std::string level = support::ToUpper(record.msType.text);
    if (!level.empty() && level != "MS2" && level != "2" && level != "MSMS" && level != "MS/MS")
        return "is " + record.msType.text + ", no spectrum of product ions";
    const double total = [&record] {
        double sum = 0;
        for (const RecordPeak& peak : record.peaks)
            sum += peak.intensity;
        return sum;
    }();
    if (total <= 0) return "has no peaks";
    if (energy.kind == StatedEnergy::Kind::None) return "states no collision energy";
    if (energy.kind == StatedEnergy::Kind::Several)
        return "was measured at several energies (" + record.collisionEnergy.text + ")";
    return "";
}

/// "[C8H12N]+" and "C8H12N+" state the formula of a molecule that is an ion already.
Composition MoleculeOf(const SpectrumRecord& record) {
    std::string text = record.formula.text;
    if (!record.formula.IsGiven()) Fail(record, {}, "the spectrum states no formula (CH$FORMULA, or Formula); add it");
    while (!text.empty() && (text.back() == '+' || text.back() == '-'))
        text.pop_back();
    if (text.size() > 1 && text.front() == '[' && text.back() == ']') text = text.substr(1, text.size() - 2);
    try {
        return ParseFormula(text);
    } catch (const std::invalid_argument& error) {
        Fail(record, record.formula, error.what());
    }
}

Adduct AdductOf(const SpectrumRecord& record) {
    if (!record.adduct.IsGiven())
        Fail(record, {}, "the spectrum states no adduct (PRECURSOR_TYPE, or Precursor_type), such as [M+H]+; add it");
    try {
        Adduct adduct = ParseAdduct(record.adduct.text);
        const std::string mode = support::ToUpper(record.ionMode.text);
        if (!mode.empty() && (mode[0] == 'N' || mode[0] == '-') != adduct.negative)
            Fail(record, record.ionMode,
                 "the ion mode " + record.ionMode.text + " contradicts the adduct " + record.adduct.text);
        return adduct;
    } catch (const std::invalid_argument& error) {
        Fail(record, record.adduct, error.what());
    }
}

class Judge {
  public:
    Judge(std::optional<double> energyScale, ports::ElementTable& elements)
        : energyScale_(energyScale), elements_(elements) {}

    void Take(const SpectrumRecord& record) {
        StatedText stated = record.collisionEnergy;
        if (!stated.IsGiven() && record.title.IsGiven()) stated = {EnergyInTitle(record.title.text), record.title.line};
        const StatedEnergy energy = ParseCollisionEnergy(stated.text);
        if (const std::string reason = ReasonToLeaveOut(record, energy); !reason.empty()) {
            ion_.leftOut.push_back({record.path, record.line, reason});
            return;
        }
        if (ion_.spectra.empty())
            Begin(record);
        else
            Compare(record);
        CheckPrecursor(record);
        MeasuredSpectrum spectrum{record, stated.text, 1, 0};
        spectrum.scale = energyScale_.value_or(DefaultEnergyScale(record.instrumentType.text));
        spectrum.volts = std::round(spectrum.scale * SourceVolts(record, energy) * voltageGrid) / voltageGrid;
        if (!(spectrum.volts <= highestVolts))
            Fail(record, stated,
                 "the collision energy \"" + stated.text + "\" is above " + GeneralText(highestVolts) + " V");
        ion_.spectra.push_back(std::move(spectrum));
    }

    MeasuredIon Finish() {
        auto& spectra = ion_.spectra;
        std::stable_sort(spectra.begin(), spectra.end(),
                         [](const auto& a, const auto& b) { return a.volts < b.volts; });
        return std::move(ion_);
    }

  private:
    void Begin(const SpectrumRecord& record) {
        const Adduct adduct = AdductOf(record);
        molecule_ = MoleculeOf(record);
        ion_.title = !record.name.text.empty() ? record.name.text : FormulaText(molecule_);
        ion_.adduct = record.adduct.text;
        ion_.charge = adduct.charge;
        ion_.negative = adduct.negative;
        try {
            ion_.composition = IonOf(molecule_, adduct);
            ion_.mz = IonMz(ion_.composition, ion_.charge, ion_.negative, elements_);
        } catch (const std::exception& error) {
            Fail(record, record.formula, error.what());
        }
    }

    void Compare(const SpectrumRecord& record) const {
        const SpectrumRecord& first = ion_.spectra.front().record;
        const std::string other = " of " + first.path + ", line ";
        AdductOf(record);
        if (record.adduct.text != ion_.adduct)
            Fail(record, record.adduct,
                 "the adduct " + record.adduct.text + " is not the " + ion_.adduct + other +
                     std::to_string(first.adduct.line) + "; import each ion from a folder of its own");
        if (MoleculeOf(record) != molecule_)
            Fail(record, record.formula,
                 "the formula " + record.formula.text + " is not the " + first.formula.text + other +
                     std::to_string(first.formula.line) + "; import each compound from a folder of its own");
    }

    void CheckPrecursor(const SpectrumRecord& record) const {
        if (!record.precursorMz.IsGiven()) return;
        const auto mz = support::ParseDouble(record.precursorMz.text);
        if (!mz) Fail(record, record.precursorMz, "\"" + record.precursorMz.text + "\" is no m/z of one precursor");
        if (std::fabs(*mz - ion_.mz) > mzToleranceDa)
            Fail(record, record.precursorMz,
                 "the precursor's m/z " + record.precursorMz.text + " is not that of " + record.formula.text + " as " +
                     ion_.adduct + ", " + GeneralText(support::RoundHalfEven(ion_.mz, 4)));
    }

    double SourceVolts(const SpectrumRecord& record, const StatedEnergy& energy) const {
        constexpr double normalisedAtMz = 500;
        EnergyUnit unit = energy.unit;
        const std::string mode = support::ToUpper(record.fragmentationMode.text);
        const std::string instrument = support::ToUpper(record.instrumentType.text);
        // Orbital traps with an HCD cell are set in normalised energies, and their records often say just a number.
        const bool orbitalTrap = instrument.find("FT") != std::string::npos || mode == "HCD";
        if (unit == EnergyUnit::NotStated) unit = orbitalTrap ? EnergyUnit::Normalised : EnergyUnit::Volts;
        if (unit == EnergyUnit::ElectronVolts) return energy.value / ion_.charge;
        return unit == EnergyUnit::Normalised ? energy.value * ion_.mz / normalisedAtMz : energy.value;
    }

    std::optional<double> energyScale_;
    ports::ElementTable& elements_;
    Composition molecule_;
    MeasuredIon ion_;
};

}  // namespace

double DefaultEnergyScale(const std::string& instrumentType) {
    const std::string upper = support::ToUpper(instrumentType);
    const bool tripleQuadrupole = upper.find("QQ") != std::string::npos || upper.find("TRIPLE") != std::string::npos;
    return tripleQuadrupole ? 1 : defaultEnergyScale;
}

MeasuredIon JudgeRecords(const std::vector<SpectrumRecord>& records, std::optional<double> energyScale,
                         ports::ElementTable& elements) {
    Judge judge(energyScale, elements);
    for (const SpectrumRecord& record : records)
        judge.Take(record);
    MeasuredIon ion = judge.Finish();
    if (ion.spectra.size() > 1 && ion.spectra.front().volts < ion.spectra.back().volts) return ion;
    std::string text = "spectra at two or more collision energies are needed, " + std::to_string(ion.spectra.size()) +
                       " of " + std::to_string(records.size()) + " can be used";
    if (!ion.leftOut.empty())
        text +=
            "; " + ion.leftOut[0].path + ", line " + std::to_string(ion.leftOut[0].line) + ": " + ion.leftOut[0].reason;
    FailImport(records.empty() ? "The import" : records[0].path, 0, text);
}

}  // namespace orvanel
