// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <chrono>
#include <iomanip>
#include <ostream>
#include <stdexcept>
#include <string_view>

#include "chem/clsMWCalculator.h"
#include "cli/Commands.h"
#include "cli/Guarded.h"
#include "cli/ProjectSettings.h"
#include "model/clsInfo_Settings.h"
#include "orvanel/CompoundFolder.h"
#include "orvanel/OrvanelHost.h"
#include "orvanel/clock/HostClock.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Platform.h"

namespace cli {
namespace {

void WriteSettings(const std::string& path, const std::string& compoundName, const orvanel::ProjectFacts& facts) {
    veltra::clsInfo_Settings settings(path);
    SuitToCompound(settings, compoundName, facts);
    try {
        settings.StoreGlobalSettings();
    } catch (const std::exception&) {
        support::RemoveFileIfThere(path);
        throw;
    }
}

/// The path of a compound file in full, so that it is not taken for the name of a compound that ships; a name as it is.
std::string CompoundOrFile(const std::string& compound) {
    return support::IsFileOfKind(compound, orvanel::compoundFileExtension) ? support::AbsolutePath(compound) : compound;
}

std::string CompoundNameOf(const std::string& compound) {
    return support::WithoutExtension(support::FileNameOf(compound), orvanel::compoundFileExtension);
}

}  // namespace

ExitStatus MakeNewProject(const NewProjectOptions& options, const TerminalStreams& streams) {
    return Guarded(streams, wrongUsage, [&] {
        const std::string settingsPath = support::JoinPath(support::AbsolutePath(options.folder), "Veltra.ini");
        if (support::FileExists(settingsPath))
            throw std::invalid_argument(settingsPath + " is there already: choose another folder or remove it");
        const std::string compound = CompoundOrFile(options.compound);
        const std::string compoundName = CompoundNameOf(compound);
        if (const std::string problem = support::FileNameProblem(compoundName); !problem.empty())
            throw std::invalid_argument("The compound's name \"" + compoundName + "\" " + problem +
                                        ", rename its file");
        const std::string name = options.name.empty() ? compoundName : options.name;
        const auto facts =
            orvanel::CreateProject({options.folder, name, compound, DefaultAppLocation(), options.modelCode});
        try {
            WriteSettings(settingsPath, compoundName, facts);
        } catch (const std::exception&) {
            orvanel::TakeBack(facts);
            throw;
        }
        streams.out << "Starter method: " << facts.starterMethodPath << '\n'
                    << "Settings:       " << settingsPath << '\n'
                    << "Host:           " << facts.orvanelIniPath << '\n'
                    << "Run it with:    " << support::JoinPath(support::ProgramFolder(), "veltra-run")
                    << " --settings \"" << settingsPath << "\"\n";
        return completed;
    });
}

ExitStatus ListCompounds(const TerminalStreams& streams) {
    return Guarded(streams, notStarted, [&] {
        constexpr int nameWidth = 18;
        constexpr int mzWidth = 10;
        constexpr int adductWidth = 11;
        for (const auto& compound : orvanel::ListCompounds(DefaultAppLocation()))
            streams.out << std::left << std::setw(nameWidth) << compound.name << std::setw(mzWidth)
                        << support::MzText(compound.mz) << std::setw(adductWidth) << compound.adduct << compound.title
                        << '\n';
        return completed;
    });
}

ExitStatus PrintMzOfFormula(const std::string& formula, std::int16_t charge, const TerminalStreams& streams) {
    return Guarded(streams, notStarted, [&] {
        orvanel::OrvanelConfig config;
        config.running = false;  // the element table is there whether the application runs or not
        config.appLocation = DefaultAppLocation();
        orvanel::HostClock clock(1, std::chrono::system_clock::now(), {});
        const auto host = orvanel::CreateOrvanelHost(config, clock);
        TerminalDisplay display(streams);
        TerminalMessageBoxes messageBoxes(streams, display);
        veltra::clsMWCalculator calculator(*host, messageBoxes);
        const double mass = calculator.GetMWForFormula(formula);
        if (mass == 0) {
            if (!messageBoxes.WasUsed())
                streams.err << "veltra-run: the formula \"" << formula
                            << "\" holds no element symbol, which begins with a capital letter\n";
            return wrongUsage;
        }
        streams.out << support::GeneralText(veltra::clsMWCalculator::CalculateMZ(mass, charge)) << '\n';
        return completed;
    });
}

}  // namespace cli
