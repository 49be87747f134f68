// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

#include "ports/FolderChooser.h"

class QLabel;
class QListWidget;

namespace app {

/// Asks which sub-folder of a project is the data folder.
class frmSelectFolder : public QDialog {
    Q_OBJECT

  public:
    explicit frmSelectFolder(QWidget* parent = nullptr);

    /// Lists the sub-folders of a project folder, whose path ends in a separator.
    void Initialize(const std::string& strProjectPath);
    bool WasCancelled() const { return wasCancelled_; }
    /// Project path followed by the chosen folder's name; empty when nothing was selected.
    const std::string& ReturnPath() const { return returnPath_; }

    void accept() override;
    void reject() override;

  private:
    std::string projectPath_;
    std::string returnPath_;
    bool wasCancelled_ = false;
    QLabel* labelProjectPath_;
    QListWidget* listFolders_;
};

/// The run's folder chooser: a frmSelectFolder over the active window.
class QtFolderChooser : public ports::FolderChooser {
  public:
    Choice ChooseFolder(const std::string& strProjectPath) override;
};

}  // namespace app
