// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Message.h"

#include "base/CurrentHandler.h"

#include <utility>

MessageHandler SetMessageHandler(MessageHandler handler) {
    return ExchangeHandler(std::move(handler));
}

void ShowMessage(const QString& text, MessageIcon icon, const QString& caption) {
    const auto& handler = CurrentHandler<MessageHandler>();
    if (handler.show)
        handler.show(text, icon, caption);
}

bool AskYesNo(const QString& text, const QString& caption) {
    const auto& handler = CurrentHandler<MessageHandler>();
    return handler.ask_yes_no && handler.ask_yes_no(text, caption);
}
