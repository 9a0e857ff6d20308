// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FileDialogScript.h"
#include "MessageScript.h"
#include "TestFiles.h"
#include "TestRows.h"
#include "profiles/ProfileSession.h"

#include <QTemporaryDir>

#include <memory>

/// A program folder, what the caller hands over, scripts for messages and file dialogs, and a
/// session on all that. A function gets the given points, each with its time as its value.
struct SessionBench {
    explicit SessionBench(const QString& points = {}) : times(Texts(points)), values(times) {}
    explicit SessionBench(ProfileKind kind, const QString& points = {}) : SessionBench(points) {
        if (!Start(Setup(kind)))
            QTest::qFail("the session does not start", __FILE__, __LINE__);
    }
    // Some kinds change the working folder.
    ~SessionBench() { QDir::setCurrent(start_folder); }
    SessionBench(const SessionBench&) = delete;
    SessionBench& operator=(const SessionBench&) = delete;

    SessionSetup Setup(ProfileKind kind, DisplayMode mode = DisplayMode::Edit,
                       const QString& path = {}) {
        return {kind, mode, path, name, times, values, names, ProfileFolders(folder.path())};
    }
    bool Start(SessionSetup setup) {
        session = std::make_unique<ProfileSession>(std::move(setup));
        return session->InitialFill();
    }
    void Open(const QString& path) {
        dialogs.ExpectOpen(path);
        session->Open();
    }
    void SaveAs(const QString& path) {
        dialogs.ExpectSave(path);
        session->SaveAs();
    }
    QStringList Column(int column) const { return session->table().Column(column); }
    QStringList Values() const { return Column(ProfileTable::kValueColumn); }
    QString Path(const QString& file) const { return folder.filePath(file); }

    const QString start_folder = QDir::currentPath();
    const QTemporaryDir folder;
    QString name = QStringLiteral("été");
    QStringList times;
    QStringList values;
    QStringList names;
    MessageScript messages;
    FileDialogScript dialogs;
    std::unique_ptr<ProfileSession> session;
};
