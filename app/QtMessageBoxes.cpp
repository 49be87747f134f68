// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/QtMessageBoxes.h"

#include <QApplication>
#include <QMainWindow>
#include <QMessageBox>
#include <iostream>

namespace app {
namespace {

QMessageBox::Icon IconOf(ports::MessageIcon icon) {
    switch (icon) {
        case ports::MessageIcon::Warning:
            return QMessageBox::Warning;
        case ports::MessageIcon::Critical:
            return QMessageBox::Critical;
        case ports::MessageIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

int Run(const std::string& text, QMessageBox::Icon icon, QMessageBox::StandardButtons buttons) {
    QMessageBox box(icon, "Veltra", QString::fromStdString(text), buttons, DialogParent());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return box.exec();
}

}  // namespace

QWidget* DialogParent() {
    if (QApplication::activeWindow() != nullptr) return QApplication::activeWindow();
    // Somebody may be working in another program meanwhile: the question still belongs over our window.
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && qobject_cast<QMainWindow*>(window) != nullptr) return window;
    return nullptr;
}

void QtMessageBoxes::Show(const std::string& strText, ports::MessageIcon icon) {
    if (hasDisplay_)
        Run(strText, IconOf(icon), QMessageBox::Ok);
    else
        std::cerr << "Veltra: " << strText << std::endl;
}

bool QtMessageBoxes::AskYesNo(const std::string& strQuestion) {
    return hasDisplay_ &&
           Run(strQuestion, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace app
