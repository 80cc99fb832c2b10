#!/usr/bin/env python3
"""Usage: browser_test.py --backend FILE --console FILE --sdk FILE --ferno FILE --samples FOLDER
                       [--screenshots FOLDER]

Opens the scan console in a headless browser, as a person would, and confirms the login of a game.
VESK_SCREENSHOTS=FOLDER, or the option, keeps scan-page-light.png and scan-page-dark.png there.
"""
import argparse
import contextlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "scripts"))
from scan_browser import call, open_console, start, stop, wait_for


class Game:
    """A folder with the console, the SDK and an interactive messenger."""

    def __init__(self, args, folder, backend_url, control_url):
        self.folder = folder
        needed = subprocess.run(["objdump", "-p", args.console], check=True, text=True,
                                capture_output=True).stdout
        soname = re.search(r"NEEDED +(libVESKCore\S+)", needed).group(1)
        for source, name in ((args.console, "vesk-console"), (args.sdk, soname),
                             (args.ferno, "frlogin.dll")):
            shutil.copy(source, os.path.join(folder, name))
        shutil.copy(os.path.join(args.samples, "VESKRetMsg.json"), folder)
        with open(os.path.join(args.samples, "VESKConfig.ini"), encoding="utf-8") as file:
            sample = file.read()
        self.write("VESKConfig.ini", f"VESK_URL={backend_url}\nVESK_GAME_ID=1106\n"
                                     f"VESK_SDK_KEY=dev-key\nFERNO_APP_ID=f-7\n{sample}")
        self.write("ferno_sim.ini", f"interactive={control_url}\n")

    def write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
            file.write(text)

    def login(self):
        return subprocess.Popen(
            [os.path.join(self.folder, "vesk-console"), "login", "status", "--channel", "Ferno",
             "--timeout", "40", "--json"], cwd=self.folder, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)


def result_of(output, event):
    return [line for line in map(json.loads, output.splitlines()) if line["event"] == event][-1]


def states(control):
    return [session["state"] for session in call(f"{control}/sessions")]


def check_listeners(*ports):
    """Every listening socket on these ports must be on 127.0.0.1."""
    found = []
    for family in ("tcp", "tcp6"):
        with open(f"/proc/net/{family}", encoding="ascii") as table:
            for line in list(table)[1:]:
                address, port = line.split()[1].split(":")
                if line.split()[3] == "0A" and int(port, 16) in ports:
                    found.append(address)
    assert found == ["0100007F"] * len(ports), found


def press_by_keyboard(browser, name):
    """Moves on with the Tab key until the button has the focus, and presses Enter."""
    for _ in range(30):
        browser.key("\ue004")
        active = call(f"{browser.url}/element/active")["value"]
        label = call(f"{browser.url}/element/{next(iter(active.values()))}/computedlabel")["value"]
        if label == name:
            browser.key("\ue007")
            return
    raise AssertionError(f"the Tab key does not reach {name}")


def check_hostile_texts(browser, control):
    evil = "<img src=x onerror=window.pwned=1><script>window.pwned=1</script>"
    session = call(f"{control}/sessions", {"channel": "KZ", "seq": evil, "qrcode": evil})
    query = "return [...document.querySelectorAll('.seq')].map((e) => e.textContent)"
    wait_for("the hostile text, shown as text", lambda: evil in browser.script(query))
    assert browser.script("return window.pwned") is None
    assert browser.script("return document.querySelectorAll('img:not(.code)').length") == 0
    call(f"{control}/sessions/{session['id']}/end", {})


def wait_for_codes(browser, count):
    wait_for(f"{count} codes on the page", lambda: browser.script(
        "return document.querySelectorAll('.sessions .session').length") == count)


