"""set, copy, delete, import and edit."""
import stat

from change_test import CONFIGURATIONS, ChangeTest
from harness import CONFLICT, DIFFERENCES, FINDINGS, REFUSED, USAGE, Service


class SetTest(ChangeTest):
    def field(self, name, number):
        return self.rows(f"SELECT {name} FROM Interface_PACS_cfg WHERE config_id = {number}")[0][0]

    def test_sets_fields_in_words_and_codes(self):
        outcome = self.change_site(
            "--json", "set", "5", "Port=10001", "DeleteFlag=yes", "--user-id", "77"
        )
        self.assertEqual(
            [(row["field"], row["before"], row["after"]) for row in outcome.json()["changes"]],
            [("Port", "10000", "10001"), ("DeleteFlag", "no", "yes")],
        )
        self.assertEqual(
            (self.field("flag6", 5), self.field("flag7", 5), self.field("last_user_id", 5)),
            (10001, 1, 77),
        )

    def test_selects_by_pattern_and_condition(self):
        self.change_site("set", "c*", "--where", "BiDirectional=yes", "RequestFileName=C:\\x.xml")
        changed = "SELECT config_id FROM Interface_PACS_cfg WHERE request_filename = 'C:\\x.xml'"
        self.assertEqual(self.rows(changed), [(2,), (7,)])

    def test_keeps_quotes_that_another_program_stored(self):
        stored = "C:\\it's ''x''.xml"
        self.change("UPDATE Interface_PACS_cfg SET string5 = ? WHERE config_id = 7", stored)
        self.change_site("set", "7", "RequestFileName=C:\\o'neil.xml")
        self.assertEqual(self.field("string5", 7), stored)
        self.assertEqual(self.field("request_filename", 7), "C:\\o'neil.xml")
        self.change_site("undo")
        self.assertEqual(self.field("string5", 7), stored)

    def test_refuses_what_the_window_refuses(self):
        def says(text, *arguments):
            self.refuse(USAGE, "set", *arguments, says=text)

        says("The rules do not allow this. Nothing was changed.\nConfiguration 5: ", "5", "Port=0")
        says("The rules do not allow this.", "5", "Description=")
        says("The description of the default configuration, 1, cannot be", "1", "Description=X")
        says("between 0 and 65000", "4", "Port=99999")
        self.change("UPDATE Interface_PACS_cfg SET flag6 = 65001 WHERE config_id = 4")
        says("between 0 and 65000", "4", "Port=99999")
        says("between 0 and 65000", "4", "DeleteFlag=yes")
        says("It holds a single quote", "7", "CloseDictationFile=C:\\it's.xml")
        says("There is no field 'Prot'. Did you mean 'Port'?", "5", "Prot=1")
        says("configID cannot be set.", "5", "configID=6")
        says("Write FIELD=VALUE for what to set.", "5")
        says("No configuration is named. Nothing was changed.", "Port=1")
        says("No configuration fits the pattern 'x*'.", "x*", "Port=1")
        says("No configuration fits.", "5", "--where", "Port=7", "Port=1")

    def test_names_the_fields_that_somebody_else_changed_and_who(self):
        plan = self.directory / "p"
        self.change_site("set", "5", "Port=10001", "--plan", plan, code=DIFFERENCES)
        self.change(
            "UPDATE Interface_PACS_cfg SET flag7 = 1, last_user_id = 9, "
            "last_change_date = '2026-03-04 05:06:07' WHERE config_id = 5"
        )
        self.refuse(
            CONFLICT,
            *("apply", plan),
            says="Configuration 5 was changed by user 9 on 2026-03-04 05:06:07:\n"
            "  DeleteFlag was 'no' and is 'yes'.",
        )
        self.change("DELETE FROM Interface_PACS_cfg WHERE config_id = 5")
        self.refuse(CONFLICT, "apply", plan, says="Configuration 5 was deleted.")


