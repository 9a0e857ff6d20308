// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/PictureCommands.h"

#include "base/FileDialogs.h"
#include "base/FileReplace.h"
#include "base/Message.h"
#include "chart/ChartExport.h"
#include "dialog/DialogTemplate.h"
#include "dialog/PrintPreview.h"
#include "dialog/PrintedPages.h"
#include "profiles/ProfileSession.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QPrinter>
#include <QWidget>

#include <memory>
#include <utility>

using namespace Id;
using namespace Qt::StringLiterals;

namespace {

// A copied chart has so many pixels along each pixel of the screen, to be sharp in a document.
constexpr int kCopyScale = 2;

constexpr double kPageMargin = 15.0;  // millimetres

// The user is asked before a preview of more pages.
constexpr int kManyPages = 100;

struct ChartFileType {
    QStringView caption;
    QStringView suffix;
    QByteArray (*content)(const ChartPicture&);
};

template <int scale>
QByteArray Png(const ChartPicture& picture) {
    return ChartPng(picture, scale);
}

// The first of a suffix is meant by a file name alone.
constexpr ChartFileType kFileTypes[] = {
    {u"Image PNG", u"png", Png<1>},
    {u"Image PNG, 2 fois plus grande", u"png", Png<2>},
    {u"Image PNG, 4 fois plus grande", u"png", Png<4>},
#ifdef EDITOR_WRITES_SVG
    {u"Dessin SVG", u"svg", ChartSvg},
#endif
    {u"Document PDF", u"pdf", ChartPdf},
};

#ifdef EDITOR_WRITES_SVG
constexpr QStringView kSaveHelp = u"Enregistre le graphique en PNG, SVG ou PDF";
#else
constexpr QStringView kSaveHelp = u"Enregistre le graphique en PNG ou PDF";
#endif

const ChartFileType& TypeOf(const ChosenFile& file) {
    const ChartFileType& chosen = kFileTypes[file.type];
    const QString suffix = QFileInfo(file.path).suffix().toLower();
    if (suffix != chosen.suffix) {
        for (const ChartFileType& type : kFileTypes) {
            if (suffix == type.suffix)
                return type;
        }
    }
    return chosen;
}

bool HasChart(const ProfileSession& session) {
    return !session.isViewOnly();
}

bool HasPages(const ProfileSession& session) {
    return HasChart(session) || session.table().RowCount() > 0;
}

}  // namespace

PictureCommands::PictureCommands(const ProfileSession* session, TakePicture take_picture,
                                 QWidget* dialog)
    : QObject(dialog),
      m_session(session),
      m_take_picture(std::move(take_picture)),
      m_dialog(dialog) {
}

CommandRows PictureCommands::Rows() {
    constexpr auto kPlace = MenuPlace::Chart;
    constexpr bool kMarks = true;
    return {
        {kCopyChart, [this] { Copy(); }, HasChart, !kMarks, u"",
         u"Copie le graphique pour d'autres programmes", kPlace, u"Copier le graphique"},
        {kSaveChart, [this] { Save(); }, HasChart, !kMarks, u"", kSaveHelp, kPlace,
         u"Enregistrer le graphique..."},
        {kPrint, [this] { Print(); }, HasPages, !kMarks, u"Ctrl+P",
         u"Montre puis imprime le graphique et le tableau", kPlace, u"Imprimer..."},
    };
}

void PictureCommands::Copy() const {
    const std::optional<ChartPicture> picture = m_take_picture();
    if (!picture)
        return;
    auto data = std::make_unique<QMimeData>();
    data->setImageData(ChartImage(*picture, kCopyScale));
#ifdef EDITOR_WRITES_SVG
    data->setData(u"image/svg+xml"_s, ChartSvg(*picture));
#endif
    QGuiApplication::clipboard()->setMimeData(data.release());
}

void PictureCommands::Save() {
    const std::optional<ChartPicture> picture = m_take_picture();
    if (!picture)
        return;
    FileRequest request = {m_folder, {}, {}};
    for (const ChartFileType& type : kFileTypes) {
        const QString suffix = type.suffix.toString();
        request.types.append({type.caption.toString(), u"*."_s + suffix, suffix});
    }
    const ChosenFile file = AskSaveFile(request);
    if (file.path.isEmpty())
        return;
    m_folder = QFileInfo(file.path).path();
    const QByteArray content = TypeOf(file).content(*picture);
    if (content.isEmpty() || !ReplaceFile(file.path, content))
        ShowMessage(u"Ecriture impossible !"_s);
}

void PictureCommands::Print() const {
    using Table = PrintedPages::Table;
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(m_session->caption());
    printer.setPageMargins(QMarginsF(kPageMargin, kPageMargin, kPageMargin, kPageMargin),
                           QPageLayout::Millimeter);
    const std::optional<ChartPicture> picture = m_take_picture();
    std::optional<PrintedPages> pages(std::in_place, m_session, picture, Table::All);
    const int count = pages->PageCount(printer);
    if (count > kManyPages &&
        !AskYesNo(u"Le tableau remplit %1 pages. L'imprimer aussi ?"_s.arg(count))) {
        pages.emplace(m_session, picture, Table::None);
    }
    ShowPrintPreview(&printer, *pages, m_dialog);
}
