"""On a terminal: what is asked, and colours."""
import fcntl
import os
import pty
import re
import signal
import struct
import subprocess
import termios
import time

import harness
from change_test import ChangeTest
from harness import DONE, PASSWORD, USAGE, StandIn


class TerminalTest(ChangeTest):
    STREAMS = ("stdin", "stdout", "stderr")
    # Whether the program, or what runs it, edits lines itself; it does when it is ready to read.
    EDITS_LINES = False

    def on_terminal(self, *arguments, prompt="[y/N]", typed="", after=0, when_asked=None, streams=STREAMS,
                    **options):
        """Runs the program on a terminal, where `typed` is typed `after` seconds of the prompt, or `when_asked`
        called. Returns the exit code, what the terminal showed, and whether it would show what is
        typed next."""
        ours, its = pty.openpty()
        self.addCleanup(os.close, ours)
        self.addCleanup(os.close, its)
        os.set_blocking(ours, False)
        fcntl.ioctl(its, termios.TIOCSWINSZ, struct.pack("HHHH", 40, 150, 0, 0))
        environment = {key: value for key, value in os.environ.items() if key != "NO_COLOR"}
        process = subprocess.Popen(
            [*harness.PROGRAM, *options.get("connection", self.connection), *map(str, arguments)],
            env={**environment, "HOME": str(self.home), **options.get("environment", {})},
            cwd=self.directory,
            preexec_fn=lambda: os.setsid() or fcntl.ioctl(its, termios.TIOCSCTTY, 0),
            **{name: its if name in streams else subprocess.DEVNULL for name in self.STREAMS},
        )
        self.addCleanup(process.kill)
        shown, asked, ended = b"", None, False
        deadline = time.monotonic() + 60
        while not shown.endswith(b"\0"):
            self.assertLess(time.monotonic(), deadline, shown)
            if process.poll() is not None:
                if not ended:
                    os.write(its, b"\0")
                    ended = True
            elif typed and prompt in self.plain(shown) and self.reads(its):
                asked = asked or time.monotonic()
                if time.monotonic() >= asked + after:
                    os.write(ours, typed.encode("utf-8"))
                    typed = ""
            elif when_asked and prompt in self.plain(shown):
                when_asked()
                when_asked = None
            try:
                shown += os.read(ours, 65536)
            except BlockingIOError:
                time.sleep(0.005)
        text = shown[:-1].decode("utf-8").replace("\r\n", "\n")
        return process.returncode, text, bool(termios.tcgetattr(its)[3] & termios.ECHO)

    def reads(self, terminal):
        return bool(termios.tcgetattr(terminal)[3] & termios.ICANON) != self.EDITS_LINES

    @staticmethod
    def plain(shown):
        """Without what moves the cursor; it may end within a character."""
        return re.sub(rb"\x1b\[[?0-9;]*[A-Za-z]", b"", shown).decode("utf-8", "replace")


class QuestionTest(TerminalTest):
    MANY = ("assign", "7", "READ-*", "--max-changes", "5")
    QUESTION = "This changes 11 workstations, more than --max-changes 5 allows. Go on? [y/N] "

    def ask(self, *arguments, **options):
        return self.on_terminal(*arguments, "--journal", self.journal, **options)

    def test_only_a_yes_is_a_yes(self):
        before = self.assignments()
        for typed in ("\n", "n\n", "yep\n", "\x04"):
            code, shown, _ = self.ask(*self.MANY, typed=typed)
            self.assertEqual(code, USAGE, shown)
            self.assertEqual(shown.count(self.QUESTION), 1)
            self.assertTrue(shown.endswith("\ntlpacscfg: Nothing was changed.\n"), shown)
            self.assertEqual(self.assignments(), before)
        for typed in ("y\n", "yes\n", "Y\n"):
            code, shown, _ = self.ask(*self.MANY, typed=typed)
            self.assertEqual(code, DONE, shown)
            self.assertIn(self.QUESTION, shown)
            self.assertEqual(self.assignments()["READ-09"], "7")
            self.change_site("undo", "--yes")
        self.assertEqual(self.assignments(), before)

    def test_a_deletion_is_asked_for(self):
        self.change_site("copy", "1", "Copy")
        code, shown, _ = self.ask("delete", "Copy", typed="n\n")
        self.assertEqual(code, USAGE)
        self.assertIn("This deletes configurations. Go on? [y/N] ", shown)

    def test_is_not_asked_where_nothing_is_to_be_decided(self):
        for option in ("--yes", "--dry-run"):
            code, shown, _ = self.ask(*self.MANY, option)
            self.assertEqual(code, DONE)
            self.assertNotIn("Go on?", shown)
            self.change_site("undo", "--yes", code=DONE if option == "--yes" else USAGE)

    def test_is_not_asked_when_the_answer_cannot_come_from_a_terminal(self):
        code, shown, _ = self.ask(*self.MANY, streams=("stdout", "stderr"))
        self.assertEqual(code, USAGE)
        self.assertIn("Nothing was changed. It needs --yes.", shown)
        self.assertNotIn("Go on?", shown)


class PasswordTest(TerminalTest):
    def setUp(self):
        super().setUp()
        self.server = StandIn(self)
        self.options = {
            "prompt": "The password of the server: ",
            "connection": self.server.connection,
            "environment": {"TDSPORT": self.server.environment["TDSPORT"]},
        }

    def test_is_asked_for_and_not_shown(self):
        code, shown, echoes = self.on_terminal("list", typed=PASSWORD + "\n", **self.options)
        self.assertEqual(code, DONE, shown)
        self.assertTrue(shown.startswith("The password of the server: \n"), shown)
        self.assertNotIn(PASSWORD, shown)
        self.assertEqual(self.server.passwords(), [PASSWORD])
        self.assertTrue(echoes)

    def test_the_time_of_doctor_begins_after_it(self):
        code, shown, _ = self.on_terminal(
            "doctor", "--time-limit", "10", typed=PASSWORD + "\n", after=10.1, **self.options
        )
        self.assertEqual(code, DONE, shown)
        self.assertEqual(self.server.passwords(), [PASSWORD])

    def test_there_is_none_at_the_end_of_the_input(self):
        code, shown, echoes = self.on_terminal("list", typed="\x04", **self.options)
        self.assertEqual(code, USAGE)
        self.assertIn("There is no password of the server.", shown)
        self.assertEqual((self.server.passwords(), echoes), ([], True))

    def test_an_interruption_leaves_a_terminal_that_shows_what_is_typed(self):
        code, _, echoes = self.on_terminal("list", typed="secret\x03", **self.options)
        self.assertEqual((code, echoes), (-signal.SIGINT, True))
        self.assertEqual(self.server.passwords(), [])


class ColourTest(TerminalTest):
    def test_is_for_terminals_that_want_it(self):
        _, shown, _ = self.on_terminal("list")
        self.assertTrue(shown.startswith("\x1b[1mNumber "), shown)
        self.assertEqual(shown.count("\x1b[0m\n"), 1)
        _, empty, _ = self.on_terminal("list", environment={"NO_COLOR": ""})
        self.assertEqual(empty, shown)
        plain = self.succeed("list").out
        self.assertNotIn("\x1b", plain)
        _, shown, _ = self.on_terminal("list", environment={"NO_COLOR": "1"})
        self.assertEqual(shown, plain)

    def test_is_in_no_json_and_no_csv(self):
        for option in ("--json", "--csv"):
            _, shown, _ = self.on_terminal("list", option)
            self.assertEqual(shown, self.succeed("list", option).out)
            self.assertNotIn("\x1b", shown)
