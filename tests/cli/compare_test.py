"""find, where-used, diff and export."""
from harness import DIFFERENCES, DONE, FINDINGS, PASSWORD, USAGE, CliTest, StandIn

HARD_TEXTS = [
    "",
    " outer blanks ",
    '"quoted"',
    "back\\slash \\n \\\\nas\\x",
    "line\r\nbreak\ttab",
    "# no comment",
    "= equals =",
    "Łódź 東京 🩻 e\u0301",
    "yes",
    "-1",
    "'",
    "\x7f\x01",
]


class FindTest(CliTest):
    def test_finds_texts_words_and_names(self):
        rows = self.succeed("find", "NAS01", "--csv").csv()
        self.assertEqual(
            rows[1:],
            [
                ["configuration", "2", "RequestFileName", "\\\\nas01\\ris\\ct\\request.xml"],
                ["configuration", "2", "ResponseFileName", "\\\\nas01\\ris\\ct\\response.xml"],
            ],
        )
        self.assertIn("Broker Extended", self.succeed("find", "broker ext").out)
        self.assertIn("workstation  READ-09  name", self.succeed("find", "read-0?").out)
        self.assertEqual(self.succeed("find", "nowhere").out, "Nothing is found.\n")


class WhereUsedTest(CliTest):
    def test_lists_the_workstations_of_a_configuration(self):
        names = [row[0] for row in self.succeed("where-used", "3", "--csv").csv()[1:]]
        self.assertEqual(names, ["READ-09", "MAMMO-01", "MAMMO-02"])
        self.assertEqual(
            self.succeed("where-used", "broker (old)").out, self.succeed("where-used", "3").out
        )

    def test_knows_a_configuration_that_is_gone_but_still_assigned(self):
        self.assertIn("ANNEX-02", self.succeed("where-used", "11").out)
        for stored in (" 11", "011"):
            self.change(
                "UPDATE System_workstation_cfg SET key_value = ? WHERE pc_name = 'ANNEX-02'", stored
            )
            self.assertIn("ANNEX-02", self.succeed("where-used", "11").out)
            self.assertIn("ANNEX-02", self.succeed("where-used", "0011").out)

    def test_refuses_what_neither_exists_nor_is_used(self):
        self.fail_with(USAGE, "where-used", "13", says="There is no configuration '13'.")

    def test_says_what_cannot_be_read(self):
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 3")
        self.assertIn("READ-09", self.succeed("where-used", "3").out)
        self.fail_with(
            USAGE, "where-used", "Broker (old)", says="configuration 3 cannot be read: Type mismatch"
        )
        self.change("DELETE FROM System_workstation_cfg WHERE key_value = '3'")
        self.fail_with(FINDINGS, "where-used", "3", says=": Configuration 3 cannot be read: Type")

    def test_says_that_nothing_uses_it(self):
        self.change("DELETE FROM System_workstation_cfg WHERE key_value = '3'")
        self.assertEqual(self.succeed("where-used", "3").out, "No workstation uses it.\n")


class FolderTest(CliTest):
    def export(self, name="out"):
        folder = self.directory / name
        self.assertEqual(self.succeed("export", folder).out, "")
        return folder

    def differences(self, *arguments, code=DIFFERENCES, **options):
        outcome = self.run_program("diff", "--csv", *arguments, **options)
        self.assertEqual((outcome.code, outcome.errors), (code, ""), outcome.out)
        return outcome.csv()[1:]

    def site_file(self):
        settings = self.directory / "sites.ini"
        settings.write_text(f"[main]\nsqlite = {self.database}\n")
        return ["--settings", str(settings)]


