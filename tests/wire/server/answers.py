"""Scripted answers. The script is a JSON file that is read for every connection:

{
  "login": "stall"                        no answer
         | "close"                        closes the connection
         | {"number": N, "text": T},      a refusal of the login
  "answers": [                            the first whose "to" is the beginning of the batch
    {"to": T, "columns": [[NAME, TYPE]...], "rows": [[VALUE...]...],
     "closes": true},                     closes the connection after the rows
    {"to": T, "fails": {"statement": N, "number": N, "text": T,
     "undoes": true}},                    rolls back the transaction
    {"to": T, "stalls": true}             no answer until the client cancels
  ]
}

Batches without a scripted answer are answered from the store, if there is one (see store.py).
Without a store, statements that change rows report one row each, and anything else is an error.
"""
import json
import os
import re

import tds


class Script:
    def __init__(self, path):
        self.login = None
        self.answers = []
        if os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                script = json.load(file)
            self.login = script.get("login")
            self.answers = script.get("answers", [])

    def answer_to(self, text):
        for answer in self.answers:
            if text.startswith(answer["to"]):
                return answer
        return {}


def statement_count(text):
    return len(re.findall(r"^\s*(?:INSERT|UPDATE|DELETE)\b", text, re.IGNORECASE | re.MULTILINE))


def rows_reply(answer):
    content = tds.columns_metadata(answer["columns"])
    for values in answer["rows"]:
        content += tds.row(answer["columns"], values)
    return content


def changes_reply(count, failure):
    """One result for each statement; a failing one ends the batch."""
    for number in range(1, count + 1):
        if failure and number == failure["statement"]:
            yield tds.error(failure["number"], failure["text"]) + tds.done(tds.DONE_ERROR)
            return
        yield tds.done(tds.DONE_COUNT | (tds.DONE_MORE if number < count else 0), 1)
