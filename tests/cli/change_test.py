"""Commands that change a site: plans, what they refuse, and what is stored."""
import json
import random
import sqlite3

from harness import (
    CONFLICT,
    DIFFERENCES,
    DONE,
    FINDINGS,
    NOT_AS_SENT,
    NO_CONNECTION,
    REFUSED,
    USAGE,
    CliTest,
    Service,
    StandIn,
)

ASSIGNMENTS = "SELECT pc_name, key_value FROM System_workstation_cfg WHERE key_name = 'PACSConfig'"
CONFIGURATIONS = "SELECT * FROM Interface_PACS_cfg ORDER BY config_id"
MARKS = "SELECT count(*) FROM System_offline_db_updates"


class ChangeTest(CliTest):
    def setUp(self):
        super().setUp()
        self.journal = self.directory / "journal"

    def assignments(self, path=None):
        database = sqlite3.connect(path or self.database)
        try:
            return dict(database.execute(ASSIGNMENTS).fetchall())
        finally:
            database.close()

    def refuse_rows(self, table, path=None):
        """Lets the database refuse to insert into the table, with "not today"."""
        self.change(
            f"CREATE TRIGGER refuse BEFORE INSERT ON {table} BEGIN "
            "SELECT RAISE(ABORT, 'not today'); END",
            path=path,
        )

    def change_site(self, *arguments, code=DONE, **options):
        """Runs a command with the test's journal."""
        outcome = self.run_program(*arguments, "--journal", self.journal, **options)
        self.assertEqual(outcome.code, code, outcome.out + outcome.errors)
        return outcome

    def refuse(self, code, *arguments, says, **options):
        """Runs a command that must change nothing."""
        before = self.assignments(), self.rows(CONFIGURATIONS), self.rows(MARKS)
        outcome = self.change_site(*arguments, code=code, **options)
        self.assertIn(says, outcome.errors)
        self.assertEqual((self.assignments(), self.rows(CONFIGURATIONS), self.rows(MARKS)), before)
        return outcome

    def write(self, name, text):
        file = self.directory / name
        file.write_bytes(text.encode("utf-8"))
        return file

    def states(self, **options):
        rows = self.change_site("history", "--json", **options).json()["history"]
        return [(row["number"], row["command"], row["state"]) for row in rows]


