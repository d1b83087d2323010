#!/usr/bin/env python3
"""How long the favorites tool takes for many favorites. What counts is the processor's time, which other programs hardly
lengthen, and that of one processor, on which Wine's server and the tool take turns without waking another one. Where Wine
reads slowly whatever the program, more is allowed."""
import contextlib
import os
import resource
import subprocess
import unittest
from pathlib import Path

from favorites_folder import LAUNCHER, LIST, Folder, favorite_file, held, list_file, spelt

FAVORITES = 10_000
BOUND = 2  # seconds
READINGS = 2  # what is allowed then, in times that the files are merely read
TRIES = 5


def wine_server():
    """The process that does for the build's Wine prefix what the system does elsewhere."""
    prefix = os.stat(Path(os.environ["PMX_BUILD_FOLDER"], "wine"))
    for process in Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            if os.readlink(process / "cwd").endswith(f"/server-{prefix.st_dev:x}-{prefix.st_ino:x}"):
                return process
    raise AssertionError("Wine's server does not run")


def processor_seconds():
    """Of all processes that this one has waited for, and of Wine's server."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    seconds = used.ru_utime + used.ru_stime
    if LAUNCHER:
        fields = (wine_server() / "stat").read_text(encoding="ascii").rpartition(")")[2].split()
        seconds += (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
    return seconds


def seconds_of(action):
    before = processor_seconds()
    action()
    return processor_seconds() - before


def reading_seconds(folder):
    """What Wine's own shell takes to print each favorite file once; natively nothing."""
    if not LAUNCHER:
        return 0
    command = [*LAUNCHER, "cmd", "/c", f"for %f in ({spelt(folder.path)}\\*.pmt) do @type %f"]
    return seconds_of(lambda: subprocess.run(command, stdout=subprocess.DEVNULL, check=True))


class Speed(unittest.TestCase):
    def setUp(self):
        os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})

    def test_ten_thousand_favorites_are_checked_in_two_seconds(self):
        with Folder() as folder, Folder() as other, held(other.put("keeps Wine's server", b"")):
            for number in range(FAVORITES):
                folder.put(f"f{number}.pmt", favorite_file(f"N{number}"))
            folder.put(f"f{FAVORITES - 1}.pmt", favorite_file("damaged")[:-1] + b"?")
            folder.put(LIST, list_file(*[f"0~N{number}~1~0~14~f{number}.pmt" for number in range(FAVORITES)]))
            tries = []
            for _ in range(TRIES):
                tries.append(seconds_of(lambda: self.check(folder)))
                if tries[-1] < BOUND or tries[-1] < READINGS * reading_seconds(folder):
                    return
            self.fail(tries)

    def check(self, folder):
        code, out, message = folder.run("check")
        self.assertEqual((code, out.count("\n"), message), (1, 1, ""))
        self.assertIn("file-damaged", out)  # the last one was read, too


if __name__ == "__main__":
    unittest.main()
