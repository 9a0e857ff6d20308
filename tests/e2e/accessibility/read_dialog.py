"""Reads the built program as a screen reader does: read_dialog.py EDITOR EXCHANGE-FILE

Needs a screen with a window manager and a session bus of its own: dbus-run-session --
/usr/bin/python3 read_dialog.py ... Starts the editor on a copy of the file, walks the tree of
accessible objects from outside and operates the dialog through it. Ends with status 1 and a list of
what is wrong.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

LIMIT = 20  # seconds that anything is waited for

# Role, name and whether the control is enabled, of a function with eight points before any change.
MAIN_DIALOG = [
    ("table", "5000", True),
    ("push button", "Ouvrir", True),
    ("push button", "Enregistrer", False),
    ("push button", "Enregistrer sous", True),
    ("push button", "Annuler", False),
    ("push button", "Refaire", False),
    ("push button", "Copier", True),
    ("push button", "Coller", True),
    ("push button", "Add", True),
    ("push button", "Remove", True),
    ("check box", "Edition", False),
    ("push button", "Ajuster", False),
    ("push button", "OK", True),
    ("push button", "Cancel", True),
]
ADD_DIALOG = [
    ("text", "X - Axis", True),
    ("text", "Y - Axis", True),
    ("push button", "OK", True),
    ("push button", "Cancel", True),
]
# The enabled entries of the menu, from the top.
MENU = ["Ouvrir", "Enregistrer", "Enregistrer sous", "Copier", "Coller"]
FIRST_ROWS = [["0", "0"], ["1.5", "0"], ["1.75", "12.5"]]

faults = []


def check(right, what):
    if not right:
        faults.append(what)


def wait_for(find, what):
    end = time.monotonic() + LIMIT
    while True:
        found = find()
        if found:
            return found
        if time.monotonic() > end:
            sys.exit(f"waited in vain for {what}")
        time.sleep(0.1)


def tree(Atspi, node):
    """All accessible objects below `node` that are on the screen."""
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is None:
            continue
        # Cells of a table are many and have a check of their own.
        if child.get_state_set().contains(Atspi.StateType.SHOWING):
            yield child
            if child.get_role() != Atspi.Role.TABLE:
                yield from tree(Atspi, child)


class Reader:
    def __init__(self, program):
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib
        self.atspi = Atspi
        self.error = GLib.Error
        self.context = GLib.MainContext.default()
        self.program = program
        Atspi.init()

    def dispatch(self, done):
        """Takes events for up to half a second; whether `done` came true."""
        end = time.monotonic() + 0.5
        while not done() and time.monotonic() < end:
            if not self.context.iteration(False):
                time.sleep(0.01)
        return done()

    def application(self):
        desktop = self.atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child is not None and child.get_process_id() == self.program.pid:
                return child
        return None

    def window(self, title):
        """The shown top-level object of that name; None while there is none."""
        try:
            application = self.application()
            for i in range(application.get_child_count() if application else 0):
                child = application.get_child_at_index(i)
                if child is not None and child.get_name() == title:
                    return child
        except self.error:
            pass
        return None

    def controls(self, window):
        return [(node.get_role_name(), node.get_name(), node) for node in tree(self.atspi, window)]

    def find(self, window, role, name):
        return next((node for a_role, a_name, node in self.controls(window)
                     if (a_role, a_name) == (role, name)), None)

    def is_enabled(self, node):
        states = node.get_state_set()
        return (states.contains(self.atspi.StateType.ENABLED)
                and states.contains(self.atspi.StateType.SENSITIVE))

    def press(self, node):
        """What a reader's user presses: the action that a click does."""
        action = node.get_action_iface()
        names = [action.get_action_name(i) for i in range(action.get_n_actions())]
        action.do_action(next(i for i, name in enumerate(names) if name in ("Press", "Toggle")))

    def compare(self, window, expected):
        """Every control of `expected` is there once, as enabled as it should be."""
        where = f"in '{window.get_name()}'"
        controls = self.controls(window)
        for role, name, enabled in expected:
            found = [node for a_role, a_name, node in controls if (a_role, a_name) == (role, name)]
            check(len(found) == 1, f"{len(found)} x {role} '{name}' {where}")
            for node in found:
                check(self.is_enabled(node) == enabled,
                      f"{role} '{name}' {where}: enabled is not {enabled}")
        buttons = ("push button", "check box", "text")
        known = {name for _, name, _ in expected}
        for role, name, _ in controls:
            check(role not in buttons or name in known, f"unexpected {role} '{name}' {where}")


