#!/usr/bin/env python3
"""Tests the command line from the outside, by running it:

in-scratch python3 -B tests/cli --tlcommd PATTERN [--test NAME]... [wine] PROGRAM

Under Wine, where each start of a program costs more, only windows_test.py and journey_test.py run.
"""
import argparse
import glob
import os
import sys
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
# The stand-in for SQL Server.
sys.path.append(str(HERE.parent / "wire/server"))

import harness

parser = argparse.ArgumentParser()
parser.add_argument("--tlcommd", help="the service; the newest file that matches")
parser.add_argument("--test", action="append")
parser.add_argument("program", nargs="+")
arguments = parser.parse_args()
harness.PROGRAM = arguments.program
harness.TLCOMMD = max(glob.glob(arguments.tlcommd), key=os.path.getmtime)

windows = harness.PROGRAM[0] == "wine"
native = sorted(file.stem for file in HERE.glob("*_test.py") if file.stem != "windows_test")
names = arguments.test or (["windows_test", "journey_test"] if windows else native)
result = unittest.TextTestRunner().run(unittest.defaultTestLoader.loadTestsFromNames(names))
sys.exit(not result.wasSuccessful())
