"""help: pages, the manual, and completions in the shells themselves."""
import os
import subprocess

from harness import USAGE, CliTest


class HelpTest(CliTest):
    def setUp(self):
        super().setUp()
        self.connection = []

    def test_explains_the_exit_codes(self):
        text = self.succeed("help", "exit-codes").out
        self.assertEqual([line[2] for line in text.splitlines()[2:]], list("01234567"))

    def test_is_the_help_of_a_command_and_of_the_program(self):
        for command in ("list", "check"):
            page = self.succeed("help", command).out
            self.assertIn(f"Usage: tlpacscfg {command}", page)
            self.assertIn("Examples:\n", page)
        self.assertEqual(self.succeed("help").out, self.succeed("--help").out)

    def test_suggests_the_right_topic(self):
        self.fail_with(USAGE, "help", "exitcodes", says="Did you mean 'exit-codes'?")

    def test_documents_every_option_in_the_manual_page(self):
        page = self.directory / "tlpacscfg.1"
        page.write_text(self.succeed("help", "man").out)
        shown = subprocess.run(
            ["man", "--warnings", "-l", page],
            capture_output=True,
            text=True,
            env={**os.environ, "MANWIDTH": "200", "MAN_KEEP_FORMATTING": ""},
            check=True,
        )
        self.assertEqual(shown.stderr, "")
        for word in ("--server NAME", "list KIND", "--where FIELD=VALUE", "EXIT STATUS"):
            self.assertIn(word, shown.stdout)
        self.assertIn("list workstations --name 'READ-*'", shown.stdout)


class CompletionTest(CliTest):
    def setUp(self):
        super().setUp()
        self.connection = []

    def script(self, shell):
        path = self.directory / f"completions.{shell}"
        path.write_text(self.succeed("help", shell).out)
        return path

    def output_of(self, *command):
        done = subprocess.run(command, capture_output=True, text=True, cwd=self.directory)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout.split("\n")[:-1]

    def in_bash(self, *words):
        script = self.script("bash")
        line = " ".join(f"'{word}'" for word in ("tlpacscfg", *words))
        return sorted(
            self.output_of(
                "bash",
                "-c",
                f"source {script}; COMP_WORDS=({line}); COMP_CWORD={len(words)}; _tlpacscfg;"
                ' printf "%s\\n" "${COMPREPLY[@]}"',
            )
        )

    def in_fish(self, line):
        lines = self.output_of("fish", "-c", f'source {self.script("fish")}; complete -C "{line}"')
        return sorted(text.split("\t")[0] for text in lines)

    def test_completes_in_bash(self):
        self.assertEqual(self.in_bash("wh"), ["where-used"])
        self.assertEqual(self.in_bash("list", "--w"), ["--where"])
        self.assertEqual(self.in_bash("--site", "main", "list", "work"), ["workstations"])
        self.assertEqual(self.in_bash("--sqlite", "sit"), ["site.db"])
        self.assertEqual(self.in_bash("list", "--name", "x"), [""])
        self.assertIn("--password-file", self.in_bash("list", "--pass"))

    def test_completes_in_fish(self):
        self.assertEqual(self.in_fish("tlpacscfg wh"), ["where-used"])
        self.assertEqual(self.in_fish("tlpacscfg list --wh"), ["--where"])
        self.assertEqual(self.in_fish("tlpacscfg list work"), ["workstations"])
        self.assertIn("site.db", self.in_fish("tlpacscfg --sqlite sit"))

    def test_is_a_valid_script_of_zsh(self):
        script = self.script("zsh")
        self.assertEqual(self.output_of("zsh", "-n", str(script)), [])
        loaded = self.output_of(
            "zsh", "-f", "-c", f"autoload -U compinit; compinit -u -D; source {script};"
            " print $_comps[tlpacscfg]",
        )
        self.assertIn("_tlpacscfg", loaded[0])

    def test_has_every_command_for_powershell(self):
        # No Debian package runs it: only its table is looked at.
        script = self.script("powershell").read_text()
        self.assertIn("'list' = @('configurations', 'workstations', '--name'", script)
        self.assertEqual(script.count("{"), script.count("}"))
