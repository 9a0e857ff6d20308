// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>
#include <QStringView>

#include <functional>
#include <vector>

class CGridControl;
class DialogControls;
class ProfileSession;
class QAction;
class QMenu;

/// A command of the user: a button, a menu entry, a key, or several of them.
struct Command {
    int id = 0;  ///< of the button or the menu entry
    std::function<void()> run;
    bool (ProfileSession::*enabled)() const = nullptr;  ///< nullptr: always
    QStringView shortcut = {};
    bool marks_modified = false;  ///< also when nothing changed
};

/// The commands of the main dialog. Connects them with their buttons, menu entries and keys, runs
/// them and enables them as the session allows.
class DialogCommands : public QObject {
    Q_OBJECT

public:
    DialogCommands(std::vector<Command> commands, const DialogControls& controls,
                   ProfileSession* session, QWidget* dialog);

    QMenu* menu() const { return m_menu; }

    /// Enables and disables buttons, menu entries and keys.
    void Update();

signals:
    /// The user chose a command. It may not have run because the open entry was refused.
    void Chosen();

private:
    void CreateMenu(QWidget* dialog);
    void ConnectButtons(const DialogControls& controls);
    void Run(const Command& command);
    bool IsEnabled(const Command& command) const;

    const std::vector<Command> m_commands;
    ProfileSession* m_session;  // not owned
    CGridControl* m_grid;       // not owned
    QMenu* m_menu;              // the dialog's
    QHash<int, QWidget*> m_buttons;
    QHash<int, QAction*> m_actions;
};