def check_phone_width(browser):
    browser.cdp("Emulation.setDeviceMetricsOverride", width=360, height=740, deviceScaleFactor=1,
                mobile=True)
    wide = browser.script("return document.documentElement.scrollWidth")
    assert wide <= 360, f"the page is {wide} pixels wide on a telephone of 360"
    small = browser.script("return [...document.querySelectorAll('.sessions button')]"
                           ".map((b) => b.getBoundingClientRect()).filter((r) => r.height < 36)")
    assert not small, small
    browser.cdp("Emulation.clearDeviceMetricsOverride")


def colours(browser):
    """Brightness of text and background of the page, 0 to 255."""
    texts = browser.script("const s = getComputedStyle(document.body);"
                           "return [s.color, s.backgroundColor]")
    return [sum(map(int, re.findall(r"\d+", text)[:3])) / 3 for text in texts]


def check_schemes(browser, screenshots):
    for scheme in ("light", "dark"):
        browser.cdp("Emulation.setEmulatedMedia",
                    features=[{"name": "prefers-color-scheme", "value": scheme}])
        text, back = colours(browser)
        assert (text < 80 and back > 200) if scheme == "light" else (text > 200 and back < 80)
        if screenshots:
            browser.screenshot(os.path.join(screenshots, f"scan-page-{scheme}.png"))


def visit(browser, game, control, screenshots):
    refused = game.login()
    browser.click("Deny")
    output = refused.communicate(timeout=60)[1]
    assert refused.returncode == 1 and result_of(output, "login")["retCode"] == 9999, output

    confirmed = game.login()
    try:
        wait_for("the session", lambda: browser.button("Confirm"))
        assert browser.script("return document.querySelector('.code').naturalWidth") > 0
        press_by_keyboard(browser, "Scanned")
        wait_for("the scan", lambda: states(control) == ["denied", "scanned"])
        check_hostile_texts(browser, control)
        check_phone_width(browser)
        call(f"{control}/sessions", {"channel": "KZ", "seq": "31f7-2"})
        wait_for_codes(browser, 2)
        check_schemes(browser, screenshots)
        call(f"{control}/sessions/{call(f'{control}/sessions')[-1]['id']}/end", {})
        wait_for_codes(browser, 1)
        browser.click("Confirm")
        output = confirmed.communicate(timeout=60)[1]
    finally:
        stop(confirmed)
    assert confirmed.returncode == 0 and result_of(output, "login")["retCode"] == 0, output
    assert result_of(output, "status")["held"] is True, output

    shown = "return [...document.querySelectorAll('.request .what')].map((e) => e.textContent)"
    wait_for("the login request", lambda: "POST /v2/auth/login" in browser.script(shown))
    findings = browser.script(
        "return [...document.querySelectorAll('.request .finding')].map((e) => e.textContent)")
    assert set(findings) == {"signature ✓", "time ✓", "body ✓"}, findings
    complaints = [entry for entry in browser.do("se/log", type="browser")
                  if entry["level"] == "SEVERE"]
    assert not complaints, complaints


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("backend", "console", "sdk", "ferno", "samples"):
        parser.add_argument(f"--{name}", required=True)
    parser.add_argument("--screenshots", default=os.environ.get("VESK_SCREENSHOTS"))
    args = parser.parse_args()

    with contextlib.ExitStack() as stack:
        folder = stack.enter_context(tempfile.TemporaryDirectory(prefix="vesk-browser."))
        game_folder = os.path.join(folder, "game")
        os.mkdir(game_folder)
        ready = start(stack, [args.backend, "--tls", "--ca-out",
                              os.path.join(game_folder, "cacert.pem")],
                      r"ready: url=(\S+:(\d+)) control=(\S+:(\d+))")
        check_listeners(int(ready.group(2)), int(ready.group(4)))
        game = Game(args, game_folder, ready.group(1), ready.group(3))
        browser = stack.enter_context(open_console(ready.group(3)))
        visit(browser, game, ready.group(3), args.screenshots)
    print("the browser has confirmed a login")


if __name__ == "__main__":
    main()
