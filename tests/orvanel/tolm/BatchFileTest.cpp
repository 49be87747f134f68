// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/tolm/BatchFile.h"

#include "tests/orvanel/methods/MethodTestTools.h"
#include "tests/support_files/TempFolder.h"

namespace {

using orvanel::BatchRecord;

TEST(BatchFile, GivesBackWhatWasWritten) {
    const TempFolder folder;
    const BatchRecord batch{
        "b.xbt", "user", "two\r\nlines & <more>", "/p/P1", {{"SET1", "m.xmt", "none", {{"d.vesk", "N/A", "", "0"}}}}};
    orvanel::WriteBatchFile(folder.File("b.xbt"), batch);
    EXPECT_EQ(orvanel::ReadBatchFile(folder.File("b.xbt")), batch);
}

TEST(BatchFile, RefusesForeignFilesAndUnknownParts) {
    const TempFolder folder;
    const std::string path = folder.File("b.xbt");
    const std::string head =
        "<OrvanelBatch version=\"1\" instrument=\"simulated\" name=\"\" user=\"\" text=\"\" project=\"\"";
    const struct {
        std::string text;
        const char* expected;
    } cases[] = {
        {"<OrvanelMethod version=\"1\"/>",
         ", line 1: this is not an acquisition batch of this host, whose only root element is OrvanelBatch"},
        {head + ">\n<Sample/></OrvanelBatch>",
         ", line 2: element OrvanelBatch holds an unknown element \"Sample\", it may hold: Set"},
        {head + " owner=\"\"/>",
         ", line 1: element OrvanelBatch has an unknown attribute \"owner\", it may have: version, instrument, name, "
         "user, text, project"},
        {head + "><Set name=\"\" acquisitionMethod=\"../m.xmt\" processingMethod=\"\"/></OrvanelBatch>",
         ", line 1: \"../m.xmt\" is no name of a method file, expected is a file name without folder that ends in "
         ".xmt"},
        {head + "><Set name=\"\" acquisitionMethod=\"m.xmt\" processingMethod=\"\">\n"
                "<Sample dataFile=\"../d.vesk\" sampleName=\"\" sampleId=\"\" rackPosition=\"\"/></Set></OrvanelBatch>",
         ", line 2: \"../d.vesk\" is no name of a data file, expected is a path within the project's data folder that "
         "ends in .vesk"},
        {head + "><Set name=\"&#1;\" acquisitionMethod=\"\" processingMethod=\"\"/></OrvanelBatch>",
         ", line 1: attribute \"name\" holds a control character"},
    };
    for (const auto& one : cases) {
        WriteText(path, one.text);
        EXPECT_EQ(HostErrorOf([&] { orvanel::ReadBatchFile(path); }), "1208: " + path + one.expected);
    }
}

}  // namespace
