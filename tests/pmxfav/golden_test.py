#!/usr/bin/env python3
"""Compares what the favorites tool prints with golden files, and with the example in its document.
With --renew writes the golden files and the example anew; look at the difference before committing it."""
import fcntl
import json
import os
import shutil
import sys
import unittest
from pathlib import Path

from favorites_folder import LAUNCHER, LIST, TOOL, Folder, favorite_file, list_file

HERE = Path(__file__).resolve().parent
GOLDEN = HERE / "golden"
DOCUMENT = HERE.parent.parent / "docs" / "pmxfav.md"
RENEW = "--renew" in sys.argv


def fill_sound(folder):
    folder.put("会議資料.pmt", favorite_file("会議資料"))
    folder.put("face.pmt", favorite_file("ミニ", 4))
    folder.put(LIST, list_file("1~中とじ小冊子~101~1~4~4", "0~会議資料~1~0~14~会議資料.pmt", "0~ミニ~4~0~20~face.pmt"))


def fill_with_troubles(folder):
    """One specimen of each trouble that does not need a list file of its own."""
    folder.put("a.pmt", favorite_file("A"))
    folder.put("foreign.pmt", favorite_file("A"))
    folder.put("damaged.pmt", favorite_file("壊れた")[:-1] + b"?")
    folder.put("empty.pmt", b"")
    folder.put("left.pmt", b"")
    folder.put("lost.pmt", favorite_file("忘れ物"))
    folder.put("separator.pmt", favorite_file("A~B"))
    folder.put("a~b.pmt", favorite_file("C"))
    folder.put("Pmx0123ABCD.tmp", b"half")
    folder.put("page.pmt", favorite_file("P", 5))
    for number in range(21):
        folder.put(f"t{number}.pmt", favorite_file(f"T{number}"))
    entries = ["0~A~1~0~14~a.pmt", "0~a~1~0~14~a.pmt", "0~B~1~0~14~foreign.pmt", "0~C~1~0~14~damaged.pmt",
               "0~D~1~0~14~empty.pmt", "0~E~1~0~14~missing.pmt", "0~F~1~0~14~..\\outside.pmt", "0~G~1~0~14",
               "0~H~I~1~0~14~h.pmt", "1~J~101~0~4~9", "0~~1~0~14~n.pmt", "0~P~5~1~14~page.pmt",
               "0~Q~7~0~60~a.pmt", "0~" + "長" * 17 + "~1~0~14~missing2.pmt", "0~ ~1~0~14~n.pmt", "'0~K~1~0~14~ '"]
    entries += [f"0~T{number}~1~1~14~t{number}.pmt" for number in range(21)]
    text = list_file(*entries, count=len(entries) + 5)
    text += b"TemplateData37=0~X\x81\x20~1~0~14~x.pmt\r\n"
    text += b"TemplateData0=0~second~1~0~14~second.pmt\r\n; a comment\r\n"
    text += b"TemplateData90=0~beyond~1~0~14~beyond.pmt\r\n[Other]\r\n[PMXTemplateList]\r\nTemplateNum=9\r\n"
    folder.put(LIST, text)


ALL_CODES = {
    "list-unreadable", "list-lossy", "list-mark", "list-read-only", "count-high", "beyond-count", "second-number", "other-line",
    "second-section", "too-few-fields", "too-many-fields", "standard-number", "name-empty", "name-long",
    "name-separator", "name-twice", "bytes", "level", "toolbar-level", "toolbar-many", "icon", "field-empty",
    "file-missing", "file-outside", "file-empty", "file-damaged", "file-foreign", "file-shared", "file-unlisted",
    "file-stray", "leftover-aside", "leftover-empty",
}


