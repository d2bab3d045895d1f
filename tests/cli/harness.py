"""Sites for the command line, and its runs."""
import csv
import io
import json
import os
import shutil
import sqlite3
import ssl
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

PROGRAM = []
TLCOMMD = None
PROJECT = Path(__file__).resolve().parents[2]
DEMO = PROJECT / "demo"
PASSWORD = "pass'word;{ä"

# The exit codes that scripts rely on.
DONE, DIFFERENCES, USAGE, FINDINGS, CONFLICT, NO_CONNECTION, REFUSED, NOT_AS_SENT = range(8)


class Outcome:
    """What one run of the program gave."""

    def __init__(self, process):
        self.code = process.returncode
        self.out = process.stdout.decode("utf-8")
        self.errors = process.stderr.decode("utf-8")

    def json(self):
        return json.loads(self.out)

    def csv(self):
        return list(csv.reader(io.StringIO(self.out, newline=""), strict=True))


class CliTest(unittest.TestCase):
    """Each test has a directory of its own, and in it a copy of the demonstration site."""

    maxDiff = None

    def setUp(self):
        self.directory = Path(tempfile.mkdtemp(dir=os.environ["TL_SCRATCH"]))
        self.addCleanup(shutil.rmtree, self.directory)
        self.home = self.directory / "home"
        self.home.mkdir()
        self.database = self.make_database("site.db")
        self.connection = ["--sqlite", str(self.database)]

    def make_database(self, name, schema="schema.sqlite.sql", rows="site.sql"):
        path = self.directory / name
        database = sqlite3.connect(path)
        database.execute("PRAGMA synchronous = OFF")
        database.executescript((DEMO / schema).read_text(encoding="utf-8"))
        if rows:
            database.executescript((DEMO / rows).read_text(encoding="utf-8"))
        database.close()
        return path

    def change(self, sql, *values, path=None):
        """Changes the site, or that of another file, as another program."""
        database = sqlite3.connect(path or self.database)
        with database:
            database.execute(sql, values)
        database.close()

    def rows(self, sql):
        database = sqlite3.connect(self.database)
        try:
            return database.execute(sql).fetchall()
        finally:
            database.close()

    def start(self, *arguments, connection=None, environment=None, **options):
        chosen = self.connection if connection is None else connection
        return subprocess.Popen(
            [*PROGRAM, *chosen, *map(str, arguments)],
            env={
                **os.environ,
                "HOME": str(self.home),
                "XDG_CONFIG_HOME": str(self.home / "config"),
                **(environment or {}),
            },
            cwd=self.directory,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            **options,
        )

    def run_program(self, *arguments, input="", **options):
        process = self.start(*arguments, **options)
        try:
            out, errors = process.communicate(input.encode("utf-8"), timeout=60)
        except subprocess.TimeoutExpired:
            process.kill()
            process.communicate()
            raise
        return Outcome(subprocess.CompletedProcess([], process.returncode, out, errors))

    def succeed(self, *arguments, **options):
        """Runs the program, which must end with 0 and say nothing on standard error."""
        outcome = self.run_program(*arguments, **options)
        self.assertEqual((outcome.code, outcome.errors), (DONE, ""), outcome.out)
        return outcome

    def fail_with(self, code, *arguments, says, **options):
        """Runs the program, which must end with the code and a message that holds the text."""
        outcome = self.run_program(*arguments, **options)
        self.assertEqual(outcome.code, code, outcome.out + outcome.errors)
        self.assertIn(says, outcome.errors)
        return outcome


def make_certificate(directory):
    subprocess.run(
        [PROJECT / "tools/make-certificate", directory], check=True, capture_output=True
    )


class StandIn:
    """The stand-in for SQL Server, with the demonstration site. Its traits are those of a store."""

    def __init__(self, test, encrypts=False, **traits):
        import server
        import store

        directory = test.directory / "server"
        directory.mkdir()
        self.site = server.Site(str(directory))
        test.addCleanup(self.site.reset)
        self.path = directory / "server.db"
        store.create(str(self.path), traits)
        database = sqlite3.connect(self.path)
        database.executescript((DEMO / "site.sql").read_text(encoding="utf-8"))
        database.close()
        self.site.stored_site = {"path": str(self.path), "traits": traits}
        if encrypts:
            make_certificate(directory)
            self.site.encryption = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            # The last one whose handshake fits into the packets of the protocol.
            self.site.encryption.maximum_version = ssl.TLSVersion.TLSv1_2
            self.site.encryption.load_cert_chain(
                directory / "certificate.pem", directory / "key.pem"
            )
        self.environment = {"TDSPORT": str(self.site.port), "TLPACSCFG_PASSWORD": PASSWORD}
        self.connection = ["--server", "127.0.0.1", "--database", "Talora", "--user", "anna"]

    def passwords(self):
        """Those of all logins."""
        record = self.path.parent / "server-record.jsonl"
        lines = record.read_text("utf-8").splitlines() if record.exists() else []
        events = [json.loads(line) for line in lines]
        return [event["login"]["password"] for event in events if "login" in event]


class Service:
    """The remote data service, with the test's SQLite site or with the stand-in for SQL Server."""

    TOKEN = "0123456789abcdef0123456789abcdef"

    def __init__(self, test, server=None):
        directory = test.directory / "service"
        directory.mkdir()
        secret = directory / "token"
        secret.write_text(self.TOKEN)
        secret.chmod(0o600)
        make_certificate(directory)
        source = directory / "site.db"
        shutil.copy(test.database, source)
        database = f"Driver=SQLite3;Database={source}"
        if server:
            database = "Driver=SQL Server;Server=127.0.0.1;Database=Talora;UID=anna;PWD=x"
        settings = directory / "tlcommd.conf"
        settings.write_text(
            f"[service]\nport = 0\ncertificate = {directory}/certificate.pem\n"
            f"key = {directory}/key.pem\ntoken-file = {secret}\n"
            f"[databases]\nTalora = {database}\n"
            f"[database-files]\nTalora = {directory}\n"
            f"[directories]\nZ:\\site\\TALORA\\PROMPTS = {DEMO}/site/TALORA/PROMPTS\n"
        )
        settings.chmod(0o600)
        self.database = source
        self.journal = directory / "journal"
        with open(self.journal, "wb") as journal:
            self.process = subprocess.Popen(
                [TLCOMMD, "--config", settings],
                stdout=journal,
                stderr=journal,
                env={**os.environ, **(server.environment if server else {})},
            )
        test.addCleanup(self.end)
        self.port = self.wait_for_port()
        self.environment = {"TLPACSCFG_PASSWORD": self.TOKEN}
        self.connection = ["--service", f"localhost:{self.port}", "--database", "Talora"]
        self.connection += ["--fingerprint", (directory / "fingerprint").read_text().strip()]

    def wait_for_port(self):
        import re

        deadline = time.monotonic() + 60
        while time.monotonic() < deadline:
            found = re.search(r"event=listening url=\S*:(\d+)", self.journal.read_text())
            if found:
                return int(found[1])
            if self.process.poll() is not None:
                break
            time.sleep(0.02)
        raise RuntimeError(self.journal.read_text())

    def end(self):
        self.process.terminate()
        self.process.wait(30)
