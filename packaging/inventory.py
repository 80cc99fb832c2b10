#!/usr/bin/env python3
"""Usage: packaging/inventory.py linux|windows VERSION TREE SECONDS

Looks into the programs of an archive's folder TREE and leaves there what is inside of them: TREE/licences
and, in the form of SPDX 2.3, TREE/sbom.spdx.json. The versions are those of the packages that this machine
has built them with; SECONDS is the time that the inventory tells. A library that no row knows, or a
licence that is missing, is an error.
"""
import hashlib
import json
import re
import subprocess
import sys
import uuid
from datetime import datetime, timezone
from pathlib import Path
from typing import NamedTuple

HERE = Path(__file__).resolve().parent
COMMON = "/usr/share/common-licenses/"


class Row(NamedTuple):
    name: str
    package: str  # of Debian: its version and its licence
    licence: str
    words: str = ""  # of its licence's text, which is not needed when all take the system's
    more: tuple = ()  # further texts: name here, place, words
    shared: str = ""  # what a Linux program names when it takes the system's
    inside: dict = {}  # platform to the names of files that have it inside
    beside: str = ""  # where the archive has it as it is, with its texts when no words are given


WINDOWS = {"windows": "."}
ROWS = (
    Row("curl", "libcurl4-openssl-dev", "curl", "Daniel Stenberg", shared=r"libcurl\.so\.4",
        inside={"windows": "VESKCore|vesk-doctor|vesk-console|frlogin|KZOpenSDK"}),
    Row("openssl", "libssl-dev", "Apache-2.0", shared=r"lib(ssl|crypto)\.so\.3"),
    Row("rapidjson", "rapidjson-dev", "MIT", "Milo Yip", inside={"linux": ".", "windows": "."}),
    Row("CLI11", "libcli11-dev", "BSD-3-Clause", "CLI11", inside={"linux": "vesk-", "windows": "vesk-"}),
    Row("cpp-httplib", "libcpp-httplib-dev", "MIT", "httplib", shared=r"libcpp-httplib\.so.*",
        inside={"windows": "vesk-devbackend"}),
    Row("libqrencode", "libqrencode-dev", "LGPL-2.1-or-later", "qrencode", shared=r"libqrencode\.so\.4",
        inside={"windows": "vesk-devbackend"},
        more=(("LGPL-2.1", COMMON + "LGPL-2.1", "LESSER GENERAL PUBLIC LICENSE"),)),
    Row("open-sans", "fonts-open-sans", "Apache-2.0", beside="samples/game/third_party/OpenSans-Regular.ttf"),
    Row("stb", "libstb-dev", "MIT OR Unlicense", "stb", beside="samples/game/third_party/stb_*.h",
        inside={"linux": "vesk-devbackend|vesk-console", "windows": "vesk-devbackend|vesk-console"}),
    Row("mingw-w64-and-winpthreads", "mingw-w64-x86-64-dev", "NOASSERTION", "winpthreads", inside=WINDOWS),
    Row("gcc-runtime", "gcc-mingw-w64-x86-64-posix", "GPL-3.0-or-later WITH GCC-exception-3.1",
        "GCC RUNTIME LIBRARY EXCEPTION", inside=WINDOWS,
        more=(("GPL-3", COMMON + "GPL-3", "GNU GENERAL PUBLIC LICENSE"),)),
)
# The C and C++ runtime of the system, and what lies in the archive itself.
SYSTEM = re.compile(r"lib(c|m|stdc\+\+|gcc_s|VESKCore)\.so.*|ld-linux.*")


def needed(program):
    listed = subprocess.run(["readelf", "-dW", program], check=True, capture_output=True, text=True).stdout
    return [name for name in re.findall(r"\(NEEDED\).*\[(.*)\]", listed) if not SYSTEM.fullmatch(name)]


def relations(platform, program):
    """The rows that a program has something of, each with the word of SPDX for how."""
    names = needed(program) if platform == "linux" else []
    for name in names:
        if not any(row.shared and re.fullmatch(row.shared, name) for row in ROWS):
            sys.exit(f"inventory: {program} needs {name}, which no row of packaging/inventory.py knows")
    for row in ROWS:
        if platform in row.inside and re.match(row.inside[platform], program.stem.removeprefix("lib")):
            yield row, "STATIC_LINK"
        elif row.shared and any(re.fullmatch(row.shared, name) for name in names):
            yield row, "DYNAMIC_LINK"


