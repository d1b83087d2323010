#!/usr/bin/env python3
"""What people see of the favorites tool on a terminal: a pseudo-terminal here, which Wine makes a console of."""
import fcntl
import os
import pty
import re
import struct
import subprocess
import termios
import unicodedata
import unittest

from favorites_folder import LAUNCHER, LIST, TOOL, Folder, favorite_file, list_file, spelt

MANY = 350


def on_terminal(*call, output=None):
    """Exit code and what arrives at a terminal of 30 lines and 120 columns; the output is it, too, unless given."""
    ours, theirs = pty.openpty()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 30, 120, 0, 0))
    with subprocess.Popen([*LAUNCHER, TOOL, *call], stdin=theirs, stdout=output or theirs, stderr=theirs,
                          start_new_session=True) as process:
        os.close(theirs)
        shown = b""
        try:
            while received := os.read(ours, 65536):
                shown += received
        except OSError:  # the other end is closed
            pass
        os.close(ours)
    return process.returncode, shown.decode("utf-8")


def screen(shown):
    """The lines that stay, for output that moves the cursor only to the beginning of lines and erases to their ends."""
    lines = [[]]
    column = 0
    for text in re.findall(r"\x1b\[[?0-9;]*[A-Za-z]|.", shown, re.DOTALL):
        if text == "\n":
            lines.append([])
        elif text == "\r":
            column = 0
        elif text == "\x1b[K":
            del lines[-1][column:]
        elif text in ("\x1b[?25l", "\x1b[?25h"):  # the cursor is hidden, and shown again
            continue
        elif text.startswith("\x1b"):
            raise AssertionError(f"unexpected {text!r}")
        else:
            lines[-1][column:column + 1] = text
            column += 1
        column = column if text != "\n" else 0
    return ["".join(line).rstrip() for line in lines]


def columns(line):
    """The line with a second character behind each that is two columns wide."""
    return "".join(letter * (2 if unicodedata.east_asian_width(letter) in "WF" else 1) for letter in line)


def fill(folder, count):
    for number in range(count):
        folder.put(f"{number}.pmt", favorite_file(f"お気に入り{number}"))
    folder.put(LIST, list_file(*[f"0~お気に入り{number}~1~0~14~{number}.pmt" for number in range(count)]))


class Terminal(unittest.TestCase):
    def test_columns_line_up_with_full_width_characters(self):
        with Folder() as folder:
            folder.put(LIST, list_file("0~会議資料~1~1~14~会議.pmt", "0~Plain~4~0~20~p.pmt", "0~ﾊﾝｶｸ ソ~5~0~14~ﾊ.pmt"))
            code, shown = on_terminal("list", spelt(folder.path))
            lines = screen(shown)
            self.assertEqual((code, lines[:4]), (0, folder.run("list")[1].splitlines()))
            for heading in ("toolbar", "name", "level", "kind", "icon", "file", "state"):
                place = lines[0].index(heading)
                for line in lines[1:4]:
                    self.assertEqual((columns(line)[place - 1], columns(line)[place] != " "), (" ", True), line)

    def test_progress_over_many_files_is_shown_and_wiped(self):
        with Folder() as folder:
            fill(folder, MANY)
            code, shown = on_terminal("check", spelt(folder.path))
            self.assertEqual(code, 0)
            self.assertRegex(shown, f"[123]00 of {MANY + 1} files")
            self.assertEqual("".join(screen(shown)), "")

    def test_progress_over_few_files_is_not_shown(self):
        with Folder() as folder:
            fill(folder, 3)
            self.assertNotIn("of", on_terminal("check", spelt(folder.path))[1])

    def test_progress_is_no_part_of_the_output(self):
        with Folder() as folder, open(folder.path / "output", "w+b") as output:
            fill(folder, MANY)
            _, shown = on_terminal("list", spelt(folder.path), output=output)
            output.seek(0)
            self.assertIn(f"300 of {MANY} files", shown)
            self.assertEqual("".join(screen(shown)), "")
            self.assertEqual(output.read().decode("utf-8"), folder.run("list")[1])

    def test_nothing_is_animated_into_pipes(self):
        with Folder() as folder:
            fill(folder, MANY)
            code, out, messages = folder.run("list")
            self.assertEqual((code, messages), (0, ""))
            self.assertEqual(out.count("\n"), MANY + 1)
            self.assertNotRegex(out, r"[\r\x1b\x08]")


if __name__ == "__main__":
    unittest.main()
