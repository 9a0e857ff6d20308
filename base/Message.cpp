#include "base/Message.h"

#include <utility>

namespace {

MessageHandler& CurrentHandler() {
    static MessageHandler handler;
    return handler;
}

}  // namespace

MessageHandler SetMessageHandler(MessageHandler handler) {
    return std::exchange(CurrentHandler(), std::move(handler));
}

void ShowMessage(const QString& text, MessageIcon icon, const QString& caption) {
    if (CurrentHandler().show)
        CurrentHandler().show(text, icon, caption);
}

bool AskYesNo(const QString& text, const QString& caption) {
    return CurrentHandler().ask_yes_no && CurrentHandler().ask_yes_no(text, caption);
}
