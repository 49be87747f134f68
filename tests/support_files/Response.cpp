#include "tests/support_files/Response.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/instrument/Simulator.h"
#include "orvanel/instrument/Transmission.h"

namespace {

/// The best value of a response between two voltages, in steps of 0.05 V.
double Best(double start, double stop, const std::function<double(double)>& response) {
    constexpr double step = 0.05;
    double best = 0;
    for (double voltage = start; voltage <= stop + step / 2; voltage += step)
        best = std::max(best, response(voltage));
    return best;
}

const orvanel::TreeNode* NearestFragment(const orvanel::Compound& compound, double mz) {
    constexpr double toleranceDa = 0.1;
    const orvanel::TreeNode* nearest = nullptr;
    for (const auto& [name, node] : compound.nodes)
        if (name != compound.root && std::abs(node.mz - mz) <= toleranceDa) nearest = &node;
    return nearest;
}

/// What a transition's Q3 lets through at a collision energy: the fragment, and a little of what lies beside it.
double TransitionYield(const orvanel::InstrumentModel& model, const orvanel::Compound& compound, double q3, double ce) {
    constexpr std::size_t unitResolution = 1;
    double yield = 0;
    for (const auto& [name, node] : compound.nodes)
        yield += orvanel::FragmentYield(compound, name, ce) *
                 orvanel::QuadrupoleTransmission(model, model.q1Windows[unitResolution], node.mz - q3);
    return yield;
}

Response::Fragment FragmentResponse(const orvanel::InstrumentModel& model, const orvanel::Compound& compound,
                                    const veltra::clsItem_TopPeak& record) {
    Response::Fragment fragment;
    fragment.foundMz = record.SecondPrecursor->CentroidMass;
    fragment.foundCe = record.OptimizedCE;
    const orvanel::TreeNode* node = NearestFragment(compound, fragment.foundMz);
    if (node == nullptr) return fragment;
    const auto yield = [&](double ce) { return TransitionYield(model, compound, fragment.foundMz, ce); };
    fragment.node = node->name;
    fragment.share = yield(record.OptimizedCE) / Best(10, 130, yield);
    return fragment;
}

}  // namespace

Response ResponseOf(const WholeRun& run) {
    const std::string share = VELTRA_APP_LOCATION;
    const auto elements = orvanel::OpenElementTableFile(share + "/bin/QvElements.ini");
    const auto compound = orvanel::LoadCompound(share + "/compounds/" + run.settings.CompoundName + ".ini", *elements);
    const auto model = orvanel::LoadInstrumentModels(share + "/models").at(run.run.InstrumentModelCode);
    const auto& results = *run.run.results;
    const auto dp = static_cast<double>(results.DP.Current);
    const auto ep = static_cast<double>(results.EP.Current);
    const auto cep = static_cast<double>(results.CEP.Current);
    const auto transmission = [&](double d, double e, double c) {
        return orvanel::RelativeTransmission(model, compound, d, e, c);
    };

    // Each term of the product by itself: the other two stay at the found values and cancel out.
    Response response;
    const double found = transmission(dp, ep, cep);
    const auto rampStart = static_cast<double>(run.settings.Advanced_Q1MIDPRampStart);
    const auto rampStop = static_cast<double>(run.settings.Advanced_Q1MIDPRampStop);
    response.dp = found / Best(rampStart, rampStop, [&](double v) { return transmission(v, ep, cep); });
    response.ep = found / Best(1, 12, [&](double v) { return transmission(dp, v, cep); });
    response.cep = found / Best(0, 100, [&](double v) { return transmission(dp, ep, v); });

    for (const auto& record : results.TopPeaksInfo)
        response.fragments.push_back(FragmentResponse(model, compound, *record));
    for (const auto& planted : compound.truth) {
        const double mz = compound.nodes.at(planted.node).mz;
        const bool scanned = mz >= static_cast<double>(run.settings.Advanced_EPIMassStart) &&
                             mz <= static_cast<double>(run.settings.Advanced_EPIMassEnd);
        const bool chosen = std::any_of(response.fragments.begin(), response.fragments.end(),
                                        [&](const auto& fragment) { return fragment.node == planted.node; });
        if (scanned && !chosen) response.missedFragments.push_back(planted.node);
    }
    return response;
}
