// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileDialogs.h"

#include "base/CurrentHandler.h"

#include <utility>

FileDialogHandler SetFileDialogHandler(FileDialogHandler handler) {
    return ExchangeHandler(std::move(handler));
}

QString AskOpenPath(const FileRequest& request) {
    const auto& handler = CurrentHandler<FileDialogHandler>();
    return handler.open ? handler.open(request) : QString();
}

QString AskSavePath(const FileRequest& request) {
    return AskSaveFile(request).path;
}

ChosenFile AskSaveFile(const FileRequest& request) {
    const auto& handler = CurrentHandler<FileDialogHandler>();
    return handler.save ? handler.save(request) : ChosenFile();
}
