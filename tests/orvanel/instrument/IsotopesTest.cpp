// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Isotopes.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/orvanel/instrument/InstrumentBench.h"

namespace orvanel {
namespace {

TEST(Formula, CountsEverySymbolOnce) {
    EXPECT_EQ(ParseFormula("C44H69NO12Na"), (Composition{{"C", 44}, {"H", 69}, {"N", 1}, {"O", 12}, {"Na", 1}}));
    EXPECT_EQ(ParseFormula("CH3CH2OH"), (Composition{{"C", 2}, {"H", 6}, {"O", 1}}));
    for (const char* const faulty : {"", "c6H6", "C6 H6", "C0", "6C", "C6(H2)", "C99999999999"})
        EXPECT_THROW(ParseFormula(faulty), std::invalid_argument) << faulty;
}

TEST(Formula, IonMassesCountElectrons) {
    const auto elements = bench::Elements();
    EXPECT_NEAR(IonMz(ParseFormula("C33H41N2O9"), 1, false, *elements), 609.2807, 5e-5);
    EXPECT_NEAR(IonMz(ParseFormula("C11H11Cl2N2O5"), 1, true, *elements), 321.0051, 5e-5);
    EXPECT_NEAR(IonMz(ParseFormula("C33H42N2O9"), 2, false, *elements), (608.2734 + 2 * 1.007276) / 2, 5e-5);
}

TEST(Isotopes, ReferenceEnvelopes) {
    struct Reference {
        const char* ion;
        double percent[3];
        std::size_t shift[3];
    };
    const auto elements = bench::Elements();
    for (const auto& [ion, percent, shift] : {Reference{"C33H41N2O9", {100, 37.2, 8.6}, {0, 1, 2}},
                                              Reference{"C11H11Cl2N2O5", {100, 12.9, 65.8}, {0, 1, 2}},
                                              Reference{"C12H19Cl2N2O", {100, 14.0, 65.1}, {0, 1, 2}}}) {
        const IsotopeEnvelope envelope = EnvelopeOf(ParseFormula(ion), *elements);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(100 * envelope.share[shift[i]] / envelope.share[0], percent[i], 0.06) << ion << " + " << i;
        EXPECT_NEAR(bench::Sum(envelope.share), 1, 1e-7) << ion;
    }
}

TEST(Isotopes, MassesFollowTheIsotopes) {
    const auto elements = bench::Elements();
    EXPECT_NEAR(EnvelopeOf(ParseFormula("C20"), *elements).offsetDa[1], 1.003355, 1e-6);
    EXPECT_NEAR(EnvelopeOf(ParseFormula("Cl2"), *elements).offsetDa[2], 1.997050, 1e-6);
    // Boron's tallest isotope is not its lightest: the envelope begins below the monoisotopic mass.
    const IsotopeEnvelope boron = EnvelopeOf(ParseFormula("BH3"), *elements);
    EXPECT_EQ(boron.firstShift, -1);
    EXPECT_NEAR(boron.share[0] / boron.share[1], 0.248, 0.001);
}

TEST(Isotopes, FragmentsOfAnIsolatedIsotopologue) {
    const auto elements = bench::Elements();
    const Composition parentIon = ParseFormula("C12H19Cl2N2O");
    const Composition fragmentIon = ParseFormula("C8H9ClN2");
    const IsotopeEnvelope parent = EnvelopeOf(parentIon, *elements);
    const IsotopeEnvelope fragment = EnvelopeOf(fragmentIon, *elements);
    const IsotopeEnvelope complement = EnvelopeOf(Without(parentIon, fragmentIon), *elements);
    std::vector<double> only(parent.Size(), 0);

    only[0] = 1;  // nothing but the monoisotopic ion: so are its fragments
    auto result = FragmentTransmission(parent, only, fragment, complement);
    EXPECT_NEAR(TransmittedShare(fragment, result), parent.share[0], 1e-9);
    for (std::size_t i = 1; i < fragment.Size(); ++i)
        EXPECT_NEAR(result[i], 0, 1e-12);

    only = std::vector<double>(parent.Size(), 0);
    only[2] = 1;  // M+2 of two chlorine atoms: the heavy one stays in half of the fragments
    result = FragmentTransmission(parent, only, fragment, complement);
    EXPECT_NEAR(TransmittedShare(fragment, result), parent.share[2], 1e-9);
    EXPECT_NEAR(fragment.share[2] * result[2] / (fragment.share[0] * result[0]), 1, 0.03);

    // everything isolated: the natural envelope
    result = FragmentTransmission(parent, std::vector<double>(parent.Size(), 1), fragment, complement);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_NEAR(result[i], 1, 1e-4);
}

}  // namespace
}  // namespace orvanel
