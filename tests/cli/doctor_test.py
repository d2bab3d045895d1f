"""doctor: whether the component can work with the site."""
import sqlite3

from harness import DEMO, DONE, FINDINGS, NO_CONNECTION, CliTest, Service, StandIn


class DoctorTest(CliTest):
    def examine(self, *arguments, code=DONE, **options):
        """The health and the finding of each subject."""
        outcome = self.run_program("doctor", "--json", *arguments, **options)
        self.assertEqual((outcome.code, outcome.errors), (code, ""))
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

    def test_says_what_it_could_not_look_at(self):
        self.assertEqual(self.examine()["prompts folder"], ("warning", "not looked at"))

    def test_examines_every_path(self):
        service = Service(self)
        found = self.examine(connection=service.connection, environment=service.environment)
        self.assertEqual(found["encryption"], ("ok", "TLS"))
        self.assertEqual(found["configurations"], ("ok", "10 stored"))
        found = self.examine(connection=["--offline", str(DEMO / "stand-alone/SYSTEM.MDB")])
        self.assertEqual(found["configurations"], ("ok", "8 stored"))

    def test_examines_a_server(self):
        server = StandIn(self)
        found = self.examine(connection=server.connection, environment=server.environment)
        self.assertIn("tdsodbc", found["driver"][1])
        self.assertEqual(found["configurations"], ("ok", "10 stored"))
        # The stand-in does not know these questions, as a login without rights would not.
        for subject in ("login", "login language", "encryption", "collation", "date order"):
            self.assertEqual(found[subject], ("warning", "cannot be seen"))

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
            found["configurations"], ("error", "9 stored, 1 of them cannot be read")
        )

    @staticmethod
    def kind(name):
        texts = ("description", "request_filename", "response_filename")
        return "varchar(99)" if name in texts or name.startswith("string") else "integer"
