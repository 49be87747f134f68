// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/ResultsGraphControl.h"

#include <qcustomplot.h>

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "support/NumberText.h"

namespace app {
namespace {

/// Told apart on light and on dark ground, by people with colour blindness too (Okabe and Ito 2008).
const std::vector<QColor>& LineColors() {
    static const std::vector<QColor> colors{QColor(0, 114, 178), QColor(230, 159, 0),   QColor(0, 158, 115),
                                            QColor(213, 94, 0),  QColor(204, 121, 167), QColor(86, 180, 233)};
    return colors;
}

QColor LineColor(std::size_t pane) {
    return LineColors()[pane % LineColors().size()];
}

/// The highest points that stand apart from each other: what a label helps to read.
std::vector<std::size_t> LabelledPeaks(const std::vector<double>& x, const std::vector<double>& y) {
    constexpr std::size_t wanted = 8;
    constexpr double smallestShare = 0.03;
    constexpr double apartShare = 0.05;
    std::vector<std::size_t> maxima;
    for (std::size_t i = 1; i + 1 < y.size(); ++i)
        if (y[i] > y[i - 1] && y[i] >= y[i + 1]) maxima.push_back(i);
    std::sort(maxima.begin(), maxima.end(), [&](std::size_t a, std::size_t b) { return y[a] > y[b]; });
    std::vector<std::size_t> labelled;
    for (const std::size_t i : maxima) {
        if (labelled.size() >= wanted || y[i] < smallestShare * y[maxima.front()]) break;
        const bool isApart = std::all_of(labelled.begin(), labelled.end(), [&](std::size_t other) {
            return std::abs(x[i] - x[other]) > apartShare * (x.back() - x.front());
        });
        if (isApart) labelled.push_back(i);
    }
    return labelled;
}

}  // namespace

ResultsGraphControl::ResultsGraphControl(QWidget* parent)
    : QWidget(parent), plot_(new QCustomPlot(this)), coordinates_(new QLabel(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(plot_);
    coordinates_->setAttribute(Qt::WA_TransparentForMouseEvents);
    coordinates_->setObjectName("labelCoordinates");
    coordinates_->hide();

    plot_->setInteractions(QCP::iRangeZoom);
    plot_->setSelectionRectMode(QCP::srmZoom);
    plot_->setContextMenuPolicy(Qt::CustomContextMenu);
    plot_->setNoAntialiasingOnDrag(true);
    plot_->xAxis->setNumberPrecision(7);
    plot_->yAxis->setNumberFormat("gb");
    plot_->yAxis->setNumberPrecision(3);
    plot_->yAxis->ticker()->setTickCount(4);
    plot_->setMouseTracking(true);
    plot_->legend->setIconSize(14, 8);
    plot_->legend->setRowSpacing(0);
    plot_->legend->setMargins({4, 2, 4, 2});
    connect(plot_, &QCustomPlot::mouseDoubleClick, this, &ResultsGraphControl::ResetZoom);
    connect(plot_, &QCustomPlot::mouseMove, this, [this](QMouseEvent* event) { ShowCoordinates(event->pos()); });
    connect(plot_, &QWidget::customContextMenuRequested, this, &ResultsGraphControl::ShowContextMenu);
    ApplyPalette();
}

void ResultsGraphControl::AddPane() {
    panes_.emplace_back();
}

void ResultsGraphControl::ClearPaneData(int pane) {
    panes_.at(static_cast<std::size_t>(pane - 1)) = {};
    labels_ = {};
}

void ResultsGraphControl::SetPaneData(int pane, const ports::DataObject& dataObject) {
    panes_.at(static_cast<std::size_t>(pane - 1)) = {dataObject.GetXValues(), dataObject.GetYValues()};
}

void ResultsGraphControl::SetXAxisLimits(const ports::AxisRange& range) {
    xLimits_ = range;
}

void ResultsGraphControl::SetYAxisLimits(const ports::AxisRange& range) {
    yLimits_ = range;
}

void ResultsGraphControl::Redraw() {
    BuildGraphs();
    ResetZoom();
}

void ResultsGraphControl::SetLabels(const GraphLabels& labels) {
    labels_ = labels;
    Redraw();
}

void ResultsGraphControl::BuildGraphs() {
    plot_->clearItems();
    plot_->clearGraphs();
    for (std::size_t i = 0; i < panes_.size(); ++i) {
        const Pane& pane = panes_[i];
        if (pane.x.empty()) continue;
        QCPGraph* graph = plot_->addGraph();
        graph->setAdaptiveSampling(true);
        graph->setPen(QPen(LineColor(i), labels_.isSpectrum ? 1.0 : 1.6));
        // One decimal line is thin on a ramp of few points: its points are shown too.
        if (!labels_.isSpectrum && pane.x.size() <= 100)
            graph->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 3));
        const auto count = static_cast<qsizetype>(pane.x.size());
        graph->setData(QVector<double>(pane.x.data(), pane.x.data() + count),
                       QVector<double>(pane.y.data(), pane.y.data() + count), true);
        const auto index = static_cast<qsizetype>(i);
        if (index < labels_.legend.size()) graph->setName(labels_.legend[index]);
    }
    plot_->legend->setVisible(!labels_.legend.isEmpty());
    plot_->xAxis->setLabel(labels_.xTitle);
    plot_->yAxis->setLabel(labels_.yTitle);
    if (labels_.isSpectrum) AddPeakLabels();
    AddMarks();
    ApplyPalette();
}

