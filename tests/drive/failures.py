#!/usr/bin/python3
"""Runs drive where it cannot read, write or keep its temporary files: failures.py DRIVE"""

import os
import subprocess
import sys
import tempfile

with tempfile.TemporaryDirectory() as directory, open("/dev/full", "wb") as full:
    missing = os.environ | {"TMPDIR": directory + "/none"}
    rows = [
        (["/none"], {}, "drive: cannot read '/none'"),
        ([directory], {}, f"drive: cannot read '{directory}'"),
        ([], {"stdin": os.open("/", os.O_RDONLY)}, "drive: cannot read standard input"),
        ([], {"stdout": full}, "drive: cannot write the results: No space left on device"),
        ([], {"env": missing}, "TMPDIR"),
        ([], {"input": b"assign " + b"[" * 1000000}, ""),
    ]
    for arguments, how, message in rows:
        how.setdefault("stdout", subprocess.DEVNULL)
        if "stdin" not in how:
            how.setdefault("input", b"pending\n")
        ran = subprocess.run([sys.argv[1], *arguments], stderr=subprocess.PIPE, timeout=60, check=False, **how)
        lines = ran.stderr.decode().splitlines()
        if ran.returncode != 2 or len(lines) != bool(message) or message not in "".join(lines):
            sys.exit(f"{arguments}, {message!r}: status {ran.returncode}, {lines}")