class AssignTest(ChangeTest):
    def test_assigns_by_name_and_pattern(self):
        before, marks = self.assignments(), self.rows(MARKS)[0][0]
        outcome = self.change_site("assign", "7", "read-01", "CT-CONSOLE-?")
        named = ["READ-01", "CT-CONSOLE-1", "CT-CONSOLE-2", "CT-CONSOLE-3"]
        self.assertEqual(self.assignments(), before | dict.fromkeys(named, "7"))
        self.assertEqual(self.rows(MARKS)[0][0], marks + 1)
        self.assertEqual(
            outcome.errors,
            "Changed 3 workstations. 'tlpacscfg undo 1' takes change 1 back.\n",
        )

    def test_assigns_by_description_and_from_a_configuration(self):
        before = self.assignments()
        self.change_site("assign", "ward round, no integration", "--from", "1")
        moved = {name: "9" for name, value in before.items() if value == "1"}
        self.assertEqual(self.assignments(), before | moved)
        self.change_site("assign", "none", "READ-*", "--from", "9")
        moved = {name: "0" if name.startswith("READ-") else "9" for name in moved}
        self.assertEqual(self.assignments(), before | moved)

    def test_assigns_to_all_that_have_none(self):
        self.change("UPDATE System_workstation_cfg SET key_value = '0' WHERE pc_name = 'READ-01'")
        self.change("UPDATE System_workstation_cfg SET key_value = NULL WHERE pc_name = 'READ-02'")
        self.change("DELETE FROM System_workstation_cfg WHERE pc_name = 'READ-03'")
        before = self.assignments()
        self.change_site("assign", "9", "READ-0?", "--from", "none")
        named = ["READ-01", "READ-02", "READ-03"]
        self.assertEqual(self.assignments(), before | dict.fromkeys(named, "9"))

    def test_shows_what_changes_in_words(self):
        rows = self.change_site("--json", "assign", "7", "READ-01", "READ-10").json()
        self.assertEqual(rows["schema"], "tlpacscfg/changes/1")
        self.assertEqual(
            rows["changes"][0],
            {
                "kind": "workstation",
                "name": "READ-01",
                "field": "configuration",
                "before": "1 Default Configuration",
                "after": '7 Custom map, "Annex" CT',
            },
        )
        self.assertEqual(rows["changes"][1]["before"], "none")

    def test_a_plan_file_can_be_shown_without_the_site(self):
        self.change_site("assign", "7", "READ-01", "--plan", "moves.plan", code=DIFFERENCES)
        shown = self.change_site("diff", "moves.plan", "--csv", code=DIFFERENCES, connection=[])
        self.assertEqual(shown.csv()[1:], [["workstation", "READ-01", "configuration", "1", "7"]])
        self.change_site("assign", "1", "READ-01", "--plan", "same.plan")
        self.assertEqual(self.change_site("diff", "same.plan").out, "Nothing changes.\n")

    def test_does_nothing_where_nothing_changes(self):
        marks = self.rows(MARKS)
        outcome = self.change_site("assign", "1", "READ-01")
        self.assertEqual((outcome.out, outcome.errors), ("Nothing changes.\n", ""))
        self.assertEqual(self.rows(MARKS), marks)
        self.assertFalse(self.journal.exists())

    def test_refuses_what_matches_nothing(self):
        def says(text, *arguments):
            self.refuse(USAGE, "assign", *arguments, says=text)

        says("There is no workstation 'REDA-01'. Did you mean 'READ-01'?", "7", "REDA-01")
        says("No workstation fits the pattern 'X*'.", "7", "READ-01", "X*")
        says("There is no configuration '99'.", "99", "READ-01")
        says("No such workstation has the configuration '9'.", "7", "READ-*", "--from", "9")
        says("Write assign CONFIGURATION WORKSTATION", "7")
        says("Write assign CONFIGURATION WORKSTATION")

    def test_needs_yes_for_many_changes(self):
        self.refuse(
            USAGE,
            *("assign", "7", "READ-*", "--max-changes", "5"),
            says="This changes 11 workstations, more than --max-changes 5 allows. Nothing was "
            "changed. It needs --yes.",
        )
        self.change_site("assign", "7", "READ-*", "--max-changes", "5", "--yes")
        self.assertEqual(self.assignments()["READ-09"], "7")

    def test_writes_names_with_a_quote(self):
        self.change("INSERT INTO System_pc_names VALUES ('O''NEIL', NULL, 1)")
        self.change_site("assign", "7", "O'NEIL")
        self.assertEqual(self.assignments()["O'NEIL"], "7")

    def test_replaces_what_is_no_number(self):
        self.change("UPDATE System_workstation_cfg SET key_value = 'x' WHERE pc_name = 'READ-01'")
        self.assertIn("'x' (not a number)", self.change_site("assign", "7", "READ-01").out)
        self.change_site("undo")
        self.assertEqual(self.assignments()["READ-01"], "x")

    def test_only_reads_the_file_of_a_workstation(self):
        from harness import DEMO

        file = DEMO / "stand-alone/SYSTEM.MDB"
        self.refuse(
            REFUSED,
            *("assign", "7", "READ-06"),
            connection=["--offline", str(file)],
            says="The local file of a workstation is only read.",
        )


