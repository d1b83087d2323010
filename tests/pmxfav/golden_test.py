#!/usr/bin/env python3
"""Compares what the favorites tool prints with golden files, and with the example in its document.
With --renew writes the golden files and the example anew; look at the difference before committing it."""
import hashlib
import json
import os
import re
import shutil
import sys
import unittest
from pathlib import Path

from favorites_folder import LAUNCHER, LIST, TOOL, Folder, favorite_file, held, list_file

HERE = Path(__file__).resolve().parent
GOLDEN = HERE / "golden"
DOCUMENT = HERE.parent.parent / "docs" / "pmxfav.md"
CHECK_SOURCE = HERE.parent.parent / "pmxfav" / "check.cpp"
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
    folder.put("\U0001f600.pmt", favorite_file("S"))
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


NOBODY = 65534
CANNOT_BE_MADE = {"folder-read-only"} if LAUNCHER else set()  # Wine lets its user make files everywhere


def copy_of_tool(folder, *libraries):
    for name in (Path(TOOL).name, *libraries):
        shutil.copy(Path(TOOL).parent / name, folder.path)
    folder.path.chmod(0o755)
    return str(folder.path / Path(TOOL).name)


def codes_of_the_table():
    return set(re.findall(r'\{Trouble::\w+,\s*"([a-z-]+)"', CHECK_SOURCE.read_text(encoding="utf-8")))


def codes_of_the_document():
    chapter = DOCUMENT.read_text(encoding="utf-8").partition("## What check finds\n")[2].partition("\n## ")[0]
    cells = [line.split("|")[1] for line in chapter.splitlines() if line.startswith("| `")]
    return {code for cell in cells for code in re.findall(r"`([a-z-]+)`", cell)}


def without_date(text):
    return re.sub(r"\.ini\.\d{4}-\d\d-\d\d-\d{6}\.bak", ".ini.DATE.bak", text)


def fill_for_diff(folder):
    table = bytearray(8657)
    folder.put("a.pmt", favorite_file("A"))
    for place, change in ((0, b"\1"), (81, b"\2\3"), (130, b"\xff"), (2221, bytes(range(1, 101))), (8656, b"\x09")):
        table[place:place + len(change)] = change
    folder.put("ミニ.pmt", favorite_file("ミニ", 4, bytes(table)))
    folder.put("same.pmt", favorite_file("同じ"))
    folder.put("renamed.pmt", favorite_file("Before"))
    folder.put("damaged.pmt", b"damaged")
    folder.put(LIST, list_file("0~A~1~0~14~a.pmt", "0~ミニ~4~0~14~ミニ.pmt", "0~同じ~1~0~14~same.pmt",
                               "0~Renamed~1~0~14~renamed.pmt", "0~Damaged~1~0~14~damaged.pmt",
                               "0~Missing~1~0~14~missing.pmt", "1~新規~101~0~0~1", "1~中とじ~101~0~4~4"))


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

    def test_show_digests_a_file(self):
        """With the texts of the standard, and sizes around that of a block."""
        texts = {b"": "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855",
                 b"abc": "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad",
                 b"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq":
                     "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1",
                 b"a" * 1_000_000: "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0",
                 b"b" * 55: hashlib.sha256(b"b" * 55).hexdigest(), b"c" * 64: hashlib.sha256(b"c" * 64).hexdigest()}
        with Folder() as folder:
            folder.put(LIST, list_file("0~A~1~0~14~a.pmt"))
            for text, digest in texts.items():
                folder.put("a.pmt", text)
                self.assertEqual(json.loads(folder.run("show", "A", "--json")[1])["favorite"]["sha256"], digest)

    def test_repair(self):
        for name, form in (("repair", []), ("repair_json", ["--json"])):
            with Folder() as folder:
                fill_with_troubles(folder)
                runs = [folder.run("repair", *form, *options) for options in (["--dry-run"], [], [])]
                self.compare(name, *((code, without_date(out), without_date(err)) for code, out, err in runs))

    def test_diff(self):
        with Folder() as folder:
            fill_for_diff(folder)
            self.compare("diff", folder.run("diff", "A", "ミニ"), folder.run("diff", "A", "ミニ", "--json"),
                         folder.run("diff", "A", "同じ"), folder.run("diff", "A", "同じ", "--json"),
                         folder.run("diff", "A", "Renamed"))
            self.compare("diff_standard", folder.run("diff", "新規", "中とじ"), folder.run("diff", "新規", "新規"))
            self.compare("diff_refused", folder.run("diff", "Damaged", "A"), folder.run("diff", "A", "Missing"),
                         folder.run("diff", "A", "none"))

    def test_help(self):
        with Folder() as folder:
            self.compare("help", folder.run("--help-all"))
            version = re.search(r"PMXTemplUI VERSION ([0-9.]+)", (HERE.parent.parent / "CMakeLists.txt").read_text(encoding="utf-8"))
            self.assertEqual(folder.run("--version"), (0, f"pmxfav {version[1]}\n", ""))

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
                              for command in ("list", "check", "repair"))
        before, begin, rest = DOCUMENT.read_text(encoding="utf-8").partition("<!-- made by the tests -->\n```\n")
        shown, end, after = rest.partition("```\n")
        if RENEW:
            DOCUMENT.write_text(before + begin + example + end + after, encoding="utf-8")
            shown = example
        self.assertEqual(shown, example)


class Check(unittest.TestCase):
    def codes(self, folder, **how):
        findings = json.loads(folder.run("check", "--json", **how)[1])["findings"]
        return {finding["code"] for finding in findings}

    def test_every_trouble_is_found(self):
        """Fails also when a code of the table has no specimen."""
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
            with held(path):
                found |= self.codes(folder)
            path.rename(folder.path / "away")
            path.mkdir()
            found |= self.codes(folder)
            found |= self.codes_where_much_is_denied()
            self.assertEqual(found | CANNOT_BE_MADE, codes_of_the_table())

    def codes_where_much_is_denied(self):
        """Of a folder that takes no files, with a file that nobody may read and one that a program holds."""
        with Folder() as folder, Folder() as elsewhere, held(folder.put("held.pmt", favorite_file("H"))):
            folder.put("denied.pmt", favorite_file("D")).chmod(0)
            folder.put(LIST, list_file("0~H~1~0~14~held.pmt", "0~D~1~0~14~denied.pmt"))
            folder.path.chmod(0o555)
            somebody = {}
            if not LAUNCHER and os.geteuid() == 0:  # to whom nothing is denied
                somebody = {"tool": copy_of_tool(elsewhere, "PmxDocMgr.so"), "user": NOBODY}
            found = self.codes(folder, **somebody)
            folder.path.chmod(0o755)
            return found

    def test_the_document_names_every_code(self):
        self.assertEqual(codes_of_the_document(), codes_of_the_table())

    def test_without_the_host_the_rest_is_told(self):
        with Folder() as folder, Folder() as elsewhere:
            fill_with_troubles(folder)
            _, out, messages = folder.run("check", tool=copy_of_tool(elsewhere))
            self.assertEqual(messages.count("PmxDocMgr"), 1)
            self.assertIn("file-missing", out)
            self.assertNotIn("file-damaged", out)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *[a for a in sys.argv[1:] if a != "--renew"]])
