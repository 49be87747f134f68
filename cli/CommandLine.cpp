// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <CLI/CLI.hpp>
#include <ostream>

#include "cli/CleanText.h"
#include "cli/Commands.h"
#include "support/NumberText.h"

namespace cli {
namespace {

/// Lost output is not success. @return the status of the command, given what became of its output
ExitStatus StatusOfOutput(ExitStatus status, const TerminalStreams& streams) {
    if (streams.out.flush()) return status;
    streams.err << "veltra-run: the output could not be written in full: its disk is full, or nothing reads it\n";
    return status == completed ? notAllWritten : status;
}

constexpr const char* footer =
    "Exit status: 0 completed, 1 aborted or failed, 2 wrong usage, 3 not started (settings invalid, instrument "
    "refused,\nor initialisation failed), 4 completed, but not everything could be written.\n"
    "Ctrl-C aborts a run in order; its report is still written. A second Ctrl-C ends at once, without it.\n\n"
    "Examples:\n"
    "  veltra-run --new-project demo --compound reserpine\n"
    "  veltra-run --settings demo/Veltra.ini\n"
    "  veltra-run --formula C33H40N2O9 --charge 1\n"
    "  veltra-run --import-compound mine --from spectra --to compounds\n"
    "  veltra-run --new-project demo --compound compounds/mine.ini\n"
    "  veltra-run --explore sample.mzML --mz 609.28";

/// CLI::Range takes what is not a number for one in any range.
CLI::Validator NumberIn(double lowest, double highest) {
    return {[lowest, highest](std::string& text) {
                const auto value = support::ParseDouble(text);
                if (value && *value >= lowest && *value <= highest) return std::string();
                return text + " is not a number from " + support::GeneralText(lowest) + " to " +
                       support::GeneralText(highest);
            },
            ""};
}

CLI::Option* AddImportOptions(CLI::App& app, ImportOptions& import) {
    constexpr double lowestScale = 0.05;
    constexpr double highestScale = 20;
    auto* option = app.add_option("--import-compound", import.name,
                                  "Make the compound file NAME.ini from spectra at several collision energies")
                       ->type_name("NAME");
    auto* from = app.add_option("--from", import.from, "Folders and files with MassBank records or MSP spectra")
                     ->type_name("PATH...")
                     ->needs(option);
    option->needs(from);
    app.add_option("--to", import.toFolder, "Where the compound file goes (default: the current folder)")
        ->type_name("DIR")
        ->needs(option);
    app.add_option("--energy-scale", import.energyScale,
                   "Volts here for a volt of the spectra (default: 1 for triple quadrupoles, 0.65 for others)")
        ->type_name("FACTOR")
        ->check(NumberIn(lowestScale, highestScale))
        ->needs(option);
    return option;
}

CLI::Option* AddExploreOptions(CLI::App& app, ExploreOptions& explore) {
    constexpr int mostPeaks = 32767;
    constexpr double lowestMz = 0.001;
    constexpr double highestMz = 1e6;  // of what can be in a file
    auto* option = app.add_option("--explore", explore.path, "Evaluate any mzML file as the stages of a run do")
                       ->type_name("FILE");
    const auto add = [&](const char* name, auto& value, const char* text, const char* type) {
        return app.add_option(name, value, text)->type_name(type)->needs(option);
    };
    const auto count = NumberIn(1, mostPeaks);
    add("--experiment", explore.experiment, "Which experiment of the file (default: its first)", "NUMBER")
        ->check(count);
    add("--cycle", explore.cycle, "One cycle of it (default: the mean of all)", "NUMBER")->check(count);
    add("--mz", explore.mz, "MS1: find the parent there; MS2, MS3: the strongest fragments apart from it", "MZ")
        ->check(NumberIn(lowestMz, highestMz));
    add("--top", explore.top, "Only the strongest monoisotopic peaks", "NUMBER")->check(count);
    auto* list = app.add_flag("--list-experiments", explore.listsExperiments, "Only list the file's experiments");
    list->needs(option);
    for (const char* ofOne : {"--experiment", "--cycle", "--mz", "--top"})
        list->excludes(ofOne);
    app.add_flag("--json", explore.json, "For programs")->needs(option);
    return option;
}

ExitStatus RunCommand(int argc, const char* const* argv, const TerminalStreams& streams) {
    CLI::App app("Develops MS3 quantitation methods: performs one whole optimisation in the terminal.", "veltra-run");
    app.footer(footer);
    app.set_version_flag("--version", "veltra-run " VELTRA_VERSION);

    constexpr double highestModelCode = 9999;
    constexpr double mostCharges = 32767;
    std::string settings;
    std::string host;
    NewProjectOptions project;
    std::string formula;
    std::int16_t charge = 0;
    bool listCompounds = false;
    ExploreOptions explore;

    auto* settingsOption =
        app.add_option("--settings", settings, "Settings file (default: Veltra.ini beside the program)")
            ->type_name("FILE")
            ->check(CLI::Validator(CLI::ExistingFile).description(""));
    auto* hostOption =
        app.add_option("--host", host, "The host's configuration (default: Orvanel.ini beside the settings file)")
            ->type_name("FILE")
            ->check(CLI::Validator(CLI::ExistingFile).description(""));
    auto* newProject = app.add_option("--new-project", project.folder, "Make a project under this folder, ready to run")
                           ->type_name("DIR")
                           ->excludes(settingsOption);
    auto* compound = app.add_option("--compound", project.compound, "What the new project's instrument sprays")
                         ->type_name("NAME|FILE")
                         ->needs(newProject);
    newProject->needs(compound);
    app.add_option("--project-name", project.name, "Name of the new project (default: the compound's)")
        ->type_name("NAME")
        ->needs(newProject);
    app.add_option("--model", project.modelCode, "Model code of the new project's instrument")
        ->capture_default_str()
        ->type_name("CODE")
        ->check(NumberIn(1, highestModelCode))
        ->needs(newProject);
    auto* formulaOption = app.add_option("--formula", formula, "Print the m/z of a formula")->type_name("FORMULA");
    app.add_option("--charge", charge, "Number of charges of the formula's ion, negative for anions")
        ->type_name("NUMBER")
        ->check(NumberIn(-mostCharges, mostCharges))
        ->needs(formulaOption);
    auto* listOption = app.add_flag("--list-compounds", listCompounds, "List what the shipped instrument can spray");
    ImportOptions import;
    auto* importOption = AddImportOptions(app, import);
    std::string compoundFile;
    auto* checkOption = app.add_option("--check-compound", compoundFile, "Check a compound file and draw its curves")
                            ->type_name("FILE")
                            ->excludes(importOption);
    auto* exploreOption = AddExploreOptions(app, explore);
    for (auto* mode : {importOption, checkOption, exploreOption})
        for (auto* other : {settingsOption, newProject, formulaOption})
            mode->excludes(other);
    listOption->excludes(hostOption);
    listOption->excludes(settingsOption);
    for (auto* mode : {newProject, formulaOption, importOption, checkOption, exploreOption}) {
        mode->excludes(listOption);
        mode->excludes(hostOption);
    }
    newProject->excludes(formulaOption);
    formulaOption->excludes(settingsOption);
    for (auto* mode : {newProject, formulaOption, settingsOption})
        exploreOption->excludes(mode);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error, streams.out, streams.err) == 0 ? completed : wrongUsage;
    }
    if (exploreOption->count() > 0) return ExploreFile(explore, streams);
    if (listCompounds) return ListCompounds(streams);
    if (formulaOption->count() > 0) return PrintMzOfFormula(formula, charge, streams);
    if (checkOption->count() > 0) return CheckCompound(compoundFile, streams);
    if (importOption->count() > 0) return ImportCompound(import, streams);
    if (newProject->count() > 0) return MakeNewProject(project, streams);
    return RunOptimization(settings, host, streams);
}

}  // namespace

ExitStatus RunCommandLine(int argc, const char* const* argv, const TerminalStreams& streams) {
    // Every text passes through here, so that nothing from outside reaches the terminal as it is.
    CleanBuffer outText(*streams.out.rdbuf());
    CleanBuffer errText(*streams.err.rdbuf());
    std::ostream out(&outText);
    std::ostream err(&errText);
    err << std::unitbuf;
    const TerminalStreams clean{out, err, streams.in, streams.errIsTerminal, streams.inIsTerminal, &streams.err};
    const ExitStatus status = RunCommand(argc, argv, clean);
    return StatusOfOutput(status, clean);
}

}  // namespace cli
