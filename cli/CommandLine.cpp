#include <CLI/CLI.hpp>
#include <ostream>

#include "cli/Commands.h"

namespace cli {
namespace {

constexpr const char* footer =
    "Exit status: 0 completed, 1 aborted or failed, 2 wrong usage, 3 not started (settings invalid, instrument "
    "refused,\nor initialisation failed). Ctrl-C aborts a run in order; its report is still written.\n\n"
    "Examples:\n"
    "  veltra-run --new-project demo --compound reserpine\n"
    "  veltra-run --settings demo/Veltra.ini\n"
    "  veltra-run --formula C33H40N2O9 --charge 1\n"
    "  veltra-run --import-compound mine --from spectra --to compounds\n"
    "  veltra-run --new-project demo --compound compounds/mine.ini";

}  // namespace

ExitStatus RunCommandLine(int argc, const char* const* argv, const TerminalStreams& streams) {
    CLI::App app("Develops MS3 quantitation methods: performs one whole optimisation in the terminal.", "veltra-run");
    app.footer(footer);
    app.set_version_flag("--version", "veltra-run " VELTRA_VERSION);

    std::string settings;
    std::string host;
    NewProjectOptions project;
    std::string formula;
    std::int16_t charge = 0;
    bool listCompounds = false;

    auto* settingsOption =
        app.add_option("--settings", settings, "Settings file (default: Veltra.ini beside the program)")
            ->type_name("FILE")
            ->check(CLI::Validator(CLI::ExistingFile).description(""));
    auto* hostOption =
        app.add_option("--host", host, "The host's configuration (default: Orvanel.ini beside the settings file)")
            ->type_name("FILE");
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
        ->needs(newProject);
    auto* formulaOption = app.add_option("--formula", formula, "Print the m/z of a formula")->type_name("FORMULA");
    app.add_option("--charge", charge, "Number of charges of the formula's ion, negative for anions")
        ->type_name("NUMBER")
        ->needs(formulaOption);
    auto* listOption = app.add_flag("--list-compounds", listCompounds, "List what the shipped instrument can spray");
    ImportOptions import;
    double energyScale = 1;
    std::string compoundFile;
    auto* importOption = app.add_option("--import-compound", import.name,
                                        "Make the compound file NAME.ini from spectra at several collision energies")
                             ->type_name("NAME");
    auto* from = app.add_option("--from", import.from, "Folders and files with MassBank records or MSP spectra")
                     ->type_name("PATH...")
                     ->needs(importOption);
    importOption->needs(from);
    app.add_option("--to", import.toFolder, "Where the compound file goes (default: the current folder)")
        ->type_name("DIR")
        ->needs(importOption);
    auto* scaleOption =
        app.add_option("--energy-scale", energyScale,
                       "Volts here for a volt of the spectra (default: 1 for triple quadrupoles, 0.65 for others)")
            ->type_name("FACTOR")
            ->check(CLI::Range(0.05, 20.0).description(""))
            ->needs(importOption);
    auto* checkOption = app.add_option("--check-compound", compoundFile, "Check a compound file and draw its curves")
                            ->type_name("FILE")
                            ->excludes(importOption);
    for (auto* mode : {importOption, checkOption})
        for (auto* other : {settingsOption, newProject, formulaOption})
            mode->excludes(other);
    for (auto* mode : {newProject, formulaOption, importOption, checkOption}) {
        mode->excludes(listOption);
        mode->excludes(hostOption);
    }
    newProject->excludes(formulaOption);
    formulaOption->excludes(settingsOption);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error, streams.out, streams.err) == 0 ? completed : wrongUsage;
    }
    if (listCompounds) return ListCompounds(streams);
    if (formulaOption->count() > 0) return PrintMzOfFormula(formula, charge, streams);
    if (checkOption->count() > 0) return CheckCompound(compoundFile, streams);
    if (importOption->count() > 0) {
        if (scaleOption->count() > 0) import.energyScale = energyScale;
        return ImportCompound(import, streams);
    }
    if (newProject->count() > 0) return MakeNewProject(project, streams);
    return RunOptimization(settings, host, streams);
}

}  // namespace cli