class CopyTest(ChangeTest):
    def test_stores_the_fields_under_a_new_number(self):
        self.change_site("copy", "5", "Second listener", "Port=10001")
        query = "SELECT pacs_type, response_filename, string2 FROM Interface_PACS_cfg"
        rows = self.rows(query + " WHERE config_id IN (5, 13) ORDER BY config_id")
        self.assertEqual(rows[0], rows[1])
        self.change_site("copy", "5", "Third", "--number", "20", "Port=10002")
        numbers = [row[0] for row in self.rows(CONFIGURATIONS)]
        self.assertEqual(numbers[-2:], [13, 20])

    def test_names_who_copies(self):
        self.change("UPDATE Interface_PACS_cfg SET last_user_id = 9 WHERE config_id = 1")
        self.change_site("copy", "1", "New", "--user-id", "77")
        user = "SELECT last_user_id FROM Interface_PACS_cfg WHERE description = 'New'"
        self.assertEqual(self.rows(user), [(77,)])

    def test_is_undone_although_a_workstation_had_the_number_before(self):
        self.change("UPDATE System_workstation_cfg SET key_value = '13' WHERE pc_name = 'READ-01'")
        before = self.rows(CONFIGURATIONS)
        self.change_site("copy", "1", "Spare")
        self.assertEqual(self.rows("SELECT MAX(config_id) FROM Interface_PACS_cfg"), [(13,)])
        self.change_site("undo", "--yes")
        self.assertEqual(self.rows(CONFIGURATIONS), before)

    def test_refuses_a_number_and_a_description_that_are_taken(self):
        self.refuse(
            USAGE, "copy", "1", "New", "--number", "7", says="There is a configuration 7."
        )
        self.refuse(
            USAGE, "copy", "1", "New", "--number", "32768", says="'32768' is not a number from 1 to 32767."
        )
        self.refuse(USAGE, "copy", "1", "O'Neil Clinic", says="The rules do not allow this.")
        self.refuse(USAGE, "copy", "1", "New", "x", says="'x' is no FIELD=VALUE.")


    def test_passes_over_the_number_of_a_row_that_cannot_be_read(self):
        self.change_site("copy", "1", "Last")
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 13")
        outcome = self.change_site("copy", "1", "New")
        self.assertIn("configuration 13 cannot be read: ", outcome.errors)
        new = "SELECT config_id FROM Interface_PACS_cfg WHERE description = 'New'"
        self.assertEqual(self.rows(new), [(14,)])
        says = "There is a configuration 13."
        self.refuse(USAGE, "copy", "1", "Other", "--number", "13", says=says)


class DeleteTest(ChangeTest):
    def test_deletes_what_no_workstation_uses_and_undo_brings_it_back(self):
        self.change_site("copy", "1", "Spare")
        before = self.rows(CONFIGURATIONS)
        self.refuse(
            USAGE,
            *("delete", "Spare"),
            says="This deletes configurations. Nothing was changed. It needs --yes.",
        )
        self.change_site("delete", "Spare", "--yes")
        self.assertEqual(self.rows(CONFIGURATIONS), before[:-1])
        self.change_site("undo")
        names = [column for column in range(len(before[0])) if column != 15]
        self.assertEqual(
            [[row[column] for column in names] for row in self.rows(CONFIGURATIONS)],
            [[row[column] for column in names] for row in before],
        )

    def test_refuses_what_a_workstation_uses(self):
        self.refuse(
            USAGE,
            *("delete", "8", "--yes"),
            says="Nothing was deleted.\nWorkstation ",
        )
        self.refuse(USAGE, "delete", "--yes", says="No configuration is named.")

    def test_refuses_the_first_configuration(self):
        self.change("UPDATE System_workstation_cfg SET key_value = '0'")
        refusal = "Nothing was deleted. You are not permitted to delete the 'Default Configuration'."
        self.refuse(USAGE, "delete", "1", "--yes", says=refusal)
        self.refuse(USAGE, "delete", "2", "1", "--yes", says=refusal)
        self.change("DELETE FROM Interface_PACS_cfg WHERE config_id = 1")
        self.refuse(USAGE, "delete", "2", "--yes", says=refusal)
        self.change_site("delete", "3", "--yes")

    def test_is_stale_when_a_workstation_uses_it_meanwhile(self):
        self.change_site("copy", "1", "Spare")
        plan = self.directory / "p"
        self.change_site("delete", "Spare", "--plan", plan, code=DIFFERENCES)
        self.change("UPDATE System_workstation_cfg SET key_value = '13' WHERE pc_name = 'READ-01'")
        self.refuse(
            CONFLICT,
            *("apply", plan, "--yes"),
            says="Workstation READ-01 uses configuration 13, which is to be deleted.",
        )


