"""What the program shows on a terminal while something takes long."""
import os
import pty
import subprocess

import harness
from harness import DONE
from terminal_test import TerminalTest


class ProgressTest(TerminalTest):
    def slow_folder(self, name):
        """A folder where an export waits for a reader of its first file."""
        folder = self.directory / name
        folder.mkdir()
        os.mkfifo(folder / "configuration-00001.txt")
        return folder

    def read_slow_file(self, folder):
        reader = os.open(folder / "configuration-00001.txt", os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)

    def start_quietly(self, name, *arguments, stderr=None):
        """An export on a terminal of its own, which is to show nothing."""
        ours, its = pty.openpty()
        self.addCleanup(os.close, ours)
        self.addCleanup(os.close, its)
        folder = self.slow_folder(name)
        process = subprocess.Popen(
            [*harness.PROGRAM, *self.connection, "export", str(folder), *arguments],
            stdin=its, stdout=its, stderr=stderr or its)
        self.addCleanup(process.kill)
        return folder, process, ours, its

    def test_is_shown_on_a_terminal_and_leaves_no_trace(self):
        with open(self.directory / "messages", "wb") as messages:
            quiet = [self.start_quietly("json", "--json"), self.start_quietly("csv", "--csv"),
                     self.start_quietly("redirected", stderr=messages)]
            for environment in ({}, {"NO_COLOR": "1"}):
                folder = self.slow_folder("export" + "-".join(environment))
                code, shown, _ = self.on_terminal(
                    "export", folder, environment=environment, prompt="Writing the folder",
                    when_asked=lambda slow=folder: self.read_slow_file(slow))
                self.assertEqual(code, DONE)
                self.assertRegex(shown, r"^(\rWriting the folder \[#* *\] \d+ % *)+\r +\r$")
            # These have waited longer than those that have shown it.
            for folder, process, ours, its in quiet:
                self.read_slow_file(folder)
                self.assertEqual(process.wait(timeout=60), DONE)
                os.write(its, b"end")
                self.assertEqual(os.read(ours, 1000), b"end")
        self.assertEqual((self.directory / "messages").read_bytes(), b"")
