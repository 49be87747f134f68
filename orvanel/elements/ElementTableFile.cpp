// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/elements/ElementTableFile.h"

#include <cmath>
#include <map>
#include <utility>

#include "orvanel/instrument/InstrumentErrors.h"
#include "orvanel/instrument/StrictIni.h"
#include "ports/HostError.h"
#include "support/NumberText.h"

namespace orvanel {
namespace {

constexpr std::size_t maximumElements = 200;
constexpr std::size_t maximumIsotopes = 50;

using ElementMap = std::map<std::string, std::vector<ports::Isotope>>;

class ElementTableFile : public ports::ElementTable {
  public:
    ElementTableFile(std::string path, ElementMap elements) : path_(std::move(path)), elements_(std::move(elements)) {}

    std::vector<ports::Isotope> GetIsotopes(const std::string& symbol) override {
        const auto found = elements_.find(symbol);
        if (found == elements_.end())
            throw ports::HostError(unknownElement, "\"" + symbol + "\" is no element of " + path_);
        return found->second;
    }

  private:
    std::string path_;
    ElementMap elements_;
};

bool IsSymbol(const std::string& name) {
    if (name.empty() || name.size() > 3 || name[0] < 'A' || name[0] > 'Z') return false;
    for (const char c : name.substr(1))
        if (c < 'a' || c > 'z') return false;
    return true;
}

ports::Isotope ReadIsotope(StrictIni& file, const StrictIni::Section& section, const StrictIni::Entry& entry) {
    const auto massNumber = support::ParseInt32(entry.key);
    if (!massNumber || *massNumber < 1 || *massNumber > 400)
        file.Fail(section, entry, "a key is an isotope's mass number, 1 to 400");
    const auto numbers = file.Numbers(section, entry, 2, {0, 500});
    if (std::fabs(numbers[0] - *massNumber) > 0.5)
        file.Fail(section, entry,
                  "the mass " + support::GeneralText(numbers[0]) + " Da does not belong to this mass number");
    if (numbers[1] <= 0 || numbers[1] > 100)
        file.Fail(section, entry, "an abundance is above 0 and at most 100 percent");
    return {numbers[0], numbers[1]};
}

std::vector<ports::Isotope> ReadElement(StrictIni& file, const StrictIni::Section& section) {
    if (!IsSymbol(section.name)) file.Fail(section.line, "\"" + section.name + "\" is no element symbol, such as Cl");
    if (section.entries.size() > maximumIsotopes)
        file.Fail(section.line,
                  "[" + section.name + "] has more than " + std::to_string(maximumIsotopes) + " isotopes");
    std::vector<ports::Isotope> isotopes;
    int atHundred = 0;
    for (const auto& entry : section.entries) {
        isotopes.push_back(ReadIsotope(file, section, entry));
        if (isotopes.back().abundancePercent == 100) ++atHundred;
    }
    if (atHundred != 1)
        file.Fail(section.line, "[" + section.name + "] has " + std::to_string(atHundred) +
                                    " isotopes of abundance 100; exactly the most abundant one has 100");
    return isotopes;
}

}  // namespace

std::unique_ptr<ports::ElementTable> OpenElementTableFile(const std::string& path, const support::Disk& disk) {
    StrictIni file(path, elementFileFaulty, disk);
    if (file.Sections().empty() || file.Sections().size() > maximumElements)
        file.Fail(0, "The file holds " + std::to_string(file.Sections().size()) + " elements; it needs 1 to " +
                         std::to_string(maximumElements));
    ElementMap elements;
    for (const auto& section : file.Sections())
        elements[section.name] = ReadElement(file, section);
    return std::make_unique<ElementTableFile>(path, std::move(elements));
}

}  // namespace orvanel
