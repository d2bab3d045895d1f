"""check: what the window would say, and what no window sees."""
from harness import DEMO, DONE, FINDINGS, REFUSED, CliTest, Service, StandIn

ANNEX = (
    "error",
    "assignment-to-missing-configuration",
    None,
    "ANNEX-02",
    None,
    "It has the configuration 11, which does not exist.",
)


class CheckTest(CliTest):
    def findings(self, *arguments, code=FINDINGS, **options):
        outcome = self.run_program("check", "--json", *arguments, **options)
        self.assertEqual((outcome.code, outcome.errors), (code, ""))
        document = outcome.json()
        self.assertEqual(document["schema"], "tlpacscfg/findings/1")
        members = ["severity", "rule", "configuration", "workstation", "field", "message"]
        for finding in document["findings"]:
            self.assertEqual(list(finding), members)
        return [tuple(finding.values()) for finding in document["findings"]]

    def set(self, number, **columns):
        for name, value in columns.items():
            self.change(f"UPDATE Interface_PACS_cfg SET {name} = ? WHERE config_id = ?", value, number)

    def found_for(self, number, *arguments):
        """(rule, field, message) of one configuration."""
        return [
            (rule, field, message)
            for _, rule, configuration, _, field, message in self.findings(*arguments)
            if configuration == str(number)
        ]

    def test_finds_what_the_demonstration_site_has_on_purpose(self):
        self.assertEqual(self.findings(), [ANNEX])
        self.assertEqual(self.findings("--root", DEMO / "site"), [ANNEX])

    def test_says_that_nothing_is_wrong(self):
        self.change("DELETE FROM System_workstation_cfg WHERE pc_name = 'ANNEX-02'")
        self.assertEqual(self.findings(code=DONE), [])
        self.assertEqual(self.succeed("check").out, "Nothing is wrong.\n")

    def test_finds_the_same_through_every_path(self):
        for site in (StandIn(self), Service(self)):
            found = self.findings(connection=site.connection, environment=site.environment)
            self.assertEqual(found, [ANNEX])

    def test_validates_as_the_window_does(self):
        self.set(2, flag1=8)
        self.set(3, description=" ")
        self.set(4, flag6=65001)
        self.set(5, string2="")
        self.set(9, description="default configuration")
        expected = {
            2: "The 'Confirm Start Integration' microphone button and the 'Switch To Manual Entry' "
            "microphone button cannot be the same button. Please change one and save again.",
            3: "The Configuration Description Field cannot be blank.",
            4: "Port is not valid.  Please enter a port number between 0 and 65000.",
            5: "Applicable Fields must be set if the URL Address contains the {AF} field marker.",
            9: "The configuration name 'default configuration' is already in use by another "
            "configuration.  Please change the configuration name in the 'Description' field.",
        }
        for number, message in expected.items():
            self.assertEqual(self.found_for(number), [("validation", None, message)])

    def test_finds_what_saving_in_the_window_would_change(self):
        self.set(3, ins_ovr_before_pacs=8)
        self.set(9, flag4=2)
        self.assertEqual(
            self.found_for(3),
            [
                (
                    "changed-by-rules",
                    "CofirmStartTrigger",
                    "It is 'INS/OVWR'; the window would store '<None>'.",
                )
            ],
        )
        self.assertEqual([finding[1] for finding in self.found_for(9)], ["PollingAction"])
        self.assertEqual(self.findings("--errors"), [ANNEX])

    def test_finds_codes_that_are_no_options(self):
        self.set(9, pacs_type=6)
        self.assertIn(
            ("unknown-option", "PACSType", "The value 6 is none of its options."),
            self.found_for(9),
        )

    def test_finds_texts_that_cannot_be_saved_again(self):
        self.set(2, string4="C:\\o'neil")
        self.set(6, string2="1''2")
        self.assertEqual(
            self.found_for(2),
            [
                (
                    "text-not-savable",
                    "ContextXMLFile",
                    "It holds a single quote, with which the configuration cannot be saved again.",
                )
            ],
        )
        self.assertEqual(self.found_for(6), [])

    def test_finds_missing_map_files_where_it_can_look(self):
        self.set(7, string1="Gone.xml")
        self.assertEqual(self.found_for(7), [])
        self.assertEqual(
            self.found_for(7, "--root", DEMO / "site")[0],
            (
                "map-file-missing",
                "CustomXMLFile",
                "There is no file 'Gone.xml' in the prompts directory.",
            ),
        )
        service = Service(self)
        found = self.findings(
            "--root", "Z:\\site", connection=service.connection, environment=service.environment
        )
        self.assertIn("map-file-missing", [finding[1] for finding in found])

    def test_takes_the_root_directory_from_the_ini_file(self):
        self.set(7, string1="Gone.xml")
        ini = self.directory / "site.ini"
        ini.write_text(f"[System]\nNetworkRootDir={DEMO}/site\n")
        self.assertEqual(self.found_for(7, "--ini", ini)[0][0], "map-file-missing")

    def test_finds_rows_that_nobody_can_load(self):
        self.set(2, flag1="abc")
        self.change("UPDATE System_workstation_cfg SET key_value = 'x' WHERE pc_name = 'READ-01'")
        self.change("UPDATE System_pc_names SET flag2 = NULL WHERE pc_name = 'READ-02'")
        rules = [(rule, configuration or name) for _, rule, configuration, name, _, _ in self.findings()]
        self.assertEqual(
            rules[:3],
            [
                ("unreadable-configuration", "2"),
                ("unreadable-assignment", "READ-01"),
                ("unreadable-workstation", "READ-02"),
            ],
        )
        # Workstations that use what cannot be read have something that exists.
        self.assertEqual(len(rules), 4)

    def test_finds_rows_that_should_be_one(self):
        self.database = self.make_database("loose.db", rows=None)
        self.connection = ["--sqlite", str(self.database)]
        for table in ("Interface_PACS_cfg", "System_pc_names", "System_workstation_cfg"):
            columns = [row[1] for row in self.rows(f"PRAGMA table_info({table})")]
            self.change(f"DROP TABLE {table}")
            self.change(f"CREATE TABLE {table} ({', '.join(columns)})")
        database_rows = (DEMO / "site.sql").read_text(encoding="utf-8")
        import sqlite3

        with sqlite3.connect(self.database) as database:
            database.executescript(database_rows)
        self.change("INSERT INTO Interface_PACS_cfg SELECT * FROM Interface_PACS_cfg WHERE config_id = 9")
        self.change("INSERT INTO System_pc_names VALUES('read-03', '', 0)")
        self.set(4, flag6=10000)
        self.change("UPDATE System_workstation_cfg SET key_value = '5' WHERE pc_name = 'READ-04'")
        self.change(
            "INSERT INTO System_workstation_cfg VALUES('READ-04', 39, 'PACSConfig', '4', -1, 0)"
        )
        self.change(
            "INSERT INTO System_workstation_cfg VALUES('OLD-PC', 38, 'PACSConfig', '4', -1, 0)"
        )
        found = self.findings()
        rules = {finding[1]: finding for finding in found}
        self.assertEqual(rules["duplicate-number"][2], "9")
        self.assertEqual(rules["duplicate-workstation"][3].upper(), "READ-03")
        self.assertEqual(rules["several-assignments"][3:], ("READ-04", None, "2 rows assign configurations to it."))
        self.assertEqual(
            rules["port-used-twice"][5],
            "The configurations 5 and 4 both listen on port 10000 of this workstation.",
        )
        self.assertEqual(
            rules["assignment-of-unlisted-workstation"][::3], ("warning", "OLD-PC")
        )

    def test_reports_a_refusal_of_the_database(self):
        self.change("DROP TABLE System_pc_names")
        self.fail_with(REFUSED, "check", says="no such table: System_pc_names")
