// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QFontDatabase>
#include <QFrame>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QWindow>
#include <algorithm>

#include "app/DialogControls.h"
#include "app/frmMain.h"

/// How the main window's controls are made and where they stand.

namespace app {
namespace {

using ports::enumVeltraScanType;

constexpr int twipsPerPixel = 15;
constexpr int smallestChecklistWidth = 480;
constexpr int designHeight = 640;
constexpr QRect graphPlace(360 / twipsPerPixel, 320 / twipsPerPixel, 6255 / twipsPerPixel, 3015 / twipsPerPixel);
constexpr int margin = 24;
constexpr int gap = 8;
constexpr int buttonHeight = 30;
constexpr int smallestLineHeight = 20;
constexpr int stageIndent = 36;

struct StageLine {
    enumVeltraScanType stage;
    const char* name;
    const char* caption;
};
struct Heading {
    const char* name;
    const char* caption;
    std::vector<StageLine> lines;
};

std::vector<Heading> Checklist() {
    return {
        {"labelERHeading", "Enhanced Resolution", {{enumVeltraScanType::ER, "ER", "Determine actual 1st precursor"}}},
        {"labelQ1MIHeading",
         "Q1 Multiple Ion",
         {{enumVeltraScanType::Q1MI_DP, "Q1MI_OptDP", "Optimize DP"},
          {enumVeltraScanType::Q1MI_EP, "Q1MI_OptEP", "Optimize EP"},
          {enumVeltraScanType::Q1MI_REOPTDP, "Q1MI_ReOptDP", "Re-optimize DP"},
          {enumVeltraScanType::Q1MI_CEP, "Q1MI_OptCEP", "Optimize CEP"}}},
        {"labelEPIHeading", "Enhanced Product Ion", {{enumVeltraScanType::EPI, "EPI", "Get 2nd precursors"}}},
        {"labelMRMHeading",
         "Multiple Reaction Monitoring",
         {{enumVeltraScanType::MRM, "MRM", "Optimize CEs for 2nd precursors"}}},
        {"labelMS3Heading",
         "MS/MS/MS",
         {{enumVeltraScanType::MS3, "MS3", "Optimize AF2s for 2nd precursors and get 3rd precursors (0 of 0)"}}},
        {"labelGenerateFinalMS3Heading",
         "Generate Final Methods",
         {{enumVeltraScanType::FinalMethods, "FinalMS3", "Generate final MS/MS/MS acquisition methods"}}},
    };
}

}  // namespace

frmMain::frmMain() {
    setWindowTitle(tr("Veltra Optimization"));
    setCentralWidget(new QWidget);
    labelBanner_ = Named(new QLabel, "labelBanner");
    labelBanner_->setAlignment(Qt::AlignCenter);
    labelBanner_->setMargin(6);
    labelBanner_->setWordWrap(true);
    // Black on amber in every palette: what must not be missed does not follow a theme.
    labelBanner_->setStyleSheet("background: #ffb000; color: #000000; font-weight: bold;");
    setMenuWidget(labelBanner_);
    BuildGraphArea();
    BuildChecklist();
    BuildProgressAndButtons();
    BuildImageHolders();
    centralWidget()->setMinimumSize(DesignSize());
}

int frmMain::LineHeight() const {
    return std::max(smallestLineHeight, fontMetrics().height() + 3);
}

int frmMain::ChecklistWidth() const {
    int widest = smallestChecklistWidth;
    for (const auto& [stage, entry] : stages_) {
        QFont bold = entry->Label()->font();
        bold.setBold(true);
        widest = std::max(widest, QFontMetrics(bold).horizontalAdvance(entry->Label()->text()) + stageIndent + gap);
    }
    return widest;
}

QSize frmMain::DesignSize() const {
    return {graphPlace.right() + margin + ChecklistWidth() + margin, designHeight};
}

void frmMain::BuildGraphArea() {
    QWidget* parent = centralWidget();
    shapeGraph_ = Named(new QFrame(parent), "shapeGraph");
    shapeGraph_->setFrameShape(QFrame::StyledPanel);
    labelGraphTitle_ = Named(new QLabel(parent), "labelGraphTitle");
    labelGraphTitle_->setAlignment(Qt::AlignCenter);
    graph_ = Named(new ResultsGraphControl(parent), "ResultsGraphControl");
    labelGraphLeft_ = Named(new QLabel(parent), "labelGraphLeft");
    labelGraphRight_ = Named(new QLabel(parent), "labelGraphRight");
    for (auto* label : {labelGraphLeft_, labelGraphRight_}) {
        label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        QFont font = label->font();
        font.setPointSizeF(std::max(7.0, font.pointSizeF() - 1));
        label->setFont(font);
    }
    labelMS3GraphNum_ = Named(new QLabel(parent), "labelMS3GraphNum");
    labelMS3GraphNum_->setAlignment(Qt::AlignCenter);
    cmdMS3Left_ = Named(new QPushButton("<", parent), "cmdMS3Left");
    cmdMS3Left_->setToolTip(tr("Previous MS3 graph"));
    cmdMS3Right_ = Named(new QPushButton(">", parent), "cmdMS3Right");
    cmdMS3Right_->setToolTip(tr("Next MS3 graph"));
    labelMethodLink_ = Named(new ClickableLabel(".xmt", parent), "labelMethodLink");
    labelMethodLink_->setToolTip(tr("Open the acquisition method"));
    labelVeskLink_ = Named(new ClickableLabel(".vesk", parent), "labelVeskLink");
    labelVeskLink_->setToolTip(tr("Open the data file"));
    for (auto* link : {labelMethodLink_, labelVeskLink_}) {
        QFont font = link->font();
        font.setUnderline(true);
        link->setFont(font);
        link->setForegroundRole(QPalette::Highlight);
        link->setCursor(Qt::PointingHandCursor);
        link->setFocusPolicy(Qt::TabFocus);
    }
    connect(cmdMS3Left_, &QPushButton::clicked, this, [this] { ShowMS3Graph(ms3Index_ - 1); });
    connect(cmdMS3Right_, &QPushButton::clicked, this, [this] { ShowMS3Graph(ms3Index_ + 1); });
    connect(labelMethodLink_, &ClickableLabel::clicked, this, [this] { OpenDocument(methodLinkPath_); });
    connect(labelVeskLink_, &ClickableLabel::clicked, this, [this] { OpenDocument(veskLinkPath_); });
}

void frmMain::BuildChecklist() {
    for (const auto& heading : Checklist()) {
        auto* label = Named(new QLabel(heading.caption, centralWidget()), heading.name);
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
        std::vector<enumVeltraScanType> lines;
        for (const auto& line : heading.lines) {
            auto entry = std::make_unique<StageEntry>(centralWidget(), line.name, line.caption);
            connect(entry->Label(), &ClickableLabel::clicked, this,
                    [this, stage = line.stage] { OnStageClicked(stage); });
            stages_[line.stage] = std::move(entry);
            lines.push_back(line.stage);
        }
        headings_.emplace_back(label, std::move(lines));
    }
}

void frmMain::BuildProgressAndButtons() {
    QWidget* parent = centralWidget();
    labelMessage_ = Named(new QLabel(parent), "LabelMessage");
    progressBar_ = Named(new QProgressBar(parent), "ProgressBar1");
    progressBar_->setRange(0, 100);
    progressBar_->setTextVisible(true);
    labelRemainingTime_ = Named(new QLabel(parent), "labelRemainingTime");
    cmdStart_ = Named(new QPushButton(parent), "cmdStart");
    cmdSettings_ = Named(new QPushButton(tr("Se&ttings"), parent), "cmdSettings");
    cmdViewResults_ = Named(new QPushButton(tr("&View Results"), parent), "cmdViewResults");
    cmdExit_ = Named(new QPushButton(tr("E&xit"), parent), "cmdExit");
    for (auto* button : {cmdStart_, cmdSettings_, cmdViewResults_, cmdExit_})
        button->setAutoDefault(true);  // Enter presses the one that has the focus
    txtLog_ = Named(new QPlainTextEdit(parent), "txtLog");
    txtLog_->setReadOnly(true);
    txtLog_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtLog_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtLog_->setLineWrapMode(QPlainTextEdit::NoWrap);
    connect(cmdStart_, &QPushButton::clicked, this, &frmMain::OnStart);
    connect(cmdSettings_, &QPushButton::clicked, this, &frmMain::OnSettings);
    connect(cmdViewResults_, &QPushButton::clicked, this, &frmMain::OnViewResults);
    connect(cmdExit_, &QPushButton::clicked, this, &QWidget::close);
}

void frmMain::BuildImageHolders() {
    const auto hold = [this](const char* name, const QPixmap& picture) {
        auto* holder = findChild<QLabel*>(name);
        if (holder == nullptr) holder = Named(new QLabel(centralWidget()), name);
        holder->setPixmap(picture);
        holder->hide();
    };
    hold("imgCheckBox", PictureOf(StagePicture::Ticked, palette(), devicePixelRatioF()));
    hold("imgEmptyBox", PictureOf(StagePicture::Empty, palette(), devicePixelRatioF()));
    hold("imgDisabledBox", PictureOf(StagePicture::Greyed, palette(), devicePixelRatioF()));
    hold("imgHandCursor", QCursor(Qt::PointingHandCursor).pixmap());
}

void frmMain::LayoutControls() {
    const int lineHeight = LineHeight();
    const QSize designSize = DesignSize();
    const int extraWidth = std::max(0, centralWidget()->width() - designSize.width());
    const int extraHeight = std::max(0, centralWidget()->height() - designSize.height());
    // The graph takes all of the width that is gained and half of the height; the log gets the rest.
    const QRect graph = graphPlace.adjusted(0, 0, extraWidth, extraHeight / 2);
    const int left = graph.left();
    const int width = graph.width();
    graph_->setGeometry(graph);
    shapeGraph_->setGeometry(graph.adjusted(-3, -3, 3, 3));
    labelGraphTitle_->setGeometry(left, 0, width, graph.top() - 3);
    labelGraphLeft_->setGeometry(graph.adjusted(6, 4, -width * 3 / 5, -2));
    labelGraphRight_->setGeometry(graph.adjusted(width * 2 / 5 + 4, 4, -6, -2));

    int y = graph.bottom() + gap;
    labelMethodLink_->setGeometry(left, y, 40, lineHeight);
    labelVeskLink_->setGeometry(left + 48, y, 44, lineHeight);
    cmdMS3Left_->setGeometry(left + width - 160, y, 32, lineHeight + 4);
    labelMS3GraphNum_->setGeometry(left + width - 124, y, 88, lineHeight + 4);
    cmdMS3Right_->setGeometry(left + width - 32, y, 32, lineHeight + 4);
    y += lineHeight + 2 * gap;
    labelMessage_->setGeometry(left, y, width, lineHeight);
    y += lineHeight + 2;
    progressBar_->setGeometry(left, y, width - 128, lineHeight);
    labelRemainingTime_->setGeometry(left + width - 120, y, 120, lineHeight);
    y += lineHeight + 2 * gap;
    const int buttonWidth = (width - 3 * gap) / 4;
    int x = left;
    for (auto* button : {cmdStart_, cmdSettings_, cmdViewResults_, cmdExit_}) {
        button->setGeometry(x, y, buttonWidth, buttonHeight);
        x += buttonWidth + gap;
    }
    y += buttonHeight + 2 * gap;
    LayoutChecklist(graph.right() + margin);
    txtLog_->setGeometry(left, y, centralWidget()->width() - 2 * margin, centralWidget()->height() - y - margin);
}

void frmMain::LayoutChecklist(int left) {
    const int lineHeight = LineHeight();
    const int width = ChecklistWidth();
    int y = 2;
    for (const auto& [heading, lines] : headings_) {
        heading->setGeometry(left, y, width, lineHeight);
        y += lineHeight;
        for (const auto stage : lines) {
            Stage(stage).Picture()->setGeometry(left + 12, y + (lineHeight - 16) / 2, 16, 16);
            Stage(stage).Label()->setGeometry(left + stageIndent, y, width - stageIndent, lineHeight);
            y += lineHeight;
        }
        y += 4;
    }
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    LayoutControls();
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) RefreshPictures();
}

void frmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    RefreshPictures();
    // A screen of another scale wants pictures of other sizes.
    connect(windowHandle(), &QWindow::screenChanged, this, &frmMain::RefreshPictures, Qt::UniqueConnection);
}

void frmMain::RefreshPictures() {
    BuildImageHolders();
    for (const auto& [stage, entry] : stages_)
        entry->Refresh();
}

}  // namespace app
