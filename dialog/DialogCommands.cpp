// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/DialogCommands.h"

#include "dialog/DialogControls.h"
#include "grid/CGridControl.h"
#include "profiles/ProfileSession.h"

#include <QAbstractButton>
#include <QAction>
#include <QMenu>

#include <utility>

namespace {

// The command's own shortcut and, for copy and paste, all shortcuts of the platform.
QList<QKeySequence> ShortcutsOf(const Command& command) {
    QList<QKeySequence> shortcuts;
    if (command.id == Id::kMenuCopy)
        shortcuts = QKeySequence::keyBindings(QKeySequence::Copy);
    if (command.id == Id::kMenuPaste)
        shortcuts = QKeySequence::keyBindings(QKeySequence::Paste);
    // The plus sign without Shift.
    if (command.id == Id::kZoomIn)
        shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Equal)};
    const QKeySequence own(command.shortcut.toString());
    shortcuts.removeAll(own);
    shortcuts.prepend(own);
    return shortcuts;
}

}  // namespace

DialogCommands::DialogCommands(CommandRows commands, const DialogControls& controls,
                               ProfileSession* session, QWidget* dialog)
    : QObject(dialog),
      m_commands(std::move(commands)),
      m_session(session),
      m_grid(controls.Get<CGridControl>(Id::kGrid)),
      m_menu(new QMenu(dialog)) {
    CreateMenu();
    CreateKeys(dialog);
    ConnectButtons(controls);
}

void DialogCommands::CreateMenu() {
    int group = kMenuParts[0].group;
    for (const MenuPart& part : kMenuParts) {
        if (std::exchange(group, part.group) != part.group)
            m_menu->addSeparator();
        AddMenuPart(part);
    }
    connect(m_menu, &QMenu::aboutToShow, this, [this] {
        for (const Command& command : m_commands)
            Enable(command);
    });
}

void DialogCommands::AddMenuPart(const MenuPart& part) {
    QMenu* menu = nullptr;
    for (const Command& command : m_commands) {
        if (command.place != part.place)
            continue;
        if (menu == nullptr)
            menu = part.submenu.isEmpty() ? m_menu : m_menu->addMenu(part.submenu.toString());
        QAction* const action = menu->addAction(command.caption.toString());
        action->setCheckable(static_cast<bool>(command.checked));
        m_actions.insert(command.id, action);
        connect(action, &QAction::triggered, this, [this, &command] { Run(command); });
    }
}

void DialogCommands::CreateKeys(QWidget* dialog) {
    for (const Command& command : m_commands) {
        if (command.shortcut.isEmpty())
            continue;
        QAction*& action = m_actions[command.id];
        if (action == nullptr) {
            action = new QAction(this);
            connect(action, &QAction::triggered, this, [this, &command] { Run(command); });
        }
        action->setShortcuts(ShortcutsOf(command));
        dialog->addAction(action);
    }
}

void DialogCommands::ConnectButtons(const DialogControls& controls) {
    for (const Command& command : m_commands) {
        auto* const button = controls.Get<QAbstractButton>(command.id);
        if (button == nullptr)
            continue;
        m_buttons.insert(command.id, button);
        if (command.id == Id::kEdition) {
            // Assistive tools toggle the box without a click.
            connect(button, &QAbstractButton::toggled, this, [this, &command](bool on) {
                if (on != m_session->isEdition())
                    Run(command);
            });
        } else {
            connect(button, &QAbstractButton::clicked, this, [this, &command] { Run(command); });
        }
    }
}

bool DialogCommands::IsEnabled(const Command& command) const {
    return !command.enabled || command.enabled(*m_session);
}

void DialogCommands::Run(const Command& command) {
    // By keyboard a drag stays open.
    m_session->EndDrag();
    // Cancel works even if the open entry is refused.
    if (IsEnabled(command) && (command.id == Id::kCancel || m_grid->CommitOpenEditor())) {
        command.run();
        if (command.marks_modified)
            m_session->SetModified();
    }
    emit Chosen();
}

void DialogCommands::Enable(const Command& command) {
    const bool enabled = IsEnabled(command);
    if (QWidget* const button = m_buttons.value(command.id))
        button->setEnabled(enabled);
    if (QAction* const action = m_actions.value(command.id)) {
        action->setEnabled(enabled);
        action->setChecked(command.checked && command.checked());
    }
}

void DialogCommands::Update() {
    for (const Command& command : m_commands) {
        if (!command.looks_at_rows)
            Enable(command);
    }
}
