// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/ResultsGraphControl.h"

#include <gtest/gtest.h>
#include <qcustomplot.h>

#include <QApplication>
#include <QClipboard>
#include <QImage>

#include "support/Files.h"
#include "tests/support_files/FixedDataObjects.h"
#include "tests/support_files/TempFolder.h"

namespace {

class ResultsGraph : public testing::Test {
  protected:
    ResultsGraph() {
        graph.resize(417, 201);
        graph.AddPane();
        graph.SetPaneData(1, FixedChromatogram({10, 12, 14}, {1, 5, 2}));
        graph.SetXAxisLimits({10, 14});
        graph.SetYAxisLimits({1, 5});
        graph.SetLabels(
            {"CE (V)", "Intensity (cps)", {"609.281 -> 397.212"}, false, {12}, "CE", "Simulated instrument"});
    }
    QCustomPlot& Plot() { return *graph.findChild<QCustomPlot*>(); }

    app::ResultsGraphControl graph;
};

TEST_F(ResultsGraph, ShowsItsRangeAndGoesBackToIt) {
    const auto whole = Plot().xAxis->range();
    EXPECT_LE(whole.lower, 10);
    EXPECT_GE(whole.upper, 14);
    EXPECT_EQ(Plot().yAxis->range().lower, 0);
    EXPECT_GT(Plot().yAxis->range().upper, 5);
    EXPECT_EQ(Plot().xAxis->label(), "CE (V)");
    EXPECT_EQ(Plot().graph(0)->name(), "609.281 -> 397.212");
    Plot().xAxis->setRange(11, 12);
    emit Plot().mouseDoubleClick(nullptr);
    EXPECT_EQ(Plot().xAxis->range(), whole);
    EXPECT_EQ(graph.PaneApexX(1), 12);
}

TEST_F(ResultsGraph, IsSavedAndCopied) {
    const TempFolder folder;
    const std::string csv = "\"Simulated instrument\"\r\n\"CE (V)\",\"609.281 -> 397.212\"\r\n10,1\r\n12,5\r\n14,2\r\n";
    for (const std::string name : {"graph.csv", "graph.svg", "graph.png"})
        ASSERT_TRUE(graph.SaveAs(QString::fromStdString(folder.File(name)))) << name;
    EXPECT_EQ(support::ReadWholeFile(folder.File("graph.csv")), csv);
    for (const char* text : {"CE (V)", "Simulated instrument"})
        EXPECT_NE(support::ReadWholeFile(folder.File("graph.svg")).find(text), std::string::npos) << text;
    // The note has a line of its own below the graph.
    const QImage picture(QString::fromStdString(folder.File("graph.png")));
    ASSERT_GT(picture.height(), 2 * Plot().height());
    const QImage note = picture.copy(0, 2 * Plot().height(), picture.width(), picture.height() - 2 * Plot().height());
    QImage blank(note.size(), note.format());
    blank.fill(note.pixelColor(0, 0));
    EXPECT_NE(note, blank);
    EXPECT_FALSE(graph.SaveAs(QString::fromStdString(folder.File("missing/graph.png"))));
    graph.CopyToClipboard();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), csv);
}

TEST_F(ResultsGraph, OpensInAWindowOfItsOwn) {
    const std::unique_ptr<app::ResultsGraphControl> copy(graph.OpenInOwnWindow());
    copy->setAttribute(Qt::WA_DeleteOnClose, false);
    EXPECT_TRUE(copy->isWindow());
    EXPECT_TRUE(copy->windowFlags() & Qt::WindowMaximizeButtonHint);
    EXPECT_EQ(copy->CsvText(), graph.CsvText());
    EXPECT_EQ(copy->findChild<QCustomPlot*>()->xAxis->label(), "CE (V)");
}

TEST_F(ResultsGraph, LabelsThePeaksOfASpectrum) {
    graph.SetPaneData(1, FixedSpectrum({100, 100.5, 101, 200, 200.5, 201, 201.5, 300}, {0, 9, 0, 0, 5, 4.9, 0, 0}));
    graph.SetXAxisLimits({100, 300});
    graph.SetLabels({"m/z (Da)", "Intensity (cps)", {}, true, {}, ""});
    std::vector<std::string> labels;
    for (int i = 0; i < Plot().itemCount(); ++i)
        if (auto* text = qobject_cast<QCPItemText*>(Plot().item(i))) labels.push_back(text->text().toStdString());
    EXPECT_EQ(labels, (std::vector<std::string>{"100.5", "200.5"}));
}

}  // namespace