class CsvTest(ChangeTest):
    def test_moves_workstations(self):
        before = self.assignments()
        file = self.write(
            "moves.csv",
            "\ufeffWorkstation,configuration\r\nREAD-01,2\r\n\"read-02\",\"Custom map, \"\"Annex\"\" CT\""
            "\nRÖNTGEN-ZH-1,\n\nREAD-03,2",
        )
        self.change_site("assign", "--csv", file)
        moved = {"READ-01": "2", "READ-02": "7", "RÖNTGEN-ZH-1": "0", "READ-03": "2"}
        self.assertEqual(self.assignments(), before | moved)

    def test_takes_a_configuration_away(self):
        self.change_site("assign", "--csv", "-", input="workstation,configuration\nREAD-01,0\n")
        self.assertEqual(self.assignments()["READ-01"], "0")

    def test_reads_standard_input(self):
        self.change_site("assign", "--csv", "-", input="workstation,configuration\nREAD-01,2\n")
        self.assertEqual(self.assignments()["READ-01"], "2")

    def test_reports_every_bad_line_before_anything_is_written(self):
        self.change("UPDATE Interface_PACS_cfg SET description = 'Same' WHERE config_id IN (3, 4)")
        lines = [
            "workstation,configuration",
            "READ-01,2",
            "REDA-02,2",
            "READ-03,99",
            "ÄREAD-04,Same",
            "read-01,7",
            "READ-05",
            "READ-06,2,3",
            'READ-07,"2"x',
            'READ-08,a"b',
            '"READ-09,2',
        ]
        outcome = self.refuse(
            USAGE, "assign", "--csv", "-", input="\n".join(lines), says="Nothing was changed.\n"
        )
        self.assertEqual(
            outcome.errors.splitlines()[1:],
            [
                "standard input:3:1: There is no workstation 'REDA-02'. Did you mean 'READ-02'?",
                "standard input:4:9: There is no configuration '99'.",
                "standard input:5:1: There is no workstation 'ÄREAD-04'. Did you mean 'READ-04'?",
                "standard input:5:10: Several configurations are called 'Same'. Use the number.",
                "standard input:6:1: The workstation 'read-01' stands in line 2 already.",
                "standard input:7:1: There must be two cells, a workstation and a configuration, not 1.",
                "standard input:8:11: There must be two cells, a workstation and a configuration, not 3.",
                "standard input:9:12: After the closing quote there must be a comma or the line's end.",
                "standard input:10:10: A cell with a quote must be in quotes, with the quote doubled.",
                "standard input:11:1: The quote that begins here is not closed.",
            ],
        )

    def test_needs_its_header_and_an_assignment(self):
        for text, why in (
            ("", ""),
            ("READ-01,2\n", ""),
            ("workstation;configuration\nREAD-01;2\n", " Commas, not semicolons, separate the"),
            (self.succeed("list", "workstations", "--csv").out, " Keep only these two columns."),
        ):
            self.refuse(
                USAGE,
                *("assign", "--csv", "-"),
                input=text,
                says="standard input:1:1: The first line must be 'workstation,configuration'." + why,
            )
        self.refuse(
            USAGE,
            *("assign", "--csv", "-"),
            input="workstation,configuration\n",
            says="standard input:2:1: There is no assignment.",
        )
        self.refuse(USAGE, "assign", "--csv", "missing.csv", says="'missing.csv' cannot be read: No such file or directory.")

    def test_refuses_what_is_no_utf8(self):
        file = self.directory / "latin1.csv"
        file.write_bytes("workstation,configuration\nRÖNTGEN-ZH-1,2\n".encode("latin-1"))
        self.refuse(USAGE, "assign", "--csv", file, says="latin1.csv:2:2: This is not UTF-8.")


