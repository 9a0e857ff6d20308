// SPDX-License-Identifier: GPL-3.0-or-later
// What a start costs at least: a dialog of the toolkit with title and size of the editor's, and
// nothing in it.

#include "dialog/DialogTemplate.h"

#include <QApplication>
#include <QDialog>

int main(int argc, char* argv[]) {
    const QApplication app(argc, argv);
    QDialog dialog;
    dialog.setWindowTitle(QStringLiteral(" Function editor"));
    dialog.setMinimumSize(PixelSize(kMainDialogSize));
    dialog.resize(dialog.minimumSize());
    return dialog.exec();
}
