// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/frmSelectFolder.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include "app/DialogControls.h"
#include "app/QtMessageBoxes.h"
#include "support/Files.h"

namespace app {

frmSelectFolder::frmSelectFolder(QWidget* parent)
    : QDialog(parent), labelProjectPath_(new QLabel(tr("Project Path"))), listFolders_(new QListWidget) {
    setWindowTitle(tr("Select Folder"));
    auto* labelTitle = LabelFor("labelTitle", tr("Please select &location of Data folder:"), listFolders_);
    labelProjectPath_->setObjectName("labelProjectPath");
    labelProjectPath_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    labelProjectPath_->setWordWrap(true);
    listFolders_->setObjectName("listFolders");

    auto* buttons = OkAndCancel(this, "OKButton", "CancelButton");
    connect(listFolders_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(labelTitle);
    layout->addWidget(labelProjectPath_);
    layout->addWidget(listFolders_);
    layout->addWidget(buttons);
    resize(420, 320);
}

void frmSelectFolder::Initialize(const std::string& strProjectPath) {
    projectPath_ = strProjectPath;
    labelProjectPath_->setText(QString::fromStdString(strProjectPath));
    listFolders_->clear();
    try {
        for (const auto& folder : support::SubFolders(strProjectPath))
            listFolders_->addItem(QString::fromStdString(folder));
    } catch (const support::FileError&) {
        // A project folder that cannot be read has no sub-folders to choose from.
    }
}

void frmSelectFolder::accept() {
    const auto* selected = listFolders_->currentItem();
    const bool isSelected = selected != nullptr && selected->isSelected();
    returnPath_ = isSelected ? projectPath_ + selected->text().toStdString() : std::string();
    QDialog::accept();
}

void frmSelectFolder::reject() {
    wasCancelled_ = true;
    QDialog::reject();
}

ports::FolderChooser::Choice QtFolderChooser::ChooseFolder(const std::string& strProjectPath) {
    frmSelectFolder dialog(DialogParent());
    dialog.Initialize(strProjectPath);
    dialog.exec();
    return {dialog.WasCancelled(), dialog.ReturnPath()};
}

}  // namespace app
