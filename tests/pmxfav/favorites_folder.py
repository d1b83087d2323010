"""Makes favorites folders for the tests of the favorites tool, and runs it."""
import contextlib
import os
import shutil
import struct
import subprocess
import tempfile
import zlib
from pathlib import Path

TOOL = os.environ["PMXFAV"]
HOLD_FILE = os.environ["PMX_HOLD_FILE"]
LAUNCHER = os.environ.get("PMXFAV_LAUNCHER", "").split()
DAY = 24 * 60 * 60
LIST = "PmxTempleList.ini"


def favorite_file(name, level=1, table=bytes(8657)):
    """The bytes of a favorite file of the sample host."""
    text = name if isinstance(name, bytes) else name.encode("cp932")
    body = b"PMXF\r\n\x1a\n" + struct.pack("<HHi", 1, len(text), level) + text + table
    return body + struct.pack("<I", zlib.crc32(body))


def list_file(*entries, count=None):
    lines = ["[PMXTemplateList]", f"TemplateNum={len(entries) if count is None else count}"]
    lines += [f"TemplateData{number}={entry}" for number, entry in enumerate(entries)]
    return ("\r\n".join(lines) + "\r\n").encode("cp932")


def spelt(path):
    """The path as the tool takes it."""
    return "Z:" + str(path).replace("/", "\\") if LAUNCHER else str(path)


@contextlib.contextmanager
def held(path):
    """Another program has the file open and shares it with nobody."""
    with subprocess.Popen([*LAUNCHER, HOLD_FILE, spelt(path)], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as holder:
        assert holder.stdout.readline().strip() == b"held"
        yield
        holder.stdin.close()


class Folder:
    """A favorites folder that is gone at the end of the `with` block."""

    def __enter__(self):
        self.path = Path(tempfile.mkdtemp(prefix="pmxfav-"))
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.path)

    def put(self, name, content, age=0):
        path = self.path / name
        path.write_bytes(content)
        written = 1_700_000_000 if age == 0 else age
        os.utime(path, (written, written))
        return path

    def files(self):
        return {path.name: path.read_bytes() for path in self.path.iterdir() if path.is_file()}

    def run(self, command, *arguments, tool=None, **process):
        """Exit code, output and messages of `pmxfav COMMAND FOLDER ARGUMENTS`, with the folder's path taken out."""
        folder = spelt(self.path)
        done = subprocess.run([*LAUNCHER, tool or TOOL, command, folder, *arguments], capture_output=True,
                              stdin=subprocess.DEVNULL, check=False, **process)
        result = [text.decode("utf-8").replace("\r\n", "\n") for text in (done.stdout, done.stderr)]
        for spelling in (folder.replace("\\", "\\\\"), folder):
            result = [text.replace(spelling, "FOLDER") for text in result]
        return done.returncode, *result
