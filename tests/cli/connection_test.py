"""The ways to a site, where passwords come from, and the settings file."""
import shutil

from harness import (
    DEMO,
    DONE,
    NO_CONNECTION,
    PASSWORD,
    REFUSED,
    USAGE,
    CliTest,
    Service,
    StandIn,
)


class WaysTest(CliTest):
    def numbers(self, **options):
        rows = self.succeed("list", "--json", **options).json()["configurations"]
        return [row["configID"] for row in rows]

    def test_reads_an_sqlite_file(self):
        self.assertEqual(self.numbers(), [1, 2, 3, 4, 5, 6, 7, 8, 9, 12])

    def test_reads_a_data_source(self):
        shutil.copy(self.database, f"{self.directory.parent}/site.db")
        self.assertEqual(self.numbers(connection=["--dsn", "TlTestSite"])[-1], 12)

    def test_reads_the_access_file_of_a_workstation(self):
        file = DEMO / "stand-alone/SYSTEM.MDB"
        self.assertEqual(
            self.numbers(connection=["--offline", str(file)]), [1, 2, 3, 4, 5, 6, 7, 12]
        )
        rows = self.succeed(
            "list", "workstations", "--csv", connection=["--offline", str(file)]
        ).csv()
        self.assertEqual(len(rows), 28)
        self.assertIn(["READ-06", "6", "O'Neil clinic"], rows)
        self.assertIn(["FRONTDESK", "", ""], rows)

    def test_reads_from_sql_server(self):
        server = StandIn(self)
        options = {"connection": server.connection, "environment": server.environment}
        self.assertEqual(self.numbers(**options)[-1], 12)
        self.assertIn("READ-05", self.succeed("list", "workstations", **options).out)

    def test_reads_through_the_service(self):
        service = Service(self)
        options = {"connection": service.connection, "environment": service.environment}
        self.assertEqual(self.numbers(**options)[-1], 12)
        self.assertIn("READ-05", self.succeed("list", "workstations", **options).out)

    def test_trusts_only_the_certificate_of_the_fingerprint(self):
        service = Service(self)
        for fingerprint in (["--fingerprint", "00" * 32], []):
            self.fail_with(
                NO_CONNECTION,
                "list",
                connection=[*service.connection[:4], *fingerprint],
                environment=service.environment,
                says="The service's certificate is not trusted.",
            )
        self.assertNotIn("event=refused", service.journal.read_text())

    def test_says_what_the_service_refuses(self):
        service = Service(self)
        self.fail_with(
            NO_CONNECTION,
            "list",
            connection=service.connection,
            environment={"TLPACSCFG_PASSWORD": "wrong"},
            says="token",
        )
        self.fail_with(
            REFUSED,
            "list",
            connection=["--database", "Other", *service.connection[:2], *service.connection[4:]],
            environment=service.environment,
            says="Other",
        )

    def test_says_that_there_is_no_connection(self):
        def says(text, *connection):
            self.fail_with(
                NO_CONNECTION,
                "list",
                connection=connection,
                environment={"TDSPORT": "1", "TLPACSCFG_PASSWORD": PASSWORD},
                says=text,
            )

        says("There is no file 'missing.db'.", "--sqlite", "missing.db")
        self.assertFalse((self.directory / "missing.db").exists())
        says("There is no file 'missing.mdb'.", "--offline", "missing.mdb")
        says("Data source name not found", "--dsn", "Missing")
        says("There is no connection to the database.", "--server", "127.0.0.1", "--timeout", "5")
        says("no connection to the service", "--service", "localhost:1", "--database", "Talora")

    def test_tells_a_refusal_from_a_lost_connection(self):
        server = StandIn(self)
        options = {"connection": server.connection, "environment": server.environment}
        server.site.faults.add(
            {"batch": "Select", "fails": {"number": 229, "text": "SELECT denied.", "undoes": False}}
        )
        self.fail_with(REFUSED, "list", says="SELECT denied.", **options)
        server.site.faults.add({"batch": "Select", "hangsUp": "before"})
        self.fail_with(NO_CONNECTION, "list", says="", **options)

    def test_needs_one_way(self):
        for connection in ([], ["--sqlite", "a", "--dsn", "b"]):
            self.fail_with(USAGE, "list", connection=connection, says="Name the site with one of")
        self.fail_with(
            USAGE, "list", connection=["--service", "host"], says="Write --service HOST:PORT"
        )
        self.fail_with(
            USAGE,
            "list",
            connection=["--service", "h:1", "--database", "d", "--fingerprint", "xyz"],
            says="The fingerprint is not one",
        )


