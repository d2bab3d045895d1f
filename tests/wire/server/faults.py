"""Faults at chosen requests.

A fault names a request of a client after its login by one of
    "request": N        the N-th from now: batches, begins, commits and rollbacks
    "batch": T          the first batch that begins with the text
    "transaction": T    the first "begin", "commit" or "rollback", as a request or in a batch
and its effect by one of
    "hangsUp": "before" | "after"               before it is executed, or after it without an answer
    "hangsUp": "inside", "statements": N        after the answers to N statements
    "hangsUp": "inside", "rows": N              after N rows
    "stalls": "before" | "after"                no further answer, not to an attention either
    "fails": {"number": N, "text": T, "undoes": true | false}
                                                not executed; may roll back the transaction
    "changes": SQL                              another program changes the site first, or as soon
                                                as no session locks the rows
Every fault happens once.
"""
import re
import threading


class Request:
    def __init__(self, text, transaction=None):
        self.text = text
        self.transaction = transaction or re.match(r"\s*(\w*)", text).group(1).lower()

    def is_named_by(self, fault):
        if "batch" in fault:
            return bool(self.text) and self.text.startswith(fault["batch"])
        if "transaction" in fault:
            return self.transaction == fault["transaction"]
        fault["request"] -= 1
        return fault["request"] == 0


class Faults:
    def __init__(self):
        self.lock = threading.Lock()
        self.waiting = []

    def add(self, fault):
        with self.lock:
            self.waiting.append(fault)

    def clear(self):
        with self.lock:
            self.waiting = []

    def at(self, request):
        """Removes and returns the faults of the request."""
        with self.lock:
            found = [fault for fault in self.waiting if request.is_named_by(fault)]
            self.waiting = [fault for fault in self.waiting if fault not in found]
            return found


def sent_before_hanging_up(fault, pieces):
    """The part of an answer that is sent. Each piece names what it ends: a statement or a row."""
    counted = "statement" if "statements" in fault else "row"
    left = fault.get("statements", fault.get("rows"))
    sent = b""
    while left > 0:
        piece = next(pieces, None)
        if piece is None:
            break
        content, ends = piece
        sent += content
        left -= ends == counted
    return sent
