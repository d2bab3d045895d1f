#!/usr/bin/env python3
"""A stand-in for SQL Server, for tests only:   server DIRECTORY

Prints the port it listens on. Answers from DIRECTORY/server-script.json (see answers.py) and, when
a store is set, from an SQLite file (see store.py), with injected faults (see faults.py). The test
controls it at a second address (see control.py). Records logins, batches and transactions that
contain batches in DIRECTORY/server-record.jsonl, one a line.
"""
import sys
import threading

import server

print(server.Site(sys.argv[1]).port, flush=True)
threading.Event().wait()
