"""The journal and undo: what they record, and what an interrupted program leaves."""
import json
import os
import random
import re
import signal
import sqlite3
import subprocess
import threading
import time
import unittest.mock

import harness
from change_test import CONFIGURATIONS, ChangeTest
from harness import CONFLICT, DONE, REFUSED, USAGE

# What undo does not restore: an undo is a change, and the row says who stored it last and when.
LAST_CHANGE = ("last_user_id", "last_change_date")
# A row with NULL in a column that was added later is stored with the value that it stands for.
IF_NULL = {"flag10": 1}


class JournalTest(ChangeTest):
    @staticmethod
    def read_value(name, stored):
        if stored is not None:
            return stored
        return IF_NULL.get(name, "" if name.startswith("string") else 0)

    def everything(self):
        """Every row of the site as the component reads it."""
        database = sqlite3.connect(self.database)
        database.row_factory = sqlite3.Row
        records = [
            {name: self.read_value(name, row[name]) for name in row.keys() if name not in LAST_CHANGE}
            for row in database.execute(CONFIGURATIONS)
        ]
        database.close()
        return records, self.assignments()

    def entry(self, number=1):
        return self.journal / f"{number:06}.json"

    def leave_pending(self, **members):
        """What a program leaves that is killed after the commit and before it settles."""
        document = json.loads(self.entry().read_text("utf-8"))
        self.entry().write_text(json.dumps({**document, "state": "pending", **members}), "utf-8")

    def wait_for_entry(self):
        deadline = time.monotonic() + 60
        while not self.entry().exists() or not self.entry().read_bytes():
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.005)

    def test_lists_changes_and_shows_one(self):
        self.change_site("assign", "7", "READ-01")
        self.change_site("assign", "2", "READ-02", "READ-03")
        self.assertEqual(
            self.states(), [(1, "assign", "stored"), (2, "assign", "stored")]
        )
        outcome = self.change_site("history", connection=[])
        self.assertIn("2 workstations  stored", outcome.out)
        shown = self.change_site("history", "1", "--json").json()["changes"]
        self.assertEqual([(row["name"], row["after"]) for row in shown], [("READ-01", "7")])
        self.refuse(USAGE, "history", "9", says="There is no change 9.")

    def test_holds_whole_rows_and_no_password(self):
        self.change_site(
            "set", "5", "Port=10001", environment={"TLPACSCFG_PASSWORD": "top-secret-word"}
        )
        text = self.entry().read_text("utf-8")
        change = json.loads(text)["plan"]["configurations"][0]
        self.assertEqual((change["before"]["Port"], change["after"]["Port"]), (10000, 10001))
        self.assertEqual(len(change["before"]), 38)
        self.assertNotIn("top-secret-word", text)

    def test_that_cannot_be_written_or_read_stops_the_change(self):
        self.journal.write_text("")
        self.refuse(
            USAGE,
            *("assign", "7", "READ-01"),
            says=f"The journal in '{self.journal}' cannot be written: Not a directory. Nothing was",
        )
        self.journal.unlink()
        self.journal.mkdir()
        self.entry().write_text("{}")
        self.refuse(USAGE, "assign", "7", "READ-01", says="of the journal cannot be used")

    def traced(self, *arguments, fails=None):
        """What a change lets last, in order; the call of the number fails for the entry's file."""
        trace = self.directory / "trace"
        tracer = ["strace", "-f", "-y", "-qq", "-o", str(trace)]
        tracer += ["-e", "trace=fsync,fdatasync,rename,unlink"]
        if fails:
            tracer += ["-P", f"{self.entry()}.new", "-e", f"inject=fsync:error=EIO:when={fails}"]
        # The leak sanitizer does not work in a process that is traced.
        options = os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0"
        with unittest.mock.patch.object(harness, "PROGRAM", [*tracer, *harness.PROGRAM]):
            outcome = self.run_program(
                *arguments, "--journal", self.journal, environment={"ASAN_OPTIONS": options}
            )
        calls = re.findall(r"^\d+ +(\w+)\((.*)\) += ", trace.read_text(), re.MULTILINE)
        return outcome, calls

    def test_lasts_before_the_database_commits(self):
        outcome, calls = self.traced("assign", "7", "READ-01")
        self.assertEqual(outcome.code, DONE, outcome.errors)
        entry, folder = f"{self.entry()}", f"<{self.journal}>"
        # SQLite commits when it deletes its own journal.
        (commit,) = [
            place
            for place, (call, what) in enumerate(calls)
            if call == "unlink" and "site.db-journal" in what
        ]
        before, after = calls[:commit], calls[commit:]

        def order(calls):
            return [
                call
                for call, what in calls
                if f"{entry}.new" in what or (call == "fsync" and what.endswith(folder))
            ]

        self.assertEqual(order(before)[-3:], ["fsync", "rename", "fsync"])
        self.assertEqual(order(after), ["fsync", "rename", "fsync"])
        # The folder was made for this change.
        self.assertIn(("fsync", f"<{self.directory}>"), [(c, w[w.find("<") :]) for c, w in before])

    def test_that_cannot_be_made_to_last_stops_the_change(self):
        before = self.everything()
        self.journal.mkdir()
        outcome, _ = self.traced("assign", "7", "READ-01", fails=1)
        self.assertEqual(outcome.code, USAGE)
        self.assertIn("cannot be written: Input/output error. Nothing was changed.", outcome.errors)
        self.assertEqual(self.everything(), before)
        self.assertEqual(self.states(), [])

    def test_that_cannot_be_settled_is_settled_by_the_next_start(self):
        self.journal.mkdir()
        outcome, _ = self.traced("assign", "7", "READ-01", fails=2)
        self.assertEqual(outcome.code, DONE)
        self.assertIn("Input/output error. The next start with this site settles", outcome.errors)
        self.assertEqual(self.assignments()["READ-01"], "7")
        self.assertIn("change 1 was interrupted; it is stored.", self.change_site("history").errors)

    def start_with_full_disk(self, *arguments):
        with open("/dev/full", "wb") as full:
            return subprocess.run(
                [*harness.PROGRAM, *self.connection, *arguments, "--journal", self.journal],
                stdout=full,
                stderr=subprocess.PIPE,
            )

    def test_a_change_that_cannot_be_shown_is_not_made(self):
        before = self.everything()
        outcome = self.start_with_full_disk("assign", "7", "READ-01")
        self.assertEqual(outcome.returncode, USAGE)
        self.assertIn(b"Standard output cannot be written.", outcome.stderr)
        self.assertEqual(self.everything(), before)
        self.assertFalse(self.journal.exists())

    def test_a_journal_that_cannot_be_settled_hides_no_error_of_the_database(self):
        self.refuse_rows("System_offline_db_updates")
        self.journal.mkdir()
        outcome, _ = self.traced("assign", "7", "READ-01", fails=2)
        self.assertEqual(outcome.code, REFUSED)
        self.assertIn("Input/output error. The next start with this site settles", outcome.errors)
        self.assertIn("not today", outcome.errors)
        self.assertIn("it is not stored.", self.change_site("history").errors)

    def test_is_for_its_owner_unless_the_folder_was_there(self):
        self.change_site("assign", "7", "READ-01")
        self.assertEqual(self.journal.stat().st_mode & 0o777, 0o700)
        self.journal.chmod(0o770)
        self.change_site("assign", "7", "READ-02")
        self.assertEqual(self.journal.stat().st_mode & 0o777, 0o770)

    def test_is_kept_for_each_site(self):
        self.change_site("assign", "7", "READ-01")
        other = ["--sqlite", str(self.make_database("other.db"))]
        self.assertEqual(
            self.change_site("history", "--json", connection=other).json()["history"], []
        )
        self.change_site("undo", "1", code=USAGE, connection=other)

    def test_undo_takes_back_the_last_change_then_the_one_before(self):
        states = [self.everything()]
        for arguments in (("assign", "7", "READ-0?"), ("assign", "none", "READ-01")):
            self.change_site(*arguments)
            states.append(self.everything())
        for expected in (states[1], states[0]):
            self.change_site("undo")
            self.assertEqual(self.everything(), expected)
        self.refuse(USAGE, "undo", says="There is no change to this site that can be undone.")
        self.refuse(USAGE, "undo", "1", says="Change 1 is undone already.")
        self.change_site("undo", "4")
        self.assertEqual(self.everything(), states[1])
        self.refuse(USAGE, "undo", "99", says="There is no change 99 to this site.")

    def test_undo_refuses_when_a_row_changed_since(self):
        self.change_site("assign", "7", "READ-01", "READ-02")
        self.change("UPDATE System_workstation_cfg SET key_value = '4' WHERE pc_name = 'READ-02'")
        self.refuse(
            CONFLICT,
            "undo",
            says='Workstation READ-02 had the configuration 7 Custom map, "Annex" CT and has 4',
        )

    def test_undo_is_a_plan_like_any_other(self):
        before = self.everything()
        self.change_site("assign", "7", "READ-01")
        after = self.everything()
        tried = self.change_site("undo", "--dry-run")
        self.assertEqual(self.everything(), after)
        plan = self.directory / "undo.plan"
        self.assertEqual(self.change_site("undo", "--plan", plan, code=1).out, tried.out)
        self.change_site("apply", plan)
        self.assertEqual(self.everything(), before)
        self.assertEqual(self.states(), [(1, "assign", "undone"), (2, "undo 1", "stored")])
        self.refuse(USAGE, "undo", says="There is no change to this site that can be undone.")

    def test_a_plan_is_an_undo_only_of_the_change_that_it_takes_back(self):
        self.change_site("assign", "7", "READ-01")
        plan = self.directory / "undo.plan"
        self.change_site("undo", "--plan", plan, code=1)
        # Elsewhere another change has the number.
        self.journal = self.directory / "other"
        self.change_site("assign", "7", "READ-02")
        self.change_site("apply", plan)
        self.assertEqual(self.states(), [(1, "assign", "stored"), (2, "apply", "stored")])

    def test_undo_of_any_sequence_restores_every_row(self):
        choose = random.Random(20)
        names = sorted(self.assignments())
        states = [self.everything()]
        for step in range(12):
            numbers = [record["config_id"] for record in states[-1][0]]
            name = choose.choice(names)
            arguments = choose.choice(
                [
                    ("assign", choose.choice([*map(str, numbers), "none"]), name, "READ-*"),
                    ("set", "5", f"Port={choose.randint(1, 65535)}"),
                    ("set", "7", "6", f"RequestFileName=C:\\it's {step}\\ü.xml"),
                    ("copy", choose.choice(["1", "2", "6"]), f"O'Copy {step}"),
                    ("delete", "O'Copy*", "--yes"),
                ]
            )
            if arguments[0] == "delete" and not any(
                record["description"].startswith("O'Copy") for record in states[-1][0]
            ):
                continue
            outcome = self.run_program(*arguments, "--journal", self.journal)
            if outcome.code == USAGE:
                self.assertIn("Nothing was deleted.\nWorkstation", outcome.errors)
                continue
            self.assertEqual(outcome.code, DONE, outcome.errors)
            if outcome.out != "Nothing changes.\n":
                states.append(self.everything())
        self.assertGreater(len(states), 6)
        for expected in reversed(states[:-1]):
            self.change_site("undo", "--yes")
            self.assertEqual(self.everything(), expected)

    def test_finds_out_what_an_interrupted_change_left(self):
        self.change_site("assign", "7", "READ-01")
        self.leave_pending()
        outcome = self.change_site("history", "--json")
        self.assertEqual(
            outcome.errors, "tlpacscfg: change 1 was interrupted; it is stored.\n"
        )
        self.assertEqual(self.states(), [(1, "assign", "stored")])
        self.leave_pending()
        self.change("UPDATE System_workstation_cfg SET key_value = '1' WHERE pc_name = 'READ-01'")
        self.assertIn("it is not stored.", self.change_site("history").errors)
        self.leave_pending()
        self.change("UPDATE System_workstation_cfg SET key_value = '4' WHERE pc_name = 'READ-01'")
        self.assertIn("nobody can tell whether it was stored", self.change_site("history").errors)
        self.assertEqual(self.states(), [(1, "assign", "unknown")])
        self.refuse(USAGE, "undo", "1", says="Change 1 cannot be undone: it is unknown.")

    def test_leaves_a_change_alone_while_its_program_runs(self):
        other = ["--sqlite", str(self.make_database("other.db"))]
        self.journal.mkdir()
        reader = sqlite3.connect(self.database, isolation_level=None)
        reader.execute("BEGIN")
        reader.execute("SELECT count(*) FROM System_pc_names").fetchall()
        process = self.start("assign", "7", "READ-01", "--journal", self.journal)
        try:
            self.wait_for_entry()
            process.send_signal(signal.SIGSTOP)
            # As a change of a site whose rows can be read meanwhile.
            text = self.entry().read_text("utf-8")
            self.journal = self.directory / "other"
            self.journal.mkdir()
            self.entry().write_text(text.replace(str(self.database), other[1]), "utf-8")
            outcome = self.change_site("history", "--csv", connection=other)
            self.assertEqual((outcome.csv()[1][4], outcome.errors), ("pending", ""))
        finally:
            process.kill()
            process.communicate()
            reader.close()
        outcome = self.change_site("history", connection=other)
        self.assertIn("change 1 was interrupted; it is not stored.", outcome.errors)

    def test_settles_a_change_whose_process_number_another_program_has(self):
        self.change_site("assign", "7", "READ-01")
        self.leave_pending(process=os.getpid())
        self.assertIn("change 1 was interrupted; it is stored.", self.change_site("history").errors)

    def test_leaves_a_change_of_another_computer_to_it(self):
        self.change_site("assign", "7", "READ-01")
        self.leave_pending(computer="ELSEWHERE")
        says = "change 1 is pending; the program on ELSEWHERE settles it, or its next start there."
        self.assertIn(says, self.change_site("history").errors)
        self.refuse(USAGE, "undo", "1", says="Change 1 cannot be undone: it is pending.")
        self.assertIn(says, self.change_site("assign", "7", "READ-02").errors)

    def test_a_program_killed_before_its_commit_leaves_the_old_rows(self):
        before = self.everything()
        reader = sqlite3.connect(self.database, isolation_level=None)
        reader.execute("BEGIN")
        # The program can write, but not commit, while this transaction has read.
        reader.execute("SELECT count(*) FROM System_pc_names").fetchall()
        process = self.start("assign", "7", "READ-0?", "--journal", self.journal)
        self.wait_for_entry()
        process.send_signal(signal.SIGKILL)
        process.communicate()
        reader.close()
        self.assertEqual(self.everything(), before)
        self.assertIn("it is not stored.", self.change_site("history").errors)

    def test_a_program_killed_at_any_moment_leaves_the_old_rows_or_the_new(self):
        choose = random.Random(7)
        begun = time.monotonic()
        self.change_site("assign", "7", "READ-*")
        duration = time.monotonic() - begun
        states = {"7": self.everything()}
        self.change_site("assign", "1", "READ-*")
        states["1"] = self.everything()
        now = "1"
        for _ in range(10):
            wanted = "7" if now == "1" else "1"
            process = self.start("assign", wanted, "READ-*", "--journal", self.journal)
            time.sleep(choose.uniform(0.2, 1.1) * duration)
            process.kill()
            process.communicate()
            history = self.change_site("history", "--json").json()["history"]
            self.assertNotIn("pending", {row["state"] for row in history})
            rows = self.everything()
            self.assertIn(rows, list(states.values()))
            now = next(number for number, state in states.items() if state == rows)
            # The journal says the same: the last stored change is what the site holds.
            last = [row["number"] for row in history if row["state"] == "stored"][-1]
            document = json.loads(self.entry(last).read_text("utf-8"))
            self.assertEqual({row["after"] for row in document["plan"]["assignments"]}, {now})

    def test_loses_nothing_while_another_program_changes_rows(self):
        stop, foreign = threading.Event(), []

        def change_rows():
            choose = random.Random(3)
            database = sqlite3.connect(self.database, timeout=60)
            while not stop.is_set():
                name = f"READ-0{choose.randint(1, 9)}"
                with database:
                    database.execute("BEGIN IMMEDIATE")
                    (old,) = database.execute(
                        "SELECT key_value FROM System_workstation_cfg WHERE key_name = 'PACSConfig' "
                        "AND pc_name = ?",
                        (name,),
                    ).fetchone()
                    new = choose.choice(["1", "2", "4"])
                    database.execute(
                        "UPDATE System_workstation_cfg SET key_value = ? WHERE key_name = 'PACSConfig' "
                        "AND pc_name = ?",
                        (new, name),
                    )
                    foreign.append((name, old, new))
                time.sleep(choose.uniform(0, 0.15))
            database.close()

        known = self.assignments()
        other = threading.Thread(target=change_rows)
        other.start()
        done = 0
        try:
            for number in range(12):
                plan = self.directory / f"{number}.plan"
                self.run_program("assign", "7", f"READ-0{number % 9 + 1}", "--plan", plan)
                outcome = self.run_program("apply", plan, "--journal", self.journal)
                self.assertIn(outcome.code, (DONE, CONFLICT, REFUSED), outcome.errors)
                done += "Changed 1 workstation." in outcome.errors
        finally:
            stop.set()
            other.join()
        stored = []
        for row in self.states():
            document = json.loads(self.entry(row[0]).read_text("utf-8"))
            if document["state"] == "stored":
                stored += document["plan"]["assignments"]
        self.assertGreater(done, 0)
        self.assertEqual(len(stored), done)
        # Each change found the value that some change had left: put in order, they are one chain.
        for name in known:
            links = [(old, new) for where, old, new in foreign if where == name]
            links += [(row["before"], row["after"]) for row in stored if row["workstation"] == name]
            value = known[name]
            balance = {}
            for old, new in links:
                balance[old] = balance.get(old, 0) - 1
                balance[new] = balance.get(new, 0) + 1
            balance[value] = balance.get(value, 0) + 1
            end = {number: count for number, count in balance.items() if count}
            self.assertEqual(end, {self.assignments()[name]: 1}, name)
