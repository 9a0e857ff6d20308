// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"

#include <QDialog>

/// The Aide-mémoire: lists commands, keys, mouse and limits.
class CDlgReminder : public QDialog {
    Q_OBJECT

public:
    explicit CDlgReminder(const CommandRows& commands, QWidget* parent = nullptr);
};
