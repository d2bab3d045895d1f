"""The test's control connection to the stand-in: a second address, where batches are commands:

TELL 'COMMAND'          where COMMAND is JSON, one of

{"command": "reset"}                        no faults, store or sessions; connections are accepted
{"command": "store", "path": P, "traits": {...}}
                                            creates the site and answers from it (see store.py)
{"command": "change", "sql": SQL}           changes the site as another program, or fails
{"command": "fault", ...}                   adds a fault (see faults.py)
{"command": "faultsLeft"}                   the number of faults that did not happen
{"command": "dropSessions"}                 closes all connections and rolls back their transactions
{"command": "stop"}, {"command": "start"}   refuses new connections; accepts them again
{"command": "waitForSessions", "count": N}  waits until N clients are connected

The reply is sent when the command is done. The command is a text literal because the driver would
look for parameters and escapes outside of one.
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
            result = execute(self.server.site, json.loads(command))
        except Exception as error:  # The test reports it.
            return tds.error(50000, repr(error)) + tds.done(tds.DONE_ERROR)
        if result is None:
            return tds.done()
        columns = [["", "int"]]
        rows = tds.columns_metadata(columns) + tds.row(columns, [result])
        return rows + tds.done(tds.DONE_COUNT, 1)


def execute(site, what):
    command = what.pop("command")
    if command == "reset":
        site.reset()
    elif command == "store":
        if os.path.exists(what["path"]):
            os.remove(what["path"])
        store.create(what["path"], what.get("traits"))
        site.stored_site = what
    elif command == "change":
        store.change(site.stored_site["path"], what["sql"])
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
