#!/usr/bin/python3
"""Checks that the picture of a panel does not depend on the environment's language: environment.py DRIVE"""

import os
import subprocess
import sys
import tempfile

pictures = set()
with tempfile.TemporaryDirectory() as folder:
    for locale in ["C", "ja_JP.UTF-8"]:
        script = f"create\nlanguage zh-Hans\npresent\nshot {folder}/{locale}.png\n"
        subprocess.run([sys.argv[1]], input=script.encode(), env=os.environ | {"LC_ALL": locale}, check=True)
        with open(f"{folder}/{locale}.png", "rb") as picture:
            pictures.add(picture.read())
if len(pictures) != 1:
    sys.exit("the picture depends on LC_ALL")
