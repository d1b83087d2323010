#!/usr/bin/env python3
"""What the changing commands of the favorites tool leave behind, and what they refuse."""
import functools
import resource
import signal
import unittest

from favorites_folder import LAUNCHER, LIST, Folder, favorite_file, list_file, spelt


def fill(folder):
    folder.put("a.pmt", favorite_file("A"))
    folder.put("ミ.pmt", favorite_file("ミ"))
    folder.put("p.pmt", favorite_file("P", 5))
    folder.put(LIST, list_file("1~S~101~1~4~4", "0~A~1~0~14~a.pmt", "0~ミ~1~1~20~ミ.pmt", "0~P~5~0~14~p.pmt"))


class Changes(unittest.TestCase):
    def entries(self, folder, name=LIST):
        lines = (folder.path / name).read_bytes().decode("cp932").split("\r\n")
        return [line.partition("=")[2] for line in lines if line.startswith("TemplateData")]

    def accepted(self, *call):
        with Folder() as folder:
            fill(folder)
            self.assertEqual(folder.run(*call), (0, "", ""))
            return self.entries(folder), set(folder.files())

    def refused(self, *call):
        with Folder() as folder:
            fill(folder)
            before = folder.files()
            code, out, message = folder.run(*call)
            self.assertEqual((code, out, folder.files()), (1, "", before))
            return message

    def test_rename(self):
        self.assertIn("0~ソ表~1~1~20~ミ.pmt", self.accepted("rename", "ミ", " ソ表 ")[0])
        self.assertIn("32 bytes", self.refused("rename", "A", "長" * 17))
        self.assertIn("~", self.refused("rename", "A", "x~y"))
        self.assertIn("of that name", self.refused("rename", "A", "p"))
        self.assertIn("standard", self.refused("rename", "S", "T"))
        self.assertIn("no favorite", self.refused("rename", "none", "T"))
        self.assertIn("0~a~1~0~14~a.pmt", self.accepted("rename", "A", "a")[0])

    def test_a_name_in_another_case_is_found_unless_there_is_that_very_name(self):
        with Folder() as folder:
            folder.put(LIST, list_file("0~A~1~0~14~a.pmt", "0~ａ~1~0~14~w.pmt", "0~a~1~0~14~b.pmt"))
            self.assertEqual(folder.run("icon", "a", "20")[0], 0)
            self.assertEqual(self.entries(folder)[2], "0~a~1~0~20~b.pmt")
            self.assertEqual(folder.run("remove", "a")[0], 0)
            self.assertEqual(folder.run("icon", "a", "30")[0], 0)
            self.assertEqual(self.entries(folder), ["0~A~1~0~30~a.pmt", "0~ａ~1~0~14~w.pmt"])
            self.assertEqual(folder.run("icon", "Ａ", "40")[0], 1)

    def test_another_list_file_and_extension(self):
        with Folder() as folder, Folder() as source:
            fill(folder)
            before = folder.files()
            folder.put("other.ini", list_file("0~O~1~0~14~o.fav"))
            folder.put("o.fav", favorite_file("O"))
            new = source.put("new.fav", favorite_file("N"))
            other = ["--list", "other.ini", "--extension", ".fav"]
            self.assertEqual(folder.run("import", spelt(new), *other)[0], 0)
            self.assertEqual(self.entries(folder, "other.ini"), ["0~O~1~0~14~o.fav", "0~N~1~0~0~new.fav"])
            self.assertEqual(folder.run("rename", "O", "P", *other)[0], 0)
            self.assertEqual(folder.run("check", *other), (0, "", ""))
            self.assertLess(before.items(), folder.files().items())

    def test_a_text_that_the_code_page_cannot_say_is_a_wrong_call(self):
        with Folder() as folder, Folder() as target:
            fill(folder)
            before = folder.files()
            for call in (("rename", "A", "\U0001f600"), ("remove", "\U0001f600"),
                         ("export", "A", spelt(target.path / "\U0001f600.pmt"))):
                code, out, message = folder.run(*call)
                self.assertEqual((code, out), (2, ""))
                self.assertIn("\U0001f600", message)
            self.assertEqual((folder.files(), target.files()), (before, {}))

    def test_wrong_calls_change_nothing(self):
        with Folder() as folder:
            fill(folder)
            before = folder.files()
            for call in (("rename", "A"), ("move", "A", "first"), ("move", "A"), ("remove",), ("toolbar", "A", "maybe"),
                         ("icon", "A", "green"), ("export", "A"), ("import",), ("diff", "A"), ("check", "A"),
                         ("import", "x.pmt", "--on-clash", "ask"), ("remove", "A", "P"), ("remove", "A", "--json")):
                code, out, message = folder.run(*call)
                self.assertEqual((code, out), (2, ""), call)
                self.assertTrue(message.startswith("pmxfav: "), message)
            self.assertEqual(folder.files(), before)

    def test_move(self):
        entries, _ = self.accepted("move", "P", "1")
        self.assertEqual([entry.split("~")[1] for entry in entries], ["P", "S", "A", "ミ"])
        self.assertIn("from 1 to 4", self.refused("move", "P", "5"))

    def test_remove(self):
        entries, files = self.accepted("remove", "A")
        self.assertEqual(len(entries), 3)
        self.assertEqual(files, {LIST, "ミ.pmt", "p.pmt"})
        self.refused("remove", "S")

    def test_toolbar(self):
        self.assertIn("0~A~1~1~14~a.pmt", self.accepted("toolbar", "A", "on")[0])
        self.assertIn("0~ミ~1~0~20~ミ.pmt", self.accepted("toolbar", "ミ", "off")[0])
        self.assertIn("document level", self.refused("toolbar", "P", "on"))
        with Folder() as folder:
            folder.put(LIST, list_file(*[f"0~{n}~1~{int(n < 20)}~14~{n}.pmt" for n in range(21)]))
            self.assertEqual(folder.run("toolbar", "20", "on")[0], 1)

    def test_icon(self):
        self.assertIn("0~A~1~0~59~a.pmt", self.accepted("icon", "A", "59")[0])
        self.refused("icon", "A", "60")
        self.refused("icon", "A", "13")

    def test_export(self):
        with Folder() as folder, Folder() as target:
            fill(folder)
            path = target.path / "出力 1.pmt"
            self.assertEqual(folder.run("export", "A", spelt(path)), (0, "", ""))
            self.assertEqual(path.read_bytes(), favorite_file("A"))
            self.assertEqual(folder.run("export", "P", spelt(path)), (0, "", ""))
            self.assertEqual(path.read_bytes(), favorite_file("P", 5))
            self.assertEqual(folder.run("export", "A", "here.pmt", cwd=target.path), (0, "", ""))
            self.assertEqual(set(target.files()), {path.name, "here.pmt"})
            self.assertIn("standard", folder.run("export", "S", spelt(path))[2])
            self.assertEqual(folder.run("export", "A", spelt(target.path / "none" / "out.pmt"))[0], 1)

    def test_export_never_goes_over_a_favorite_however_its_file_is_spelt(self):
        with Folder() as folder:
            fill(folder)
            (folder.path / "in").mkdir()
            before = folder.files()
            spellings = [spelt(folder.path / "p.pmt"), spelt(folder.path / "in" / ".." / "p.pmt")]
            spellings += [path.replace("p.pmt", "P.PMT").replace("Z:", "z:") for path in spellings if LAUNCHER]
            for path in (*spellings, "p.pmt", "./p.pmt"):
                code, _, message = folder.run("export", "A", path, cwd=folder.path)
                self.assertEqual((code, message), (1, "pmxfav: that is the file of a favorite of the folder\n"), path)
            self.assertEqual(folder.run("export", "A", spelt(folder.path / LIST))[0], 1)
            self.assertEqual(folder.files(), before)

    @unittest.skipIf(LAUNCHER, "the limit is Linux's")
    def test_check_knows_all_that_a_killed_export_leaves(self):
        with Folder() as folder, Folder() as target:
            fill(folder)
            limit = functools.partial(resource.setrlimit, resource.RLIMIT_FSIZE, (100, 100))
            code = folder.run("export", "A", str(target.path / "out.pmt"), preexec_fn=limit)[0]
            self.assertEqual(code, -signal.SIGXFSZ)
            self.assertEqual(len(target.files()), 2)  # the library's and the host's
            self.assertEqual(target.run("check")[1].count("leftover-aside"), 2)

    def imported(self, rule, *contents):
        with Folder() as folder, Folder() as source:
            fill(folder)
            paths = [source.put(f"new{number}.pmt", content) for number, content in enumerate(contents)]
            code, out, message = folder.run("import", *[spelt(path) for path in paths], *rule)
            self.assertEqual(out, "")
            return code, message, self.entries(folder), set(folder.files())

    def test_import(self):
        code, _, entries, files = self.imported([], favorite_file("新"), favorite_file("N2", 3))
        self.assertEqual((code, entries[4:]), (0, ["0~新~1~0~0~new0.pmt", "0~N2~3~0~0~new1.pmt"]))
        self.assertLess({"new0.pmt", "new1.pmt"}, files)

    def test_import_on_a_clash(self):
        code, message, entries, files = self.imported([], favorite_file("a"), favorite_file("N"))
        self.assertEqual((code, entries[4:]), (1, ["0~N~1~0~0~new1.pmt"]))
        self.assertIn("of that name", message)
        self.assertNotIn("new0.pmt", files)
        code, _, entries, _ = self.imported(["--on-clash", "rename"], favorite_file("A"), favorite_file("A"))
        self.assertEqual((code, entries[4:]), (0, ["0~A-1~1~0~0~new0.pmt", "0~A-2~1~0~0~new1.pmt"]))
        code, _, entries, files = self.imported(["--on-clash", "replace"], favorite_file("ミ"))
        self.assertEqual((code, entries[2], len(entries)), (0, "0~ミ~1~1~20~new0.pmt", 4))
        self.assertNotIn("ミ.pmt", files)
        self.assertEqual(self.imported(["--on-clash", "replace"], favorite_file("S"))[0], 1)

    def test_import_of_several_files_of_one_name(self):
        same = [favorite_file("N"), favorite_file("N", 3), favorite_file("n", 4)]
        code, _, entries, _ = self.imported(["--on-clash", "skip"], *same)
        self.assertEqual((code, entries[4:]), (1, ["0~N~1~0~0~new0.pmt"]))
        code, _, entries, _ = self.imported(["--on-clash", "rename"], *same)
        self.assertEqual((code, [entry.split("~")[1] for entry in entries[4:]]), (0, ["N", "N-1", "n-2"]))
        code, _, entries, files = self.imported(["--on-clash", "replace"], *same)
        self.assertEqual((code, entries[4:]), (0, ["0~N~4~0~0~new2.pmt"]))
        self.assertEqual(len(files), 5)

    def test_import_refuses_what_is_no_favorite(self):
        code, _, entries, files = self.imported([], b"no favorite", favorite_file("x~y"), favorite_file("T", 101))
        self.assertEqual((code, len(entries), len(files)), (1, 4, 4))

    def test_a_list_that_cannot_be_saved_stays(self):
        with Folder() as folder:
            fill(folder)
            (folder.path / LIST).chmod(0o444)
            before = folder.files()
            code, _, message = folder.run("remove", "A")
            (folder.path / LIST).chmod(0o644)
            self.assertEqual((code, folder.files()), (1, before))
            self.assertIn("nothing has changed", message)


if __name__ == "__main__":
    unittest.main()
