// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

enum class MessageIcon { None, Information, Warning };

/// Shows messages and questions to the user. The program installs a handler that shows modal boxes,
/// tests install a script. An empty function drops the message or answers No.
struct MessageHandler {
    std::function<void(const QString& text, MessageIcon icon, const QString& caption)> show;
    std::function<bool(const QString& text, const QString& caption)> ask_yes_no;
};

/// Installs `handler` for the whole process and returns the one that was there before.
MessageHandler SetMessageHandler(MessageHandler handler);

/// Shows `text` and returns once the user has closed it. Without a caption the program's own is
/// used.
void ShowMessage(const QString& text, MessageIcon icon = MessageIcon::Warning,
                 const QString& caption = {});

/// Asks `text` in a Yes/No box; true when the answer is Yes.
bool AskYesNo(const QString& text, const QString& caption = {});