class ImportTest(ChangeTest):
    READ = (
        "SELECT config_id, pacs_type, description, request_filename, response_filename, "
        "ifnull(string1, ''), ifnull(string2, ''), ifnull(flag6, 0), ifnull(flag10, 1), last_user_id "
        "FROM Interface_PACS_cfg ORDER BY config_id"
    )

    def setUp(self):
        super().setUp()
        self.folder = self.directory / "folder"
        self.succeed("export", self.folder)

    def test_gives_an_empty_site_equal_rows(self):
        rows, assignments = self.rows(self.READ), self.assignments()
        self.change("DELETE FROM Interface_PACS_cfg")
        self.change("DELETE FROM System_workstation_cfg")
        self.change_site("import", self.folder, "--yes")
        self.assertEqual(self.rows(self.READ), rows)

        def assigned(texts):
            return {name: text for name, text in texts.items() if text not in ("0", None)}

        self.assertEqual(assigned(self.assignments()), assigned(assignments))
        again = self.directory / "again"
        self.succeed("export", again)
        for file in self.folder.iterdir():
            old, new = (
                [
                    line.removesuffix("0") if line.endswith(",0") else line
                    for line in path.read_text("utf-8").splitlines()
                    if "LastUpdate" not in line
                ]
                for path in (file, again / file.name)
            )
            self.assertEqual(new, old, file.name)
        self.change_site("undo", "--yes")
        self.assertEqual(self.rows(self.READ), [])

    def test_stops_skips_or_updates_where_the_site_differs(self):
        self.change("UPDATE Interface_PACS_cfg SET flag6 = 1 WHERE config_id = 5")
        self.change("DELETE FROM Interface_PACS_cfg WHERE config_id = 9")
        self.change("UPDATE System_workstation_cfg SET key_value = '4' WHERE pc_name = 'READ-01'")
        self.change("DELETE FROM System_pc_names WHERE pc_name = 'LIBRARY'")
        outcome = self.refuse(CONFLICT, "import", self.folder, says="Use --on-conflict skip or update")
        for line in (
            "Configuration 5 is another one in the site.",
            "Workstation READ-01 is another one in the site.",
            "There is no workstation LIBRARY in the site.",
        ):
            self.assertIn(line, outcome.errors)
        skipped = self.change_site("import", self.folder, "--on-conflict", "skip")
        self.assertIn("There is no workstation LIBRARY in the site.", skipped.errors)
        port = "SELECT flag6 FROM Interface_PACS_cfg WHERE config_id = 5"
        self.assertEqual((self.rows(port)[0][0], self.assignments()["READ-01"]), (1, "4"))
        self.assertEqual(len(self.rows("SELECT 1 FROM Interface_PACS_cfg WHERE config_id = 9")), 1)
        self.change_site("import", self.folder, "--on-conflict", "update")
        self.assertEqual((self.rows(port)[0][0], self.assignments()["READ-01"]), (10000, "1"))

    def test_leaves_a_row_that_was_only_stored_again(self):
        self.change("UPDATE Interface_PACS_cfg SET last_user_id = 9 WHERE config_id = 1")
        self.assertEqual(self.change_site("import", self.folder).out, "Nothing changes.\n")

    def write_assignments(self, *lines):
        text = "".join(line + "\n" for line in lines)
        (self.folder / "assignments.csv").write_text(text, "utf-8")

    def refuse_assignments(self, *lines):
        """Lets the import refuse the file in every way, and gives what it says of it."""
        self.write_assignments(*lines)
        for action in ("stop", "skip", "update"):
            outcome = self.refuse(
                USAGE, "import", self.folder, "--on-conflict", action, says="assignments.csv:"
            )
        return outcome.errors.splitlines()[1:]

    def test_refuses_an_assignment_that_is_no_number(self):
        header = "workstation,configuration"
        words = ["Broker (old)", "none", "99999", "-99999", "7x"]
        for word in words:
            self.assertEqual(
                self.refuse_assignments(header, "ANNEX-01,7", f"READ-01,{word}"),
                [f"assignments.csv:3: '{word}' is no number of a configuration."],
            )
        # READ-10 has none, and the service reads a text that is no number as none.
        self.write_assignments(header, "READ-10,none")
        service = Service(self)
        outcome = self.change_site(
            *("import", self.folder),
            code=USAGE,
            connection=service.connection,
            environment=service.environment,
        )
        self.assertIn("assignments.csv:2: 'none' is no number", outcome.errors)

    def test_refuses_a_workstation_that_is_there_twice(self):
        self.assertEqual(
            self.refuse_assignments(
                "workstation,configuration", "READ-01,2", "READ-02,x", "", "read-01 ,2"
            ),
            [
                "assignments.csv:3: 'x' is no number of a configuration.",
                "assignments.csv:5: The workstation 'read-01 ' stands in line 2 already.",
            ],
        )

    def test_refuses_assignments_without_their_header(self):
        expected = "assignments.csv:1: The first line must be 'workstation,configuration'."
        self.assertEqual(self.refuse_assignments("READ-01,2", "READ-02,2"), [expected])
        self.assertEqual(self.refuse_assignments(), [expected])
        self.assertEqual(
            self.refuse_assignments("workstation;configuration", "READ-01;2"),
            [expected + " Commas, not semicolons, separate the cells."],
        )

    def test_stores_nothing_over_a_row_that_cannot_be_read(self):
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 2")
        self.change("UPDATE Interface_PACS_cfg SET flag6 = 1 WHERE config_id = 5")
        unreadable = "configuration 2 cannot be read: "
        outcome = self.refuse(CONFLICT, "import", self.folder, says=unreadable)
        self.assertIn("\nConfiguration 2 is another one in the site.", outcome.errors)
        update = ["import", self.folder, "--on-conflict", "update"]
        self.refuse(FINDINGS, *update, says="The stored configuration 2 cannot be read. Nothing was")
        skipped = self.change_site("import", self.folder, "--on-conflict", "skip")
        self.assertEqual(skipped.out, "Nothing changes.\n")
        self.assertIn(unreadable, skipped.errors)
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 1 WHERE config_id = 2")
        self.change_site(*update)
        port = "SELECT flag6 FROM Interface_PACS_cfg WHERE config_id = 5"
        self.assertEqual(self.rows(port), [(10000,)])

    def test_keeps_an_assignment_of_the_site_that_is_no_number(self):
        self.change("UPDATE System_workstation_cfg SET key_value = 'x' WHERE pc_name = 'READ-01'")
        self.succeed("export", self.folder)
        before = self.assignments()
        self.assertEqual(self.change_site("import", self.folder).out, "Nothing changes.\n")
        self.assertEqual(self.assignments(), before)
        self.change("UPDATE System_workstation_cfg SET key_value = '1' WHERE pc_name = 'READ-01'")
        says = "'x' is no number of a configuration."
        self.refuse(USAGE, "import", self.folder, "--on-conflict", "update", says=says)


