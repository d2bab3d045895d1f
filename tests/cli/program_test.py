"""What is the same for every command."""
import subprocess

import harness
from harness import DONE, USAGE, CliTest


class ProgramTest(CliTest):
    def test_takes_global_options_before_and_after_the_command(self):
        before = self.succeed("--json", "list").out
        self.assertEqual(self.succeed("list", "--json").out, before)
        after = self.run_program("list", *self.connection, "--json", connection=[])
        self.assertEqual((after.code, after.out), (DONE, before))

    def test_suggests_the_right_command_and_option(self):
        self.fail_with(USAGE, "lsit", says="There is no command 'lsit'. Did you mean 'list'?")
        self.fail_with(USAGE, "list", "--jsn", says="no option '--jsn'. Did you mean '--json'?")
        self.fail_with(USAGE, "frobnicate", says="There is no command 'frobnicate'.")

    def test_needs_a_command_and_its_arguments(self):
        self.fail_with(USAGE, connection=[], says="There is no command.")
        self.fail_with(USAGE, "show", says="NAME is required")
        self.fail_with(USAGE, "list", "workstations", "x", says="'list' does not take 'x'")
        self.fail_with(USAGE, "list", "--timeout", "soon", says="--timeout")

    def test_takes_only_numbers_that_it_can_use(self):
        for option, most, rest in (
            ("--timeout", "3601", "from 1 to 3600."),
            ("--user-id", "32768", "from 0 to 32767."),
            ("--request-bytes", "1073741825", "from 1024 to 1073741824."),
        ):
            for number in (most, "-1", "4294967297", "1.5", "1x"):
                self.fail_with(
                    USAGE,
                    *("list", f"{option}={number}"),
                    says=f"{option}: '{number}' is not a number {rest}",
                )
        self.fail_with(
            USAGE,
            *("assign", "none", "*", "--max-changes", "-1"),
            says="--max-changes: '-1' is not a number of at least 0.",
        )
        self.fail_with(USAGE, "undo", "0", says="NUMBER: '0' is not a number of at least 1.")

    def test_prints_its_version(self):
        self.assertRegex(self.succeed("--version", connection=[]).out, r"^\d+\.\d+\.\d+\n$")

    def test_every_command_has_help_with_examples(self):
        text = self.succeed("--help", connection=[]).out
        lines = text.split("Commands:\n")[1].split("\n\n")[0].splitlines()
        commands = [line.split()[0] for line in lines if line[2:3].strip()]
        self.assertIn("list", commands)
        for command in commands:
            help = self.succeed(command, "--help", connection=[]).out
            self.assertIn("Examples:\n", help)
            self.assertRegex(help, f"\n  tlpacscfg (--site main )?{command}")

    def test_reports_that_standard_output_cannot_be_written(self):
        with open("/dev/full", "wb") as full:
            outcome = subprocess.run(
                [*harness.PROGRAM, *self.connection, "list"], stdout=full, stderr=subprocess.PIPE
            )
        self.assertEqual(outcome.returncode, USAGE)
        self.assertIn(b"Standard output cannot be written.", outcome.stderr)
