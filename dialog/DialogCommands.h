// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"

#include <QHash>
#include <QObject>

class CGridControl;
class DialogControls;
class QAction;
class QMenu;

/// The commands of the main dialog. Connects them with their buttons, menu entries and keys, runs
/// them and enables them as the session allows.
class DialogCommands : public QObject {
    Q_OBJECT

public:
    DialogCommands(CommandRows commands, const DialogControls& controls, ProfileSession* session,
                   QWidget* dialog);

    QMenu* menu() const { return m_menu; }
    const CommandRows& rows() const { return m_commands; }

    /// Enables and disables buttons, menu entries and keys.
    void Update();

signals:
    /// The user chose a command. It may not have run because the open entry was refused.
    void Chosen();

private:
    void CreateMenu();
    void AddMenuPart(const MenuPart& part);
    void CreateKeys(QWidget* dialog);
    void ConnectButtons(const DialogControls& controls);
    void Run(const Command& command);
    bool IsEnabled(const Command& command) const;
    void Enable(const Command& command);

    const CommandRows m_commands;
    ProfileSession* m_session;  // not owned
    CGridControl* m_grid;       // not owned
    QMenu* m_menu;              // the dialog's
    QHash<int, QWidget*> m_buttons;
    QHash<int, QAction*> m_actions;
};
