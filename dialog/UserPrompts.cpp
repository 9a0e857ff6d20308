// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/UserPrompts.h"

#include "base/ShownText.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

QWidget* ActiveWindow() {
    QWidget* const modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : QApplication::activeWindow();
}

QMessageBox::Icon BoxIcon(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::None: return QMessageBox::NoIcon;
        case MessageIcon::Information: return QMessageBox::Information;
        case MessageIcon::Warning: break;
    }
    return QMessageBox::Warning;
}

// The buttons read "OK", "Yes" and "No" in every language of the desktop.
QMessageBox::StandardButton RunBox(
    QMessageBox::Icon icon, const QString& caption, const QString& text,
    const QList<std::pair<QMessageBox::StandardButton, QString>>& buttons) {
    QMessageBox box(icon, ShownText(caption, kMaxCellLength), ShownText(text, kMaxMessageLength),
                    QMessageBox::NoButton, ActiveWindow());
    box.setTextFormat(Qt::PlainText);
    for (const auto& [button, label] : buttons) {
        box.addButton(button);
        box.button(button)->setText(label);
        box.button(button)->setAccessibleName(label);
    }
    box.setDefaultButton(buttons.first().first);
    box.setEscapeButton(buttons.last().first);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

/// Opens a file whose name has no dot: the toolkit would append the default suffix.
class FileChoice : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

protected:
    void accept() override {
        if (acceptMode() == AcceptOpen) {
            const QString suffix = defaultSuffix();
            setDefaultSuffix({});
            if (!QFileInfo(selectedFiles().value(0)).isFile())
                setDefaultSuffix(suffix);
        }
        QFileDialog::accept();
    }
};

ChosenFile RunFileDialog(const FileRequest& request, QFileDialog::AcceptMode mode) {
    FileChoice dialog(ActiveWindow(), QString(), request.folder);
    // The toolkit takes the pattern from the last brackets and does not show these.
    QStringList filters;
    for (const FileRequest::FileType& type : request.types)
        filters.append(type.caption + u" ("_s + type.pattern + u')');
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(filters);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                       : QFileDialog::AnyFile);
    // Some versions of the toolkit name the filter as it is shown, others as it was given.
    const auto type_of = [&](const QString& filter) {
        qsizetype type = 0;
        while (type + 1 < filters.size() && filters[type] != filter &&
               request.types[type].caption != filter)
            ++type;
        return type;
    };
    const auto follow_type = [&](const QString& filter) {
        const QString own = request.types.value(type_of(filter)).suffix;
        dialog.setDefaultSuffix(own.isEmpty() ? request.default_suffix : own);
    };
    follow_type(filters.value(0));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow_type);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return {dialog.selectedFiles().value(0), type_of(dialog.selectedNameFilter())};
}

}  // namespace

UserPrompts::UserPrompts() {
    MessageHandler messages;
    messages.show = [](const QString& text, MessageIcon icon, const QString& caption) {
        RunBox(BoxIcon(icon), caption.isEmpty() ? u"Function editor"_s : caption, text,
               {{QMessageBox::Ok, u"OK"_s}});
    };
    messages.ask_yes_no = [](const QString& text, const QString& caption) {
        return RunBox(QMessageBox::Question, caption.isEmpty() ? u"Function editor"_s : caption,
                      text, {{QMessageBox::Yes, u"Yes"_s}, {QMessageBox::No, u"No"_s}}) ==
               QMessageBox::Yes;
    };
    m_former_messages = SetMessageHandler(std::move(messages));

    FileDialogHandler files;
    files.open = [](const FileRequest& request) {
        return RunFileDialog(request, QFileDialog::AcceptOpen).path;
    };
    files.save = [](const FileRequest& request) {
        return RunFileDialog(request, QFileDialog::AcceptSave);
    };
    m_former_file_dialogs = SetFileDialogHandler(std::move(files));
}

UserPrompts::~UserPrompts() {
    SetMessageHandler(std::move(m_former_messages));
    SetFileDialogHandler(std::move(m_former_file_dialogs));
}
