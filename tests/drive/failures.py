#!/usr/bin/python3
"""Runs drive where it cannot read, write or keep its temporary files: failures.py DRIVE"""

import os
import subprocess
import sys

with open("/dev/full", "wb") as full:
    rows = [
        (["/none"], {}, "drive: cannot read '/none'"),
        (["/"], {}, "drive: cannot read '/'"),
        ([], {"input": None, "stdin": os.open("/", os.O_RDONLY)}, "drive: cannot read standard input"),
        ([], {"stdout": full}, "drive: cannot write the results: No space left on device"),
        ([], {"input": b"unknown\n", "stdout": full}, "No space left on device"),
        ([], {"env": os.environ | {"TMPDIR": "/none"}}, "TMPDIR"),
        ([], {"input": b"assign " + b"[" * 1000000}, ""),
    ]
    for arguments, how, message in rows:
        how = {"input": b"pending\n", "stdout": subprocess.DEVNULL} | how
        ran = subprocess.run([sys.argv[1], *arguments], stderr=subprocess.PIPE, timeout=60, check=False, **how)
        lines = ran.stderr.decode().splitlines()
        if ran.returncode != 2 or len(lines) != bool(message) or message not in "".join(lines):
            sys.exit(f"{arguments}, {message!r}: status {ran.returncode}, {lines}")