void ResultsGraphControl::AddPeakLabels() {
    if (panes_.empty()) return;
    const Pane& pane = panes_.front();
    for (const std::size_t i : LabelledPeaks(pane.x, pane.y)) {
        auto* label = new QCPItemText(plot_);
        label->setPositionAlignment(Qt::AlignBottom | Qt::AlignHCenter);
        label->position->setCoords(pane.x[i], pane.y[i]);
        label->setText(QString::fromStdString(support::FixedText(pane.x[i], 1)));
        label->setFont(QFont(font().family(), 7));
        label->setClipToAxisRect(true);
    }
}

void ResultsGraphControl::AddMarks() {
    for (const double x : labels_.marks) {
        auto* line = new QCPItemStraightLine(plot_);
        line->point1->setCoords(x, 0);
        line->point2->setCoords(x, 1);
        line->setPen(QPen(QColor(213, 94, 0), 1, Qt::DashLine));
        if (labels_.markName.isEmpty()) continue;
        auto* name = new QCPItemText(plot_);
        name->setPositionAlignment(Qt::AlignTop | Qt::AlignLeft);
        name->position->setTypeX(QCPItemPosition::ptPlotCoords);
        name->position->setTypeY(QCPItemPosition::ptAxisRectRatio);
        name->position->setCoords(x, 0.0);
        name->setText(" " + labels_.markName + " " + QString::fromStdString(support::GeneralText(x)));
        name->setFont(QFont(font().family(), 8));
    }
}

void ResultsGraphControl::ResetZoom() {
    constexpr double headroom = 1.12;  // for the labels above the peaks
    const double width = xLimits_.maximum - xLimits_.minimum;
    const double margin = labels_.isSpectrum ? 0 : width * 0.01;
    plot_->xAxis->setRange(xLimits_.minimum - margin, xLimits_.maximum + (width > 0 ? margin : 1));
    const double bottom = std::min(0.0, yLimits_.minimum);
    const double top = yLimits_.maximum > bottom ? yLimits_.maximum : bottom + 1;
    plot_->yAxis->setRange(bottom, bottom + (top - bottom) * headroom);
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ResultsGraphControl::ApplyPalette() {
    const QColor text = palette().color(QPalette::WindowText);
    const QColor ground = palette().color(QPalette::Base);
    QColor grid = text;
    grid.setAlpha(40);
    plot_->setBackground(ground);
    for (QCPAxis* axis : {plot_->xAxis, plot_->yAxis}) {
        axis->setBasePen(QPen(text));
        axis->setTickPen(QPen(text));
        axis->setSubTickPen(QPen(text));
        axis->setTickLabelColor(text);
        axis->setLabelColor(text);
        axis->setTickLabelFont(QFont(font().family(), 8));
        axis->setLabelFont(QFont(font().family(), 8));
        axis->grid()->setPen(QPen(grid, 1));
        axis->grid()->setZeroLinePen(QPen(grid, 1));
    }
    QColor legendGround = ground;
    legendGround.setAlpha(210);
    plot_->legend->setBrush(legendGround);
    plot_->legend->setTextColor(text);
    plot_->legend->setBorderPen(QPen(grid));
    plot_->legend->setFont(QFont(font().family(), 7));
    for (int i = 0; i < plot_->itemCount(); ++i)
        if (auto* label = qobject_cast<QCPItemText*>(plot_->item(i))) label->setColor(text);
}

void ResultsGraphControl::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange) return;
    ApplyPalette();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ResultsGraphControl::ShowCoordinates(const QPoint& position) {
    const bool isInside = plot_->axisRect()->rect().contains(position) && plot_->graphCount() > 0;
    coordinates_->setVisible(isInside);
    if (!isInside) return;
    coordinates_->setText(QString(" %1; %2 ")
                              .arg(plot_->xAxis->pixelToCoord(position.x()), 0, 'f', 2)
                              .arg(plot_->yAxis->pixelToCoord(position.y()), 0, 'e', 2));
    coordinates_->adjustSize();
    coordinates_->move(plot_->axisRect()->left() + 4, plot_->axisRect()->top() + 2);
}