class PasswordTest(CliTest):
    def setUp(self):
        super().setUp()
        self.server = StandIn(self)
        self.port = {"TDSPORT": self.server.environment["TDSPORT"]}

    def test_comes_from_a_file_from_standard_input_or_from_the_environment(self):
        file = self.directory / "password"
        file.write_bytes(PASSWORD.encode("utf-8") + b"\r\nsecond line\n")
        listed = {"connection": self.server.connection}
        self.succeed("list", "--password-file", file, environment=self.port, **listed)
        self.succeed(
            "list", "--password-stdin", input=PASSWORD + "\n", environment=self.port, **listed
        )
        self.succeed("list", environment=self.server.environment, **listed)
        self.assertEqual(self.server.passwords(), [PASSWORD] * 3)

    def test_comes_from_standard_input_rather_than_from_the_file_of_the_settings(self):
        file = self.directory / "password"
        file.write_text("old")
        settings = self.directory / "sites.ini"
        settings.write_text(f"[main]\npassword-file = {file}\n")
        chosen = ["--site", "main", "--settings", str(settings), *self.server.connection]
        options = {"connection": chosen, "environment": self.port}
        self.succeed("list", "--password-stdin", input=PASSWORD + "\n", **options)
        self.succeed("list", **options)
        self.assertEqual(self.server.passwords(), [PASSWORD, "old"])

    def test_is_not_asked_for_without_a_terminal(self):
        self.fail_with(
            USAGE,
            "list",
            connection=self.server.connection,
            environment=self.port,
            says="There is no password of the server. Use --password-file",
        )

    def test_is_no_argument_and_no_setting(self):
        self.fail_with(USAGE, "list", "--password", "x", says="There is no option '--password'")
        settings = self.directory / "sites.ini"
        settings.write_text("[main]\npassword = x\n")
        self.fail_with(
            USAGE,
            "list",
            connection=["--site", "main", "--settings", str(settings)],
            says="sites.ini:2: 'password' is not a setting. Write password-file = FILE.",
        )


class SettingsFileTest(CliTest):
    def setUp(self):
        super().setUp()
        self.file = self.home / "config/tlpacscfg/sites.ini"
        self.file.parent.mkdir(parents=True)

    def test_names_the_ways_to_sites(self):
        self.file.write_text(
            f"# Two sites.\n[main]\nsqlite = {self.database}\n\n[annex]\ndsn = Missing\n"
        )
        self.succeed("--site", "main", "list", connection=[])
        self.succeed("list", "--site", "main", connection=[])
        self.fail_with(NO_CONNECTION, "list", "--site=annex", connection=[], says="Data source")

    def test_may_begin_with_a_byte_order_mark(self):
        self.file.write_text(f"[main]\nsqlite = {self.database}\n", encoding="utf-8-sig")
        self.succeed("list", "--site", "main", connection=[])

    def test_gives_way_to_the_command_line(self):
        self.file.write_text("[main]\nsqlite = missing.db\n")
        self.succeed("list", "--site", "main")

    def test_gives_way_to_a_number_that_is_the_default(self):
        self.file.write_text("[main]\nuser-id = 7\n")
        for option, user in (([], 7), (["--user-id", "0"], 0)):
            port = f"Port={10001 + user}"
            outcome = self.run_program("set", "5", port, "--site", "main", *option)
            self.assertEqual(outcome.code, DONE, outcome.errors)
            stored = self.rows("SELECT last_user_id FROM Interface_PACS_cfg WHERE config_id = 5")
            self.assertEqual(stored, [(user,)])
        self.file.write_text("[main]\nrequest-bytes = 1024\n")
        service = Service(self)
        options = {
            "connection": ["--site", "main", *service.connection],
            "environment": service.environment,
        }
        assign = ["assign", "7", "*", "--yes"]
        self.fail_with(USAGE, *assign, says="where it takes 1024", **options)
        outcome = self.run_program(*assign, "--request-bytes", 1048576, **options)
        self.assertEqual(outcome.code, DONE, outcome.errors)

    def test_gives_way_to_a_flag_of_the_command_line(self):
        self.file.write_text("[main]\nplain-http = yes\n")
        service = Service(self)
        options = {
            "connection": ["--site", "main", *service.connection],
            "environment": service.environment,
        }
        self.fail_with(NO_CONNECTION, "list", says="", **options)
        self.succeed("list", "--plain-http=false", **options)

    def test_is_checked(self):
        def says(text, content, site="main"):
            self.file.write_text(content)
            self.fail_with(USAGE, "list", "--site", site, connection=[], says=text)

        says("There is no site 'man' in", "[main]\n", site="man")
        says("Did you mean 'main'?", "[main]\n", site="man")
        says("sites.ini:2: 'sqlit' is not a setting. Did you mean 'sqlite'?", "[main]\nsqlit = x\n")
        says("sites.ini:2: 'x' is not a number from 1 to 3600.", "[main]\ntimeout = x\n")
        says("sites.ini:2: '-1' is not a number from 1", "[main]\ntimeout = -1\n")
        says("sites.ini:2: '70000' is not a number from 0 to 32767.", "[main]\nuser-id = 70000\n")
        says("sites.ini:2: write yes or no.", "[main]\nplain-http = 1\n")
        self.file.unlink()
        self.fail_with(
            USAGE,
            *("list", "--site", "main"),
            connection=[],
            says="sites.ini. It names sites: a line [main], then lines such as sqlite = FILE.",
        )
