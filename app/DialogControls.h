// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>
#include <QString>

class QDialog;
class QDialogButtonBox;

namespace app {

/// Gives a control the name by which it is found, and returns it.
template <class Control>
Control* Named(Control* control, const char* name, const QString& toolTip = {}) {
    control->setObjectName(name);
    control->setToolTip(toolTip);
    return control;
}

/// A label whose mnemonic moves the focus to the control that it names.
QLabel* LabelFor(const char* name, const QString& caption, QWidget* control);

/// The two buttons that accept (Enter) and reject (Escape) the dialog.
QDialogButtonBox* OkAndCancel(QDialog* dialog, const char* okName, const char* cancelName);

}  // namespace app
