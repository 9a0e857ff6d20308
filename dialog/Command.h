// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <functional>
#include <vector>

class ProfileSession;

/// The parts of the menu, in its order. A line separates those of different groups.
enum class MenuPlace { None, Files, History, Clipboard, Points, Chart, Help };

/// A part that is a submenu has a caption. A part without commands is not shown.
struct MenuPart {
    MenuPlace place = MenuPlace::None;
    int group = 0;
    QStringView submenu = {};
};

inline constexpr MenuPart kMenuParts[] = {
    {MenuPlace::Files, 1},
    {MenuPlace::History, 2},
    {MenuPlace::Clipboard, 3},
    {MenuPlace::Points, 4, u"Points"},
    {MenuPlace::Chart, 4, u"Graphique"},
    {MenuPlace::Help, 4},
};

/// A command of the user: a button, a menu entry, a key, or several of them.
struct Command {
    int id = 0;  ///< of the button or the menu entry
    std::function<void()> run;
    std::function<bool(const ProfileSession&)> enabled = {};  ///< empty: always
    bool marks_modified = false;                              ///< also when nothing changed
    QStringView shortcut = {};
    QStringView help = {};  ///< one line for the Aide-mémoire; "": not listed there
    MenuPlace place = MenuPlace::None;
    QStringView caption = {};    ///< of the menu entry
    bool looks_at_rows = false;  ///< `enabled` does, so it is only asked when the menu opens
    std::function<bool()> checked = {};  ///< whether the menu entry has its check mark
};

using CommandRows = std::vector<Command>;
