// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/RunTimeError.h"
#include "support/Text.h"
#include "support/modStringUtils.h"

namespace {

using namespace support;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// The texts of the values, a blank between.
template <class Number>
std::string TextsOf(std::string (*textOf)(Number), std::initializer_list<Number> values) {
    std::string texts;
    for (const Number value : values)
        texts += (texts.empty() ? "" : " ") + textOf(value);
    return texts;
}

TEST(NumberText, GeneralText) {
    EXPECT_EQ(TextsOf<double>(GeneralText, {0, -0.0, 100000, 511.3 - 1, 0.1 + 0.2, 35 * 0.01, -12.5, 999999999999999}),
              "0 0 100000 510.3 0.3 0.35 -12.5 999999999999999");
    EXPECT_EQ(TextsOf<double>(GeneralText, {1e15, -1.25e100, 1e-4, 1e-5, 1.0 / 3, 2.0 / 3, 9999999999999999.0}),
              "1E+15 -1.25E+100 0.0001 1E-05 0.333333333333333 0.666666666666667 1E+16");
    EXPECT_EQ(TextsOf<double>(GeneralText, {infinity, -infinity, notANumber}), "Infinity -Infinity NaN");
    EXPECT_EQ(TextsOf<float>(GeneralText, {0.1f, 100, -0.0f, 1.0f / 3, 1e15f, 1e-5f, 16777216, -4.35f, 0.0001f}),
              "0.1 100 0 0.3333333 1E+15 1E-05 16777220 -4.35 0.0001");
    EXPECT_EQ(GeneralText(std::numeric_limits<float>::quiet_NaN()), "NaN");
    EXPECT_EQ(GeneralText(-32768), "-32768");
}

TEST(NumberText, RoundTripTextReadsBackAsTheSameValue) {
    EXPECT_EQ(RoundTripText(100.0), "100");
    EXPECT_EQ(RoundTripText(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(RoundTripText(0.1f), "0.1");
    for (const double value : {0.1 + 0.2, 35 * 0.01, 1e-5, 1e15, -1e22, 5e-324, 1.7976931348623157e308})
        EXPECT_EQ(ParseDouble(RoundTripText(value)), value) << RoundTripText(value);
    for (const float value : {0.1f, 16777216.0f, 1e-45f, 3.4028235e38f, -4.35f})
        EXPECT_EQ(ParseSingle(RoundTripText(value)), value) << RoundTripText(value);
}

/// A tie goes to the even digit.
TEST(NumberText, FixedForms) {
    const std::initializer_list<double> ordinary{0, 123456, 1.125, 1.375, -0.0625, 0.0003, -0.0003};
    EXPECT_EQ(TextsOf<double>(ScientificText, ordinary),
              "0.00E+00 1.23E+05 1.12E+00 1.38E+00 -6.25E-02 3.00E-04 -3.00E-04");
    EXPECT_EQ(TextsOf<double>(MzText, ordinary), "0 123456 1.125 1.375 -0.062 0 0");
    EXPECT_EQ(TextsOf<double>(ScientificText, {9.999e99, notANumber}), "1.00E+100 NaN");
    EXPECT_EQ(TextsOf<double>(MzText, {609.28066, 500.0999999, 9.999e99, notANumber}), "609.281 500.1 9.999E+99 NaN");
    EXPECT_EQ(TextsOf<float>(FormatOneDecimal, {0, -0.0f, -0.04f, 5, 0.25f, 0.75f, -150, 99.96f, 1e20f}),
              "0.0 0.0 0.0 5.0 0.2 0.8 -150.0 100.0 100000000000000000000.0");
    for (const float value : {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(FormatOneDecimal(value), "N/A");
}

TEST(NumberText, RoundsHalfToEven) {
    for (const auto& [value, rounded] : {std::pair{0.5, 0.0}, {1.5, 2.0}, {2.5, 2.0}, {-2.5, -2.0}})
        EXPECT_EQ(RoundHalfEven(value, 0), rounded) << value;
    for (const auto& [value, rounded] : {std::pair{0.0625, 0.062}, {0.1875, 0.188}, {1e300, 1e300}, {5e-324, 0.0}})
        EXPECT_EQ(RoundHalfEven(value, 3), rounded) << value;
    EXPECT_EQ(RoundHalfEven(0.0015f, 3), 0.002);
    EXPECT_FALSE(std::signbit(RoundHalfEven(-0.2, 0)));
}

/// Every tie there is up to m/z 1700, few of which have an exact binary number.
TEST(NumberText, RoundsTheNumberAsItIsWritten) {
    int wrong = 0;
    for (int thousandths = 15'000; thousandths < 1'700'000; ++thousandths) {
        const double tie = (thousandths * 10 + 5) / 10000.0;
        const double even = (thousandths + thousandths % 2) / 1000.0;
        if (RoundHalfEven(tie, 3) != even || MzText(-tie) != GeneralText(-even)) ++wrong;
    }
    EXPECT_EQ(wrong, 0);
    for (int tenths = 0; tenths < 20'000; ++tenths) {
        const float tie = static_cast<float>(tenths * 10 + 5) / 100;
        const int even = tenths + tenths % 2;
        const std::string text = std::to_string(even / 10) + "." + std::to_string(even % 10);
        if (FormatOneDecimal(tie) != text || FixedText(static_cast<double>(tenths * 10 + 5) / 100, 1) != text) ++wrong;
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(TextsOf<double>(MzText, {514.2275, 0.0005, 0.0015, 0.9995, 999.9995}), "514.228 0 0.002 1 1000");
    EXPECT_EQ(TextsOf<double>(ScientificText, {1.225, 1.235, 9.995, 9.985e-10, 100500}),
              "1.22E+00 1.24E+00 1.00E+01 9.98E-10 1.00E+05");
    EXPECT_EQ(TextsOf<double>(GeneralText, {1.000000000000025, 0.1234567890123455}),
              "1.00000000000002 0.123456789012346");
    EXPECT_EQ(FixedText(1234.5, 0) + " " + FixedText(0.00005, 4) + " " + FixedText(-1e16, 2),
              "1234 0.0000 -10000000000000000.00");
}

TEST(NumberText, WholeNumbersOverflowAtTheirLimits) {
    EXPECT_EQ(ToInt16(2.5), 2);
    EXPECT_EQ(ToInt16(-3.5), -4);
    EXPECT_EQ(ToInt16(32767.4), 32767);
    EXPECT_EQ(ToInt16(-32768.5), -32768);
    EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
    EXPECT_EQ(ToInt32(-2147483648.0), std::numeric_limits<std::int32_t>::min());
    for (const double value : {32767.5, -32769.0, 1e300, infinity, notANumber}) {
        try {
            ToInt16(value);
            ADD_FAILURE() << value << " fitted";
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.Number(), 6);
            EXPECT_STREQ(error.what(), "Overflow");
        }
    }
    EXPECT_THROW(ToInt32(2147483647.5), RunTimeError);
}

TEST(NumberText, ParsesWholeTextsOnly) {
    const std::string manyZeros(400, '0');
    for (const auto& [text, value] : {std::pair{"12.5", 12.5}, {" \t-.5 ", -0.5}, {"+5.", 5.0}, {"1e3", 1000.0}})
        EXPECT_EQ(ParseDouble(text), value) << text;
    for (const auto& [text, value] : {std::pair{"1E-2", 0.01}, {"-2.5e+1", -25.0}, {"1e-999", 0.0}})
        EXPECT_EQ(ParseDouble(text), value) << text;
    for (const char* text : {"", "  ", ".", "-", "+-5", "- 5", "1 2", "1.2.3", "1,5", "1e", "e5", "0x10", "&H10", "inf",
                             "nan", "12 V", "1e999"})
        EXPECT_EQ(ParseDouble(text), std::nullopt) << text;
    EXPECT_EQ(ParseDouble("-1" + manyZeros), std::nullopt);
    EXPECT_EQ(ParseDouble("1" + manyZeros + "e-400"), 1);
    EXPECT_EQ(ParseDouble("1" + manyZeros + "e99999999999999999999"), std::nullopt);
    EXPECT_EQ(ParseDouble("0." + manyZeros + "1"), 0);
    EXPECT_EQ(ParseDouble("1e-99999999999999999999"), 0);
    EXPECT_EQ(ParseSingle("1e39"), std::nullopt);
    EXPECT_EQ(ParseSingle("1e-60"), 0.0f);
    EXPECT_EQ(ParseSingle("0.1"), 0.1f);
}

TEST(NumberText, ParsesWholeNumbersWithRounding) {
    for (const auto& [text, number] : {std::pair{"5", 5}, {"2.5", 2}, {"3.5", 4}, {"-1e2", -100}}) {
        EXPECT_EQ(ParseInt16(text), number) << text;
        EXPECT_EQ(ParseInt32(text), number) << text;
    }
    EXPECT_EQ(ParseInt32("32768"), 32768);
    for (const char* text : {"32768", "3000000000", "five", ""})
        EXPECT_EQ(ParseInt16(text), std::nullopt) << text;
    for (const char* text : {"3000000000", "five", ""})
        EXPECT_EQ(ParseInt32(text), std::nullopt) << text;
}

TEST(NumberText, LeadingNumberStopsWhereTheNumberDoes) {
    for (const auto& [text, value] : {std::pair{"1000", 1000.0}, {"  250 Da/s", 250.0}, {"10000.5.7", 10000.5}})
        EXPECT_EQ(LeadingNumber(text), value) << text;
    for (const auto& [text, value] : {std::pair{"-3e2x", -300.0}, {"4e", 4.0}, {"1e+ ", 1.0}, {"fast", 0.0}, {"", 0.0}})
        EXPECT_EQ(LeadingNumber(text), value) << text;
}

TEST(Text, TrimCaseSplitJoinPad) {
    EXPECT_EQ(Trim(" \t a b\t "), "a b");
    EXPECT_EQ(Trim(" \t"), "");
    EXPECT_EQ(ToUpper("true \xC3\xA9z"), "TRUE \xC3\xA9Z");
    EXPECT_TRUE(EqualIgnoringCase("Veltra", "vELTRA"));
    EXPECT_FALSE(EqualIgnoringCase("Veltra", "Veltr"));
    EXPECT_FALSE(EqualIgnoringCase("[", "{"));
    EXPECT_EQ(Split("a;;b;", ';'), (std::vector<std::string>{"a", "", "b", ""}));
    EXPECT_EQ(Split("", ';'), std::vector<std::string>{""});
    EXPECT_EQ(JoinLines({}), "");
    EXPECT_EQ(JoinLines({"", "a", ""}), "\r\na\r\n");
    EXPECT_EQ(PadRight("ab", 4) + "|" + PadLeft("ab", 4) + "|" + PadRight("abcde", 4) + PadLeft("abcde", 4),
              "ab  |  ab|abcdeabcde");
}

TEST(modStringUtils, IsNumericText) {
    for (const char* text : {"", ".", ".5", "5.", "1700", "0.001"})
        EXPECT_TRUE(IsNumericText(text)) << text;
    for (const char* text : {"1.2.3", "-5", "1e5", " 5", "5,0", "+1"})
        EXPECT_FALSE(IsNumericText(text)) << text;
}

class RecordedList : public ListControl {
  public:
    void InsertItem(int index, const std::string& text) override { items.insert(items.begin() + index, text); }
    void SelectItem(int index) override { selected = index; }

    std::vector<std::string> items;
    int selected = -1;
};

TEST(modStringUtils, FillListFromHost) {
    RecordedList list;
    FillListFromHost(list, 7, 12, [](int first, int second) {
        return std::vector<std::string>{std::to_string(first), std::to_string(second)};
    });
    EXPECT_EQ(list.items, (std::vector<std::string>{"7", "12"}));
    EXPECT_EQ(list.selected, 0);

    RecordedList untouched;
    FillListFromHost(untouched, 7, 12,
                     [](int, int) -> std::vector<std::string> { throw std::runtime_error("no such model"); });
    FillListFromHost(untouched, 7, 12, [](int, int) { return std::vector<std::string>{}; });
    EXPECT_TRUE(untouched.items.empty());
    EXPECT_EQ(untouched.selected, -1);
}

}  // namespace
