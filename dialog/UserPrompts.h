// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"
#include "base/Message.h"

/// While it lives, messages, questions and file dialogs of the process are modal windows over the
/// active one. Its destructor installs the previous handlers again.
class UserPrompts {
public:
    UserPrompts();
    ~UserPrompts();
    UserPrompts(const UserPrompts&) = delete;
    UserPrompts& operator=(const UserPrompts&) = delete;

private:
    MessageHandler m_former_messages;
    FileDialogHandler m_former_file_dialogs;
};
