"""doctor: whether the component can work with the site."""
import shutil
import socket
import sqlite3
import time

from harness import DEMO, DONE, FINDINGS, NO_CONNECTION, USAGE, CliTest, Service, StandIn


class DoctorTest(CliTest):
    def examine(self, *arguments, code=DONE, errors="", **options):
        """The health and the finding of each subject."""
        outcome = self.run_program("doctor", "--json", *arguments, **options)
        self.assertEqual((outcome.code, outcome.errors), (code, errors))
        document = outcome.json()
        self.assertEqual(document["schema"], "tlpacscfg/diagnosis/1")
        for line in document["diagnosis"]:
            self.assertEqual(line["advice"] is None, line["health"] == "ok" or not line["advice"])
        return {line["subject"]: (line["health"], line["finding"]) for line in document["diagnosis"]}

    def test_finds_a_sound_site_sound(self):
        found = self.examine("--root", DEMO / "site")
        self.assertEqual({health for health, _ in found.values()}, {"ok"})
        self.assertIn("sqlite", found["driver"][1])
        self.assertEqual(found["configurations"][1], "10 stored")
        self.assertEqual(found["workstations"][1], "40 listed")
        self.assertEqual(found["ports"][1], "10000 in configuration 5")
        self.assertEqual(found["prompts folder"][1], f"{DEMO}/site: 3 mapping files")

    def test_changes_nothing(self):
        before = self.database.read_bytes()
        self.examine()
        self.assertEqual(self.database.read_bytes(), before)

    def examine_server(self, code=DONE, *arguments, environment=None, **traits):
        server = StandIn(self, **traits)
        self.addCleanup(shutil.rmtree, server.path.parent, ignore_errors=True)
        found = self.examine(
            *arguments,
            code=code,
            connection=server.connection,
            environment={**server.environment, **(environment or {})},
        )
        server.site.reset()
        shutil.rmtree(server.path.parent)
        return found

    def test_says_what_it_could_not_look_at(self):
        found = self.examine()
        for subject in ("INI file", "prompts folder"):
            self.assertEqual(found[subject], ("warning", "not looked at"))

    def test_examines_every_path(self):
        service = Service(self)
        found = self.examine(connection=service.connection, environment=service.environment)
        self.assertEqual(found["encryption"], ("ok", "TLS"))
        self.assertEqual(found["configurations"], ("ok", "10 stored"))
        self.assertEqual(found["clock"][0], "ok")
        found = self.examine(connection=["--offline", str(DEMO / "stand-alone/SYSTEM.MDB")])
        self.assertEqual(found["configurations"], ("ok", "8 stored"))

    def test_examines_a_server(self):
        found = self.examine_server()
        self.assertIn("tdsodbc", found["driver"][1])
        self.assertRegex(found["database"][1], r"^Microsoft SQL Server \d")
        expected = {
            "login": "anna",
            "rights": "the login may change the site",
            "login language": "us_english",
            "date order": "year, month, day",
            "collation": "SQL_Latin1_General_CP1_CI_AS",
            "code page": "none: every text is Unicode",
            "column types": "as the component needs them",
            "configurations": "10 stored",
        }
        for subject, finding in expected.items():
            self.assertEqual(found[subject], ("ok", finding))
        self.assertEqual(found["clock"][0], "ok")
        self.assertEqual(
            found["encryption"], ("warning", "none: others on the network can read along")
        )

    def test_sees_that_a_connection_is_encrypted(self):
        drivers = self.directory / "freetds.conf"
        drivers.write_text("[global]\n\tencryption = require\n")
        found = self.examine_server(encrypts=True, environment={"FREETDSCONF": str(drivers)})
        self.assertEqual(found["encryption"], ("ok", "TLS"))

    def test_finds_what_is_wrong_with_a_server(self):
        found = self.examine_server(FINDINGS, dayFirst=True, collation="Latin1_General_CS_AS")
        self.assertEqual(found["login language"], ("ok", "British"))
        self.assertEqual(
            found["date order"],
            ("error", "year, day, month: the component's dates are misread, or refused"),
        )
        self.assertEqual(
            found["collation"],
            ("error", "Latin1_General_CS_AS tells upper case from lower case"),
        )
        found = self.examine_server(codePage=True, clock=30)
        self.assertEqual(found["code page"][0], "warning")
        self.assertRegex(
            found["code page"][1], "^letters outside of code page 1252 are lost in description "
        )
        self.assertEqual(found["clock"][0], "warning")
        self.assertRegex(found["clock"][1], "(30|29) minutes after this computer$")
        self.assertRegex(self.examine_server(clock=-2000)["clock"][1], "minutes before this")
        found = self.examine_server(
            FINDINGS, denied=["UPDATE on Interface_PACS_cfg", "DELETE on System_workstation_cfg"]
        )
        self.assertEqual(
            found["rights"],
            (
                "error",
                "the login lacks UPDATE on Interface_PACS_cfg, DELETE on System_workstation_cfg",
            ),
        )

    def test_says_what_a_server_does_not_tell(self):
        self.assertEqual(
            self.examine_server(serverState=False)["encryption"], ("warning", "cannot be seen")
        )
        found = self.examine_server(asksNothing=True)
        for subject in ("login", "rights", "login language", "encryption", "collation"):
            self.assertEqual(found[subject], ("warning", "cannot be seen"))
        self.assertEqual(found["date order"], ("warning", "cannot be seen"))

    def test_ends_within_its_time_limit(self):
        server = StandIn(self)
        options = {"connection": server.connection, "environment": server.environment}
        server.site.faults.add({"batch": "SELECT encrypt_option", "stalls": "before"})
        begun = time.monotonic()
        found = self.examine("--time-limit", "1", code=FINDINGS, **options)
        self.assertLess(time.monotonic() - begun, 10)
        self.assertEqual(found["login"], ("ok", "anna"))
        self.assertEqual(found["encryption"], ("error", "no answer within the time limit of 1 s"))
        for subject in ("tables", "ports", "clock", "prompts folder"):
            self.assertEqual(found[subject], ("warning", "not looked at within the time limit of 1 s"))
        (server.path.parent / "server-script.json").write_text('{"login": "stall"}')
        found = self.examine("--time-limit", "1", code=NO_CONNECTION, **options)
        self.assertEqual(found["connection"], ("error", "no answer within the time limit of 1 s"))
        self.fail_with(USAGE, "doctor", "--time-limit", "0", says="--time-limit: '0' is not a number from 1")

    def test_tells_what_it_found_before_the_connection_was_lost(self):
        server = StandIn(self)
        options = {"connection": server.connection, "environment": server.environment}
        server.site.faults.add({"batch": "SELECT @@LANGUAGE", "hangsUp": "before"})
        found = self.examine(code=NO_CONNECTION, **options)
        self.assertEqual(found["login"], ("ok", "anna"))
        self.assertEqual(found["connection"][0], "error")
        self.assertNotIn("login language", found)

    def test_looks_at_the_settings_file(self):
        settings = self.directory / "sites.ini"
        settings.write_text(f"[main]\nsqlite = {self.database}\n")
        connection = ["--settings", str(settings)]
        found = self.examine("--site", "main", connection=connection)
        self.assertEqual(found["settings file"], ("ok", f"{settings}, site main"))
        found = self.examine("--site", "man", connection=connection, code=USAGE)
        self.assertEqual(
            found["settings file"],
            ("error", f"There is no site 'man' in {settings}. Did you mean 'main'?"),
        )
        self.assertEqual(
            self.examine(connection=[*connection, *self.connection])["settings file"],
            ("ok", f"{settings}, not used without --site"),
        )

    def test_finds_a_password_that_others_can_read(self):
        file = self.directory / "password"
        file.write_text("secret\n")
        for mode, expected in (
            (0o644, ("warning", f"{file} can be read by others")),
            (0o640, ("warning", f"{file} can be read by others")),
            (0o600, ("ok", str(file))),
        ):
            file.chmod(mode)
            self.assertEqual(self.examine("--password-file", file)["password file"], expected)
        self.assertNotIn("password file", self.examine())

    def test_looks_at_the_ini_file_and_the_prompts_folder(self):
        ini = self.directory / "TALORA.INI"
        errors = (
            "tlpacscfg: Error - NetworkRootDir was not specified in the TALORA.INI "
            "Configuration file.\n"
        )
        found = self.examine("--ini", ini, code=FINDINGS, errors=errors)
        self.assertEqual(found["INI file"], ("error", f"there is no file '{ini}'"))
        ini.write_text("[Other]\nNetworkRootDir=x\n")
        found = self.examine("--ini", ini, code=FINDINGS, errors=errors)
        self.assertEqual(found["INI file"], ("error", f"{ini} names no NetworkRootDir"))
        ini.write_text(f"[System]\nNetworkRootDir={DEMO}/site\n")
        found = self.examine("--ini", ini)
        self.assertEqual(found["INI file"], ("ok", f"{ini}: NetworkRootDir is {DEMO}/site"))
        self.assertEqual(found["prompts folder"], ("ok", f"{DEMO}/site: 3 mapping files"))
        found = self.examine("--root", self.directory)
        self.assertEqual(found["INI file"], ("ok", "not needed with --root"))
        self.assertEqual(
            found["prompts folder"],
            ("warning", f"{self.directory}: no mapping files, or TALORA/PROMPTS cannot be read"),
        )

    def test_finds_two_listeners_with_one_port_on_a_workstation(self):
        self.change("UPDATE Interface_PACS_cfg SET pacs_type = 8, flag6 = 10000 WHERE config_id = 6")
        self.assertEqual(self.examine()["ports"], ("ok", "10000 in configuration 5, 6"))
        for number in (5, 6):
            self.change(
                "INSERT INTO System_workstation_cfg VALUES ('WARD-3A', ?, 'PACSConfig', ?, 0, 0)",
                number,
                str(number),
            )
        found = self.examine(code=FINDINGS)
        self.assertEqual(
            found["ports"],
            (
                "error",
                "WARD-3A: The configurations 5 and 6 both listen on port 10000 of this workstation.",
            ),
        )

    def test_tries_the_port_of_this_computer(self):
        name = socket.gethostname().upper()
        with socket.create_server(("", 0)) as listener:
            port = listener.getsockname()[1]
            self.change("UPDATE Interface_PACS_cfg SET flag6 = ? WHERE config_id = 5", port)
            self.assertNotIn("ports here", self.examine())
            self.change("INSERT INTO System_pc_names VALUES (?, NULL, 1)", name)
            self.change(
                "INSERT INTO System_workstation_cfg VALUES (?, 38, 'PACSConfig', '5', 0, 0)", name
            )
            self.assertEqual(
                self.examine()["ports here"],
                (
                    "warning",
                    f"port {port} of configuration 5 cannot be opened on this computer: "
                    "Address already in use",
                ),
            )
        self.assertEqual(
            self.examine()["ports here"],
            ("ok", f"port {port} of configuration 5 can be opened on this computer"),
        )

    def test_says_that_there_is_no_connection(self):
        found = self.examine(code=NO_CONNECTION, connection=["--dsn", "Missing"])
        self.assertIn("SQLite3", found["installed drivers"][1])
        self.assertEqual(found["connection"][0], "error")
        self.assertIn("Data source name not found", found["connection"][1])

    def test_finds_missing_tables(self):
        self.change("DROP TABLE System_offline_db_updates")
        found = self.examine(code=FINDINGS)
        self.assertEqual(
            found["offline marks"], ("error", "System_offline_db_updates cannot be read")
        )
        self.change("DROP TABLE System_pc_names")
        self.assertEqual(
            self.examine(code=FINDINGS)["tables"],
            ("error", "HY000: [SQLite]no such table: System_pc_names (1)"),
        )

    def test_finds_wrong_types_rows_that_should_be_one_and_rows_that_cannot_be_read(self):
        columns = [row[1] for row in self.rows("PRAGMA table_info(Interface_PACS_cfg)")]
        self.database = self.make_database("loose.db", rows=None)
        self.connection = ["--sqlite", str(self.database)]
        self.change("DROP TABLE Interface_PACS_cfg")
        kinds = {"description": "integer", "flag6": "varchar(9)"}
        self.change(
            "CREATE TABLE Interface_PACS_cfg ("
            + ", ".join(f"{name} {kinds.get(name, self.kind(name))}" for name in columns)
            + ")"
        )
        with sqlite3.connect(self.database) as database:
            database.executescript((DEMO / "site.sql").read_text(encoding="utf-8"))
        self.change("UPDATE Interface_PACS_cfg SET config_id = 1 WHERE config_id = 2")
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 3")
        found = self.examine(code=FINDINGS)
        self.assertEqual(
            found["column types"],
            ("error", "numbers and texts are exchanged in description flag6"),
        )
        self.assertEqual(found["unique numbers"], ("error", "1 is stored more than once"))
        self.assertEqual(
            found["configurations"], ("error", "9 stored, 1 more cannot be read")
        )

    @staticmethod
    def kind(name):
        texts = ("description", "request_filename", "response_filename")
        return "varchar(99)" if name in texts or name.startswith("string") else "integer"
