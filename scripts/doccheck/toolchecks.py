"""Blocks that a compiler, CMake or a shell judges."""
import json
import os
import re
import shutil
import signal
import subprocess
import tempfile
import urllib.request
from pathlib import Path

from textchecks import each

# The parts of the engines that the pages' blocks use, as we understand them.
STAND_INS = Path(__file__).resolve().parents[2] / "tests" / "docs"
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Werror"]


def run(command, folder, **more):
    """What went wrong, as one text; empty when nothing did."""
    done = subprocess.run([str(c) for c in command], cwd=folder, stdin=subprocess.DEVNULL, timeout=60,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          **more)
    return "" if done.returncode == 0 else done.stdout or f"exit status {done.returncode}"


def judged(root, language, judge):
    for block in each(root, language):
        with tempfile.TemporaryDirectory() as folder:
            problem = judge(block, Path(folder))
        if problem:
            yield f"{block.where}: {problem.strip()}"


def forward(text, folder, stand_in):
    """Headers that are not ours are played by one stand-in."""
    for name in re.findall(r'#include "((?!vesk/)[^"]+)"', text):
        header = folder / name
        header.parent.mkdir(parents=True, exist_ok=True)
        header.write_text(f'#include "{stand_in}"\n')


def compile_native(root, block, folder, compiler, standard, suffix):
    text = block.text
    if block.mark == "with unreal":
        forward(text, folder, STAND_INS / "unreal.h")
    if block.mark == "fragment":
        text = ('#include "vesk/vesklogin.h"\nusing namespace Braxel::VESK;\n'
                f'void f();\nvoid f() {{\n{text}}}\n')
    source = folder / f"block.{suffix}"
    source.write_text(text)
    # Only headers are needed.
    return run([compiler, f"-std={standard}", *WARNINGS, "-fsyntax-only", "-I", folder,
                "-I", Path(root, "include"), source], folder)


def check_cpp(root, cxx="c++", **_):
    # The C++ headers promise C++11; the wrapper and the engines have C++17.
    def judge(block, folder):
        modern = block.mark.startswith("with") or "vesk.hpp" in block.text
        return compile_native(root, block, folder, cxx, "c++17" if modern else "c++11", "cpp")
    return judged(root, "cpp", judge)


def check_c(root, cc="cc", **_):
    return judged(root, "c", lambda block, folder: compile_native(root, block, folder, cc, "c11", "c"))


def check_csharp(root, mcs="mcs", **_):
    binding = sorted(Path(root, "bindings/csharp").glob("*.cs"))

    def judge(block, folder):
        (folder / "Block.cs").write_text(block.text)
        stand_ins = [STAND_INS / f"{block.mark[5:]}.cs"] if block.mark else []
        return run([mcs, "-langversion:7.2", "-warn:4", "-warnaserror", "-target:library",
                    "-out:block.dll", "Block.cs", *binding, *stand_ins], folder)
    return judged(root, "csharp", judge)


def check_cmake(root, installed=None, **_):
    """A block configures in a project of its own, against the installed package."""
    def judge(block, folder):
        prelude = "" if "project(" in block.text else (
            "cmake_minimum_required(VERSION 3.25)\nproject(game LANGUAGES C CXX)\n"
            "add_executable(game main.cpp)\n")
        (folder / "CMakeLists.txt").write_text(prelude + block.text)
        (folder / "main.cpp").write_text("int main() {}\n")
        return run(["cmake", "-G", "Ninja", "-S", folder, "-B", folder / "build",
                    f"-DCMAKE_PREFIX_PATH={installed}"], folder)
    return judged(root, "cmake", judge)


def with_backend(backend, folder, command):
    """Runs a command beside a dev backend, whose addresses are URL and CONTROL. Its requests have to
    be good ones."""
    with subprocess.Popen([backend, "--tls", "--ca-out", folder / "cacert.pem"], text=True,
                          stdout=subprocess.PIPE) as process:
        try:
            ready = process.stdout.readline()
            found = re.match(r"vesk-devbackend ready: url=(\S+) control=(\S+)", ready)
            if not found:
                return "the dev backend does not start: " + ready
            problem = run(command, folder, env={**os.environ, "URL": found[1], "CONTROL": found[2]})
            with urllib.request.build_opener(urllib.request.ProxyHandler({})).open(
                    found[2] + "/requests") as requests:
                refused = [r["verdict"] for r in json.load(requests) if r["verdict"] != "ok"]
            return problem or "".join(f"the backend says: {verdict}" for verdict in refused)
        finally:
            process.send_signal(signal.SIGTERM)


def check_sh(root, installed=None, backend=None, **_):
    """Every block passes shellcheck; those with a place to run in are run there, step by step."""
    def judge(block, folder):
        script = folder / "block.sh"
        script.write_text("set -eu\n" + block.text)
        problem = run(["shellcheck", "--shell=bash", "--exclude=SC2016,SC2086,SC2154", script], folder)
        if problem or not block.mark:
            return problem
        if block.mark == "with backend":
            return with_backend(backend, folder, ["bash", script])
        shutil.copytree(installed, folder / "VESKCore", symlinks=True)
        first = next(b for b in each(root, "cpp") if b.where.startswith("README.md:"))
        (folder / "main.cpp").write_text(first.text)
        return run(["bash", script], folder)
    return judged(root, "sh", judge)


def check_python(root, **_):
    def judge(block, folder):
        (folder / "block.py").write_text(block.text)
        # Scrambled by hand: even bytes by 0x3c, the last two never.
        plain = b"VESK [W.I][a][b,c,1]read me"
        log = bytes(c ^ 0x3C if i % 2 == 0 and i < len(plain) - 2 else c for i, c in enumerate(plain))
        (folder / "veskrecord.log").write_bytes(log + b"\n")
        return run(["sh", "-c", f'test "$(python3 block.py veskrecord.log)" = "{plain.decode()}"'], folder)
    return judged(root, "python", judge)
