// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <functional>

/// What a file dialog starts from.
struct FileRequest {
    /// One line of the dialog's list of file types.
    struct FileType {
        QString caption;
        QString pattern;
    };

    QString folder;
    QList<FileType> types;
    QString default_suffix;
};

/// How the user is asked for a file. The program installs one that shows dialogs, tests install a
/// script. Each gives the chosen path, "" when the user cancelled; a lacking function counts as
/// that. The save dialog has the user confirm that a file is to be overwritten.
struct FileDialogHandler {
    std::function<QString(const FileRequest&)> open;
    std::function<QString(const FileRequest&)> save;
};

/// Installs `handler` for the whole process and returns the one that was there before.
FileDialogHandler SetFileDialogHandler(FileDialogHandler handler);

QString AskOpenPath(const FileRequest& request);
QString AskSavePath(const FileRequest& request);
