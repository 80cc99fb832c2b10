#!/usr/bin/env python3
"""Usage: checkdocs.py KIND [--root FOLDER] [--NAME PROGRAM]...

Tests what the Markdown pages show. KIND is marks, links, first, ini, log, cpp, c, csharp, cmake, sh or
python. Prints page:line and a sentence for whatever is wrong; at least one block has to be there.
--build is a build folder: what cmake and sh blocks find installed comes from it.
"""
import argparse
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
import blocks
import textchecks
import toolchecks

TEXT = {"marks": blocks.check_marks, "links": textchecks.check_links, "first": textchecks.check_first,
        "ini": textchecks.check_ini, "log": textchecks.check_log}
TOOL = {kind: getattr(toolchecks, f"check_{kind}")
        for kind in ("cpp", "c", "csharp", "cmake", "sh", "python")}


def findings(kind, root, **tools):
    if kind in blocks.LANGUAGES and not any(textchecks.each(root, kind)):
        return [f"no page has a block of {kind}"]
    return list(TEXT[kind](root) if kind in TEXT else TOOL[kind](root, **tools))


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("kind", choices=[*TEXT, *TOOL])
    for option in ("root", "cxx", "cc", "mcs", "backend", "build"):
        parser.add_argument(f"--{option}", default=argparse.SUPPRESS)
    tools = vars(parser.parse_args())
    kind, root = tools.pop("kind"), Path(tools.pop("root", ".")).resolve()
    with tempfile.TemporaryDirectory() as installed:
        if "build" in tools:
            subprocess.run(["cmake", "--install", tools.pop("build"), "--prefix", installed], check=True,
                           stdout=subprocess.DEVNULL)
        found = findings(kind, root, installed=installed, **tools)
    for line in found:
        print(line)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
