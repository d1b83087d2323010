#!/usr/bin/env python3
"""What repair says and leaves behind, and that the built library lists what it should then. repair_test.cpp has the rest."""
import ctypes
import json
import os
import struct
import unittest

from favorites_folder import LAUNCHER, LIST, Folder, favorite_file, held, list_file, spelt
from golden_test import NOBODY, copy_of_tool, fill_sound, fill_with_troubles

LIBRARY = os.environ.get("PMX_LIBRARY", "")
DOCUMENT_LEVEL = 101
INFO = struct.Struct("<qIi260s260siq")


def fill_with_mendable(folder):
    folder.put("a.pmt", favorite_file("A"))
    folder.put("lost.pmt", favorite_file("ミ~表"))
    folder.put("left.pmt", b"")
    folder.put(LIST, list_file("0~A~1~1~14~a.pmt", "0~a~1~0~20~a.pmt", "damaged", count=5))


def listed_by_the_library(folder):
    """Names and files of the favorites of document level, as the library's exports give them."""
    library = ctypes.CDLL(LIBRARY)
    library.EX_CreateTemplList.restype = ctypes.c_void_p
    library.EX_GetTemplListSize.restype = ctypes.c_int64
    library.EX_GetAllTemplInfo.argtypes = [ctypes.c_void_p, ctypes.c_int32, ctypes.c_void_p, ctypes.c_int64, ctypes.c_void_p]
    handle = ctypes.c_void_p(library.EX_CreateTemplList(str(folder.path).encode("cp932"), None, None))
    size = library.EX_GetTemplListSize(handle, ctypes.c_int32(DOCUMENT_LEVEL))
    buffer = ctypes.create_string_buffer(size + 1)
    count = ctypes.c_int64()
    library.EX_GetAllTemplInfo(handle, DOCUMENT_LEVEL, buffer, size, ctypes.byref(count))
    library.EX_DestroyTemplList(handle)
    listed = []
    for info in INFO.iter_unpack(buffer.raw[:size]):
        name, file = (text.split(b"\0")[0].decode("cp932", "replace") for text in info[3:5])
        listed.append((name, file.replace("\\", "/").split("/")[-1]))
    return listed


class Repair(unittest.TestCase):
    def refused(self, folder, **how):
        before = folder.files()
        for options in ([], ["--dry-run"], ["--json"]):
            code, out, message = folder.run("repair", *options, **how)
            self.assertEqual((code, out, folder.files()), (1, "", before))
        return message

    def test_a_sound_folder_stays_as_it_is(self):
        with Folder() as folder:
            fill_sound(folder)
            before = folder.files()
            self.assertEqual(folder.run("repair"), (0, "", ""))
            self.assertEqual(folder.run("repair", "--dry-run"), (0, "", ""))
            self.assertEqual(folder.files(), before)

    def test_a_folder_is_mended(self):
        with Folder() as folder:
            fill_with_mendable(folder)
            before = folder.files()
            planned = folder.run("repair", "--dry-run")
            self.assertEqual((planned[0], planned[2], folder.files()), (1, "", before))
            code, out, message = folder.run("repair")
            self.assertEqual((code, out), (0, planned[1]))
            self.assertRegex(message, r"^pmxfav: the old list is kept as PmxTempleList\.ini\.[-0-9]*\.bak\n$")
            self.assertEqual(folder.run("check"), (0, "", ""))
            after = folder.files()
            kept = message.split()[-1]
            self.assertEqual((after[kept], after["a.pmt"]), (before[LIST], before["a.pmt"]))
            self.assertEqual(set(after), {LIST, kept, "a.pmt", "a-1.pmt", "lost.pmt"})
            self.assertEqual(after["a-1.pmt"], favorite_file("a-1"))
            self.assertEqual(after[LIST], "; TemplateData2=damaged\r\n".encode() + list_file(
                "0~A~1~1~14~a.pmt", "0~a-1~1~0~20~a-1.pmt", "0~ミ-表~1~0~0~lost.pmt"))
            self.assertEqual(folder.run("repair"), (0, "", ""))
            self.assertEqual(folder.files(), after)

    def test_what_remains_is_told(self):
        with Folder() as folder:
            folder.put(LIST, list_file("0~A~1~1~14~a.pmt"))
            for options in ([], ["--dry-run"]):
                self.assertEqual(folder.run("repair", *options),
                                 (1, "", "pmxfav: findings that repair cannot mend, see check: 1\n"))

    def test_a_list_that_cannot_be_replaced_is_refused(self):
        with Folder() as folder:
            fill_with_mendable(folder)
            path = folder.path / LIST
            path.chmod(0o444)
            self.assertIn("read-only", self.refused(folder))
            path.chmod(0o644)
            with held(path):
                self.assertIn("another program", self.refused(folder))
            path.write_bytes(("\ufeff" + "[PMXTemplateList]\r\n\U0001f600\r\n").encode("utf-16-le"))
            self.assertIn("without a code", self.refused(folder))
            path.unlink()
            path.mkdir()
            self.assertIn("cannot be read", self.refused(folder))

    @unittest.skipIf(LAUNCHER, "Wine lets its user make files everywhere")
    def test_a_folder_that_takes_no_files_is_refused(self):
        with Folder() as folder, Folder() as elsewhere:
            fill_with_mendable(folder)
            tool = copy_of_tool(elsewhere, "PmxDocMgr.so")
            folder.path.chmod(0o555)
            somebody = {"user": NOBODY} if os.geteuid() == 0 else {}
            self.assertIn("no files can be made", self.refused(folder, tool=tool, **somebody))
            folder.path.chmod(0o755)

    def test_no_such_folder_is_a_wrong_call(self):
        with Folder() as folder:
            folder.path = folder.path / "none"
            self.assertEqual(folder.run("repair")[0], 2)
            folder.path = folder.path.parent

    def test_without_the_host_the_rest_is_done(self):
        with Folder() as folder, Folder() as elsewhere:
            fill_with_mendable(folder)
            code, out, message = folder.run("repair", tool=copy_of_tool(elsewhere))
            self.assertEqual((code, message.count("PmxDocMgr")), (1, 1))
            self.assertNotIn("lost.pmt", out)
            self.assertEqual(folder.files()["a-1.pmt"], favorite_file("A"))

    def test_a_file_is_listed_as_it_is_imported(self):
        with Folder() as folder, Folder() as source:
            content = favorite_file("新", 3)
            path = source.put("new.pmt", content)
            folder.put(LIST, list_file())
            self.assertEqual(folder.run("import", spelt(path)), (0, "", ""))
            imported = (folder.path / LIST).read_bytes()
            folder.put(LIST, list_file())
            self.assertEqual(folder.run("repair")[0], 0)
            self.assertEqual((folder.path / LIST).read_bytes(), imported)

    @unittest.skipUnless(LIBRARY, "the exports of the native library without sanitizers")
    def test_the_library_lists_what_was_planned(self):
        with Folder() as folder:
            fill_with_troubles(folder)
            before = listed_by_the_library(folder)
            folder.run("repair")
            after = listed_by_the_library(folder)
            favorites = json.loads(folder.run("list", "--json")[1])["favorites"]
            document = [favorite for favorite in favorites if favorite["level"] == "document"]
            self.assertEqual([file for _, file in after], [favorite["file"].split("\\")[-1] for favorite in document])
            kept = [name for name, _ in after]
            numbered = [name if name != "a" else "a-1" for name, _ in before]
            self.assertEqual([name for name in kept if name in numbered], numbered)
            self.assertLess(len(before), len(after))


if __name__ == "__main__":
    unittest.main()
