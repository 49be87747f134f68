// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/StageEntry.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace app {
namespace {

constexpr int pictureSize = 16;

}  // namespace

void ClickableLabel::mouseReleaseEvent(QMouseEvent* event) {
    QLabel::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) emit clicked();
}

void ClickableLabel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        emit clicked();
    else
        QLabel::keyPressEvent(event);
}

QPixmap PictureOf(StagePicture picture, const QPalette& palette, double pixelRatio) {
    QPixmap pixmap(QSize(pictureSize, pictureSize) * pixelRatio);
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isGreyed = picture == StagePicture::Greyed;
    const QColor line = palette.color(isGreyed ? QPalette::Disabled : QPalette::Active, QPalette::WindowText);
    painter.setPen(QPen(line, 1.2));
    painter.setBrush(isGreyed ? palette.brush(QPalette::Disabled, QPalette::Window) : palette.brush(QPalette::Base));
    painter.drawRoundedRect(QRectF(2, 2, 12, 12), 2, 2);
    if (picture == StagePicture::Ticked) {
        painter.setPen(QPen(palette.color(QPalette::Highlight), 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF tick[] = {{4.5, 8.5}, {7, 11}, {11.5, 5}};
        painter.drawPolyline(tick, 3);
    }
    return pixmap;
}

StageEntry::StageEntry(QWidget* parent, const QString& name, const QString& caption)
    : picture_(new QLabel(parent)), label_(new ClickableLabel(caption, parent)) {
    picture_->setObjectName("pic" + name);
    label_->setObjectName("label" + name);
    Show(ports::enumProgressState::Pending);
}

void StageEntry::SetPicture(StagePicture picture) {
    shown_ = picture;
    picture_->setPixmap(PictureOf(picture, label_->palette(), picture_->devicePixelRatioF()));
}

void StageEntry::SetBold(bool isBold) {
    QFont font = label_->font();
    font.setBold(isBold);
    label_->setFont(font);
}

void StageEntry::SetLink(bool isLink) {
    QFont font = label_->font();
    font.setUnderline(isLink);
    label_->setFont(font);
    label_->setCursor(isLink ? Qt::PointingHandCursor : Qt::ArrowCursor);
    label_->setFocusPolicy(isLink ? Qt::TabFocus : Qt::NoFocus);
}

void StageEntry::ShowWithoutLink(ports::enumProgressState state) {
    state_ = state;
    SetPicture(state == ports::enumProgressState::Done ? StagePicture::Ticked : StagePicture::Empty);
    SetBold(state == ports::enumProgressState::Running);
    label_->setForegroundRole(state == ports::enumProgressState::Pending ? QPalette::ButtonText : QPalette::Highlight);
}

void StageEntry::Show(ports::enumProgressState state) {
    ShowWithoutLink(state);
    SetLink(state == ports::enumProgressState::Done);
}

void StageEntry::ShowGreyed() {
    label_->setEnabled(false);
    SetPicture(StagePicture::Greyed);
    SetLink(false);
}

void StageEntry::Refresh() {
    SetPicture(shown_);
}

}  // namespace app