class PlanTest(ChangeTest):
    def setUp(self):
        super().setUp()
        self.plan = self.directory / "moves.plan"

    def make_plan(self, *arguments):
        outcome = self.change_site(*arguments, "--plan", self.plan, code=DIFFERENCES)
        return outcome.out

    def test_is_written_and_applied_later(self):
        before = self.assignments()
        shown = self.make_plan("assign", "7", "READ-0?")
        self.assertEqual(self.assignments(), before)
        self.assertFalse(self.journal.exists())
        self.assertEqual(self.change_site("apply", self.plan).out, shown)
        named = [f"READ-0{number}" for number in range(1, 10)]
        self.assertEqual(self.assignments(), before | dict.fromkeys(named, "7"))

    def test_holds_its_statements_and_a_digest_of_each_row_it_rests_on(self):
        self.make_plan("assign", "7", "READ-01")
        document = json.loads(self.plan.read_text("utf-8"))
        self.assertEqual(document["schema"], "tlpacscfg/plan/1")
        self.assertEqual([row["configID"] for row in document["restsOn"]], [7])
        self.assertRegex(document["restsOn"][0]["digest"], "^[0-9a-f]{16}$")
        first, mark = document["statements"]
        self.assertIn("VALUES('READ-01', 38, 'PACSConfig', '7', -1, 0)", first)
        self.assertIn("System_offline_db_updates", mark)

    def test_says_why_its_file_cannot_be_written(self):
        self.refuse(
            USAGE,
            *("assign", "7", "READ-01", "--plan", "missing/moves.plan"),
            says="The file 'missing/moves.plan' cannot be written: No such file or directory.",
        )

    def test_goes_into_a_file_that_is_none(self):
        outcome = self.change_site(
            "assign", "7", "READ-01", "--json", "--plan", "/dev/stderr", code=DIFFERENCES
        )
        self.assertEqual(json.loads(outcome.errors)["schema"], "tlpacscfg/plan/1")

    def test_without_a_change_is_no_difference(self):
        self.change_site("assign", "1", "READ-01", "--plan", self.plan)
        self.assertEqual(json.loads(self.plan.read_text("utf-8"))["assignments"], [])

    def test_goes_through_a_pipe(self):
        written = self.change_site("assign", "7", "READ-01", "--plan", "-", code=DIFFERENCES)
        self.change_site("apply", "-", input=written.out)
        self.assertEqual(self.assignments()["READ-01"], "7")

    def test_that_is_stale_changes_nothing_and_says_what_changed(self):
        self.make_plan("assign", "7", "READ-01", "READ-02")
        self.change("UPDATE System_workstation_cfg SET key_value = '4' WHERE pc_name = 'READ-02'")
        self.refuse(
            CONFLICT,
            *("apply", self.plan),
            says="Somebody else changed the site meanwhile. Nothing was written.\n"
            "Workstation READ-02 had the configuration 1 Default Configuration and has "
            "4 Broker, reading room 4. The database does not say who changed it.\n",
        )
        self.refuse(CONFLICT, "apply", self.plan, "--dry-run", says="READ-02")
        self.change("DELETE FROM System_pc_names WHERE pc_name = 'READ-02'")
        self.refuse(CONFLICT, "apply", self.plan, says="Workstation READ-02 is gone.")
        self.assertEqual(self.states(), [])

    def test_is_stale_when_the_configuration_that_it_assigns_changed(self):
        self.make_plan("assign", "7", "READ-01")
        self.change(
            "UPDATE Interface_PACS_cfg SET flag6 = 1, last_user_id = 12, "
            "last_change_date = '2026-01-02 03:04:05' WHERE config_id = 7"
        )
        self.refuse(
            CONFLICT,
            *("apply", self.plan),
            says="Configuration 7 ('Custom map, \"Annex\" CT') was stored by user 12 on "
            "2026-01-02 03:04:05.",
        )
        self.change("DELETE FROM Interface_PACS_cfg WHERE config_id = 7")
        self.refuse(CONFLICT, "apply", self.plan, says="Configuration 7 was deleted.")

    def test_does_not_change_a_row_that_cannot_be_read_any_more(self):
        self.make_plan("set", "5", "Port=10001")
        self.change("UPDATE Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = 5")
        says = "The stored configuration 5 cannot be read. Nothing was changed."
        self.refuse(FINDINGS, "apply", self.plan, says=says)

    def test_is_not_stale_when_a_row_was_stored_again_as_it_was(self):
        self.make_plan("assign", "7", "READ-10", "WARD-3A")
        self.change("UPDATE Interface_PACS_cfg SET last_user_id = 3 WHERE config_id = 7")
        self.change("DELETE FROM System_workstation_cfg WHERE pc_name = 'READ-10'")
        self.change_site("apply", self.plan)
        self.assertEqual(self.assignments()["READ-10"], "7")

    def test_must_be_a_plan(self):
        for text, says in (
            ("", "is not a plan"),
            ("[1]", "is not a plan"),
            ('{"schema": "tlpacscfg/plan/2"}', "its schema is another one."),
            ('{"schema": "tlpacscfg/plan/1"}', "configurations"),
        ):
            self.refuse(USAGE, "apply", self.write("x.plan", text), says=says)
        self.refuse(USAGE, "apply", "missing.plan", says="'missing.plan' cannot be read: No such")

    def test_dry_run_does_all_but_the_commit(self):
        before = self.assignments()
        tried = self.change_site("assign", "7", "READ-0?", "--dry-run")
        self.assertEqual(
            tried.errors, "This was a dry run of 8 workstations. Nothing was written.\n"
        )
        self.assertEqual((self.assignments(), self.states()), (before, []))
        # What the database would refuse, it refuses in a dry run too.
        self.refuse_rows("System_workstation_cfg")
        self.refuse(REFUSED, "assign", "7", "READ-01", "--dry-run", says="not today")
        self.refuse(REFUSED, "assign", "7", "READ-01", says="not today")
        self.assertEqual(self.states(), [])

    def test_dry_run_and_run_give_the_same_plan_on_random_sites(self):
        for seed in range(4):
            choose = random.Random(seed)
            names = sorted(self.assignments())
            for name in choose.sample(names, 12):
                text = choose.choice(["1", "8", "0", "99", "x", None])
                sql = "UPDATE System_workstation_cfg SET key_value = ? WHERE pc_name = ?"
                self.change(sql + " AND key_name = 'PACSConfig'", text, name)
            wanted = {name: choose.choice(["2", "7", ""]) for name in choose.sample(names, 15)}
            lines = "".join(f"{name},{number}\n" for name, number in wanted.items())
            file = self.write("moves.csv", "workstation,configuration\n" + lines)
            before = self.assignments()
            planned = self.make_plan("assign", "--csv", file)
            tried = self.change_site("assign", "--csv", file, "--dry-run").out
            self.assertEqual(self.assignments(), before)
            done = self.change_site("assign", "--csv", file).out
            self.assertEqual((planned, tried), (done, done))
            document = json.loads(self.plan.read_text("utf-8"))["assignments"]
            changes = {row["workstation"]: row["after"] for row in document}
            self.assertEqual(self.assignments(), before | changes)
            for name, number in wanted.items():
                self.assertEqual(self.assignments()[name] or "0", number or "0", name)

    def test_reads_back_what_it_wrote(self):
        self.change(
            "CREATE TRIGGER spoil AFTER INSERT ON System_workstation_cfg BEGIN UPDATE "
            "System_workstation_cfg SET key_value = '3' WHERE pc_name = NEW.pc_name; END"
        )
        self.refuse(
            REFUSED,
            *("assign", "7", "READ-01"),
            says="Nothing was saved. Workstation 'READ-01' does not keep the configuration '7'.",
        )


