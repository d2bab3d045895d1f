"""The site in an SQLite file, with the behaviour of SQL Server.

Differences: a reader never waits for a writer, a writer locks all rows, only the letters a to z are
compared without regard to case, and trailing blanks count in comparisons.
"""
import datetime
import os
import re
import sqlite3

import tsql

SCHEMA = os.path.join(os.path.dirname(__file__), "../../../demo/schema.sqlserver.sql")
RANGES = {"smallint": (1 << 15, 220), "int": (1 << 31, 8115)}


class Refusal(Exception):
    """An error of the server; it ends the statement, the batch or the transaction."""

    def __init__(self, number, text, ends="statement"):
        super().__init__(text)
        self.number = number
        self.ends = ends


class Locked(Exception):
    """Another session locks the rows."""

    def __init__(self):
        super().__init__("Another session locks the rows.")


def create(path, traits=None):
    rule = "NOCASE" if "_CI" in collation(traits or {}) else "BINARY"
    with open(SCHEMA, encoding="utf-8") as file:
        script = re.sub(r"(n?varchar\(\d+\))", rf"\1 COLLATE {rule}", file.read())
    if (traits or {}).get("codePage"):
        script = script.replace("nvarchar", "varchar")
    connection = opened(path)
    connection.executescript(f"BEGIN; {script}; COMMIT")
    connection.close()


def collation(traits):
    return traits.get("collation", "SQL_Latin1_General_CP1_CI_AS")


def opened(path):
    connection = sqlite3.connect(path, isolation_level=None, timeout=0)
    # The file need not survive a power failure.
    connection.execute("PRAGMA synchronous = OFF")
    return connection


def change(path, sql):
    """Changes the site as another program. Raises Locked while a session locks the rows."""
    connection = opened(path)
    try:
        connection.executescript(f"BEGIN IMMEDIATE; {sql}; COMMIT")
    except sqlite3.OperationalError as error:
        if "locked" in str(error):
            raise Locked from error
        raise
    finally:
        connection.close()


