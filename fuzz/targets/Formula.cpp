// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Formula.h"

#include <cmath>
#include <stdexcept>

#include "chem/clsMWCalculator.h"
#include "fuzz/Fuzz.h"
#include "orvanel/elements/ElementTableFile.h"
#include "tests/support_files/FakeHost.h"
#include "tests/support_files/RecordedMessageBoxes.h"

namespace {

/// A host that has the element table that ships.
class ElementHost : public FakeHost {
  public:
    std::unique_ptr<ports::ElementTable> OpenElementTable(const std::string&) override {
        return orvanel::OpenElementTableFile(fuzz::Shipped("bin/QvElements.ini"));
    }
};

/// The mass by the instrument's parser, which was written apart from the calculator's; nothing where it refuses.
std::optional<double> MassByOrvanel(const std::string& formula) {
    try {
        return orvanel::MonoisotopicMass(orvanel::ParseFormula(formula), fuzz::Elements());
    } catch (const std::invalid_argument&) {
    } catch (const ports::HostError&) {
    }
    return std::nullopt;
}

}  // namespace

/// The calculator says what is wrong exactly where it gives no mass, and agrees with the other parser.
void fuzz::Try(std::string_view input) {
    static ElementHost host;
    static RecordedMessageBoxes boxes;
    static veltra::clsMWCalculator calculator(host, boxes);
    const std::string formula(input);
    boxes.shown.clear();
    const double massDa = calculator.GetMWForFormula(formula);
    Require(std::isfinite(massDa) && massDa >= 0, "a mass is a number");
    Require(boxes.shown.size() <= 1 && (boxes.shown.empty() || massDa == 0), "a message tells why there is no mass");
    const auto other = MassByOrvanel(formula);
    if (!other) return;
    Require(boxes.shown.empty(), "what the instrument's parser takes, the calculator takes");
    Require(std::fabs(massDa - *other) <= 1e-9 * *other, "both parsers give the same mass for " + formula);
}
