#include "app/QtMessageBoxes.h"

#include <QApplication>
#include <QMessageBox>

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
    QMessageBox box(icon, "Veltra", QString::fromStdString(text), buttons, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return box.exec();
}

}  // namespace

void QtMessageBoxes::Show(const std::string& strText, ports::MessageIcon icon) {
    Run(strText, IconOf(icon), QMessageBox::Ok);
}

bool QtMessageBoxes::AskYesNo(const std::string& strQuestion) {
    return Run(strQuestion, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace app
