// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/PrintPreview.h"

#include "dialog/PrintedPages.h"

#include <QCoreApplication>
#include <QGraphicsView>
#include <QLibraryInfo>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSize>
#include <QToolButton>
#include <QTranslator>

using namespace Qt::StringLiterals;

// Wide enough for all buttons, the one that prints included, and high enough to tell rows apart.
constexpr QSize kPreviewSize(940, 720);

void ShowPrintPreview(QPrinter* printer, const PrintedPages& pages, QWidget* parent) {
    // The texts of the toolkit's own dialogs; without its translations they stay English.
    QTranslator french;
    if (french.load(u"qtbase_fr"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&french);

    QPrintPreviewDialog preview(printer, parent);
    preview.setWindowTitle(u"Aperçu avant impression"_s);
    preview.setWindowFlag(Qt::WindowMaximizeButtonHint);
    preview.resize(kPreviewSize);
    // The toolkit leaves these to the mouse.
    for (QToolButton* const button : preview.findChildren<QToolButton*>())
        button->setFocusPolicy(Qt::StrongFocus);
    if (auto* const pages_view = preview.findChild<QGraphicsView*>())
        pages_view->setFocus();
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, parent,
                     [&pages](QPrinter* asked) { pages.Print(asked); });
    preview.exec();
}
