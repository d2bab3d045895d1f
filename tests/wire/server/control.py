"""The test's own line to the stand-in: a second address, and batches that are commands:

TELL 'COMMAND'          where COMMAND is JSON, one of

{"command": "reset"}                        no faults, no store, no sessions; the door is open
{"command": "store", "path": P, "traits": {...}}
                                            makes the site and answers from it (see store.py)
{"command": "change", "sql": SQL}           changes the site as another program does, or is refused
{"command": "fault", ...}                   adds a fault (see faults.py)
{"command": "faultsLeft"}                   the number of faults that did not happen
{"command": "dropSessions"}                 hangs up on every client; their transactions are undone
{"command": "stop"}, {"command": "start"}   closes the door to new clients, and opens it
{"command": "waitForSessions", "count": N}  until so many clients are connected

It answers when that is done. Whatever a text literal holds reaches the stand-in as it is; outside
of one the driver would look for parameters and escapes.
"""
import json
import os
import socketserver

import store
import tds


class Session(socketserver.StreamRequestHandler):
    def handle(self):
        while (message := tds.receive(self.rfile)) is not None:
            kind, content = message
            self.wfile.write(tds.packets(self.answer(kind, content)))

    def answer(self, kind, content):
        if kind == tds.PRELOGIN:
            return tds.prelogin_answer()
        if kind == tds.LOGIN7:
            return tds.login_answer("control")
        if kind != tds.SQL_BATCH:
            return tds.done()
        try:
            command = tds.batch_text(content).removeprefix("TELL '")[:-1].replace("''", "'")
            result = obey(self.server.site, json.loads(command))
        except Exception as error:  # The test reports whatever went wrong here.
            return tds.error(50000, repr(error)) + tds.done(tds.DONE_ERROR)
        if result is None:
            return tds.done()
        columns = [["", "int"]]
        rows = tds.columns_metadata(columns) + tds.row(columns, [result])
        return rows + tds.done(tds.DONE_COUNT, 1)


def obey(site, what):
    command = what.pop("command")
    if command == "reset":
        site.reset()
    elif command == "store":
        if os.path.exists(what["path"]):
            os.remove(what["path"])
        store.create(what["path"])
        site.keeps = what
    elif command == "change":
        store.change(site.keeps["path"], what["sql"])
    elif command == "fault":
        site.faults.add(what)
    elif command == "faultsLeft":
        return len(site.faults.waiting)
    elif command == "dropSessions":
        site.drop_sessions()
    elif command == "stop":
        site.stop()
    elif command == "start":
        site.start()
    elif command == "waitForSessions":
        site.wait_for_sessions(what["count"])
    else:
        raise ValueError(f"No such command: {command}")
    return None
