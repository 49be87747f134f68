// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

#include "host/RunState.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace app {

/// Edits the basic settings. Browse takes effect at once, everything else on OK.
class frmSettings : public QDialog {
    Q_OBJECT

  public:
    /// @param runState its settings are edited; must outlive the dialog
    explicit frmSettings(veltra::RunState& runState, QWidget* parent = nullptr);

    void accept() override;

    /// The name of the project that a method lies in.
    static std::string ProjectNameOf(const std::string& methodPath);
    /// A method file was chosen.
    void UseMethod(const QString& path);

  private:
    void BuildControls();
    void LoadSettings();
    void ShowMethod();
    void Browse();
    void CalculateMz();
    void ShowAdvanced();
    std::string FirstProblem() const;

    veltra::RunState& runState_;
    QLineEdit* txtMethodFilePath_;
    QLabel* labelMethodPath_;
    QLineEdit* txtCompoundName_;
    QLineEdit* txtExpectedMZ_;
    QRadioButton* optPositivePolarity_;
    QRadioButton* optNegativePolarity_;
    QRadioButton* optBothPolarities_;
    QComboBox* comboQ1Resolution_;
};

}  // namespace app
