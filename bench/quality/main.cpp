// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "bench/quality/Page.h"
#include "bench/quality/Tables.h"
#include "orvanel/OrvanelHost.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/Paths.h"

/// Runs compounds under several seeds and noise levels and holds what Veltra finds against the noise-free instrument.

namespace {

struct Options {
    std::vector<std::string> compounds;  ///< names or files; all that ship when empty
    std::vector<std::string> folders;    ///< of compound files
    std::uint64_t seeds = 3;
    std::vector<double> noiseLevels{1};
    std::string outFolder = ".";
    std::size_t pages = 100;
};

std::vector<std::string> CompoundsOf(const Options& options) {
    auto compounds = options.compounds;
    for (const auto& folder : options.folders) {
        for (const auto& file : support::FilesIn(folder))
            if (support::IsFileOfKind(file, ".ini"))
                compounds.push_back(support::JoinPath(support::AbsolutePath(folder), file));
    }
    if (compounds.empty())
        for (const auto& compound : orvanel::ListCompounds(VELTRA_APP_LOCATION))
            compounds.push_back(compound.name);
    return compounds;
}

void Measure(const Options& options, std::vector<quality::Findings>& runs, std::vector<quality::Section>& sections) {
    for (const auto& compound : CompoundsOf(options)) {
        std::cerr << compound << '\n';
        for (const double noise : options.noiseLevels)
            for (std::uint64_t seed = 1; seed <= options.seeds; ++seed) {
                WholeRun run(
                    {.compound = compound, .seed = seed, .asNewProject = true, .configure = [noise](auto& config) {
                         config.noiseLevel = noise;
                     }});
                runs.push_back(quality::Judge(run));
                const bool isShown = seed == 1 && noise == options.noiseLevels.front();
                if (isShown && sections.size() < options.pages)
                    sections.push_back(quality::SectionOf(run, runs.back()));
            }
    }
}

void WriteText(const Options& options, const std::string& name, const std::string& text) {
    const std::string path = support::JoinPath(options.outFolder, name);
    support::WriteWholeFile(path, text);
    std::cout << path << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Holds Veltra's findings against the noise-free instrument", "veltra-quality");
    app.add_option("compound", options.compounds,
                   "Names of shipped compounds or compound files; all shipped by default");
    app.add_option("--folder", options.folders, "Folder whose compound files (.ini) are run too");
    app.add_option("--seeds", options.seeds, "Runs for each compound and noise level")->check(CLI::Range(1, 1000));
    app.add_option("--noise", options.noiseLevels, "Noise levels, 1 is the default one")->delimiter(',');
    app.add_option("--out", options.outFolder, "Folder for quality-runs.csv, quality-fragments.csv and quality.html");
    CLI11_PARSE(app, argc, argv);
    try {
        support::CreateFolders(options.outFolder);
        std::vector<quality::Findings> runs;
        std::vector<quality::Section> sections;
        Measure(options, runs, sections);
        std::ostringstream table, runsCsv, fragmentsCsv;
        const bool isMet = quality::PrintTable(runs, table);
        quality::WriteRunsCsv(runs, runsCsv);
        quality::WriteFragmentsCsv(runs, fragmentsCsv);
        std::cout << table.str() << '\n';
        WriteText(options, "quality-runs.csv", runsCsv.str());
        WriteText(options, "quality-fragments.csv", fragmentsCsv.str());
        WriteText(options, "quality.html", quality::PageText(table.str(), sections));
        return isMet ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "veltra-quality: " << error.what() << '\n';
        return 2;
    }
}
