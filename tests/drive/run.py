#!/usr/bin/python3
"""Runs one script through drive and compares its output with the expected one.

    run.py DRIVE NAME.drive

NAME.expected holds one line for each line of output: a console line as it is, or a JSON object.
The order of an object's keys does not matter, and numbers may differ by 1e-9; an object with the key
"..." may have further keys. Blank lines and lines that begin with # are comments. "exit N" gives the
exit status (0 without it), and "stderr TEXT" a line of standard error, which must have no others.

Three kinds of comment in the script are instructions to this program:

    #: restart            run the rest in a new drive process, in the same directory
    #: write FILE JSON    write a binary property list
    #: dump FILE          output a property list as {"plist": ...}; an archive as its archiver's name
"""

import itertools
import json
import pathlib
import plistlib
import subprocess
import sys
import tempfile


def same(expected, actual):
    if {type(expected), type(actual)} <= {int, float}:
        return abs(expected - actual) <= 1e-9
    if type(expected) is not type(actual):
        return False
    if isinstance(expected, list):
        return len(expected) == len(actual) and all(map(same, expected, actual))
    if isinstance(expected, dict):
        keys = expected.keys() - {"..."}
        complete = "..." in expected or keys == actual.keys()
        return complete and all(k in actual and same(expected[k], actual[k]) for k in keys)
    return expected == actual


def parsed(line):
    return json.loads(line) if line.startswith("{") else line


def archiver(data):
    return {"archiver": plistlib.loads(data)["$archiver"]}


class Script:
    def __init__(self, drive, directory):
        self.drive, self.directory = drive, directory
        self.commands, self.out, self.err, self.status = [], [], [], 0

    def flush(self):
        ran = subprocess.run([self.drive], input="\n".join(self.commands), cwd=self.directory,
                             capture_output=True, encoding="utf-8", timeout=60, check=False)
        self.commands = []
        self.out += ran.stdout.splitlines()
        self.err += ran.stderr.splitlines()
        self.status = self.status or ran.returncode

    def directive(self, words):
        self.flush()
        if words[0] == "write":
            (self.directory / words[1]).write_bytes(
                plistlib.dumps(json.loads(words[2]), fmt=plistlib.FMT_BINARY))
        elif words[0] == "dump":
            entries = plistlib.loads((self.directory / words[1]).read_bytes())
            self.out.append(json.dumps({"plist": entries}, default=archiver))
        elif words[0] != "restart":
            sys.exit(f"run.py: no such directive: {words[0]}")

    def run(self, lines):
        for line in lines:
            if line.startswith("#:"):
                self.directive(line[2:].split(maxsplit=2))
            else:
                self.commands.append(line)
        self.flush()


def main():
    drive, script = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    out, err, status = [], [], 0
    for line in script.with_suffix(".expected").read_text(encoding="utf-8").splitlines():
        if line.startswith("exit "):
            status = int(line[5:])
        elif line.startswith("stderr "):
            err.append(line[7:])
        elif line and not line.startswith("#"):
            out.append(line)

    with tempfile.TemporaryDirectory() as directory:
        session = Script(drive, pathlib.Path(directory))
        session.run(script.read_text(encoding="utf-8").splitlines())

    problems = [f"expected  {expected}\n printed  {actual}"
                for expected, actual in itertools.zip_longest(out, session.out)
                if None in (expected, actual) or not same(parsed(expected), parsed(actual))]
    if (status, err) != (session.status, session.err):
        problems.append(f"expected status and standard error  {status}, {err}\n"
                        f"                               were  {session.status}, {session.err}")
    sys.exit("\n".join(problems) or 0)


if __name__ == "__main__":
    main()
