#!/usr/bin/env python3
"""A stand-in for SQL Server, for tests only:   server DIRECTORY

Prints the port it listens at. Answers as DIRECTORY/server-script.json says (see answers.py) and,
when told to keep the site, from an SQLite file (see store.py); fails where it is told to (see
faults.py). The test tells it so at a second address (see control.py). Records the logins, the
batches and the transactions that hold any in DIRECTORY/server-record.jsonl, one a line.
"""
import sys
import threading

import server

print(server.Site(sys.argv[1]).port, flush=True)
threading.Event().wait()
