// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <functional>

/// The initial state of a file dialog.
struct FileRequest {
    /// One line of the dialog's list of file types.
    struct FileType {
        QString caption;
        QString pattern;
        QString suffix = {};  ///< of names without one, instead of the request's
    };

    QString folder;
    QList<FileType> types;
    QString default_suffix;
};

/// Where to save. The path is "" when the user cancelled.
struct ChosenFile {
    QString path;
    qsizetype type = 0;  ///< which one of the request's types
};

/// Asks the user for a file. The program installs a handler that shows dialogs, tests install a
/// script. An empty path says that the user cancelled. An empty function counts as a cancelled
/// dialog. The save dialog asks before it returns an existing file.
struct FileDialogHandler {
    std::function<QString(const FileRequest&)> open;
    std::function<ChosenFile(const FileRequest&)> save;
};

/// Installs `handler` for the whole process and returns the one that was there before.
FileDialogHandler SetFileDialogHandler(FileDialogHandler handler);

QString AskOpenPath(const FileRequest& request);
QString AskSavePath(const FileRequest& request);

/// For a caller to whom the type of the file matters, not its path alone.
ChosenFile AskSaveFile(const FileRequest& request);
