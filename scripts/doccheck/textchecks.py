"""What can be told of a page by reading it: links, settings, quoted log lines."""
import re
from pathlib import Path

from blocks import blocks, is_tested, pages

KEY = r"(?:VESK|KZ|FERNO|STEAM)_[A-Z_]+"


def each(root, language):
    for page in pages(root):
        for block in blocks(root, page):
            if block.language == language and is_tested(block):
                yield block


def sources(root):
    return {p: p.read_text(encoding="utf-8", errors="replace")
            for p in sorted(Path(root, "src").rglob("*")) if p.suffix in (".h", ".cpp")}


# ---- links ----

# Pages that lie in another folder once they are in an archive; their links are meant for there.
PACKED = {"packaging/devkit.md": "devkit"}
FENCED = re.compile(r"^ {0,3}```.*?^ {0,3}```", re.M | re.S)


def without_code(text):
    text = re.sub(FENCED, lambda m: "\n" * m[0].count("\n"), text)
    return re.sub(r"`[^`\n]*`", "", text)


def anchors(page):
    text = re.sub(FENCED, "", page.read_text(encoding="utf-8"))
    found = set()
    for heading in re.findall(r"^#+ +(.+?) *$", text, flags=re.M):
        name = re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
        repeated, plain = 0, name
        while name in found:
            repeated += 1
            name = f"{plain}-{repeated}"
        found.add(name)
    return found


def check_links(root):
    """Relative links and anchors lead somewhere, and so do names of scripts."""
    for page in pages(root):
        text = page.read_text(encoding="utf-8")
        name = page.relative_to(root)
        folder = root / PACKED.get(name.as_posix(), name.parent)
        for m in re.finditer(r"\]\(([^)\s]+)\)", without_code(text)):
            if re.match(r"[a-z]+:", m[1]):
                continue
            line = without_code(text)[:m.start()].count("\n") + 1
            path, _, anchor = m[1].partition("#")
            target = (folder / path).resolve() if path else page
            if not target.exists():
                yield f"{name}:{line}: there is no {m[1]}"
            elif anchor and (target.suffix != ".md" or anchor not in anchors(target)):
                yield f"{name}:{line}: {m[1]} has no such heading"
        for m in re.finditer(r"(?<![\w/.])scripts/[a-z][\w-]*\b(?![/.])", text):
            if not Path(root, m[0]).exists():
                yield f"{name}:{text[:m.start()].count(chr(10)) + 1}: there is no {m[0]}"


# ---- the first programs ----

SAMPLES = {("README.md", "cpp"): "samples/minimal/main.cpp",
           ("docs/main-loop.md", "c"): "samples/minimal/mainloop.c",
           ("docs/main-loop.md", "cpp"): "samples/minimal/mainloop.cpp",
           ("docs/main-loop.md", "csharp"): "bindings/csharp/sample/Visit.cs"}


def check_first(root):
    """The first program of a page is the sample that is built and run."""
    for (page, language), sample in SAMPLES.items():
        first = next(b for b in each(root, language) if b.where.startswith(page + ":"))
        if first.text != Path(root, sample).read_text(encoding="utf-8"):
            yield f"{first.where}: this is not {sample}"


# ---- settings ----

def known_keys(root):
    return {key for text in sources(root).values() for key in re.findall(f'"({KEY})"', text)}


def check_ini(root):
    """A setting on a page is one that the sources ask for, and docs/configuration.md has them all."""
    known = known_keys(root)
    for block in each(root, "ini"):
        for line in block.text.splitlines():
            key = line.split("#")[0].partition("=")[0].strip()
            if key and key not in known:
                yield f"{block.where}: the SDK knows no {key}"
    page = Path(root, "docs/configuration.md")
    text = page.read_text(encoding="utf-8") if page.exists() else ""
    rows = re.findall(r"^\|([^|]*)\|", text, flags=re.M)
    listed = {key for row in rows for key in re.findall(f"`({KEY})`", row)}
    for key in sorted(known ^ listed) if rows else []:
        yield f"docs/configuration.md: {key} is {'unknown to the SDK' if key in listed else 'missing'}"


