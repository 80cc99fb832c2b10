"""The code blocks of a Markdown page, and where they stand.

A block is fenced, or indented below a marker. A marker does not show on the page:
    <!-- snippet: fragment -->               statements; they are tested inside a function
    <!-- snippet: with NAME -->              tested with the stand-ins or in the place called NAME
    <!-- snippet: not tested: REASON -->     that is all that is known of it
Before an indented block the block's language comes first: <!-- snippet: sh, with backend -->
"""
import os
import re
from pathlib import Path
from typing import NamedTuple

LANGUAGES = ("cpp", "c", "csharp", "cmake", "ini", "sh", "python", "log")
MARKER = re.compile(r"\s*<!-- snippet: (?:(\w+), )?(.+?) -->\s*$")
MARKS = re.compile(r"fragment$|with (unreal|unity|install|backend)$|not tested: \S.{9,}")


class Block(NamedTuple):
    where: str  # page:line
    language: str
    mark: str
    text: str


def pages(root):
    """The repository's pages; what is built or fetched does not count."""
    found = []
    for folder, folders, files in os.walk(root):
        folders[:] = sorted(f for f in folders if f not in ("build", "dist", ".git"))
        found += [Path(folder, name) for name in sorted(files) if name.endswith(".md")]
    return found


def blocks(root, page):
    lines = page.read_text(encoding="utf-8").splitlines()
    result, marker, i = [], None, 0
    while i < len(lines):
        line, start = lines[i], i + 1
        i += 1
        fence = re.match(r" {0,3}```(\S*)\s*$", line)
        if fence:
            body = []
            while i < len(lines) and lines[i].strip() != "```":
                body.append(lines[i])
                i += 1
            i += 1
            language = fence.group(1)
        elif marker and marker.group(1) and line.startswith("    "):
            body = [line]
            while i < len(lines) and (lines[i].startswith("    ") or not lines[i].strip()):
                body.append(lines[i])
                i += 1
            body = [l[4:] for l in body]
            language = marker.group(1)
        else:
            if line.strip():
                marker = MARKER.match(line)
            continue
        where = f"{page.relative_to(root)}:{start}"
        text = "\n".join(body).rstrip() + "\n"
        result.append(Block(where, language, marker.group(2) if marker else "", text))
        marker = None
    return result


def is_tested(block):
    return not block.mark.startswith("not tested:")


def check_marks(root):
    """Nothing stays untested without anybody having said so."""
    for page in pages(root):
        for block in blocks(root, page):
            if not block.language:
                yield f"{block.where}: the block has no language"
            elif block.language not in LANGUAGES and is_tested(block):
                yield f"{block.where}: nothing tests {block.language}; give the reason in a marker"
            elif block.mark and not MARKS.match(block.mark):
                yield f"{block.where}: no marker is called: {block.mark}"
