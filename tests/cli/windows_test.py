"""The program for Windows."""
import re
import shutil
import socket
import subprocess

from harness import DONE, NO_CONNECTION, USAGE, CliTest, Service
from terminal_test import TerminalTest


class WindowsTest(CliTest):
    def test_writes_utf8_and_the_same_line_ends(self):
        outcome = self.succeed("list", "--name", "*łódź")
        self.assertIn("8       Kårdiologi Łódź  McKesson - XML", outcome.out)
        self.assertNotIn("\r", outcome.out)
        self.assertIn(",McKesson - XML,1,", self.succeed("list", "--csv").out)

    def test_reads_through_the_service(self):
        service = Service(self)
        outcome = self.succeed(
            "list", "--json", connection=service.connection, environment=service.environment
        )
        self.assertEqual(outcome.json()["configurations"][-1]["configID"], 12)

    def test_ends_with_the_same_codes(self):
        outcome = self.fail_with(
            NO_CONNECTION, "list", connection=["--dsn", "Missing"], says="There is no connection"
        )
        # Wine's own driver manager gives no reason.
        self.assertRegex(outcome.errors, "Data source|HY000: The ODBC driver gave no reason")

    def test_edit_keeps_a_text_that_is_not_stored(self):
        shutil.copy(self.database, f"{self.directory.parent}/site.db")
        edit = ["edit", "5", "--journal", "Z:" + str(self.directory / "journal")]
        options = {"connection": ["--dsn", "TlTestSite"]}
        outcome = self.succeed(*edit, environment={"VISUAL": "type"}, **options)
        self.assertTrue(outcome.out.startswith("configID = 5\nPACSType = "), outcome.out)
        self.assertTrue(outcome.out.endswith("Nothing changes.\n"), outcome.out)
        outcome = self.fail_with(
            USAGE, *edit, environment={"VISUAL": "exit 1 & rem"}, says="The editor failed.", **options
        )
        file = re.search(r"The edited text is in '(.*)'\.", outcome.errors)[1]
        self.addCleanup(
            subprocess.run, ["wine", "cmd", "/c", "rd", "/s", "/q", file.rpartition("\\")[0]], check=True
        )
        kept = subprocess.run(["wine", "cmd", "/c", "type", file], capture_output=True, check=True)
        self.assertTrue(kept.stdout.startswith(b"configID = 5"), kept.stdout)

    def test_doctor_knows_the_drivers_of_both_kinds_of_programs(self):
        key = r"HKLM\SOFTWARE\ODBC\ODBC.INI\ODBC Data Sources"
        name = ["/v", "TlTestSite", "/f", "/reg:64"]
        subprocess.run(["wine", "reg", "add", key, *name, "/d", "SQLite3"], check=True)
        self.addCleanup(subprocess.run, ["wine", "reg", "delete", key, *name], check=True)
        shutil.copy(self.database, f"{self.directory.parent}/site.db")
        outcome = self.succeed("doctor", "--json", connection=["--dsn", "TlTestSite"])
        lines = [
            (line["health"], line["finding"])
            for line in outcome.json()["diagnosis"]
            if line["subject"] == "data sources"
        ]
        self.assertRegex(lines[0][1], "^for 64-bit programs: .*TlTestSite")
        # Wine's own driver manager has entered it for the user, whose entries both kinds share.
        user = key.replace("HKLM", "HKCU")
        query = subprocess.run(["wine", "reg", "query", user, *name[:2]], capture_output=True)
        if query.returncode == 0:
            self.assertEqual([health for health, _ in lines], ["ok", "ok"])
        else:
            self.assertEqual([health for health, _ in lines], ["ok", "warning"])
            self.assertRegex(lines[1][1], "^for 32-bit programs: .*, without 'TlTestSite'$")

    def test_doctor_tries_the_port_of_this_computer(self):
        name = subprocess.run(
            ["wine", "cmd", "/c", "echo %COMPUTERNAME%"], capture_output=True, text=True, check=True
        ).stdout.strip()
        key = "WHERE key_name = 'PACSConfig' AND pc_name = ?"
        self.change(f"UPDATE System_workstation_cfg SET key_value = '5' {key}", name)
        with socket.create_server(("", 0)) as listener:
            port = listener.getsockname()[1]
            self.change("UPDATE Interface_PACS_cfg SET flag6 = ? WHERE config_id = 5", port)
            shutil.copy(self.database, f"{self.directory.parent}/site.db")
            outcome = self.succeed("doctor", connection=["--dsn", "TlTestSite"])
            self.assertRegex(
                outcome.out,
                rf"port {port} of configuration 5 cannot be opened on this computer: "
                "Address already in use",
            )
        outcome = self.succeed("doctor", connection=["--dsn", "TlTestSite"])
        self.assertIn(f"port {port} of configuration 5 can be opened on this computer", outcome.out)


class ConsoleTest(TerminalTest):
    EDITS_LINES = True

    def setUp(self):
        super().setUp()
        shutil.copy(self.database, f"{self.directory.parent}/site.db")
        self.connection = ["--dsn", "TlTestSite"]

    def on_console(self, *arguments, **options):
        code, shown, _ = self.on_terminal(*arguments, **options)
        return code, self.plain(shown.encode("utf-8"))

    def test_shows_utf8(self):
        code, shown = self.on_console("list", "--name", "*łódź")
        self.assertEqual(code, DONE)
        self.assertIn("8       Kårdiologi Łódź  McKesson - XML", shown)

    def test_asks(self):
        many = ("assign", "7", "READ-*", "--max-changes", "5", "--journal", "Z:" + str(self.journal))
        code, shown = self.on_console(*many, typed="\r")
        self.assertEqual(code, USAGE)
        self.assertIn("Nothing was changed.", shown)
        code, shown = self.on_console(*many, typed="y\r")
        self.assertEqual(code, DONE)
        self.assertIn("Changed 11 workstations.", shown)

    def test_does_not_show_a_password(self):
        code, shown = self.on_console(
            "list", "--user", "anna", prompt="source:", typed="top-secret\r"
        )
        self.assertEqual(code, DONE)
        self.assertIn("8       Kårdiologi", shown)
        self.assertNotIn("top", shown)
