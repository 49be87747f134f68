// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/frmMZCalculator.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "app/DialogControls.h"
#include "support/NumberText.h"

namespace app {
namespace {

constexpr int highestCharge = 5;

QPushButton* NamedButton(const char* name, const QString& text) {
    auto* button = Named(new QPushButton(text), name);
    button->setAutoDefault(false);
    return button;
}

}  // namespace

frmMZCalculator::frmMZCalculator(ports::Host& host, ports::MessageBoxes& messageBoxes, QWidget* parent)
    : QDialog(parent),
      messageBoxes_(messageBoxes),
      calculator_(host, messageBoxes),
      txtChemicalFormula_(new QLineEdit),
      comboNumOfCharges_(new QComboBox),
      labelCalculatedMZ_(new QLabel) {
    setWindowTitle(tr("Calculate m/z"));
    txtChemicalFormula_->setObjectName("txtChemicalFormula");
    txtChemicalFormula_->setToolTip(tr("Element symbols with their counts, without brackets, such as C6H6"));
    comboNumOfCharges_->setObjectName("comboNumOfCharges");
    comboNumOfCharges_->setToolTip(tr("Protons added (+) or removed (-)"));
    for (int charge = -highestCharge; charge <= highestCharge; ++charge)
        comboNumOfCharges_->addItem(charge == 0  ? tr("0 (neutral)")
                                    : charge > 0 ? QString("+%1").arg(charge)
                                                 : QString::number(charge));
    comboNumOfCharges_->setCurrentIndex(highestCharge);
    labelCalculatedMZ_->setObjectName("labelCalculatedMZ");
    labelCalculatedMZ_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* frame = new QGroupBox(tr("Calculated m/z"));
    frame->setObjectName("frameCalculatedMZ");
    (new QVBoxLayout(frame))->addWidget(labelCalculatedMZ_);
    auto* cmdCalculate = NamedButton("cmdCalculate", tr("C&alculate"));
    cmdCalculate->setDefault(true);
    auto* cmdUseMz = NamedButton("cmdUseMZ", tr("&Use m/z"));
    auto* cmdCancel = NamedButton("cmdCancel", tr("Cancel"));
    connect(cmdCalculate, &QPushButton::clicked, this, &frmMZCalculator::Calculate);
    connect(cmdUseMz, &QPushButton::clicked, this, &frmMZCalculator::UseMz);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QFormLayout(this);
    auto* instruction = new QLabel(tr("Enter a formula (i.e. C6H6) and charge:"));
    instruction->setObjectName("labelInstruction");
    layout->addRow(instruction);
    layout->addRow(LabelFor("labelChemicalFormula", tr("Chemical &Formula:"), txtChemicalFormula_),
                   txtChemicalFormula_);
    layout->addRow(LabelFor("labelNumOfCharges", tr("&Num of charges:"), comboNumOfCharges_), comboNumOfCharges_);
    layout->addRow(frame);
    auto* buttons = new QHBoxLayout;
    for (auto* button : {cmdCalculate, cmdUseMz, cmdCancel})
        buttons->addWidget(button);
    layout->addRow(buttons);
}

void frmMZCalculator::Calculate() {
    const std::string formula = txtChemicalFormula_->text().trimmed().toStdString();
    if (formula.empty()) {
        labelCalculatedMZ_->clear();
        messageBoxes_.Show("Please enter a chemical formula", ports::MessageIcon::None);
        return;
    }
    charge_ = static_cast<std::int16_t>(comboNumOfCharges_->currentIndex() - highestCharge);
    const double mass = calculator_.GetMWForFormula(formula);
    calculatedMz_ = mass == 0 ? 0 : support::RoundHalfEven(veltra::clsMWCalculator::CalculateMZ(mass, charge_), 3);
    labelCalculatedMZ_->setText(QString::fromStdString(support::GeneralText(calculatedMz_) + " Da"));
}

void frmMZCalculator::UseMz() {
    wasCancelled_ = false;
    accept();
}

void frmMZCalculator::reject() {
    calculatedMz_ = 0;
    charge_ = 0;
    wasCancelled_ = true;
    QDialog::reject();
}

}  // namespace app
