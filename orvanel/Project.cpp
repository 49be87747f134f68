// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <cmath>

#include "orvanel/CompoundFolder.h"
#include "orvanel/FileFailure.h"
#include "orvanel/HostErrorNumbers.h"
#include "orvanel/InstrumentHelperImpl.h"
#include "orvanel/OrvanelHost.h"
#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/methods/MethodFile.h"
#include "orvanel/methods/Validation.h"
#include "ports/HostError.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/IniDocument.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {

namespace {

/// A client's settings file keeps no more bytes of a value.
constexpr std::size_t maximumMethodPathBytes = 255;
constexpr double halfWindowDa = 15;
constexpr double starterScanRate = 1000;  ///< Da/s, taken where the model offers it
constexpr int starterCycles = 10;

// The starter method's voltages are the same for every compound: ions get through with them, and the run finds better
// ones. What a compound file says of its best voltages is for the instrument alone.
constexpr double declusteringPotential = 50;
constexpr double cellEntrancePotential = 20;
constexpr double entrancePotential = 10;
constexpr double collisionEnergy = 10;
constexpr double excitationShare = 0.3;  ///< of the AF2 scale's end

[[noreturn]] void Fail(const std::string& text) {
    throw ports::HostError(errorNumber::badProject, text);
}

/// The magnitude moved into what the model takes.
double Clamped(const InstrumentModel& model, const std::string& id, double magnitude) {
    const auto limits = model.parameterLimits.find(id);
    if (limits == model.parameterLimits.end()) return magnitude;
    return std::clamp(magnitude, limits->second.minimum, limits->second.maximum);
}

double ScaleEnd(const InstrumentModel& model, const std::string& id, double fallback) {
    const auto limits = model.parameterLimits.find(id);
    return limits == model.parameterLimits.end() ? fallback : limits->second.maximum;
}

std::vector<Parameter> StarterCompoundTable(const InstrumentModel& model, int polarity) {
    std::vector<Parameter> table;
    const double sign = polarity == 1 ? -1 : 1;
    const auto add = [&](const std::string& id, double magnitude, double signOfId) {
        const double rounded = std::round(Clamped(model, id, magnitude) * 100) / 100;
        table.push_back({id, static_cast<float>(rounded == 0 ? 0 : signOfId * rounded)});
    };
    add("DP", declusteringPotential, sign);
    add("EP", entrancePotential, sign);
    if (model.hasCep) add("CEP", cellEntrancePotential, sign);
    add("CE", collisionEnergy, sign);
    add("CES", 0, 1);
    add("AF2", excitationShare * ScaleEnd(model, "AF2", 100), 1);
    return table;
}

std::vector<Parameter> StarterSourceTable(const InstrumentModel& model, int polarity) {
    const Parameter infusion[] = {{"CUR", 20}, {"GS1", 20}, {"GS2", 0}, {"IS", polarity == 1 ? -4500.0F : 5500.0F},
                                  {"TEM", 50}, {"ihe", 1},  {"CAD", 4}};
    std::vector<Parameter> table;
    for (const auto& [id, value] : infusion) {
        const double magnitude = Clamped(model, id, std::abs(static_cast<double>(value)));
        table.push_back({id, static_cast<float>(value < 0 ? -magnitude : magnitude)});
    }
    return table;
}

MassRangeRecord StarterRange(const InstrumentModel& model, const Compound& compound, const ScanRateStep& scan) {
    MassRangeRecord range;
    range.start = std::max(std::round(compound.Root().mz) - halfWindowDa, model.trapMz.minimum);
    range.stop = std::min(std::round(compound.Root().mz) + halfWindowDa, model.trapMz.maximum);
    range.step = scan.stepDa;
    range.dwellTimeMs = scan.stepDa / scan.rate * 1000;
    range.compoundParameters = StarterCompoundTable(model, compound.polarity);
    return range;
}

MethodDocument StarterMethod(const InstrumentModel& model, const Compound& compound) {
    constexpr int scanType = static_cast<int>(ScanType::EnhancedResolution);
    const ScanRateStep* scan = FindScanRate(model, scanType, starterScanRate);
    if (scan == nullptr && model.scanRates.contains(scanType) && !model.scanRates.at(scanType).empty())
        scan = &model.scanRates.at(scanType).front();
    if (!model.linearIonTrap || scan == nullptr)
        Fail("Model " + std::to_string(model.code) +
             " scans no linear ion trap, choose another instrument model for the project");

    ExperimentRecord experiment;
    experiment.scanType = scanType;
    experiment.polarity = compound.polarity;
    experiment.q1Resolution = 3;
    experiment.scanRate = scan->rate;
    experiment.excitationTimeMs = model.excitationTimeMs;
    experiment.sourceGas = StarterSourceTable(model, compound.polarity);
    experiment.massRanges.push_back(StarterRange(model, compound, *scan));

    MethodDocument document;
    document.comment = "Infusion of " + compound.title + " on a simulated instrument";
    document.devices.push_back(
        {"SyringePump", "Syringe pump", std::nullopt, {{"FlowRateUlPerMin", "10"}, {"SyringeDiameterMm", "4.61"}}});
    MassSpecRecord massSpec;
    massSpec.operatingMode = model.operatingModes.empty() ? 0 : model.operatingModes.front();
    massSpec.periods.push_back({starterCycles, std::nullopt, {experiment}});
    CheckSubmittable(model, massSpec);
    document.devices.push_back({"MassSpectrometer", model.name, massSpec, {}});
    return document;
}

ProjectFacts FactsOf(const Compound& compound) {
    ProjectFacts facts;
    facts.expectedMz = compound.Root().mz;
    facts.polarity = compound.polarity;
    return facts;
}

/// Refuses what an INI file could not give back.
void RequireIniValue(const std::string& path) {
    const auto readBack = support::IniDocument::Parse("[S]\nK=" + path).Value("S", "K");
    if (readBack != path || !support::IsPlainText(path))
        Fail("The path \"" + support::Excerpt(path) +
             "\" cannot be kept in an INI file, choose one in UTF-8 without line ends, blanks or quotes at its ends");
}

/// Creates a folder and notes those that were missing.
void MakeFolder(std::string path, std::vector<std::string>& made, const support::Disk& disk) {
    while (path.size() > 1 && support::IsPathSeparator(path.back()))
        path.pop_back();
    if (support::FolderExists(path)) return;
    const std::string above = support::FolderOf(path);
    if (!above.empty() && above != path) MakeFolder(above, made, disk);
    support::CreateFolders(path, disk);
    made.push_back(path);
}

std::string IniText(const NewProject& project, const std::string& compound, int operatingMode) {
    std::string text;
    const auto line = [&](const std::string& content) { text += content + support::crLf; };
    line("[Orvanel]");
    line("Running=1");
    line("ModelCode=" + std::to_string(project.modelCode));
    line("OperatingMode=" + std::to_string(operatingMode));
    line("ClockFactor=0");
    line("[Sample]");
    line("Compound1=" + compound);
    line("Amount1=1");
    line("[Simulation]");
    line("Seed=1");
    line("NoiseLevel=1");
    return text;
}

}  // namespace