class OtherPathsTest(ChangeTest):
    def test_sql_server(self):
        server = StandIn(self)
        options = {"connection": server.connection, "environment": server.environment}
        before = self.assignments(server.path)
        self.change_site("assign", "7", "READ-0?", "--dry-run", **options)
        self.assertEqual(self.assignments(server.path), before)
        self.change_site("assign", "7", "READ-01", "RÖNTGEN-ZH-1", **options)
        moved = before | {"READ-01": "7", "RÖNTGEN-ZH-1": "7"}
        self.assertEqual(self.assignments(server.path), moved)
        self.change_site("undo", **options)
        self.assertEqual(self.assignments(server.path), before)

    def test_sql_server_that_is_lost_while_it_commits(self):
        server = StandIn(self)
        options = {"connection": server.connection, "environment": server.environment}
        for when, state in (("after", "stored"), ("before", "not stored")):
            server.site.faults.add({"transaction": "commit", "hangsUp": when})
            outcome = self.change_site(
                "assign", "7" if when == "after" else "2", "READ-01", code=NO_CONNECTION, **options
            )
            self.assertIn("the next start with this site will find out", outcome.errors)
            outcome = self.change_site("history", "--json", **options)
            last = outcome.json()["history"][-1]
            self.assertEqual(last["state"], state)
            self.assertIn(f"change {last['number']} was interrupted; it is {state}.", outcome.errors)
            self.assertEqual(self.assignments(server.path)["READ-01"], "7")

    def test_service(self):
        service = Service(self)
        options = {"connection": service.connection, "environment": service.environment}
        before = self.assignments(service.database)
        self.change_site("assign", "7", "READ-0?", "--dry-run", **options)
        self.assertEqual(self.assignments(service.database), before)
        plan = self.directory / "plan"
        self.change_site("assign", "7", "READ-01", "--plan", plan, code=DIFFERENCES, **options)
        self.change_site("assign", "2", "READ-0?", **options)
        self.assertEqual(self.assignments(service.database)["READ-09"], "2")
        outcome = self.change_site("apply", plan, code=CONFLICT, **options)
        self.assertIn("Workstation READ-01 had the configuration 1 Default", outcome.errors)
        self.change_site("undo", **options)
        self.assertEqual(self.assignments(service.database), before)

    def test_a_dry_run_over_the_service_runs_every_statement_and_keeps_nothing(self):
        service = Service(self)
        options = {"connection": service.connection, "environment": service.environment}
        before = self.assignments(service.database)
        tried = self.change_site("assign", "7", "READ-0?", "--dry-run", **options)
        self.assertEqual(
            tried.errors, "This was a dry run of 8 workstations. Nothing was written.\n"
        )
        self.assertEqual(self.assignments(service.database), before)
        self.refuse_rows("System_offline_db_updates", service.database)
        outcome = self.change_site("assign", "7", "READ-0?", "--dry-run", code=REFUSED, **options)
        self.assertIn("not today", outcome.errors)
        self.assertEqual((self.assignments(service.database), self.states(**options)), (before, []))

    def test_a_service_with_sql_server(self):
        server = StandIn(self)
        service = Service(self, server)
        options = {"connection": service.connection, "environment": service.environment}
        before = self.assignments(server.path)
        outcome = self.change_site("assign", "7", "READ-0?", "--dry-run", **options)
        self.assertIn("This was a dry run of 8 workstations.", outcome.errors)
        self.assertEqual(self.assignments(server.path), before)
        server.site.stored_site["traits"]["denied"] = ["DELETE on System_workstation_cfg"]
        outcome = self.change_site("assign", "7", "READ-0?", "--dry-run", code=REFUSED, **options)
        self.assertIn("DELETE permission was denied", outcome.errors)
        server.site.stored_site["traits"].clear()
        self.change_site("assign", "7", "READ-01", **options)
        self.assertEqual(self.assignments(server.path), before | {"READ-01": "7"})

    def test_a_change_that_is_too_big_for_the_service_is_not_sent(self):
        service = Service(self)
        options = {"connection": service.connection, "environment": service.environment}
        many = 4000
        database = sqlite3.connect(service.database)
        with database:
            database.executemany(
                "INSERT INTO System_pc_names VALUES (?, NULL, 1)",
                [(f"MANY-{number}",) for number in range(many)],
            )
        database.close()
        before = self.assignments(service.database)
        for ending in ("--dry-run", "--yes"):
            outcome = self.change_site("assign", "7", "MANY-*", ending, code=USAGE, **options)
            self.assertRegex(
                outcome.errors,
                r"The change is too big for the service: a request of 1\d{6} bytes, where it takes "
                r"1048576\. Nothing was changed\. Change fewer rows at a time, or configure a larger",
            )
        self.assertNotIn("execute", service.journal.read_text())
        # The service has the last word.
        outcome = self.change_site(
            *("assign", "7", "MANY-*", "--yes", "--request-bytes", 1 << 24),
            code=REFUSED,
            **options,
        )
        self.assertRegex(
            outcome.errors, "The request is larger than|The service broke the connection off"
        )
        self.assertEqual(self.assignments(service.database), before)
        self.assertEqual(self.states(**options), [(1, "assign", "not stored")])

    def test_what_the_service_stores_otherwise_is_told_and_can_be_undone(self):
        service = Service(self)
        options = {"connection": service.connection, "environment": service.environment}
        stored = "SELECT request_filename FROM Interface_PACS_cfg WHERE config_id = 7"
        before = sqlite3.connect(service.database).execute(stored).fetchone()
        assigned = self.assignments(service.database)
        self.change(
            "CREATE TRIGGER shorten AFTER UPDATE ON Interface_PACS_cfg BEGIN UPDATE "
            "Interface_PACS_cfg SET request_filename = substr(NEW.request_filename, 1, 5) "
            "WHERE config_id = NEW.config_id; END",
            path=service.database,
        )
        outcome = self.change_site(
            "set", "7", "RequestFileName=C:\\long.xml", code=NOT_AS_SENT, **options
        )
        self.assertIn("It keeps 5 of 11 characters.", outcome.errors)
        self.assertIn("'tlpacscfg undo 1' takes change 1 back.", outcome.errors)
        self.assertNotIn("Nothing was", outcome.errors)
        self.change("DROP TRIGGER shorten", path=service.database)
        self.assertEqual(self.states(**options), [(1, "set", "stored")])
        self.change_site("undo", **options)
        now = sqlite3.connect(service.database).execute(stored).fetchone()
        self.assertEqual(now, before)
        self.change(
            "CREATE TRIGGER spoil AFTER INSERT ON System_workstation_cfg BEGIN UPDATE "
            "System_workstation_cfg SET key_value = '3' WHERE pc_name = NEW.pc_name; END",
            path=service.database,
        )
        outcome = self.change_site("assign", "7", "READ-01", code=NOT_AS_SENT, **options)
        self.assertIn("does not keep the configuration '7'.", outcome.errors)
        self.change("DROP TRIGGER spoil", path=service.database)
        self.change_site("undo", **options)
        self.assertEqual(self.assignments(service.database), assigned)

    def test_what_the_service_stored_and_cannot_read_is_found_out_later(self):
        service = Service(self)
        options = {"connection": service.connection, "environment": service.environment}
        self.change(
            "CREATE TRIGGER spoil AFTER UPDATE OF flag6 ON Interface_PACS_cfg BEGIN UPDATE "
            "Interface_PACS_cfg SET flag1 = 'abc' WHERE config_id = NEW.config_id; END",
            path=service.database,
        )
        outcome = self.change_site("set", "5", "Port=10001", code=NOT_AS_SENT, **options)
        self.assertIn("Change 1: whether it is stored is not known", outcome.errors)
        outcome = self.change_site("history", **options)
        self.assertIn("change 1 was interrupted; whether it is stored is", outcome.errors)
        ((flag1,),) = self.rows("SELECT flag1 FROM Interface_PACS_cfg WHERE config_id = 5")
        mend = "UPDATE Interface_PACS_cfg SET flag1 = ? WHERE config_id = 5"
        self.change(mend, flag1, path=service.database)
        outcome = self.change_site("history", **options)
        self.assertIn("change 1 was interrupted; it is stored.", outcome.errors)

    def test_service_executes_a_plan_as_a_whole(self):
        service = Service(self)
        options = {"connection": service.connection, "environment": service.environment}
        before = self.assignments(service.database)
        self.refuse_rows("System_offline_db_updates", service.database)
        outcome = self.change_site("assign", "7", "READ-0?", code=REFUSED, **options)
        self.assertIn("not today", outcome.errors)
        self.assertEqual(self.assignments(service.database), before)
        self.assertEqual(self.states(**options), [(1, "assign", "not stored")])