class Golden(unittest.TestCase):
    maxDiff = None

    def compare(self, name, *results):
        text = "".join(f"exit code {code}\n" + out + ("-- messages\n" + err if err else "")
                       for code, out, err in results)
        path = GOLDEN / (name + ".txt")
        if RENEW:
            path.parent.mkdir(exist_ok=True)
            path.write_text(text, encoding="utf-8")
        self.assertEqual(path.read_text(encoding="utf-8"), text)

    def test_list(self):
        with Folder() as folder:
            fill_sound(folder)
            self.compare("list", folder.run("list"), folder.run("list", "--json"))

    def test_show(self):
        with Folder() as folder:
            fill_sound(folder)
            self.compare("show", folder.run("show", "会議資料"), folder.run("show", "会議資料", "--json"),
                         folder.run("show", "中とじ小冊子"), folder.run("show", "無い"))

    def test_check_of_a_sound_folder(self):
        with Folder() as folder:
            fill_sound(folder)
            self.compare("check_sound", folder.run("check"), folder.run("check", "--json"))

    def test_check(self):
        with Folder() as folder:
            fill_with_troubles(folder)
            self.compare("check", folder.run("check"))
            self.compare("check_json", folder.run("check", "--json"))
            self.assertEqual(folder.run("list")[0], 0)

    def test_wrong_calls(self):
        with Folder() as folder:
            self.assertEqual(folder.run("dance")[0], 2)
            self.assertEqual(folder.run("show")[0], 2)
            self.assertEqual(folder.run("list", "--colour")[0], 2)
            folder.path.rename(str(folder.path) + "-away")
            try:
                self.assertEqual(folder.run("list")[0], 2)
            finally:
                Path(str(folder.path) + "-away").rename(folder.path)

    def test_example_of_the_document(self):
        with Folder() as folder:
            fill_sound(folder)
            folder.put("face.pmt", favorite_file("ミニ", 4)[:-1] + b"?")
            folder.put("忘れ物.pmt", favorite_file("忘れ物"))
            example = "".join(f"$ pmxfav {command} favorites\n" + folder.run(command)[1]
                              for command in ("list", "check"))
        before, begin, rest = DOCUMENT.read_text(encoding="utf-8").partition("<!-- made by the tests -->\n```\n")
        shown, end, after = rest.partition("```\n")
        if RENEW:
            DOCUMENT.write_text(before + begin + example + end + after, encoding="utf-8")
            shown = example
        self.assertEqual(shown, example)


class Check(unittest.TestCase):
    def codes(self, folder):
        findings = json.loads(folder.run("check", "--json")[1])["findings"]
        return {finding["code"] for finding in findings}

    def test_every_trouble_is_found(self):
        with Folder() as folder:
            fill_with_troubles(folder)
            found = self.codes(folder)
            mark = "\ufeff" + list_file("0~会~1~0~14~x.pmt").decode("cp932")
            folder.put(LIST, mark.encode("utf-8"))
            found |= self.codes(folder)
            folder.put(LIST, mark.replace("会", "\U0001f600").encode("utf-16-le"))
            found |= self.codes(folder)
            path = folder.put(LIST, list_file())
            path.chmod(0o444)
            found |= self.codes(folder)
            path.chmod(0o644)
            path.rename(folder.path / "away")
            path.mkdir()
            found |= self.codes(folder)
            self.assertEqual(ALL_CODES - found, set())

    @unittest.skipIf(LAUNCHER, "locks of the native build")
    def test_a_held_list_is_told(self):
        with Folder() as folder, open(folder.put(LIST, list_file()), "rb") as held:
            fcntl.flock(held, fcntl.LOCK_EX)
            self.assertEqual(self.codes(folder), {"list-held"})

    @unittest.skipIf(LAUNCHER or os.geteuid() == 0, "nothing is denied to the super-user")
    def test_a_folder_that_takes_no_files_is_told(self):
        with Folder() as folder:
            fill_sound(folder)
            folder.path.chmod(0o555)
            found = self.codes(folder)
            folder.path.chmod(0o755)
            self.assertEqual(found, {"folder-read-only"})

    def test_without_the_host_the_rest_is_told(self):
        with Folder() as folder, Folder() as elsewhere:
            alone = elsewhere.path / Path(TOOL).name
            shutil.copy(TOOL, alone)
            fill_with_troubles(folder)
            _, out, messages = folder.run("check", tool=str(alone))
            self.assertEqual(messages.count("PmxDocMgr"), 1)
            self.assertIn("file-missing", out)
            self.assertNotIn("file-damaged", out)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *[a for a in sys.argv[1:] if a != "--renew"]])