class ExportTest(FolderTest):
    def test_writes_one_field_a_line_in_the_order_of_the_table(self):
        folder = self.export()
        lines = (folder / "configuration-00008.txt").read_text("utf-8").split("\n")
        self.assertEqual(lines[0], "configID = 8")
        self.assertEqual(lines[1:4], ["PACSType = McKesson - XML", "Description = Kårdiologi Łódź", "RequestFileName = D:\\wymiana\\zlecenie.xml"])
        self.assertEqual(len(lines), 39)
        assignments = (folder / "assignments.csv").read_text("utf-8").split("\n")
        self.assertEqual(assignments[:4], ["workstation,configuration", "ANNEX-01,7", "ANNEX-02,11", "ANNEX-03,"])
        self.assertEqual(assignments[1:-1], sorted(assignments[1:-1]))

    def test_writes_the_same_again_and_removes_what_is_gone(self):
        folder = self.export()
        (folder / "notes.txt").write_text("mine")
        before = {file.name: file.stat().st_mtime_ns for file in folder.iterdir()}
        self.export()
        self.assertEqual(before, {file.name: file.stat().st_mtime_ns for file in folder.iterdir()})
        self.change("DELETE FROM Interface_PACS_cfg WHERE config_id = 9")
        self.export()
        self.assertEqual(set(before) - {file.name for file in folder.iterdir()}, {"configuration-00009.txt"})

    def test_loses_no_text(self):
        columns = ["request_filename", "response_filename", "string1", "string4"]
        for place, text in enumerate(HARD_TEXTS):
            number = 100 + place
            self.change(
                "INSERT INTO Interface_PACS_cfg SELECT ?" + ", ".join([""] + [row[1] for row in self.rows("PRAGMA table_info(Interface_PACS_cfg)")][1:])
                + " FROM Interface_PACS_cfg WHERE config_id = 1", number)
            for column in columns:
                self.change(f"UPDATE Interface_PACS_cfg SET {column} = ?, flag5 = -1, flag6 = 99999 WHERE config_id = ?", text, number)
        folder = self.export()
        self.assertEqual(self.differences("--last-change", folder, "site:main", *self.site_file(), code=DONE), [])
        written = (folder / "configuration-00100.txt").read_text("utf-8")
        self.assertIn("\nUpdateXMLData = -1\nPort = 99999\n", written)
        self.assertIn('\nCustomXMLFile =\n', written)
        self.assertIn('RequestFileName = " outer blanks "', (folder / "configuration-00101.txt").read_text("utf-8"))

    def test_says_what_the_folder_lacks(self):
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 2")
        self.fail_with(FINDINGS, "export", "out", says="configuration 2 cannot be read")
        self.assertFalse((self.directory / "out/configuration-00002.txt").exists())

    def test_keeps_the_file_of_what_cannot_be_read(self):
        folder = self.export()
        file = folder / "configuration-00002.txt"
        before = file.read_bytes()
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 2")
        self.change("DELETE FROM Interface_PACS_cfg WHERE config_id = 9")
        self.fail_with(FINDINGS, "export", folder, says="configuration 2 cannot be read")
        self.assertEqual(file.read_bytes(), before)
        self.assertFalse((folder / "configuration-00009.txt").exists())

    def test_refuses_a_folder_that_cannot_be_written(self):
        (self.directory / "file").write_text("")
        self.fail_with(USAGE, "export", "file/out", says="cannot be written")


