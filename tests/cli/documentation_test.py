"""The examples of docs/command-line.md, run in its order."""
import re
import shlex

from harness import DIFFERENCES, DONE, FINDINGS, PROJECT, CliTest

EXPECTED_CODES = {
    "check": FINDINGS,
    "diff 3 4": DIFFERENCES,
    "assign --csv moves.csv --plan moves.plan": DIFFERENCES,
    "diff moves.plan": DIFFERENCES,
}


class DocumentationTest(CliTest):
    def setUp(self):
        super().setUp()
        self.text = (PROJECT / "docs/command-line.md").read_text(encoding="utf-8")
        settings = self.home / "config/tlpacscfg/sites.ini"
        settings.parent.mkdir(parents=True)
        settings.write_text(f"[main]\nsqlite = {self.database}\n")
        (self.directory / "moves.csv").write_text(
            'workstation,configuration\nREAD-01,2\nREAD-02,"Broker, reading room 4"\n'
        )

    def examples(self):
        """Each command with the lines that are shown after it."""
        for block in re.findall(r"^```console\n(.*?)^```", self.text, re.DOTALL | re.MULTILINE):
            for command, shown in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, re.MULTILINE):
                yield command, shown

    def test_every_example_does_what_it_shows(self):
        ran = 0
        for command, shown in self.examples():
            words = shlex.split(command)
            self.assertEqual(words.pop(0), "tlpacscfg")
            outcome = self.run_program(*words, connection=[])
            rest = " ".join(words[2:])
            self.assertEqual(outcome.code, EXPECTED_CODES.get(rest, DONE), command)
            if shown:
                self.assertEqual(outcome.out + outcome.errors, shown, command)
            else:
                self.assertEqual(outcome.errors, "", command)
            ran += 1
        self.assertGreaterEqual(ran, 16)

    def test_every_example_of_the_help_works_in_its_order(self):
        shown = self.succeed("--help", connection=[]).out
        commands = re.findall(r"^  tlpacscfg (--site .*)$", shown, re.MULTILINE)
        self.assertEqual(len(commands), 6)
        for command in commands:
            words = shlex.split(command)
            outcome = self.run_program(*words, connection=[])
            expected = EXPECTED_CODES.get(" ".join(words[2:]), DONE)
            self.assertEqual(outcome.code, expected, command + outcome.errors)

    def test_names_every_exit_code(self):
        codes = re.findall(r"^\| (\d) \|", self.text, re.MULTILINE)
        self.assertEqual(codes, list("01234567"))
