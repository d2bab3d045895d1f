"""Translates the T-SQL of administration programs into SQLite's dialect."""
import functools
import re

TOKEN = re.compile(
    r"""(?P<space>\s+|--[^\n]*|/\*.*?\*/)
      | (?P<text>[Nn]?'(?:[^']|'')*')
      | (?P<name>\[[^\]]*\]|"[^"]*")
      | (?P<word>@{0,2}[^\W\d][\w$]*)
      | (?P<number>\d+(?:\.\d+)?)
      | (?P<symbol>.)""",
    re.VERBOSE | re.DOTALL,
)
VERBS = ("SELECT", "INSERT", "UPDATE", "DELETE", "SET", "BEGIN", "COMMIT", "ROLLBACK", "IF")
SERVER_VALUES = ("@@TRANCOUNT", "@@ROWCOUNT", "@@SPID", "@@LANGUAGE", "@@VERSION")
SYSTEM_SCHEMAS = ("SYS", "INFORMATION_SCHEMA")
HOLDING_HINTS = {"UPDLOCK", "HOLDLOCK", "XLOCK", "TABLOCKX", "SERIALIZABLE", "REPEATABLEREAD"}


def is_for_the_session(text):
    verb = re.match(r"\s*(\w*)", text).group(1).upper()
    return verb in ("SET", "BEGIN", "COMMIT", "ROLLBACK")


class SyntaxError(Exception):
    def __init__(self, number, text):
        super().__init__(text)
        self.number = number


class Statement:
    """One statement: its verb, its text for SQLite, and whether reading locks the rows."""

    def __init__(self, tokens):
        self.words = [text.upper() for kind, text in tokens if kind == "word"]
        self.verb = self.words[0] if self.words else tokens[0][1]
        self.holds = False
        self.sql = self.translated(tokens)
        if self.verb == "IF":
            self.sql = "SELECT" + self.sql[len("IF") :]

    @property
    def changes_rows(self):
        return self.verb in ("INSERT", "UPDATE", "DELETE")

    @property
    def is_for_the_session(self):
        """True for a setting and for the begin or end of a transaction."""
        return is_for_the_session(self.verb)

    def translated(self, tokens):
        """A nested query is translated by itself, so that each has its own limit and list."""
        tokens = [token for token in tokens if token[0] != "space"]
        pieces, limit, item_start, in_list = [], "", 0, False
        position = 0
        while position < len(tokens):
            kind, text = tokens[position]
            word = text.upper() if kind == "word" else ""
            following = [item[1].upper() for item in tokens[position + 1 : position + 3]]
            if word == "SELECT":
                in_list, item_start = True, position + 1
            elif word == "FROM":
                in_list = False
            if word == "TOP" and in_list:
                end = closing(tokens, position + 1) if following[:1] == ["("] else position + 1
                limit = " LIMIT " + "".join(text for _, text in tokens[position + 1 : end + 1])
                position = item_start = end + 1
            elif word == "DBO" and following[:1] == ["."]:
                position += 2
            elif word in SYSTEM_SCHEMAS and following[:1] == ["."]:
                pieces.append(f"{text}_{tokens[position + 2][1]}")
                position += 3
            elif word == "WITH" and following[:1] == ["("]:
                end = closing(tokens, position + 1)
                hints = {text.upper() for _, text in tokens[position + 2 : end]}
                self.holds = self.holds or bool(hints & HOLDING_HINTS)
                position = end + 1
            elif in_list and position == item_start and following[:1] == ["="]:
                end = item_end(tokens, position)
                pieces.append(f"{self.translated(tokens[position + 2 : end])} AS {text}")
                position = end
            elif text == "(":
                end = closing(tokens, position)
                pieces.append(f"({self.translated(tokens[position + 1 : end])})")
                position = end + 1
            else:
                if text == "," and in_list:
                    item_start = position + 1
                pieces.append(renamed(kind, text, following))
                position += 1
        return " ".join(pieces) + limit


def renamed(kind, text, following):
    if kind == "text":
        return text.lstrip("Nn")
    if kind == "word" and text.upper() == "ISNULL" and following[:1] == ["("]:
        return "ifnull"
    if kind == "word" and text.upper() in SERVER_VALUES:
        return text[2:] + "()"
    return text


def closing(tokens, opening):
    depth = 0
    for position in range(opening, len(tokens)):
        depth += {"(": 1, ")": -1}.get(tokens[position][1], 0)
        if depth == 0:
            return position
    raise SyntaxError(102, f"Incorrect syntax near '{tokens[-1][1]}'.")


def item_end(tokens, start):
    """The end of an item of a select list."""
    position = start
    while position < len(tokens):
        kind, text = tokens[position]
        if text == "(":
            position = closing(tokens, position)
        elif text == "," or (kind == "word" and text.upper() == "FROM"):
            return position
        position += 1
    return position


@functools.lru_cache(maxsize=1024)
def statements(batch, joins_lines=False):
    """The statements of a batch, which need no separators. With `joins_lines` a backslash before a
    line break inside a text joins the lines. Kept, because most tests send the batches of others."""
    tokens = []
    for match in TOKEN.finditer(batch):
        kind, text = match.lastgroup, match.group()
        if kind == "symbol" and text in "'\"[":
            raise SyntaxError(105, "Unclosed quotation mark after the character string.")
        if kind == "text" and joins_lines:
            text = re.sub(r"\\\r?\n", "", text)
        tokens.append((kind, text))
    return tuple(Statement(part) for part in split(tokens))


def split(tokens):
    parts, current, verb, seen, depth = [], [], "", set(), 0
    for kind, text in tokens:
        word = text.upper() if kind == "word" else ""
        depth += {"(": 1, ")": -1}.get(text, 0)
        if depth == 0 and (text == ";" or (word in VERBS and begins(word, verb, seen))):
            parts.append(current)
            current, verb, seen = [], word, set()
        if text != ";":
            current.append((kind, text))
        if word == "SELECT":
            seen.discard("UNION")
        seen.add(word)
    parts.append(current)
    return [part for part in parts if any(kind != "space" for kind, _ in part)]


def begins(word, verb, seen):
    """Whether the verb begins a statement, or belongs to the one before."""
    if word == "SET" and verb == "UPDATE" and "SET" not in seen:
        return False
    if word == "SELECT" and verb == "INSERT" and not seen & {"VALUES", "SELECT"}:
        return False
    return not (word == "SELECT" and "UNION" in seen)
