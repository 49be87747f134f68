// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>

#include "ports/RunDisplay.h"

namespace app {

/// A label that can be clicked.
class ClickableLabel : public QLabel {
    Q_OBJECT

  public:
    using QLabel::QLabel;

  signals:
    void clicked();

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

enum class StagePicture { Empty, Ticked, Greyed };
QPixmap PictureOf(StagePicture picture, const QPalette& palette, double pixelRatio);

/// One line of the checklist: a picture and a label whose look tells the stage's state.
class StageEntry {
  public:
    /// @param name what follows "pic" and "label" in the object names
    StageEntry(QWidget* parent, const QString& name, const QString& caption);

    QLabel* Picture() const { return picture_; }
    ClickableLabel* Label() const { return label_; }
    bool IsUnderlined() const { return label_->font().underline(); }

    /// The whole look of a state.
    void Show(ports::enumProgressState state);
    /// The look of a state without its underline and cursor.
    void ShowWithoutLink(ports::enumProgressState state);
    /// Greyed: not to be done on this instrument, or not yet known whether it will be.
    void ShowGreyed();
    void SetLink(bool isLink);
    /// Draws picture and colour again after a change of palette.
    void Refresh();

  private:
    void SetPicture(StagePicture picture);
    void SetBold(bool isBold);

    QLabel* picture_;
    ClickableLabel* label_;
    StagePicture shown_ = StagePicture::Empty;
    ports::enumProgressState state_ = ports::enumProgressState::Pending;
};

}  // namespace app
