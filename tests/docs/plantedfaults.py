#!/usr/bin/env python3
"""Usage: plantedfaults.py ROOT

Plants one fault a page and sees that the check of its kind finds it, and that it finds nothing on a
page without one.
"""
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts" / "doccheck"))
from checkdocs import findings

LOG = "VESK [W.%s][...][veskfrwrapper.cpp,Braxel::VESK::VESKFRWrapper::Login,...]%s"
QR = 'Get Ferno qrcode failed! Call "frlogin_req_qrcode" result:%s'
SHARP = "using Braxel.Vesk; class A { public void F() { VeskLogin.%s(); } }"
PRINTS = "print('VESK [W.I][a][b,c,1]read %s')"

# kind, what the page's block holds (or the page itself), a piece of the finding; none: it is good.
PAGES = [
    ("marks", "```\nx\n```", "has no language"),
    ("marks", "```bat\nx\n```", "nothing tests bat"),
    ("marks", "<!-- snippet: fragmnt -->\n```cpp\nx\n```", "no marker is called: fragmnt"),
    ("marks", "<!-- snippet: not tested: why -->\n```bat\nx\n```", "no marker is called"),
    ("marks", "<!-- snippet: not tested: only Windows has it -->\n```bat\nx\n```", None),
    ("links", "[a](gone.md)", "there is no gone.md"),
    ("links", "## A b, c\n[a](page.md#a-b)", "no such heading"),
    ("links", "## A b, c\n[a](#a-b-c) `[x](gone.md)`", None),
    ("links", "run scripts/gone-away now", "there is no scripts/gone-away"),
    ("ini", "VESK_UR = x", "knows no VESK_UR"),
    ("ini", "VESK_URL = x # VESK_UR", None),
    ("json", '{"a": 1,}', "Expecting"),
    ("json", '{"a": 1}', None),
    ("log", LOG % ("I", "Load frlogin.dll failed"), "does not log this"),
    ("log", LOG % ("E", "Load frlogin.dll has failed"), "does not log this"),
    ("log", LOG.replace("Login,", "Logon,") % ("E", "Load frlogin.dll failed"), "does not log this"),
    ("log", "Load frlogin.dll failed", "is no log line"),
    ("log", LOG % ("E", QR % "many"), "does not log this"),
    ("log", LOG % ("E", QR % "...") + "\n" + LOG % ("E", "Load frlogin.dll failed"), None),
    ("cpp", '#include "vesk/vesklogin.h"\nvoid f() { Braxel::VESK::VESKLogin::Logon(); }', "Logon"),
    ("cpp", "void f();\nvoid f() { int unused = 0; }", "unused"),
    ("cpp", "#include <optional>\nstd::optional<int> f();", "optional"),
    ("c", '#include "vesk/vesk_c.h"\nint f(void);\nint f(void) { return vesk_logout(); }', "vesk_logout"),
    ("csharp", SHARP % "AutoLogon", "AutoLogon"),
    ("csharp", SHARP % "AutoLogin", None),
    ("cmake", "target_link_libraries(gam PRIVATE x)", "gam"),
    ("sh", "if true", "Expected 'then'"),
    ("sh", "true", None),
    ("python", PRINTS % "you", "exit status"),
    ("python", PRINTS % "me", None),
]


def main():
    root, failures = Path(sys.argv[1]).resolve(), 0
    for kind, text, wanted in PAGES:
        with tempfile.TemporaryDirectory() as folder:
            for name in ("include", "src", "bindings", "cmake"):
                Path(folder, name).symlink_to(root / name)
            fenced = text if kind in ("marks", "links") else f"```{kind}\n{text}\n```\n"
            Path(folder, "page.md").write_text(fenced + "\n")
            found = "\n".join(findings(kind, Path(folder), installed=None))
        if (wanted is None and found) or (wanted is not None and wanted not in found):
            failures += 1
            print(f"{kind}: {text}\n  wanted: {wanted}\n  found: {found}")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
