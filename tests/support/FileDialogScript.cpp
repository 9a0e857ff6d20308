// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDialogScript.h"

#include <QTest>

#include <utility>

FileDialogScript::FileDialogScript() {
    FileDialogHandler handler;
    handler.open = [this](const FileRequest& request) { return Take(Dialog::Open, request).path; };
    handler.save = [this](const FileRequest& request) { return Take(Dialog::Save, request); };
    m_former = SetFileDialogHandler(std::move(handler));
}

FileDialogScript::~FileDialogScript() {
    SetFileDialogHandler(std::move(m_former));
    if (!Done())
        QTest::qFail(qPrintable(Report()), __FILE__, __LINE__);
}

ChosenFile FileDialogScript::Take(Dialog dialog, const FileRequest& request) {
    m_last_request = request;
    if (!m_expected.isEmpty() && m_expected.first().dialog == dialog)
        return m_expected.takeFirst().file;
    ++m_surprises;
    return {};
}

QString FileDialogScript::Report() const {
    QString report = QStringLiteral("unexpected file dialogs: %1").arg(m_surprises);
    for (const Expected& expected : m_expected)
        report += QStringLiteral("\nmissing: \"%1\"").arg(expected.file.path);
    return report;
}
