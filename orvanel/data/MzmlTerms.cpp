// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/MzmlTerms.h"

#include <cmath>
#include <stdexcept>

#include "support/NumberText.h"

namespace orvanel {

using namespace pwiz::cv;
namespace msdata = pwiz::msdata;

double NumberOf(const std::string& text, const std::string& where) {
    const auto value = support::ParseDouble(text);
    if (!value) throw std::runtime_error(where + " is \"" + text + "\", which is no number");
    return *value;
}

std::optional<double> TermNumber(const pwiz::data::ParamContainer& container, CVID term, const std::string& where) {
    const auto param = container.cvParam(term);
    if (param.empty() || param.value.empty()) return std::nullopt;
    return NumberOf(param.value, where + ": " + param.name());
}

void RequireWithin(const Range& range, double value, const std::string& where) {
    if (!std::isfinite(value)) throw std::runtime_error(where + " holds a value that is no finite number");
    if (value < range.lowest || value > range.highest)
        throw std::runtime_error(where + " holds " + support::GeneralText(value) + ", allowed is " +
                                 support::GeneralText(range.lowest) + " to " + support::GeneralText(range.highest));
}

std::vector<double> ValuesOf(const msdata::BinaryDataArrayPtr& array, const Range& range, const std::string& where) {
    if (!array) return {};
    std::vector<double> values(array->data.begin(), array->data.end());
    for (const double value : values)
        RequireWithin(range, value, where);
    return values;
}

double UnitsPerMinute(CVID unit, const std::string& where) {
    switch (unit) {
        case CVID_Unknown:
        case UO_minute:
            return 1;
        case UO_second:
            return 60;
        case UO_millisecond:
            return 60000;
        default:
            throw std::runtime_error(where + " is in a unit other than minute, second and millisecond");
    }
}

std::vector<double> PrecursorMz(const msdata::Precursor& precursor, const std::string& where) {
    std::vector<double> masses;
    if (const auto target = TermNumber(precursor.isolationWindow, MS_isolation_window_target_m_z, where)) {
        masses.push_back(*target);
    } else {
        for (const auto& ion : precursor.selectedIons)
            if (const auto mz = TermNumber(ion, MS_selected_ion_m_z, where)) masses.push_back(*mz);
    }
    for (const double mz : masses)
        RequireWithin(mzRange, mz, where + ": the precursor");
    return masses;
}

}  // namespace orvanel