ProjectFacts CreateProject(const NewProject& project, const support::Disk& disk) {
    if (!support::IsPortableName(project.projectName))
        Fail("\"" + project.projectName + "\" is no name of a project, expected is a folder's name");
    if (project.folder.empty()) Fail("No folder is given for the project");
    const auto elements = OpenElementTableFile(ElementTablePath(project.appLocation), disk);
    const std::string compoundFile = FindCompoundFile(project.appLocation, project.compound, disk);
    const std::string sprayed =
        compoundFile == project.compound ? support::AbsolutePath(compoundFile) : project.compound;
    RequireIniValue(sprayed);
    const Compound compound = LoadCompound(compoundFile, *elements, disk);
    const auto models = LoadInstrumentModels(ModelsFolder(project.appLocation), disk);
    const MethodDocument method = StarterMethod(FindModel(models, project.modelCode), compound);

    const std::string folder = support::AbsolutePath(project.folder);
    const std::string projectFolder = support::JoinPath(support::JoinPath(folder, "Projects"), project.projectName);
    const std::string methods = support::JoinPath(projectFolder, "Acquisition Methods");
    ProjectFacts facts = FactsOf(compound);
    facts.orvanelIniPath = support::JoinPath(folder, "Orvanel.ini");
    facts.starterMethodPath = support::JoinPath(methods, "Start.xmt");
    if (facts.starterMethodPath.size() > maximumMethodPathBytes)
        Fail("The path " + facts.starterMethodPath + " has " + std::to_string(facts.starterMethodPath.size()) +
             " bytes, more than the " + std::to_string(maximumMethodPathBytes) + " allowed, choose a shorter folder");
    RequireIniValue(facts.starterMethodPath);
    for (const auto& path : {facts.orvanelIniPath, facts.starterMethodPath})
        if (AsHostError(errorNumber::badProject, [&] { return support::FileExists(path, disk); }))
            Fail("The file " + path + " exists already, choose another folder or name");

    try {
        MakeFolder(methods, facts.made, disk);
        MakeFolder(support::JoinPath(projectFolder, "Data"), facts.made, disk);
        WriteMethodFile(facts.starterMethodPath, method, disk);
        facts.made.push_back(facts.starterMethodPath);
        support::WriteWholeFile(facts.orvanelIniPath, IniText(project, sprayed, method.MassSpec()->operatingMode),
                                disk);
        facts.made.push_back(facts.orvanelIniPath);
    } catch (const support::FileError& error) {
        TakeBack(facts, disk);
        Fail(error.what());
    } catch (...) {
        TakeBack(facts, disk);
        throw;
    }
    return facts;
}

void TakeBack(const ProjectFacts& facts, const support::Disk& disk) noexcept {
    for (auto path = facts.made.rbegin(); path != facts.made.rend(); ++path) {
        try {
            disk.Remove(support::NativePath(*path));
        } catch (const std::exception&) {
            // The others are tried all the same.
        }
    }
}

std::vector<CompoundSummary> ListCompounds(const std::string& appLocation) {
    const auto elements = OpenElementTableFile(ElementTablePath(appLocation));
    std::vector<CompoundSummary> summaries;
    for (const auto& name : CompoundNames(appLocation)) {
        const Compound compound = LoadCompound(FindCompoundFile(appLocation, name), *elements);
        summaries.push_back({compound.name, compound.title, compound.Root().mz, compound.polarity, compound.adduct});
    }
    return summaries;
}

}  // namespace orvanel
