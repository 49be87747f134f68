#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "tests/support_files/Response.h"

/// Prints, for every shipped compound, the noise-free response at the voltages that a run finds, in percent of the best
/// that its ramps allow. Usage: veltra-response-table [SEEDS]

namespace {

void PrintRow(const std::string& compound, std::uint64_t seed) {
    WholeRun run({.compound = compound, .seed = seed});
    if (run.Start() != veltra::StartButton::Outcome::Completed) {
        std::printf("%-16s %4llu  not completed\n", compound.c_str(), static_cast<unsigned long long>(seed));
        return;
    }
    const Response response = ResponseOf(run);
    double worstCe = 1;
    for (const auto& fragment : response.fragments)
        worstCe = std::min(worstCe, fragment.share);
    const double massError = run.run.results->ActualPeak->CentroidMass - run.project.facts.expectedMz;
    std::printf("%-16s %4llu  %+6.3f %6.1f %6.1f %6.1f %9.1f  %zu\n", compound.c_str(),
                static_cast<unsigned long long>(seed), massError, response.dp * 100, response.ep * 100,
                response.cep * 100, worstCe * 100, response.fragments.size());
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::uint64_t seeds = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1;
        std::printf("compound         seed   dm/z     DP     EP    CEP  worst CE  2nd precursors\n");
        for (const auto& compound : orvanel::ListCompounds(VELTRA_APP_LOCATION))
            for (std::uint64_t seed = 1; seed <= seeds; ++seed)
                PrintRow(compound.name, seed);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "veltra-response-table: %s\n", error.what());
        return 1;
    }
}
