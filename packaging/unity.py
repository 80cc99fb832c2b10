#!/usr/bin/env python3
"""Usage: packaging/unity.py SDK-ARCHIVE FOLDER

Makes com.braxel.vesk-VERSION.tgz in FOLDER, for Unity's package manager: bindings/unity/ with the
library, the C# binding, pages and licences out of the Windows archive of scripts/package. The same
archive gives the same bytes. Prints the file's name.
"""
import gzip
import hashlib
import io
import re
import sys
import tarfile
import zipfile
from pathlib import Path, PurePosixPath

PACKAGE = "com.braxel.vesk"
SOURCES = Path(__file__).resolve().parent.parent / "bindings" / "unity"
PAGE = f"Documentation~/{PACKAGE}.md"
WRITTEN = 499162500  # seconds; one moment for all files of all releases

# What the SDK needs beside its library; the editor script lays it into a new project's folder Vesk.
COPIES = {
    "bin/VESKCore.dll": "Plugins/x86_64/VESKCore.dll",
    "bin/VESKConfig.ini": "Vesk~/VESKConfig.ini",
    "bin/VESKRetMsg.json": "Vesk~/VESKRetMsg.json",
    "docs/unity.md": PAGE,
    "CHANGELOG.md": "CHANGELOG.md",
}

TEXT_META = "TextScriptImporter:\n  externalObjects: {}\n"
SCRIPT_META = """MonoImporter:
  externalObjects: {}
  serializedVersion: 2
  defaultReferences: []
  executionOrder: 0
  icon: {instanceID: 0}
"""
# Windows x64, in the editor and in games, and nothing else.
LIBRARY_META = """PluginImporter:
  externalObjects: {}
  serializedVersion: 2
  iconMap: {}
  executionOrder: {}
  defineConstraints: []
  isPreloaded: 0
  isOverridable: 0
  isExplicitlyReferenced: 0
  validateReferences: 1
  platformData:
  - first:
      : Any
    second:
      enabled: 0
      settings:
        Exclude Editor: 0
        Exclude Linux64: 1
        Exclude OSXUniversal: 1
        Exclude Win: 1
        Exclude Win64: 0
  - first:
      Any: 
    second:
      enabled: 0
      settings: {}
  - first:
      Editor: Editor
    second:
      enabled: 1
      settings:
        CPU: x86_64
        DefaultValueInitialized: true
        OS: Windows
  - first:
      Standalone: Linux64
    second:
      enabled: 0
      settings:
        CPU: None
  - first:
      Standalone: OSXUniversal
    second:
      enabled: 0
      settings:
        CPU: None
  - first:
      Standalone: Win
    second:
      enabled: 0
      settings:
        CPU: None
  - first:
      Standalone: Win64
    second:
      enabled: 1
      settings:
        CPU: x86_64
"""
IMPORTERS = {
    ".cs": SCRIPT_META,
    ".dll": LIBRARY_META,
    ".asmdef": "AssemblyDefinitionImporter:\n  externalObjects: {}\n",
    ".md": TEXT_META,
    ".json": "PackageManifestImporter:\n  externalObjects: {}\n",
}
FOLDER_META = "folderAsset: yes\nDefaultImporter:\n  externalObjects: {}\n"
END_META = "  userData: \n  assetBundleName: \n  assetBundleVariant: \n"


def package_version(sdk):
    """The package manager knows three numbers: 5.0.0.5 is 5.0.5, and 5.0.1.2 is 5.0.1002."""
    major, minor, third, fourth = map(int, sdk.split("."))
    return f"{major}.{minor}.{third * 1000 + fourth}"


def without_links(page):
    """The pages that a link leads to are in the SDK's archive: their names stay. Nor is there a check
    of the code blocks to be told anything."""
    def named(match):
        name = match[2] if "/" in match[2] else f"docs/{match[2]}"
        return f"`{name}`" if match[1] == match[2] else f"{match[1]} (`{name}`)"
    page = re.sub(r"<!-- snippet: .*? -->\n", "", page)
    return re.sub(r"\[([^\]]+)\]\((?!https?:)([\w./-]+)(?:#[\w-]+)?\)", named, page)


