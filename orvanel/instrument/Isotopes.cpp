// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Isotopes.h"

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

constexpr double negligibleShare = 1e-9;

/// While convolving, the first moment of the masses is carried instead of their mean: it is additive.
struct Distribution {
    int firstShift = 0;
    std::vector<double> share{1};
    std::vector<double> moment{0};
};

Distribution Convolved(const Distribution& a, const Distribution& b) {
    Distribution product;
    product.firstShift = a.firstShift + b.firstShift;
    product.share.assign(a.share.size() + b.share.size() - 1, 0);
    product.moment = product.share;
    for (std::size_t i = 0; i < a.share.size(); ++i)
        for (std::size_t j = 0; j < b.share.size(); ++j) {
            product.share[i + j] += a.share[i] * b.share[j];
            product.moment[i + j] += a.share[i] * b.moment[j] + a.moment[i] * b.share[j];
        }
    std::size_t begin = 0;
    std::size_t end = product.share.size();
    while (end - begin > 1 && product.share[end - 1] < negligibleShare)
        --end;
    while (end - begin > 1 && product.share[begin] < negligibleShare)
        ++begin;
    const auto trim = [begin, end](std::vector<double>& values) {
        values.resize(end);
        values.erase(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(begin));
    };
    trim(product.share);
    trim(product.moment);
    product.firstShift += static_cast<int>(begin);
    return product;
}

Distribution OfElement(const std::vector<ports::Isotope>& isotopes) {
    const auto tallest = std::max_element(isotopes.begin(), isotopes.end(), [](const auto& a, const auto& b) {
        return a.abundancePercent < b.abundancePercent;
    });
    const auto shiftOf = [&tallest](const ports::Isotope& isotope) {
        return static_cast<int>(std::lround(isotope.massDa - tallest->massDa));
    };
    int first = 0;
    int last = 0;
    double total = 0;
    for (const auto& isotope : isotopes) {
        first = std::min(first, shiftOf(isotope));
        last = std::max(last, shiftOf(isotope));
        total += isotope.abundancePercent;
    }
    Distribution distribution;
    distribution.firstShift = first;
    distribution.share.assign(static_cast<std::size_t>(last - first) + 1, 0);
    distribution.moment = distribution.share;
    for (const auto& isotope : isotopes) {
        const auto index = static_cast<std::size_t>(shiftOf(isotope) - first);
        distribution.share[index] += isotope.abundancePercent / total;
        distribution.moment[index] += isotope.abundancePercent / total * (isotope.massDa - tallest->massDa);
    }
    return distribution;
}

}  // namespace

IsotopeEnvelope EnvelopeOf(const Composition& composition, ports::ElementTable& elements) {
    Distribution whole;
    for (const auto& [symbol, count] : composition) {
        Distribution power = OfElement(elements.GetIsotopes(symbol));
        for (int remaining = count; remaining > 0; remaining /= 2) {
            if (remaining % 2 == 1) whole = Convolved(whole, power);
            if (remaining > 1) power = Convolved(power, power);
        }
    }
    IsotopeEnvelope envelope{whole.firstShift, whole.share, whole.moment};
    for (std::size_t i = 0; i < envelope.Size(); ++i)
        envelope.offsetDa[i] = whole.share[i] > 0 ? whole.moment[i] / whole.share[i] : envelope.firstShift + double(i);
    return envelope;
}

std::vector<double> FragmentTransmission(const IsotopeEnvelope& parent, const std::vector<double>& transmission,
                                         const IsotopeEnvelope& fragment, const IsotopeEnvelope& complement) {
    std::vector<double> result(fragment.Size(), 0);
    for (std::size_t i = 0; i < fragment.Size(); ++i)
        for (std::size_t k = 0; k < parent.Size(); ++k) {
            const int shift = parent.firstShift + int(k) - fragment.firstShift - int(i) - complement.firstShift;
            if (shift >= 0 && shift < int(complement.Size()))
                result[i] += transmission[k] * complement.share[static_cast<std::size_t>(shift)];
        }
    const double arriving = TransmittedShare(parent, transmission);
    const double leaving = TransmittedShare(fragment, result);
    if (leaving > 0)
        for (double& value : result)
            value *= arriving / leaving;
    return result;
}

double TransmittedShare(const IsotopeEnvelope& envelope, const std::vector<double>& transmission) {
    double sum = 0;
    for (std::size_t i = 0; i < envelope.Size(); ++i)
        sum += envelope.share[i] * transmission[i];
    return sum;
}

}  // namespace orvanel
