// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

#include "host/RunState.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;

namespace app {

/// Edits the per-stage settings.
class frmAdvancedSettings : public QDialog {
    Q_OBJECT

  public:
    /// @param runState its settings are edited; must outlive the dialog
    explicit frmAdvancedSettings(veltra::RunState& runState, QWidget* parent = nullptr);

    void accept() override;

  private:
    QGroupBox* ERGroup();
    QGroupBox* Q1MIGroup();
    QGroupBox* EPIGroup();
    QGroupBox* MRMGroup();
    QGroupBox* MS3Group();
    QGroupBox* FinalMethodsGroup();
    QComboBox* ScanRateList(const char* name, int scanType, const std::string& current);
    void LoadSettings();
    std::string FirstProblem() const;
    std::string RampProblem() const;
    /// @throws support::RunTimeError 13 at the first box that holds no number; what was stored before it stays
    void StoreSettings();

    veltra::RunState& runState_;
    QComboBox* comboERScanRate_ = nullptr;
    QLineEdit* txtERScanRate_ = nullptr;  // holds the cycles
    QLineEdit* txtQ1MIDPRampStart_ = nullptr;
    QLineEdit* txtQ1MIDPRampStop_ = nullptr;
    QLineEdit* txtQ1MIDPRampStep_ = nullptr;
    QLineEdit* txtQ1MIDwellTime_ = nullptr;
    QComboBox* comboEPIScanRate_ = nullptr;
    QLineEdit* txtEPINum2ndPrec_ = nullptr;
    QLineEdit* txtEPICycles_ = nullptr;
    QLineEdit* txtEPIMassStart_ = nullptr;
    QLineEdit* txtEPIMassEnd_ = nullptr;
    QLineEdit* txtEPI_CE_ = nullptr;
    QLineEdit* txtEPI_CES_ = nullptr;
    QLineEdit* txtMRMDwellTime_ = nullptr;
    QComboBox* comboMS3ScanRate_ = nullptr;
    QLineEdit* txtMS3FixedFillTime_ = nullptr;
    QCheckBox* chkMS3UseQ0Trapping_ = nullptr;
    QLineEdit* txtMS3MassStart_ = nullptr;
    QLineEdit* txtMS3MassEnd_ = nullptr;
    QRadioButton* optSaveAllFinalMethods_ = nullptr;
    QRadioButton* optSaveOptimalMethodOnly_ = nullptr;
};

}  // namespace app