def write_licences(folder, rows):
    readme = (HERE / "licences.md").read_text()
    folder.mkdir()
    (folder / "README.md").write_text(readme)
    texts = [(row.name, f"/usr/share/doc/{row.package}/copyright", row.words) for row in rows if row.words]
    for name, source, words in texts + [text for row in rows for text in row.more]:
        text = Path(source).read_bytes()
        if words.encode() not in text:
            sys.exit(f"inventory: {source} is not the licence of {name}")
        if f"`{name}.txt`" not in readme:
            sys.exit(f"inventory: packaging/licences.md does not name {name}")
        (folder / f"{name}.txt").write_bytes(text)


def package(row):
    source, full = subprocess.run(
        ["dpkg-query", "-W", "-f", "${source:Package} ${Version}", row.package],
        check=True, capture_output=True, text=True).stdout.split()
    # 1:7.88.1+dfsg-10 is what its authors call 7.88.1, with changes of the distribution's.
    version = re.sub(r"^\d+:|[-+].*", "", full)
    return {"name": row.name, "SPDXID": f"SPDXRef-{row.name}", "versionInfo": version,
            "sourceInfo": f"built from the Debian source {source} {full}", "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False, "licenseConcluded": "NOASSERTION", "licenseDeclared": row.licence,
            "copyrightText": "NOASSERTION", "externalRefs": [{
                "referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                "referenceLocator": f"pkg:deb/debian/{row.package}@{full.replace('+', '%2B')}"}]}


def main():
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    platform, version, tree, seconds = sys.argv[1], sys.argv[2], Path(sys.argv[3]), int(sys.argv[4])
    programs = sorted(path for path in tree.rglob("*")
                      if path.is_file() and path.read_bytes()[:4] in (b"\x7fELF", b"MZ\x90\0"))
    product = {"name": "VESKCore", "SPDXID": "SPDXRef-VESKCore", "versionInfo": version, "filesAnalyzed": False,
               "downloadLocation": "NOASSERTION", "licenseConcluded": "NOASSERTION",
               "licenseDeclared": "NOASSERTION", "copyrightText": "NOASSERTION",
               "supplier": "Organization: Braxel"}
    files, used = [], set()
    links = [("SPDXRef-DOCUMENT", "DESCRIBES", "SPDXRef-VESKCore")]
    for number, program in enumerate(programs):
        content = program.read_bytes()
        file = f"SPDXRef-File-{number}"
        files.append({"fileName": f"./{program.relative_to(tree)}", "SPDXID": file,
                      "checksums": [{"algorithm": kind, "checksumValue": hashlib.new(kind, content).hexdigest()}
                                    for kind in ("SHA1", "SHA256")],
                      "licenseConcluded": "NOASSERTION", "copyrightText": "NOASSERTION"})
        links.append(("SPDXRef-VESKCore", "CONTAINS", file))
        for row, how in relations(platform, program):
            used.add(row.name)
            links.append((file, how, f"SPDXRef-{row.name}"))
    for row in ROWS:
        if row.beside and any(tree.glob(row.beside)):
            used.add(row.name)
            links.append(("SPDXRef-VESKCore", "CONTAINS", f"SPDXRef-{row.name}"))
    rows = [row for row in ROWS if row.name in used]
    write_licences(tree / "licences", rows)
    name = f"VESKCore-{version}-{platform}-x64"
    made = uuid.uuid5(uuid.NAMESPACE_OID, json.dumps([name, files]))
    (tree / "sbom.spdx.json").write_text(json.dumps({
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": name,
        "documentNamespace": f"urn:uuid:{made}",
        "creationInfo": {"created": datetime.fromtimestamp(seconds, timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": ["Organization: Braxel", "Tool: packaging/inventory.py"]},
        "packages": [product] + [package(row) for row in rows], "files": files,
        "relationships": [{"spdxElementId": of, "relationshipType": how, "relatedSpdxElement": to}
                          for of, how, to in links]}, indent=1) + "\n")


if __name__ == "__main__":
    main()