# ---- log lines ----

LITERAL = r'"((?:[^"\\]|\\.)*)"'
CALL = re.compile(rf'VESK_LOG_(DEBUG|INFO|ERROR)\(\s*{LITERAL},\s*((?:{LITERAL}\s*)+)')
# A call whose method is a variable: any of those that the file names in full.
CALL_AT = re.compile(rf'VESK_LOG_AT\(\s*kLog(\w+),\s*[\w.()]+,\s*((?:{LITERAL}\s*)+)')
# A call that says which file it names.
CALL_OF = re.compile(rf'VESK_LOG_OF\(\s*([^,]+),\s*kLog(\w+),\s*{LITERAL},\s*((?:{LITERAL}\s*)+)')
METHOD = re.compile(r'"Braxel::VESK::([\w:]+)"')
QUOTED = re.compile(r"VESK \[W\.([DIE])\]\[\.\.\.\]\[([\w.]+),Braxel::VESK::([\w:]+),\.\.\.\](.*)$")
# What a placeholder of printf may look like on a page; ... stands for any value.
VALUES = {"s": ".*", "p": ".*", "c": "."}


def joined(literals):
    text = "".join(re.findall(LITERAL, literals))
    return text.replace('\\"', '"').replace("\\n", "\n")


def as_pattern(form):
    parts = re.split(r"%(?:ll?)?([a-z%])", form.rstrip())
    pattern = re.escape(parts[0])
    for kind, literal in zip(parts[1::2], parts[2::2]):
        pattern += "%" if kind == "%" else f"({VALUES.get(kind, '-?[0-9]+')}|[.]{{3}})"
        pattern += re.escape(literal)
    return pattern


def named_file(argument, text):
    """The file name that a log call is given, as a literal or as a constant of its source."""
    constant = re.search(rf"\b{re.escape(argument)} = (\S+);", text)
    return (constant[1] if constant else argument).strip('"')


def log_calls(root):
    """(level, file, method, form) of each log call, and the literals that a file makes texts of."""
    calls, texts = [], {}
    for path, text in sources(root).items():
        of = [(m[2][0], named_file(m[1], text), m[3], joined(m[4])) for m in CALL_OF.finditer(text)]
        calls += of
        calls += [(m[1][0], path.name, m[2], joined(m[3])) for m in CALL.finditer(text)]
        calls += [(m[1][0], path.name, method, joined(m[2]))
                  for m in CALL_AT.finditer(text) for method in METHOD.findall(text)]
        literals = [joined(f'"{literal}"') for literal in re.findall(LITERAL, text)
                    if len(literal) > 3 and "%" not in literal]
        for name in {path.name, *(call[1] for call in of)}:
            texts.setdefault(name, []).extend(literals)
    return calls, texts


def matches(message, form, literals):
    if form != "%s":
        return re.fullmatch(as_pattern(form), message, flags=re.S)
    # A text that was put together before: of the file's own literals and of values.
    pieces = "|".join(re.escape(text) for text in sorted(literals, key=len, reverse=True))
    return re.fullmatch(f"(?:{pieces})(?:{pieces}|-?[0-9]+|[.]{{3}})*", message)


def check_log(root):
    """A quoted log line is one that the sources write: level, file, method and message."""
    calls, texts = log_calls(root)
    for block in each(root, "log"):
        for line in block.text.splitlines():
            quoted = QUOTED.match(line)
            if not quoted:
                yield f"{block.where}: this is no log line: {line}"
            elif not any(call[:3] == quoted.groups()[:3] and matches(quoted[4], form, texts[call[1]])
                         for call in calls for form in call[3:]):
                yield f"{block.where}: the SDK does not log this: {line}"
