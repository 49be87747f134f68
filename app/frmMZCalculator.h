// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>
#include <cstdint>

#include "chem/clsMWCalculator.h"

class QComboBox;
class QLabel;
class QLineEdit;

namespace app {

/// Computes an m/z from a chemical formula and a charge.
class frmMZCalculator : public QDialog {
    Q_OBJECT

  public:
    /// @param host, messageBoxes must outlive the dialog
    frmMZCalculator(ports::Host& host, ports::MessageBoxes& messageBoxes, QWidget* parent = nullptr);

    bool WasCancelled() const { return wasCancelled_; }
    double CalculatedMZ() const { return calculatedMz_; }
    std::int16_t Charge() const { return charge_; }

    void reject() override;

  private:
    void Calculate();
    void UseMz();

    ports::MessageBoxes& messageBoxes_;
    veltra::clsMWCalculator calculator_;
    bool wasCancelled_ = true;
    double calculatedMz_ = 0;
    std::int16_t charge_ = 0;
    QLineEdit* txtChemicalFormula_;
    QComboBox* comboNumOfCharges_;
    QLabel* labelCalculatedMZ_;
};

}  // namespace app
