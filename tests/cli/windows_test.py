"""The program for Windows."""
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
