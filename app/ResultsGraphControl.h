// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>
#include <QVector>
#include <QWidget>
#include <vector>

#include "ports/GraphControl.h"

class QCustomPlot;
class QCPGraph;
class QLabel;

namespace app {

/// How the graph on show is to be read.
struct GraphLabels {
    QString xTitle;      ///< with its unit
    QString yTitle;      ///< with its unit
    QStringList legend;  ///< one name a pane; no legend when empty
    bool isSpectrum = false;
    QVector<double> marks;  ///< x of what the run chose
    QString markName;
    QString note = {};  ///< stands in every picture and file that is made of the graph
};

/// The graph control of the main window: panes that are drawn over each other in one pair of axes. The wheel and
/// dragging zoom, a double click resets, the context menu copies, saves and opens the graph in a window of its own.
class ResultsGraphControl : public QWidget, public ports::GraphControl {
    Q_OBJECT

  public:
    explicit ResultsGraphControl(QWidget* parent = nullptr);

    int GetPaneCount() const override { return static_cast<int>(panes_.size()); }
    void AddPane() override;
    void ClearPaneData(int pane) override;
    void SetPaneData(int pane, const ports::DataObject& data) override;
    void SetXAxisLimits(const ports::AxisRange& range) override;
    void SetYAxisLimits(const ports::AxisRange& range) override;
    void Redraw() override;

    void SetLabels(const GraphLabels& labels);
    const GraphLabels& Labels() const { return labels_; }

    /// The points of one pane, numbered from 1.
    std::vector<double> PaneX(int pane) const { return panes_.at(static_cast<std::size_t>(pane - 1)).x; }
    std::vector<double> PaneY(int pane) const { return panes_.at(static_cast<std::size_t>(pane - 1)).y; }

    /// The x of the pane's highest point; 0 when it has none.
    double PaneApexX(int pane) const;

    /// Every pane's points as comma-separated values, decimals with ".".
    QString CsvText() const;
    /// @param path ends in .png, .svg or .csv
    /// @return whether the file was written
    bool SaveAs(const QString& path);
    void CopyToClipboard();
    void ResetZoom();
    /// A copy of the graph in a window of its own.
    ResultsGraphControl* OpenInOwnWindow();

  protected:
    void changeEvent(QEvent* event) override;

  private:
    struct Pane {
        std::vector<double> x;
        std::vector<double> y;
    };
    void BuildGraphs();
    void AddPeakLabels();
    void AddMarks();
    void ApplyPalette();
    void ShowCoordinates(const QPoint& position);
    void ShowContextMenu(const QPoint& position);
    void AskAndSave(const QString& suffix);
    QPixmap Picture() const;
    int NoteHeight() const;
    void DrawNote(QPainter& painter) const;

    QCustomPlot* plot_;
    QLabel* coordinates_;
    std::vector<Pane> panes_;
    GraphLabels labels_;
    ports::AxisRange xLimits_{0, 10};
    ports::AxisRange yLimits_{0, 10};
};

}  // namespace app
