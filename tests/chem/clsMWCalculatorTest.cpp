#include "chem/clsMWCalculator.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>

#include "ports/HostError.h"
#include "support/Paths.h"
#include "tests/support_files/RecordedMessageBoxes.h"

namespace {

using veltra::clsMWCalculator;

constexpr double hydrogen = 1.00782503;
constexpr double oxygen = 15.99491462;
constexpr double chlorine = 34.96885271;

/// Enough elements for the formulas here; the most abundant isotope is not always the first.
class FewElements : public ports::ElementTable {
  public:
    std::vector<ports::Isotope> GetIsotopes(const std::string& symbol) override {
        const std::map<std::string, std::vector<ports::Isotope>> elements{
            {"H", {{hydrogen, 100}, {2.0141018, 0.0115}}},
            {"C", {{12, 100}, {13.00335484, 1.08}}},
            {"O", {{oxygen, 100}, {17.9991604, 0.2}}},
            {"Cl", {{36.96590259, 31.98}, {chlorine, 100}}},
        };
        const auto found = elements.find(symbol);
        if (found == elements.end()) throw ports::HostError(9, "the element table has no \"" + symbol + "\"");
        return found->second;
    }
};

/// Only what the calculator asks a host for: one registry value and the element table.
class ElementHost : public ports::Host {
  public:
    std::unique_ptr<ports::ElementTable> OpenElementTable(const std::string& path) override {
        openedPath = path;
        if (path.empty() || tableIsMissing) throw ports::HostError(53, "there is no such file");
        return std::make_unique<FewElements>();
    }
    std::optional<std::string> RegRead(const std::string& path) override {
        if (path == "HKEY_LOCAL_MACHINE\\SOFTWARE\\Dravik\\Orvanel\\Install\\AppLocation") return appLocation;
        return std::nullopt;
    }
    std::unique_ptr<ports::HostApplication> AttachToRunningApplication() override { return nullptr; }
    std::unique_ptr<ports::TolmService> TolmCreateService() override { return nullptr; }
    std::unique_ptr<ports::QueueServer> HostQueueServer() override { return nullptr; }
    std::unique_ptr<ports::Pause> CreatePause() override { return nullptr; }
    std::unique_ptr<ports::DataExploration> CreateDataExploration() override { return nullptr; }
    std::unique_ptr<ports::InstrumentHelper> CreateInstrumentHelper() override { return nullptr; }
    bool HostOpenDocument(const std::string&) override { return false; }
    std::string GetDescription() const override { return {}; }

    std::optional<std::string> appLocation = "/app";
    bool tableIsMissing = false;
    std::string openedPath;
};

const std::string elementMessage = "Error computing molecular weight for element:";

TEST(clsMWCalculator, MassOfTheMostAbundantIsotopes) {
    struct Case {
        const char* formula;
        double massDa;
        const char* message = nullptr;
    };
    const std::string huge(400, '9');
    const std::string hugeFormula = "C" + huge;
    const std::string hugeMessage = elementMessage + "C";
    const std::string unknownMessage = elementMessage + "Xy";
    const std::string cobaltMessage = elementMessage + "Co";
    const Case cases[] = {
        {"C6H6", 6 * 12 + 6 * hydrogen},
        {"CH3CH2OH", 2 * 12 + 6 * hydrogen + oxygen},
        {"CCl4", 12 + 4 * chlorine},
        {"Cl2CHCl", 12 + 3 * chlorine + hydrogen},
        {"H", hydrogen},
        {"C0H2", 2 * hydrogen},
        {"H010", 10 * hydrogen},
        {"2H2", 2 * hydrogen},
        {"C2147483647", 12.0 * 2147483647},
        {"C2147483647C", 0, hugeMessage.c_str()},
        {"C2147483648", 0, hugeMessage.c_str()},
        {hugeFormula.c_str(), 0, hugeMessage.c_str()},
        {"C6XyQq", 0, unknownMessage.c_str()},
        {"CO2Co", 0, cobaltMessage.c_str()},
        {"c6h6", 0},
        {"12", 0},
        {"", 0, "The formula is not valid"},
        {"C6 H6", 0, "Invalid <space> character found in formula"},
        {"C6H6+ ", 0, "Invalid character found in formula: +"},
        {"Ca(OH)2", 0, "Invalid character found in formula: ("},
        {"C6\tH6", 0, "Invalid character found in formula: \t"},
        {"H2\xE2\x82\x82O", 0, "Invalid character found in formula: \xE2\x82\x82"},
    };
    ElementHost host;
    RecordedMessageBoxes boxes;
    clsMWCalculator calculator(host, boxes);
    for (const auto& [formula, massDa, message] : cases) {
        boxes.shown.clear();
        EXPECT_NEAR(calculator.GetMWForFormula(formula), massDa, 1e-9) << formula;
        std::vector<RecordedMessageBoxes::Box> expected;
        if (message != nullptr) expected.push_back({message, ports::MessageIcon::None});
        EXPECT_EQ(boxes.shown, expected) << formula;
    }
}

TEST(clsMWCalculator, AnElementTableThatCannotBeOpenedShowsAtTheFirstLookup) {
    for (const bool locationKnown : {true, false}) {
        ElementHost host;
        host.tableIsMissing = true;
        if (!locationKnown) host.appLocation.reset();
        RecordedMessageBoxes boxes;
        clsMWCalculator calculator(host, boxes);
        EXPECT_EQ(support::NativePath(host.openedPath),
                  locationKnown ? support::NativePath("/app/bin/QvElements.ini") : "");
        EXPECT_TRUE(boxes.shown.empty());
        EXPECT_EQ(calculator.GetMWForFormula("H2O"), 0);
        EXPECT_EQ(boxes.shown,
                  (std::vector<RecordedMessageBoxes::Box>{{elementMessage + "H", ports::MessageIcon::None}}));
    }
}

TEST(clsMWCalculator, MassToChargeRatio) {
    for (const auto& [massDa, charge, mz] : {std::tuple{100.0, 0, 100.0},
                                             {100.0, 1, 101.0072825},
                                             {100.0, -1, 98.9927175},
                                             {100.0, -2, (100 - 2.014565) / 2},
                                             {100.0, 3, (100 + 3.0218475) / 3},
                                             {0.0, -32768, -1.0072825}})
        EXPECT_NEAR(clsMWCalculator::CalculateMZ(massDa, static_cast<std::int16_t>(charge)), mz, 1e-12) << charge;
}

}  // namespace