class DiffTest(FolderTest):
    def test_compares_two_configurations_in_words(self):
        rows = self.differences("3", "broker, reading room 4")
        self.assertIn(["configuration", "3", "PACSType", "COM - Broker", "COM - Broker Extended"], rows)
        self.assertNotIn("configID", [row[2] for row in rows])
        self.assertNotIn("LastUpdateDate", [row[2] for row in rows])
        self.assertIn("LastUpdateDate", [row[2] for row in self.differences("3", "4", "--last-change")])
        self.assertEqual(self.succeed("diff", "3", "3").out, "There is no difference.\n")

    def test_compares_a_folder_with_a_site_and_with_another_folder(self):
        old = self.export("old")
        self.change("UPDATE Interface_PACS_cfg SET flag6 = 10001 WHERE config_id = 5")
        self.change("DELETE FROM Interface_PACS_cfg WHERE config_id = 9")
        self.change("UPDATE System_workstation_cfg SET key_value = '2' WHERE pc_name = 'ANNEX-01'")
        self.change("DELETE FROM System_pc_names WHERE pc_name = 'ANNEX-03'")
        expected = [
            ["configuration", "5", "Port", "10000", "10001"],
            ["configuration", "9", "configuration", "Ward round, no integration", ""],
            ["workstation", "ANNEX-01", "configuration", "7", "2"],
            ["workstation", "ANNEX-03", "workstation", "ANNEX-03", ""],
        ]
        self.assertEqual(self.differences(old, "site:main", *self.site_file(), connection=[]), expected)
        self.assertEqual(self.differences(old, self.export("new"), connection=[]), expected)

    def test_compares_two_sites(self):
        server = StandIn(self)
        settings = self.directory / "sites.ini"
        settings.write_text(
            f"[file]\nsqlite = {self.database}\n"
            "[server]\nserver = 127.0.0.1\ndatabase = Talora\nuser = anna\n"
        )
        compare = ["site:file", "site:server", "--settings", settings]
        options = {"connection": [], "environment": server.environment}
        self.assertEqual(self.differences(*compare, code=DONE, **options), [])
        self.change("UPDATE Interface_PACS_cfg SET pacs_type = 3 WHERE config_id = 1")
        self.assertEqual(
            self.differences(*compare, **options),
            [["configuration", "1", "PACSType", "McKesson - XML", "Standard - XML"]],
        )

    def test_takes_passwords_from_the_command_line(self):
        server = StandIn(self)
        folder = self.export()
        environment = {"TDSPORT": server.environment["TDSPORT"]}
        old, new = self.directory / "old-password", self.directory / "password"
        old.write_text("old")
        new.write_text(PASSWORD)
        settings = self.directory / "sites.ini"
        settings.write_text(
            "[main]\nserver = 127.0.0.1\ndatabase = Talora\nuser = anna\n"
            f"password-file = {old}\n"
        )
        for sites, options, typed in (
            ([folder, "site:main"], ["--password-stdin"], f"{PASSWORD}\n"),
            ([folder, "site:main"], ["--password-file", new], ""),
            (["site:main", "site:main"], ["--password-stdin"], f"{PASSWORD}\n{PASSWORD}\n"),
        ):
            self.differences(
                *(*sites, "--settings", settings, *options),
                code=DONE, connection=[], environment=environment, input=typed,
            )
        self.assertEqual(server.passwords(), [PASSWORD] * 4)

    def test_refuses_a_folder_with_every_error_in_it(self):
        folder = self.export()
        file = folder / "configuration-00001.txt"
        text = file.read_text("utf-8").replace("PACSType = Standard", "PACSType = Standart")
        file.write_text(text.replace("Port = 0\n", "Prot = 0\nDeleteFlag = no\nnonsense\n"), "utf-8")
        (folder / "assignments.csv").write_text('workstation,configuration\nA,1,2\n"B,1\n')
        outcome = self.fail_with(USAGE, "diff", folder, folder, says="cannot be used.")
        for error in (
            "configuration-00001.txt:2: PACSType: 'Standart - XML' is none of its values. Did you mean 'Standard - XML'?",
            "configuration-00001.txt:23: There is no field 'Prot'. Did you mean 'Port'?",
            "configuration-00001.txt:25: this is not FIELD = VALUE",
            "configuration-00001.txt:26: the field DeleteFlag is there twice",
            "configuration-00001.txt: the field Port is missing",
            "assignments.csv:2: a line has a workstation and a configuration",
            "assignments.csv:3: ",
        ):
            self.assertIn(error, outcome.errors)

    def test_compares_workstations_whatever_the_letter_case(self):
        old = self.export("old")
        self.change("UPDATE System_pc_names SET pc_name = 'annex-01' WHERE pc_name = 'ANNEX-01'")
        self.change(
            "UPDATE System_workstation_cfg SET pc_name = 'annex-01' WHERE pc_name = 'ANNEX-01'"
        )
        self.assertEqual(self.differences(old, "site:main", *self.site_file(), code=DONE), [])

    def test_refuses_a_site_that_it_cannot_read_whole(self):
        folder = self.export()
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 2")
        outcome = self.fail_with(
            FINDINGS,
            *("diff", folder, "site:main", *self.site_file()),
            says="The site 'main' cannot be compared.",
        )
        self.assertIn("configuration 2 cannot be read: Type mismatch", outcome.errors)
        self.assertEqual(outcome.out, "")

    def test_compares_only_what_is_alike(self):
        self.fail_with(USAGE, "diff", "1", self.export(), says="Compare two configurations, or")
