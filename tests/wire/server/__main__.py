#!/usr/bin/env python3
"""A stand-in for SQL Server, for tests only:   server DIRECTORY

Prints the port it listens at. Answers as DIRECTORY/server-script.json says (see answers.py), and
records the logins, the batches and the transactions that hold any in DIRECTORY/server-record.jsonl,
one a line.
"""
import json
import os
import socketserver
import sys
import threading

import answers
import tds

record_lock = threading.Lock()


class Session(socketserver.StreamRequestHandler):
    def handle(self):
        self.directory = self.server.directory
        self.script = answers.Script(os.path.join(self.directory, "server-script.json"))
        self.transaction = 0
        self.begun = 0
        self.used = False
        handlers = {
            tds.PRELOGIN: lambda content: self.reply(tds.prelogin_answer()),
            tds.LOGIN7: self.log_in,
            tds.SQL_BATCH: self.run_batch,
            tds.TRANSACTION: self.run_transaction,
            tds.ATTENTION: self.stop_batch,
            tds.RPC: self.refuse_call,
        }
        try:
            while (message := tds.receive(self.rfile)) is not None:
                kind, content = message
                if handlers[kind](content) == "close":
                    return
        except ConnectionError:
            pass

    def reply(self, content, last=True):
        self.wfile.write(tds.packets(content, last))

    def record(self, **event):
        line = json.dumps(event, ensure_ascii=False, separators=(",", ":"))
        path = os.path.join(self.directory, "server-record.jsonl")
        with record_lock, open(path, "a", encoding="utf-8", newline="\n") as file:
            file.write(line + "\n")

    def log_in(self, content):
        login = tds.login(content)
        self.record(login=login)
        outcome = self.script.login
        if outcome == "stall":
            # The next thing that the client says, or its going, ends the waiting.
            return None
        if outcome == "close":
            return "close"
        if outcome is not None:
            refusal = tds.error(outcome["number"], outcome["text"], severity=14)
            self.reply(refusal + tds.done(tds.DONE_ERROR))
            return "close"
        self.reply(tds.login_answer(login["database"]))
        return None

    def run_batch(self, content):
        text = tds.batch_text(content)
        if self.transaction and not self.used:
            self.used = True
            self.record(transaction="begin")
        self.record(batch=text)
        answer = self.script.answer_to(text)
        if answer.get("stalls"):
            return None
        if "rows" in answer:
            rows = answers.rows_reply(answer)
            if answer.get("closes"):
                self.reply(rows, last=False)
                return "close"
            count = len(answer["rows"])
            self.reply(rows + tds.done(tds.DONE_COUNT, count))
            return None
        failure = answer.get("fails")
        count = answers.statement_count(text)
        if count == 0 and failure is None:
            unknown = tds.error(208, "The stand-in has no answer to this batch.")
            self.reply(unknown + tds.done(tds.DONE_ERROR))
            return None
        undone = b""
        if failure and failure.get("undoes") and self.transaction:
            undone = self.end_transaction(tds.ROLLBACK, "undone")
        self.reply(undone + answers.changes_reply(max(count, 1), failure))
        return None

    def stop_batch(self, content):
        self.record(stopped=True)
        self.reply(tds.done(tds.DONE_ATTENTION))

    def begin_transaction(self):
        self.begun += 1
        self.transaction = self.begun
        self.used = False
        return tds.transaction_begun(self.transaction)

    def end_transaction(self, kind, event):
        # The driver begins and ends transactions in which nothing happens.
        if self.used:
            self.record(transaction=event)
        ended, self.transaction, self.used = self.transaction, 0, False
        return tds.transaction_ended(kind, ended)

    def run_transaction(self, content):
        kind, begins_next = tds.transaction_request(content)
        reply = b""
        if kind != tds.BEGIN:
            if not self.transaction:
                what = tds.error(3902, "The request has no corresponding BEGIN TRANSACTION.")
                self.reply(what + tds.done(tds.DONE_ERROR))
                return
            reply += self.end_transaction(kind, "commit" if kind == tds.COMMIT else "rollback")
        if kind == tds.BEGIN or begins_next:
            reply += self.begin_transaction()
        self.reply(reply + tds.done())

    def refuse_call(self, content):
        self.record(call=len(content))
        what = tds.error(2812, "The stand-in knows no stored procedure.")
        self.reply(what + tds.done(tds.DONE_ERROR))


class Server(socketserver.ThreadingTCPServer):
    daemon_threads = True
    allow_reuse_address = True

    def __init__(self, directory):
        super().__init__(("127.0.0.1", 0), Session)
        self.directory = directory


def main():
    server = Server(sys.argv[1])
    print(server.server_address[1], flush=True)
    server.serve_forever()


main()
