#pragma once

#include <QString>

#include <functional>

/// What a file dialog starts from.
struct FileRequest {
    QString folder;
    QString filter;
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