def read_main_dialog(reader, dialog):
    reader.compare(dialog, MAIN_DIALOG)
    grid = reader.find(dialog, "table", "5000")
    table = grid.get_table_iface()
    check((table.get_n_rows(), table.get_n_columns()) == (8, 2), "size of the table '5000'")
    rows = [[table.get_accessible_at(row, column).get_name() for column in range(2)]
            for row in range(len(FIRST_ROWS))]
    check(rows == FIRST_ROWS, f"rows of the table '5000': {rows}")
    headers = [table.get_column_header(column).get_name() for column in range(2)]
    check(headers == ["Time", "Value"], f"headers of the table '5000': {headers}")


def read_menu(reader):
    """Opens the menu with its key. A menu is read entry by entry, as the focus comes to them."""
    announced = []

    def on_focus(event):
        if event.detail1 and event.source.get_role_name() == "menu item":
            announced.append(event.source.get_name())

    listener = reader.atspi.EventListener.new(on_focus)
    listener.register("object:state-changed:focused")
    subprocess.run(["xdotool", "key", "Menu"], check=True)
    for name in MENU:
        def reached():
            subprocess.run(["xdotool", "key", "Down"], check=True)
            return reader.dispatch(lambda: name in announced)

        wait_for(reached, f"the menu entry '{name}'")
    subprocess.run(["xdotool", "key", "Escape"], check=True)
    listener.deregister("object:state-changed:focused")
    in_order = list(dict.fromkeys(announced))
    check(in_order == MENU, f"entries of the menu: {in_order}")


def read_add_dialog(reader, dialog):
    reader.press(reader.find(dialog, "push button", "Add"))
    add = wait_for(lambda: reader.window("Add a point"), "the dialog of Add")
    reader.compare(add, ADD_DIALOG)
    for name, text in (("X - Axis", "3"), ("Y - Axis", "4,5")):
        reader.find(add, "text", name).get_editable_text_iface().set_text_contents(text)
    reader.press(reader.find(add, "push button", "OK"))
    wait_for(lambda: reader.window("Add a point") is None, "the end of the dialog of Add")
    table = reader.find(dialog, "table", "5000").get_table_iface()
    row = [table.get_accessible_at(5, column).get_name() for column in range(2)]
    check(table.get_n_rows() == 9 and row == ["3", "4.5"], f"the point added: {row}")


def main(editor, sample, folder):
    if "DBUS_SESSION_BUS_ADDRESS" not in os.environ:
        sys.exit("no session bus")
    file = pathlib.Path(folder) / "exchange.txt"
    shutil.copyfile(sample, file)
    before = file.read_bytes()
    # Nor may the reader end up on the bus of the desktop that the test was started from.
    os.environ.pop("AT_SPI_BUS_ADDRESS", None)
    environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    program = subprocess.Popen([editor, str(file)], env=environment, stdout=subprocess.DEVNULL)
    try:
        reader = Reader(program)
        dialog = wait_for(lambda: reader.window(" Function editor"), "the dialog")
        read_main_dialog(reader, dialog)
        read_menu(reader)
        read_add_dialog(reader, dialog)
        reader.press(reader.find(dialog, "push button", "OK"))
        check(program.wait(LIMIT) == 0, "the exit status")
        check(file.read_bytes() != before, "the point added is not in the file")
    finally:
        program.kill()
        program.wait()


if __name__ == "__main__":
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as place:
        main(*sys.argv[1:3], place)
    for fault in faults:
        print(fault)
    sys.exit(1 if faults else 0)
