// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/MethodFile.h"

#include "support/Files.h"
#include "tests/orvanel/methods/MethodTestTools.h"
#include "tests/support_files/TempFolder.h"

namespace {

using orvanel::MethodDocument;
using orvanel::ReadMethodFile;
using orvanel::WriteMethodFile;

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

class MethodFile : public testing::Test {
  protected:
    std::string ReadError() {
        return HostErrorOf([this] { ReadMethodFile(path); });
    }

    const TempFolder folder;
    const std::string path = folder.File("m.xmt");
};

TEST_F(MethodFile, GivesBackEveryValueThatWasWritten) {
    MethodDocument document = MethodForTests();
    auto& experiment = document.devices[1].massSpec->periods[0].experiments[0];
    experiment.newRangeParameters = {{"DP", -0.1F}, {"CES", 1e-7F}};
    experiment.massRanges.push_back({1.0 / 3, 0, 1e15, 2.5, {}});
    WriteMethodFile(path, document);

    const MethodDocument read = ReadMethodFile(path);
    EXPECT_EQ(read.comment, document.comment);
    EXPECT_EQ(read.devices.at(0).settings.at(0).value, "10");
    EXPECT_FALSE(read.devices[0].massSpec);
    const auto& period = read.MassSpec()->periods.at(0);
    EXPECT_EQ(period.ramp.value().step, 2.0F);
    EXPECT_EQ(period.experiments.at(0).newRangeParameters, experiment.newRangeParameters);
    EXPECT_EQ(period.experiments[0].massRanges.at(1).start, 1.0 / 3);
    EXPECT_EQ(period.experiments[0].massRanges[1].step, 1e15);

    // A second writing gives the same bytes, so that nothing is lost on the way that was not looked at above.
    WriteMethodFile(folder.File("again.xmt"), read);
    EXPECT_EQ(support::ReadWholeFile(folder.File("again.xmt")), support::ReadWholeFile(path));
    EXPECT_NE(support::ReadWholeFile(path).find("instrument=\"simulated\""), std::string::npos);
}

TEST_F(MethodFile, CutOffAnywhereIsAnErrorOrStillWhole) {
    WriteMethodFile(path, MethodForTests());
    const std::string text = support::ReadWholeFile(path);
    const std::size_t end = text.rfind('>') + 1;
    for (std::size_t length = 0; length < text.size(); ++length) {
        WriteText(folder.File("cut.xmt"), text.substr(0, length));
        const std::string error =
            HostErrorOf([&] { EXPECT_EQ(ReadMethodFile(folder.File("cut.xmt")).devices.size(), 2U); });
        EXPECT_EQ(error.empty(), length >= end) << length << " " << error;
    }
}

TEST_F(MethodFile, RefusesWhatItDoesNotKnow) {
    WriteMethodFile(path, MethodForTests());
    const std::string good = support::ReadWholeFile(path);
    const std::string outside =
        ": outside element OrvanelMethod may stand comments and, before all, an XML declaration only, remove what else "
        "is "
        "there";
    const struct {
        const char *from, *to;
        std::string expected;  ///< behind the path
    } cases[] = {
        {"cycles=\"51\"", "cycles=\"5x\"",
         ", line 8: attribute \"cycles\" is \"5x\", expected is a whole number from 1 to 2147483647"},
        {"cycles=\"51\"", "cycles=\"51\" cycle=\"1\"",
         ", line 8: element Period has an unknown attribute \"cycle\", it may have: cycles"},
        {"cycles=\"51\"", "cycles=\"51\" cycles=\"51\"", ", line 8: element Period has attribute \"cycles\" twice"},
        {" cycles=\"51\"", "", ", line 8: element Period lacks attribute \"cycles\""},
        {"step=\"2\"", "step=\"NaN\"",
         ", line 9: attribute \"step\" is \"NaN\", expected is a number of single precision"},
        {"firstPrecursor=\"609.2807\"", "firstPrecursor=\"1e999\"",
         ", line 10: attribute \"firstPrecursor\" is \"1e999\", expected is a number"},
        {"<SourceGas>", "<Gas/><SourceGas>",
         ", line 11: element Experiment holds an unknown element \"Gas\", it may hold: SourceGas, NewRange, MassRange"},
        {"<SourceGas>", "text<SourceGas>", ", line 10: element Experiment holds a text, it may hold elements only"},
        {"id=\"IS\"", "id=\"CUR\"", ", line 13: parameter \"CUR\" is in the table twice"},
        {"<MassSpec ", "<MassSpec operatingMode=\"0\"/><MassSpec ",
         ", line 6: a device of kind \"MassSpectrometer\" has exactly one MassSpec element, others have none"},
        {"version=\"1\"", "version=\"2\"", ", line 2: version 2 of this format is not known, only version 1 is"},
        {"instrument=\"simulated\"", "instrument=\"real\"",
         ", line 2: it was not made for a simulated instrument (instrument=\"simulated\")"},
        {"</OrvanelMethod>", "</OrvanelMethod><Second/>",
         ", line 2: this is not an acquisition method of this host, whose only root element is OrvanelMethod"},
        {"</OrvanelMethod>", "</OrvanelMethod>\nand more", ", line 26" + outside},
        {"<OrvanelMethod", "before<OrvanelMethod", ", line 2" + outside},
        {"</OrvanelMethod>", "</OrvanelMethod><![CDATA[more]]>", ", line 25" + outside},
        {"<OrvanelMethod", "<!DOCTYPE OrvanelMethod><OrvanelMethod", ", line 2" + outside},
        {"<OrvanelMethod", "<?xml version=\"1.0\"?><OrvanelMethod", ", line 2" + outside},
        {"encoding=\"utf-8\"", "encoding=\"iso-8859-1\"",
         ", line 1: the declared encoding is \"iso-8859-1\", expected is \"utf-8\""},
        {"Test trap", "Test \xFF trap",
         ": this is not an acquisition method of this host, which is an XML text in UTF-8"},
    };
    for (const auto& one : cases) {
        std::string text = good;
        if (std::string(one.from) == "version=\"1\"") {
            const auto root = text.find("<OrvanelMethod");
            text = text.substr(0, root) + Replaced(text.substr(root), one.from, one.to);
        } else {
            text = Replaced(text, one.from, one.to);
        }
        WriteText(path, text);
        EXPECT_EQ(ReadError(), "1102: " + path + one.expected);
    }
}

TEST_F(MethodFile, RefusesForeignMissingAndHugeFiles) {
    EXPECT_EQ(ReadError(), "1101: Cannot read " + path + ": No such file or directory");
    WriteText(path, "<indexedmzML><mzML/></indexedmzML>");
    EXPECT_EQ(ReadError(),
              "1102: " + path +
                  ", line 1: this is not an acquisition method of this host, whose only root element is OrvanelMethod");
    WriteText(path, std::string((4U << 20) + 1, ' '));
    EXPECT_EQ(ReadError(), "1101: Cannot read " + path + ": it has 4194305 bytes, more than the 4194304 allowed");
}

TEST_F(MethodFile, TooManyPartsAndDeepNestingAreErrors) {
    std::string devices;
    for (int k = 0; k < 33; ++k)
        devices += "<Device kind=\"Pump\" name=\"p\"/>";
    const std::string head = "<OrvanelMethod version=\"1\" instrument=\"simulated\">";
    WriteText(path, head + devices + "</OrvanelMethod>");
    EXPECT_EQ(ReadError(), "1102: " + path + ", line 1: element OrvanelMethod holds more than 32 elements \"Device\"");
    std::string nested;
    for (int k = 0; k < 100000; ++k)
        nested += "<a>";
    WriteText(path, head + nested);
    EXPECT_NE(ReadError(), "");
}

TEST_F(MethodFile, WritesNothingThatItCouldNotRead) {
    WriteMethodFile(path, MethodForTests());
    const std::string before = support::ReadWholeFile(path);
    MethodDocument document = MethodForTests();
    document.devices[1].massSpec->periods[0].ramp->stop = std::numeric_limits<float>::infinity();
    EXPECT_EQ(HostErrorOf([&] { WriteMethodFile(path, document); }),
              "1103: \"stop\" of element \"Ramp\" is not a finite number, so an acquisition method cannot be saved");
    document = MethodForTests();
    document.devices[0].name = "bell \x07";
    EXPECT_NE(HostErrorOf([&] { WriteMethodFile(path, document); }), "");
    EXPECT_EQ(support::ReadWholeFile(path), before);
}

}  // namespace
