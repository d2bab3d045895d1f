"""One client's conversation with the stand-in."""
import os
import select
import socketserver

import answers
import faults
import store
import tds
import tls
import tsql

NO_ANSWER = "The stand-in has no answer to this batch."
NOTHING_TO_END = {tds.COMMIT: 3902, tds.ROLLBACK: 3903}


class HangUp(Exception):
    pass


def nothing_to_end(kind):
    what = "The request has no corresponding BEGIN TRANSACTION."
    return store.Refusal(NOTHING_TO_END[kind], what)


class Session(socketserver.StreamRequestHandler):
    def handle(self):
        self.site = self.server.site
        self.script = answers.Script(os.path.join(self.site.directory, "server-script.json"))
        self.transaction = 0
        self.nested = 0
        self.begun = 0
        self.used = False
        self.silent = False
        self.store = None
        handlers = {
            tds.PRELOGIN: self.negotiate,
            tds.LOGIN7: self.log_in,
            tds.SQL_BATCH: self.run_batch,
            tds.TRANSACTION: self.run_transaction,
            tds.ATTENTION: self.stop_batch,
            tds.RPC: self.refuse_call,
        }
        self.site.enter(self)
        try:
            while (message := tds.receive(self.rfile)) is not None:
                kind, content = message
                if not self.silent:
                    handlers[kind](content)
        except HangUp:
            if self.used:
                self.site.record(transaction="undone")
        except ConnectionError:
            pass
        finally:
            # Before the connection is closed.
            if self.store:
                self.store.close()
            self.site.change()
            self.site.leave(self)

    def reply(self, content, last=True):
        self.wfile.write(tds.packets(content, last))

    def negotiate(self, content):
        context = self.site.encryption
        self.reply(tds.prelogin_answer(encrypts=context is not None))
        if context is not None:
            self.rfile = self.wfile = tls.Stream(context, self.rfile, self.wfile)

    def log_in(self, content):
        login = tds.login(content)
        self.site.record(login=login)
        outcome = self.script.login
        if outcome == "stall":
            # handle() goes on with the next message of the client.
            return
        if outcome == "close":
            raise HangUp
        if outcome is not None:
            refusal = tds.error(outcome["number"], outcome["text"], severity=14)
            self.reply(refusal + tds.done(tds.DONE_ERROR))
            raise HangUp
        encrypted = self.site.encryption is not None
        self.store = self.site.new_store(login["user"], encrypted)
        self.reply(tds.login_answer(login["database"]))

    def run_batch(self, content):
        text = tds.batch_text(content)
        if self.transaction and not self.used:
            self.used = True
            self.site.record(transaction="begin")
        self.site.record(batch=text)
        answer = self.script.answer_to(text)
        if answer.get("stalls"):
            return
        if answer.get("closes"):
            self.reply(answers.rows_reply(answer), last=False)
            raise HangUp
        if answer or self.store is None:
            pieces = self.scripted(text, answer)
        else:
            pieces = self.stored(text)
        self.serve(faults.Request(text), pieces)

    def serve(self, request, pieces):
        """Sends the lazily made pieces of an answer, subject to the request's faults."""
        for fault in self.site.faults.at(request):
            if "changes" in fault:
                self.site.change(fault["changes"])
            else:
                pieces = self.with_fault(fault, pieces)
        content = b"".join(content for content, _ in pieces)
        self.site.change()
        if not self.silent:
            self.reply(content)

    def with_fault(self, fault, pieces):
        if "fails" in fault:
            return iter([(self.failure(**fault["fails"]), "statement")])
        when = fault.get("hangsUp") or fault["stalls"]
        if when == "inside":
            self.reply(faults.sent_before_hanging_up(fault, pieces), last=False)
        if when == "after":
            list(pieces)
        if "hangsUp" in fault:
            raise HangUp
        self.silent = True
        return iter(())

    def failure(self, number, text, undoes=False):
        undone = b""
        if undoes and self.transaction:
            undone = self.end_transaction(tds.ROLLBACK, "undone")
        return undone + tds.error(number, text) + tds.done(tds.DONE_ERROR)

    def scripted(self, text, answer):
        if "rows" in answer:
            done = tds.done(tds.DONE_COUNT, len(answer["rows"]))
            yield answers.rows_reply(answer) + done, "statement"
            return
        failure = answer.get("fails")
        count = answers.statement_count(text)
        if count == 0 and failure is None and tsql.is_for_the_session(text):
            for statement in tsql.statements(text):
                yield self.session_reply(statement) + tds.done(), "statement"
            return
        if count == 0 and failure is None:
            yield tds.error(208, NO_ANSWER) + tds.done(tds.DONE_ERROR), "statement"
            return
        if failure and failure.get("undoes") and self.transaction:
            yield self.end_transaction(tds.ROLLBACK, "undone"), ""
        for piece in answers.changes_reply(max(count, 1), failure):
            yield piece, "statement"

    def stored(self, text):
        try:
            statements = list(self.store.statements(text))
        except store.Refusal as refusal:
            yield self.refused(refusal), "statement"
            return
        while statements:
            statement = statements.pop(0)
            more = tds.DONE_MORE if statements else 0
            try:
                if statement.is_for_the_session:
                    yield self.session_reply(statement) + tds.done(more), "statement"
                    continue
                self.store.trancount = self.nested + 1 if self.transaction else 0
                columns, rows = self.retry_while_locked(self.store.run, statement)
            except store.Refusal as refusal:
                yield self.refused(refusal, more), "statement"
                if refusal.ends != "statement":
                    return
                continue
            if statement.verb == "IF":
                statements = statements if rows[0][0] else statements[1:]
                yield tds.done(tds.DONE_MORE if statements else 0), "statement"
            elif columns is None:
                yield tds.done(tds.DONE_COUNT | more, rows), "statement"
            else:
                yield tds.columns_metadata(columns), ""
                for row in rows:
                    yield tds.row(columns, row), "row"
                yield tds.done(tds.DONE_COUNT | more, len(rows)), "statement"

    def refused(self, refusal, more=0):
        undone = b""
        if refusal.ends == "transaction" and self.transaction:
            undone = self.end_transaction(tds.ROLLBACK, "undone")
        if refusal.ends != "statement":
            more = 0
        return undone + tds.error(refusal.number, str(refusal)) + tds.done(tds.DONE_ERROR | more)

    def retry_while_locked(self, action, *arguments):
        """Waits for rows that another session locks, until the client sends something."""
        while True:
            try:
                return action(*arguments)
            except store.Locked:
                if select.select([self.connection], [], [], 0.01)[0]:
                    raise store.Refusal(1222, "Lock request was given up.", ends="batch") from None

    def session_reply(self, statement):
        """Runs a setting, or the begin or end of a transaction; only the outermost counts."""
        verb = statement.verb
        if verb == "SET":
            if self.store:
                self.store.set(statement.words)
            return b""
        if verb == "BEGIN":
            if self.transaction:
                self.nested += 1
                return b""
            return self.begin_transaction()
        kind = tds.COMMIT if verb == "COMMIT" else tds.ROLLBACK
        if not self.transaction:
            raise nothing_to_end(kind)
        if kind == tds.COMMIT and self.nested:
            self.nested -= 1
            return b""
        return self.end_transaction(kind, verb.lower())

    def stop_batch(self, content):
        self.site.record(stopped=True)
        self.reply(tds.done(tds.DONE_ATTENTION))

    def begin_transaction(self):
        self.begun += 1
        self.transaction = self.begun
        self.used = False
        return tds.transaction_begun(self.transaction)

    def end_transaction(self, kind, event):
        if self.store:
            if kind == tds.COMMIT:
                self.retry_while_locked(self.store.commit)
            else:
                self.store.roll_back()
        # The driver also begins and ends empty transactions, which are not recorded.
        if self.used:
            self.site.record(transaction=event)
        ended, self.transaction, self.used, self.nested = self.transaction, 0, False, 0
        return tds.transaction_ended(kind, ended)

    def run_transaction(self, content):
        kind, begins_next = tds.transaction_request(content)
        name = {tds.BEGIN: "begin", tds.COMMIT: "commit", tds.ROLLBACK: "rollback"}[kind]
        self.serve(faults.Request("", name), self.requested(kind, name, begins_next))

    def requested(self, kind, name, begins_next):
        reply = b""
        if kind != tds.BEGIN:
            if not self.transaction:
                yield self.refused(nothing_to_end(kind)), "statement"
                return
            try:
                reply += self.end_transaction(kind, name)
            except store.Refusal as refusal:
                yield self.refused(refusal), "statement"
                return
        if kind == tds.BEGIN or begins_next:
            reply += self.begin_transaction()
        yield reply + tds.done(), "statement"

    def refuse_call(self, content):
        self.site.record(call=len(content))
        what = tds.error(2812, "The stand-in knows no stored procedure.")
        self.reply(what + tds.done(tds.DONE_ERROR))