void ResultsGraphControl::ShowContextMenu(const QPoint& position) {
    auto* menu = new QMenu(this);
    menu->setObjectName("menuGraph");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("&Copy"), this, &ResultsGraphControl::CopyToClipboard);
    menu->addAction(tr("Save as &PNG..."), this, [this] { AskAndSave("png"); });
    menu->addAction(tr("Save as &SVG..."), this, [this] { AskAndSave("svg"); });
    menu->addAction(tr("Save as CS&V..."), this, [this] { AskAndSave("csv"); });
    menu->addSeparator();
    menu->addAction(tr("&Reset zoom"), this, &ResultsGraphControl::ResetZoom);
    menu->addAction(tr("Open in a &window of its own"), this, [this] { OpenInOwnWindow(); });
    menu->popup(plot_->mapToGlobal(position));
}

void ResultsGraphControl::AskAndSave(const QString& suffix) {
    QString path = QFileDialog::getSaveFileName(this, tr("Save graph"), QString(),
                                                tr("%1 files (*.%2)").arg(suffix.toUpper(), suffix));
    if (path.isEmpty()) return;
    if (!path.endsWith("." + suffix, Qt::CaseInsensitive)) path += "." + suffix;
    if (!SaveAs(path)) QMessageBox::warning(this, "Veltra", tr("%1 could not be written.").arg(path), QMessageBox::Ok);
}

int ResultsGraphControl::NoteHeight() const {
    constexpr int margin = 4;
    return labels_.note.isEmpty() ? 0 : fontMetrics().height() + margin;
}

void ResultsGraphControl::DrawNote(QPainter& painter) const {
    const QRect line(0, plot_->height(), plot_->width(), NoteHeight());
    painter.fillRect(line, palette().base());
    painter.setPen(palette().color(QPalette::Text));
    painter.setFont(font());
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, labels_.note);
}

QPixmap ResultsGraphControl::Picture() const {
    constexpr int scale = 2;
    QPixmap picture(scale * plot_->width(), scale * (plot_->height() + NoteHeight()));
    QPainter painter(&picture);
    painter.drawPixmap(0, 0, plot_->toPixmap(0, 0, scale));
    painter.scale(scale, scale);
    DrawNote(painter);
    return picture;
}

bool ResultsGraphControl::SaveAs(const QString& path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    if (path.endsWith(".csv", Qt::CaseInsensitive)) {
        const QByteArray text = CsvText().toUtf8();
        if (file.write(text) != text.size()) return false;
    } else if (path.endsWith(".svg", Qt::CaseInsensitive)) {
        QSvgGenerator svg;
        svg.setOutputDevice(&file);
        svg.setSize(plot_->size() + QSize(0, NoteHeight()));
        svg.setViewBox(QRect(QPoint(0, 0), svg.size()));
        QCPPainter painter(&svg);
        plot_->toPainter(&painter);
        DrawNote(painter);
        painter.end();
    } else if (!Picture().save(&file, "PNG")) {
        return false;
    }
    return file.commit();
}

double ResultsGraphControl::PaneApexX(int pane) const {
    const Pane& points = panes_.at(static_cast<std::size_t>(pane - 1));
    const auto apex = std::max_element(points.y.begin(), points.y.end());
    return apex == points.y.end() ? 0 : points.x[static_cast<std::size_t>(apex - points.y.begin())];
}

QString ResultsGraphControl::CsvText() const {
    const auto quoted = [](const QString& title) { return "\"" + QString(title).replace("\"", "\"\"") + "\""; };
    QString text = labels_.note.isEmpty() ? QString() : quoted(labels_.note) + "\r\n";
    std::size_t longest = 0;
    for (std::size_t i = 0; i < panes_.size(); ++i) {
        const auto index = static_cast<qsizetype>(i);
        const QString name = index < labels_.legend.size() ? labels_.legend[index] : labels_.yTitle;
        text += (i == 0 ? "" : ",") + quoted(labels_.xTitle) + "," + quoted(name);
        longest = std::max(longest, panes_[i].x.size());
    }
    text += "\r\n";
    for (std::size_t row = 0; row < longest; ++row) {
        for (std::size_t i = 0; i < panes_.size(); ++i) {
            if (i > 0) text += ",";
            if (row >= panes_[i].x.size()) {
                text += ",";
                continue;
            }
            text += QString::fromStdString(support::GeneralText(panes_[i].x[row])) + "," +
                    QString::fromStdString(support::GeneralText(panes_[i].y[row]));
        }
        text += "\r\n";
    }
    return text;
}

void ResultsGraphControl::CopyToClipboard() {
    auto* content = new QMimeData;
    content->setImageData(Picture().toImage());
    content->setText(CsvText());
    QApplication::clipboard()->setMimeData(content);
}

ResultsGraphControl* ResultsGraphControl::OpenInOwnWindow() {
    auto* copy = new ResultsGraphControl;
    copy->setAttribute(Qt::WA_DeleteOnClose);
    copy->setWindowTitle(window()->windowTitle());
    copy->panes_ = panes_;
    copy->xLimits_ = xLimits_;
    copy->yLimits_ = yLimits_;
    copy->SetLabels(labels_);
    copy->resize(900, 560);
    copy->show();
    return copy;
}

}  // namespace app
