// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"

#include <QList>
#include <QString>

/// Answers file dialogs from a script while it lives: the chosen paths in order, "" for a cancelled
/// dialog. A dialog that is not the next one is cancelled and counts as a failure; so does one that
/// never came. Failures fail the running test when the script ends.
class FileDialogScript {
public:
    FileDialogScript();
    ~FileDialogScript();
    FileDialogScript(const FileDialogScript&) = delete;
    FileDialogScript& operator=(const FileDialogScript&) = delete;

    void ExpectOpen(const QString& path) { m_expected.append({Dialog::Open, {path}}); }
    void ExpectSave(const QString& path, qsizetype type = 0) {
        m_expected.append({Dialog::Save, {path, type}});
    }

    bool Done() const { return m_expected.isEmpty() && m_surprises == 0; }

    QString Report() const;

    /// What the last dialog started from.
    const FileRequest& LastRequest() const { return m_last_request; }

private:
    enum class Dialog { Open, Save };
    struct Expected {
        Dialog dialog = Dialog::Open;
        ChosenFile file;
    };

    ChosenFile Take(Dialog dialog, const FileRequest& request);

    QList<Expected> m_expected;
    int m_surprises = 0;
    FileRequest m_last_request;
    FileDialogHandler m_former;
};