def notices(read):
    """The texts of all that is inside the library, by the table that stands before them."""
    rows = re.findall(r"^\|(.*?)\|(.*?)\|(.*?)\|$", read("licences/README.md").decode(), flags=re.M)
    names = [name for files, _, inside in rows if re.search("VESKCore.dll|the library|every Windows", inside)
             for name in re.findall(r"`([\w.-]+)`", files)]
    if not names:
        sys.exit("packaging/unity.py: no licence is the library's")
    texts = [f"## {name[:-4]}\n\n```\n{read('licences/' + name).decode().strip()}\n```\n" for name in names]
    return "\n".join(["# Third party notices\n\nVESKCore.dll contains parts of these.\n", *texts])


def contents(archive, sdk_version):
    """Each file's path in the package with its bytes, without .meta."""
    top = archive.namelist()[0].split("/")[0]

    def read(name):
        return archive.read(f"{top}/{name}")
    files = {to: read(name) for name, to in COPIES.items()}
    for name in archive.namelist():
        binding = re.fullmatch(r"[^/]+/bindings/csharp/(\w+\.cs)", name)
        if binding:
            files[f"Runtime/{binding[1]}"] = archive.read(name)
    files["Third Party Notices.md"] = notices(read).encode()
    for name in ("CHANGELOG.md", PAGE):
        files[name] = without_links(files[name].decode()).encode()
    for path in SOURCES.rglob("*"):
        if path.is_file():
            text = path.read_text(encoding="utf-8").replace("@SDK_VERSION@", sdk_version)
            text = text.replace("@VERSION@", package_version(sdk_version))
            files[path.relative_to(SOURCES).as_posix()] = text.encode()
    return files


def is_imported(path):
    """Unity passes by what ends with ~, but a sample is copied into a project with its .meta files."""
    inside = path.parts[1:] if path.parent.parts[:1] == ("Samples~",) else path.parts
    return not any(part.endswith("~") for part in inside)


def meta(path, is_folder):
    # Of the path alone: scenes and other packages name files by it, in each release the same.
    guid = hashlib.sha256(f"{PACKAGE}/{path}".encode()).hexdigest()[:32]
    importer = FOLDER_META if is_folder else IMPORTERS[path.suffix]
    return f"fileFormatVersion: 2\nguid: {guid}\n{importer}{END_META}".encode()


def with_metas(files):
    paths = [PurePosixPath(name) for name in files]
    folders = {folder for path in paths for folder in path.parents} - {PurePosixPath(".")}
    metas = {f"{path}.meta": meta(path, path in folders)
             for path in [*paths, *folders] if is_imported(path)}
    return {**files, **metas}


def write(files, target):
    with target.open("wb") as raw, \
            gzip.GzipFile(filename="", mode="wb", fileobj=raw, mtime=WRITTEN) as packed, \
            tarfile.open(fileobj=packed, mode="w", format=tarfile.USTAR_FORMAT) as tar:
        for name in sorted(files):
            member = tarfile.TarInfo(f"package/{name}")
            member.size, member.mtime = len(files[name]), WRITTEN
            tar.addfile(member, io.BytesIO(files[name]))


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    named = re.fullmatch(r"VESKCore-([\d.]+)-windows-x64\.zip", Path(sys.argv[1]).name)
    if not named:
        sys.exit(f"packaging/unity.py: {sys.argv[1]} is no Windows archive of the SDK")
    with zipfile.ZipFile(sys.argv[1]) as archive:
        files = with_metas(contents(archive, named[1]))
    target = Path(sys.argv[2], f"{PACKAGE}-{package_version(named[1])}.tgz")
    write(files, target)
    print(target.name)


if __name__ == "__main__":
    main()
