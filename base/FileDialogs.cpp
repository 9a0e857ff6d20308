#include "base/FileDialogs.h"

#include <utility>

namespace {

FileDialogHandler& CurrentHandler() {
    static FileDialogHandler handler;
    return handler;
}

}  // namespace

FileDialogHandler SetFileDialogHandler(FileDialogHandler handler) {
    return std::exchange(CurrentHandler(), std::move(handler));
}

QString AskOpenPath(const FileRequest& request) {
    return CurrentHandler().open ? CurrentHandler().open(request) : QString();
}

QString AskSavePath(const FileRequest& request) {
    return CurrentHandler().save ? CurrentHandler().save(request) : QString();
}
