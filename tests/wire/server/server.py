"""The stand-in as a whole: its address, its sessions, its store and its faults."""
import json
import os
import socket
import socketserver
import threading

import control
import faults
import session
import store

ADDRESS, CONTROL_ADDRESS = "127.0.0.1", "127.0.0.2"


class Listener(socketserver.ThreadingTCPServer):
    daemon_threads = True
    allow_reuse_address = True

    def __init__(self, site, address, handler):
        super().__init__(address, handler, bind_and_activate=False)
        self.site = site
        self.server_bind()

    def start(self):
        self.server_activate()
        threading.Thread(target=self.serve_forever, args=(0.01,), daemon=True).start()


class Site:
    def __init__(self, directory):
        self.directory = directory
        self.stored_site = None
        self.encryption = None  # The TLS context of a server that demands it.
        self.faults = faults.Faults()
        self.changed = threading.Condition()
        self.sessions = set()
        self.record_lock = threading.Lock()
        self.change_lock = threading.Lock()
        self.later_changes = []
        self.listener = Listener(self, (ADDRESS, 0), session.Session)
        self.port = self.listener.server_address[1]
        self.open = False
        self.start()
        Listener(self, (CONTROL_ADDRESS, self.port), control.Session).start()

    def reset(self):
        self.faults.clear()
        self.drop_sessions()
        self.stored_site = self.encryption = None
        self.later_changes = []
        self.start()

    def start(self):
        if not self.open:
            self.listener.start()
            self.open = True

    def stop(self):
        """Refuses new clients, but keeps the port reserved."""
        if self.open:
            self.listener.shutdown()
            self.listener.server_close()
            self.listener = Listener(self, (ADDRESS, self.port), session.Session)
            self.open = False

    def enter(self, client):
        with self.changed:
            self.sessions.add(client)
            self.changed.notify_all()

    def leave(self, client):
        with self.changed:
            self.sessions.discard(client)
            self.changed.notify_all()

    def drop_sessions(self):
        with self.changed:
            for client in self.sessions:
                try:
                    client.connection.shutdown(socket.SHUT_RDWR)
                except OSError:
                    pass  # The client has already disconnected.
        self.wait_for_sessions(0)

    def wait_for_sessions(self, count):
        with self.changed:
            if not self.changed.wait_for(lambda: len(self.sessions) == count, timeout=10):
                raise TimeoutError(f"There are {len(self.sessions)} sessions instead of {count}.")

    def record(self, **event):
        line = json.dumps(event, ensure_ascii=False, separators=(",", ":"))
        path = os.path.join(self.directory, "server-record.jsonl")
        with self.record_lock, open(path, "a", encoding="utf-8", newline="\n") as file:
            file.write(line + "\n")

    def new_store(self, login, encrypted):
        kept = self.stored_site
        return kept and store.Store(kept["path"], kept.get("traits", {}), login, encrypted)

    def change(self, sql=None):
        """Changes the site as another program, as soon as no session locks the rows."""
        with self.change_lock:
            if sql is not None:
                self.later_changes.append(sql)
            while self.later_changes:
                try:
                    store.change(self.stored_site["path"], self.later_changes[0])
                except store.Locked:
                    return
                self.later_changes.pop(0)
