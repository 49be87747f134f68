// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/DialogControls.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

namespace app {

QLabel* LabelFor(const char* name, const QString& caption, QWidget* control) {
    auto* label = Named(new QLabel(caption), name);
    label->setBuddy(control);
    return label;
}

QDialogButtonBox* OkAndCancel(QDialog* dialog, const char* okName, const char* cancelName) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    // Without mnemonics of their own, which some styles add: Enter and Escape reach them.
    Named(buttons->button(QDialogButtonBox::Ok), okName)->setText(QDialog::tr("OK"));
    Named(buttons->button(QDialogButtonBox::Cancel), cancelName)->setText(QDialog::tr("Cancel"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return buttons;
}

}  // namespace app
