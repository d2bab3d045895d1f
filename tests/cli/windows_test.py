"""The program for Windows."""
import shutil
import subprocess

from harness import NO_CONNECTION, CliTest, Service


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
        self.fail_with(NO_CONNECTION, "list", connection=["--dsn", "Missing"], says="Data source")

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
        self.assertEqual([health for health, _ in lines], ["ok", "warning"])
        self.assertIn("for 64-bit programs: TlTestSite", lines[0][1])
        self.assertRegex(lines[1][1], "^for 32-bit programs: .*, without 'TlTestSite'$")
