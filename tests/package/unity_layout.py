#!/usr/bin/env python3
"""Usage: unity_layout.py ARCHIVE SDK-VERSION: is this what Unity's package manager and importer take?"""
import json
import re
import sys
import tarfile
from pathlib import Path, PurePosixPath

# What projects refer to the library and the sample by, in each release.
KEPT = {"Plugins/x86_64/VESKCore.dll": "45d3888e07dfe4aca6ab7e01bdef1de3",
        "Samples~/Login/LoginScreen.cs": "18542f962e80055d629956846f5e4e9f"}
WANTED = ("README.md", "CHANGELOG.md", "Third Party Notices.md", "Vesk~/VESKConfig.ini", "Vesk~/VESKRetMsg.json")
# The third parties' licences name files of the systems that they come from.
ABSOLUTE = re.compile(rb"(?<![\w.~>/-])/(?:home|root|tmp|usr|var|opt|mnt|build)/|\b[A-Za-z]:[\\/](?![/*])")


def check_manifest(files, archive, sdk):
    manifest = json.loads(files["package.json"])
    major, minor, third, fourth = map(int, sdk.split("."))
    yield manifest["version"] == f"{major}.{minor}.{third * 1000 + fourth}", f"the version is not that of {sdk}"
    yield archive == f"com.braxel.vesk-{manifest['version']}.tgz", "the archive's name"
    yield manifest["name"] == "com.braxel.vesk" and manifest["author"]["name"], "the package's name"
    yield manifest["displayName"] and sdk in manifest["description"], "the package's description"
    yield re.fullmatch(r"20\d\d\.[1-9]", manifest["unity"]), "the oldest Unity"
    for sample in manifest["samples"]:
        yield any(name.startswith(sample["path"] + "/") for name in files), f"the sample {sample['path']}"
    for name, text in files.items():
        good = name.endswith((".dll", WANTED[2])) or not ABSOLUTE.search(text)
        yield good, f"{name} names a place on some machine"
    yield files.keys() >= set(WANTED), "a file is missing"


def check_metas(files):
    paths = {PurePosixPath(name) for name in files if not name.endswith(".meta")}
    folders = {str(parent) for path in paths for parent in path.parents if parent.name}
    imported = {name for name in folders | {*map(str, paths)}
                if not re.search(r"~(/|$)", name.removeprefix("Samples~/"))}
    metas = {name[:-5]: text.decode() for name, text in files.items() if name.endswith(".meta")}
    for name in imported ^ metas.keys():
        yield False, f"{name}: file or .meta is missing"
    guids = {name: "".join(re.findall("^guid: ([0-9a-f]{32})$", text, flags=re.M)) for name, text in metas.items()}
    for name, guid in guids.items():
        yield len(guid) == 32 and [*guids.values()].count(guid) == 1, f"{name}: its GUID"
        yield KEPT.get(name, guid) == guid, f"{name}: its GUID was another one"
        yield ("\nfolderAsset: yes\n" in metas[name]) == (name in folders), f"{name}: file or folder?"
    on = re.findall(r"first:\n +(.*)\n +second:\n +enabled: 1\n.*\n +CPU: (\w+)\n", metas[next(iter(KEPT))])
    yield on == [("Editor: Editor", "x86_64"), ("Standalone: Win64", "x86_64")], f"the library is for {on}"


def check_assemblies(files):
    assemblies = {PurePosixPath(name): json.loads(text) for name, text in files.items() if name.endswith(".asmdef")}
    names = {assembly["name"] for assembly in assemblies.values()}
    for path, assembly in assemblies.items():
        yield path.stem == assembly["name"] and names.issuperset(assembly["references"]), f"{path}: names"
        yield (assembly["includePlatforms"] == ["Editor"]) == (path.parts[0] == "Editor"), f"{path}: platforms"
    homes = {path.parent for path in assemblies}
    for path in map(PurePosixPath, files):
        yield path.suffix != ".cs" or path.parent in homes, f"{path} belongs to no assembly"


def main():
    with tarfile.open(sys.argv[1]) as tar:
        files = {m.name.removeprefix("package/"): tar.extractfile(m).read() for m in tar}
    found = [*check_manifest(files, Path(sys.argv[1]).name, sys.argv[2]), *check_metas(files),
             *check_assemblies(files)]
    wrong = [sentence for good, sentence in found if not good]
    print(f"{len(found)} checks", *wrong, sep="\n")
    sys.exit(1 if wrong or len(found) < 100 else 0)


if __name__ == "__main__":
    main()
