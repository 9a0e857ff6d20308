# SPDX-License-Identifier: GPL-3.0-or-later
"""The Python package against the built library, with a scripted user on a virtual screen."""

import os
import subprocess
import sys
import threading
import tkinter
import unittest
from pathlib import Path

import functioneditor
from functioneditor import Fault, Kind, Row

SAMPLES = Path(__file__).resolve().parents[2] / "samples"
# Pixels in the main dialog.
VALUE_CELL = ("560", "100")
OK_BUTTON = ("493", "396")
OK_BUTTON_MONTHLY = ("533", "396")
POINTS = [(0, 0.1), (1.5, "2.50"), (24, -3)]


def user(title, *actions):
    """Waits in a thread for the window with that title, gives it the keyboard, and acts on it."""
    seen = []

    def act():
        find = ["xdotool", "search", "--sync", "--onlyvisible", "--name", title]
        window = subprocess.check_output(find, text=True).split()[0]
        subprocess.check_call(["xdotool", "windowfocus", window])
        for action in actions:
            words = [window if word == "WINDOW" else word for word in action]
            seen.append(subprocess.check_output(words, text=True))

    thread = threading.Thread(target=act)
    thread.start()
    return thread, seen


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        reading, writing = os.pipe()
        cls.screen = subprocess.Popen(["Xvfb", "-displayfd", str(writing)], pass_fds=[writing],
                                      stderr=subprocess.DEVNULL)
        os.environ["DISPLAY"] = ":" + os.read(reading, 16).decode().strip()

    @classmethod
    def tearDownClass(cls):
        cls.screen.terminate()
        cls.screen.wait()

    def test_edit_while_another_thread_runs(self):
        root = tkinter.Tk()
        parent = root.winfo_id()
        thread, seen = user("Essai", ["xprop", "-id", "WINDOW", "WM_TRANSIENT_FOR"],
                            ["xdotool", "mousemove", "--window", "WINDOW", *VALUE_CELL],
                            ["xdotool", "click", "1", "type", "7"], ["xdotool", "key", "Return"],
                            ["xdotool", "mousemove", "--window", "WINDOW", *OK_BUTTON,
                             "click", "1"])
        result = functioneditor.edit_function(POINTS, name="Essai", parent_window=parent)
        thread.join()
        root.destroy()
        self.assertIn(hex(parent), seen[0])
        self.assertTrue(result.accepted)
        self.assertEqual(result.name, "Essai")
        self.assertEqual(result.points, (("0", "7"), ("1.5", "2.50"), ("24", "-3")))

    def test_profile(self):
        thread, _ = user("Profil", ["xdotool", "mousemove", "--window", "WINDOW",
                                    *OK_BUTTON_MONTHLY, "click", "1"])
        result = functioneditor.edit_profile(Kind.MONTHLY, [500, 0.1], ["Logement"],
                                             data_folder=str(SAMPLES.parent / "resources"))
        thread.join()
        self.assertTrue(result.accepted)
        self.assertEqual(result.rows[:2], (Row("Janvier", "500", "Logement"),
                                           Row("Février", "0.1", "")))

    def test_check(self):
        check = functioneditor.check(SAMPLES / "year-hourly.txt")
        self.assertEqual((check.count, check.faults), (0, []))
        check = functioneditor.check(Path(__file__))
        self.assertEqual(check.count, len(check.faults))
        self.assertIn(Fault(4, "the line must begin with two whole numbers and a word"),
                      check.faults)
        with self.assertRaises(FileNotFoundError):
            functioneditor.check("/nowhere")

    def test_wrong_requests(self):
        for points in ([(0, float("nan"))], [("0\0", 1)]):
            with self.assertRaises(ValueError):
                functioneditor.edit_function(points)
        for kind, name in ((5, ""), (Kind.FUNCTION, ""), (Kind.DAILY, "\udc80")):
            with self.assertRaises(ValueError):
                functioneditor.edit_profile(kind, [], name=name)

    def test_no_display(self):
        program = "import functioneditor; functioneditor.edit_function([(0, 1)])"
        run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True,
                             env=dict(os.environ, DISPLAY=""))
        self.assertIn("NoDisplayError", run.stderr)


if __name__ == "__main__":
    unittest.main()