class EditTest(ChangeTest):
    def setUp(self):
        super().setUp()
        self.temporary = self.directory / "temporary"
        self.temporary.mkdir()

    def editor(self, script):
        file = self.directory / "editor"
        file.write_text(f"#!/bin/sh\n{script}\n")
        file.chmod(file.stat().st_mode | stat.S_IXUSR)
        return {"EDITOR": str(file), "VISUAL": "", "TMPDIR": str(self.temporary)}

    def kept_text(self, outcome):
        """The text that the program left, of which it says where it is."""
        [folder] = self.temporary.iterdir()
        [file] = folder.iterdir()
        self.assertIn(f"The edited text is in '{file}'.\n", outcome.errors)
        text = file.read_text("utf-8")
        file.unlink()
        folder.rmdir()
        return text

    def test_stores_what_the_editor_leaves(self):
        environment = self.editor("""sed -i 's/^Port = .*/Port = 10009/' "$1" """)
        outcome = self.change_site("--json", "edit", "5", environment=environment)
        self.assertEqual(outcome.json()["changes"][0]["after"], "10009")
        port = "SELECT flag6 FROM Interface_PACS_cfg WHERE config_id = 5"
        self.assertEqual(self.rows(port), [(10009,)])
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_changes_nothing_where_nothing_was_edited(self):
        outcome = self.change_site("edit", "5", environment=self.editor("true"))
        self.assertEqual(outcome.out, "Nothing changes.\n")
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_shows_the_text_to_nobody_else(self):
        script = """cd "$(dirname "$1")" && stat -c %a . >"$TMPDIR/../mode" && cp "$1" backup"""
        self.change_site("edit", "5", environment=self.editor(script))
        self.assertEqual((self.directory / "mode").read_text(), "700\n")
        self.assertEqual(list(self.temporary.iterdir()), [])

    def test_refuses_what_cannot_be_stored_and_keeps_the_text(self):
        def says(text, old, new, *then):
            script = f"""sed -i 's/^{old} = .*/{new}/' "$1" """
            outcome = self.refuse(
                USAGE, "edit", "5", *then, says=text, environment=self.editor(script)
            )
            self.assertIn(f"\n{new}\n", "\n" + self.kept_text(outcome))

        says("The rules do not allow this.", "Port", "Port = 0")
        says("The number cannot be changed", "configID", "configID = 6")
        says("configuration-5.txt:23: Port: ", "Port", "Port = x")
        says("It needs --yes.", "Port", "Port = 10009", "--max-changes", "0")

    def test_keeps_the_text_when_the_editor_or_the_database_fails(self):
        script = """sed -i 's/^Port = .*/Port = 10009/' "$1"; exit """
        for status, code, text in ((1, USAGE, "The editor failed."), (0, REFUSED, "not today")):
            if status == 0:
                self.refuse_rows("System_offline_db_updates")
            environment = self.editor(script + str(status))
            outcome = self.refuse(code, "edit", "5", says=text, environment=environment)
            self.assertIn("\nPort = 10009\n", self.kept_text(outcome))

    def test_prefers_visual_and_needs_an_editor(self):
        environment = self.editor("false")
        self.change_site("edit", "5", environment={**environment, "VISUAL": "true"})
        nothing = {**environment, "EDITOR": "", "VISUAL": ""}
        self.refuse(USAGE, "edit", "5", environment=nothing, says="Set EDITOR to the editor to use.")
        self.assertEqual(list(self.temporary.iterdir()), [])


class ServiceTest(ChangeTest):
    def test_sets_copies_and_deletes(self):
        service = Service(self)
        options = {"connection": service.connection, "environment": service.environment}
        self.change_site("set", "7", "RequestFileName=C:\\it's.xml", **options)
        self.change_site("copy", "7", "Spare", **options)
        self.change_site("delete", "Spare", "--yes", **options)
        self.change_site("undo", "2", "--yes", code=CONFLICT, **options)
        self.change_site("undo", **options)
        shown = self.succeed("show", "13", "--json", **options)
        self.assertIn("it's.xml", shown.out)