class Store:
    """One session's view of the site. `traits` may contain

    "codePage": true          letters outside of Latin-1 are stored as question marks
    "widths": "cut"|"refuse"  longer texts than the column are truncated, or refused
    "joinsLines": true        a backslash before a line break in a text joins the lines
    "dayFirst": true          dates written with blanks have the day before the month
    "collation": NAME         of the database; one without _CI in it tells upper case from lower case
    "clock": MINUTES          how far the server's clock is ahead
    "denied": ["INSERT on T"...]    what the login may not do
    "serverState": false      the login may not see the server's connections
    "asksNothing": true       the login may not ask what the server, the database and the login are
    """

    SESSION = 51

    def __init__(self, path, traits, login="", encrypted=False):
        self.traits = traits
        self.login = login
        self.serializable = False
        self.errors_undo = False
        self.trancount = self.rowcount = 0
        self.fitting = False
        self.refusal = None
        self.connection = opened(path)
        self.add_server(encrypted)
        self.connection.create_function("trancount", 0, lambda: self.trancount)
        self.connection.create_function("rowcount", 0, lambda: self.rowcount)
        self.connection.create_function("len", 1, lambda text: text and len(text.rstrip(" ")))
        self.connection.create_function("fitted", 2, self.fitted)
        self.connection.create_function("fitting", 1, self.set_fitting)
        self.connection.create_function("is_fitting", 0, lambda: self.fitting)
        self.types = {}  # Of each column, by its name in lower case.
        for (table,) in self.connection.execute(
            "SELECT name FROM sqlite_master WHERE type = 'table'"
        ).fetchall():
            columns = self.connection.execute(f"PRAGMA table_info({table})").fetchall()
            types = {column[1]: column[2].lower() for column in columns}
            self.types.update({name.lower(): kind for name, kind in types.items()})
            self.watch(table, types)
            self.connection.executemany(
                "INSERT INTO INFORMATION_SCHEMA_COLUMNS VALUES(?, ?, ?)",
                [(table, name, kind.split("(")[0]) for name, kind in types.items()],
            )

    def add_server(self, encrypted):
        """What a server tells of itself, of the database and of the login."""
        language = "British" if self.traits.get("dayFirst") else "us_english"
        functions = {
            "spid": lambda: self.SESSION,
            "language": lambda: language,
            "version": lambda: "Microsoft SQL Server, a stand-in",
            "suser_sname": lambda: self.login,
            "db_name": lambda: "Talora",
            "databasepropertyex": lambda database, name: collation(self.traits),
            "collationproperty": lambda name, what: 1252,
            "month": lambda text: int(self.datetime_value(text)[5:7]),
            "has_perms_by_name": lambda table, kind, right: int(not self.denies(right, table)),
        }
        for name, function in functions.items():
            self.connection.create_function(name, function.__code__.co_argcount, self.asked(function))
        self.connection.create_function("getdate", 0, self.now)
        self.connection.executescript(
            "CREATE TEMP TABLE INFORMATION_SCHEMA_COLUMNS(TABLE_NAME, COLUMN_NAME, DATA_TYPE);"
            "CREATE TEMP TABLE sys_dm_exec_connections(session_id, encrypt_option);"
        )
        self.connection.execute(
            "INSERT INTO sys_dm_exec_connections VALUES(?, ?)",
            (self.SESSION, "TRUE" if encrypted else "FALSE"),
        )

    def asked(self, function):
        """The function as SQLite calls it, which does not keep the error of one that fails."""

        def called(*arguments):
            try:
                if self.traits.get("asksNothing"):
                    raise Refusal(229, "The permission was denied.")
                return function(*arguments)
            except Refusal as refusal:
                self.refusal = refusal
                raise

        return called

    def now(self):
        # With a T the order of year, month and day is the same in every language.
        time = datetime.datetime.now() + datetime.timedelta(minutes=self.traits.get("clock", 0))
        return time.isoformat("T", "milliseconds")

    def denies(self, right, table):
        return f"{right} on {table}".lower() in map(str.lower, self.traits.get("denied", ()))

    def require_rights(self, statement):
        """Refuses as a server does what the login may not do."""
        table = statement.words[1 if statement.verb == "UPDATE" else 2] if statement.words[2:] else ""
        if self.denies(statement.verb, table):
            what = f"The {statement.verb} permission was denied on the object '{table}'."
            raise Refusal(229, what)
        hidden = self.traits.get("serverState") is False or self.traits.get("asksNothing")
        if hidden and "DM_EXEC_CONNECTIONS" in statement.words:
            raise Refusal(300, "VIEW SERVER STATE permission was denied on object 'server'.")

    def watch(self, table, types):
        """Converts the values of changed rows to the types of their columns."""
        script = ""
        values = ", ".join(f"{name} = fitted(NEW.{name}, '{kind}')" for name, kind in types.items())
        for event, sets in [("INSERT", values)] + [
            (f"UPDATE OF {name}", f"{name} = fitted(NEW.{name}, '{kind}')")
            for name, kind in types.items()
        ]:
            script += (
                f'CREATE TEMP TRIGGER "{event} {table}" AFTER {event} ON main.{table}'
                f" WHEN NOT is_fitting() BEGIN SELECT fitting(1);"
                f" UPDATE {table} SET {sets} WHERE rowid = NEW.rowid; SELECT fitting(0); END;"
            )
        self.connection.executescript(script)

    def set_fitting(self, value):
        self.fitting = bool(value)

    def fitted(self, value, kind):
        try:
            return self.converted(value, kind)
        except Refusal as refusal:
            self.refusal = refusal
            raise

    def converted(self, value, kind):
        if value is None:
            return None
        if kind == "datetime":
            return self.datetime_value(str(value))
        if kind in RANGES:
            limit, number = RANGES[kind]
            if isinstance(value, str) and not value.strip():
                return 0
            if not isinstance(value, int):
                what = f"Conversion failed when converting '{value}' to data type {kind}."
                raise Refusal(245, what, ends="transaction")
            if not -limit <= value < limit:
                raise Refusal(number, f"Arithmetic overflow error for data type {kind}.")
            return value
        text = str(value)
        if self.traits.get("codePage"):
            text = text.encode("latin-1", "replace").decode("latin-1")
        width = int(re.search(r"\d+", kind).group())
        if len(text) > width and self.traits.get("widths") == "refuse":
            raise Refusal(8152, "String or binary data would be truncated.")
        return text[:width] if self.traits.get("widths") == "cut" else text

    def datetime_value(self, text):
        swapped = self.traits.get("dayFirst") and "T" not in text
        if swapped:
            text = re.sub(r"^(\d+)-(\d+)-(\d+)", r"\1-\3-\2", text)
        try:
            return datetime.datetime.fromisoformat(text).isoformat(" ").removesuffix("000")
        except ValueError:
            what = "The conversion of a date to data type datetime resulted in an error."
            raise Refusal(242 if swapped else 241, what, ends="transaction") from None

    def statements(self, batch):
        """Parses a batch and refuses one with an invalid statement before any of it runs."""
        try:
            found = tsql.statements(batch, self.traits.get("joinsLines"))
            for statement in found:
                if not statement.is_for_the_session:
                    self.check(statement)
            return found
        except tsql.SyntaxError as error:
            raise Refusal(error.number, str(error), ends="batch") from None
        except sqlite3.Error as error:
            raise self.refusal_for(error) from None

    def check(self, statement):
        try:
            self.connection.execute("EXPLAIN " + statement.sql).close()
        except sqlite3.Error as error:
            # A table may be missing until its statement runs.
            if "no such table" not in str(error):
                raise

    def set(self, words):
        if words[:4] == ["SET", "TRANSACTION", "ISOLATION", "LEVEL"]:
            self.serializable = words[4] in ("SERIALIZABLE", "REPEATABLE")
        if words[:2] == ["SET", "XACT_ABORT"]:
            self.errors_undo = words[2] == "ON"

    def run(self, statement):
        """The columns and the rows of a query, or None and the number of changed rows."""
        self.fitting, self.refusal = False, None
        self.require_rights(statement)
        try:
            if self.trancount and not self.connection.in_transaction:
                self.begin(statement)
            cursor = self.connection.execute(statement.sql)
            if cursor.description is None:
                self.rowcount = cursor.rowcount
                return None, cursor.rowcount
            rows = cursor.fetchall()
            self.rowcount = len(rows)
            return self.columns(cursor.description, rows), rows
        except (sqlite3.Error, sqlite3.Warning) as error:
            refusal = self.refusal_for(error, statement.changes_rows)
            if self.errors_undo and isinstance(refusal, Refusal):
                refusal.ends = "transaction"
            raise refusal from None

    def begin(self, statement):
        """Reading locks the rows only on request; writing always does."""
        if statement.changes_rows or statement.holds:
            self.connection.execute("BEGIN IMMEDIATE")
        elif self.serializable:
            self.connection.execute("BEGIN")

    def columns(self, description, rows):
        columns = []
        for position, (name, *_) in enumerate(description):
            values = [row[position] for row in rows if row[position] is not None]
            columns.append([name if name.isidentifier() else "", self.type_of(name, values)])
        return columns

    def type_of(self, name, values):
        declared = self.types.get(name.lower())
        if declared is None and values and all(isinstance(value, int) for value in values):
            return "int"
        if declared is None and name.lower().startswith("getdate"):
            return "datetime"
        if declared in ("smallint", "int", "datetime"):
            return declared
        width = max([len(value.encode("utf-16-le")) // 2 for value in map(str, values)], default=1)
        width = max(width, int(re.search(r"\d+", declared or "nvarchar(1)").group()))
        return f"nvarchar({width})" if width <= 4000 else "nvarchar(max)"

    def refusal_for(self, error, changes_rows=False):
        if self.refusal:
            return self.refusal
        text = str(error)
        if "locked" in text:
            # Two readers that both want to write: one must fail.
            if changes_rows and self.connection.in_transaction:
                what = "Transaction was deadlocked and has been chosen as the deadlock victim."
                return Refusal(1205, what, ends="transaction")
            return Locked()
        for pattern, number, reply in ERRORS:
            if match := re.search(pattern, text):
                ends = "statement" if number in (515, 2627) else "batch"
                return Refusal(number, reply.format(*match.groups()), ends)
        return Refusal(50000, text, ends="batch")

    def commit(self):
        if self.connection.in_transaction:
            try:
                self.connection.execute("COMMIT")
            except sqlite3.OperationalError as error:
                raise Locked from error

    def roll_back(self):
        if self.connection.in_transaction:
            self.connection.execute("ROLLBACK")

    def close(self):
        self.roll_back()
        self.connection.close()


ERRORS = [
    (
        r"UNIQUE constraint failed: (\w+)",
        2627,
        "Violation of PRIMARY KEY constraint. Cannot insert duplicate key in object 'dbo.{}'.",
    ),
    (
        r"NOT NULL constraint failed: (\w+)\.(\w+)",
        515,
        "Cannot insert the value NULL into column '{1}', table '{0}'.",
    ),
    (r"no such table: (\S+)", 208, "Invalid object name '{}'."),
    (r"no such column: (\S+)", 207, "Invalid column name '{}'."),
    (r"has no column named (\S+)", 207, "Invalid column name '{}'."),
    (r"has \d+ columns but \d+ values|values for \d+ columns", 213, "Column name or number of "
     "supplied values does not match table definition."),
    (r'near "(.*)": syntax error', 102, "Incorrect syntax near '{}'."),
    (r"incomplete input", 102, "Incorrect syntax near the end."),
]
