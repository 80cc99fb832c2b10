#!/usr/bin/env python3
"""Usage: scan_browser.py ADDRESS [BUTTON]

Opens the scan console at ADDRESS in a headless Chromium, as a person would in a window, waits for
a session and presses its BUTTON, "Confirm" unless given. Needs Debian's chromium and
chromium-driver. The test of the console uses the classes below.
"""
import base64
import contextlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

PATIENCE = 20
OPENER = urllib.request.build_opener(urllib.request.ProxyHandler({}))


def call(url, body=None, method=None):
    data = None if body is None else json.dumps(body).encode()
    request = urllib.request.Request(url, data, {"Content-Type": "application/json"}, method=method)
    try:
        with OPENER.open(request, timeout=60) as answer:
            return json.loads(answer.read())
    except urllib.error.HTTPError as error:
        raise AssertionError(f"{url}: {error.read().decode()}") from error


def wait_for(what, condition):
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        found = condition()
        if found:
            return found
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


def start(stack, command, pattern, **more):
    """Starts a program that says by a line of its output that it is ready."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True, **more)
    stack.callback(stop, process)
    for line in process.stdout:
        match = re.search(pattern, line)
        if match:
            return match
    raise AssertionError(f"{command[0]} did not get ready")


def stop(process):
    process.terminate()
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


class Browser:
    """One window, over WebDriver."""

    def __init__(self, driver, chromium, profile):
        options = {"binary": chromium, "args": [
            "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
            "--no-proxy-server", "--window-size=1000,1300", f"--user-data-dir={profile}"]}
        wanted = {"browserName": "chrome", "goog:chromeOptions": options,
                  "goog:loggingPrefs": {"browser": "ALL"}}
        answer = call(f"{driver}/session", {"capabilities": {"alwaysMatch": wanted}})
        self.url = f"{driver}/session/{answer['value']['sessionId']}"

    def do(self, what, **body):
        return call(f"{self.url}/{what}", body)["value"]

    def quit(self):
        call(self.url, method="DELETE")

    def script(self, text):
        return self.do("execute/sync", script=text, args=[])

    def cdp(self, command, **params):
        return self.do("goog/cdp/execute", cmd=command, params=params)

    def button(self, name):
        """The visible button with this accessible name, if there is one."""
        found = self.do("elements", using="css selector", value="button")
        for element in found:
            url = f"{self.url}/element/{next(iter(element.values()))}"
            try:
                if (call(f"{url}/computedlabel")["value"] == name
                        and call(f"{url}/computedrole")["value"] == "button"
                        and call(f"{url}/displayed")["value"]):
                    return url
            except AssertionError:
                pass  # it has gone meanwhile
        return None

    def click(self, name):
        element = wait_for(f"the button {name}", lambda: self.button(name))
        call(f"{element}/click", {})

    def key(self, value):
        self.do("actions", actions=[{"type": "key", "id": "keyboard", "actions": [
            {"type": "keyDown", "value": value}, {"type": "keyUp", "value": value}]}])

    def screenshot(self, file):
        with open(file, "wb") as image:
            image.write(base64.b64decode(call(f"{self.url}/screenshot")["value"]))

    def wait_until_live(self):
        """Waits until the scan console gets its news."""
        wait_for("the connection", lambda: self.script(
            "return document.getElementById('connection').textContent") == "Live")


@contextlib.contextmanager
def open_console(address):
    """A browser that shows the scan console; ends with the block."""
    chromium, driver = shutil.which("chromium"), shutil.which("chromedriver")
    if not chromium or not driver:
        raise SystemExit("chromium and chromedriver are needed: scripts/bootstrap --browser")
    with contextlib.ExitStack() as stack:
        # A home of its own: the browser must neither find nor leave anything in the user's.
        home = stack.enter_context(tempfile.TemporaryDirectory(prefix="vesk-browser."))
        ready = start(stack, [driver, "--port=0"], r"on port (\d+)\.",
                      env=dict(os.environ, HOME=home, no_proxy="127.0.0.1,localhost"))
        browser = Browser(f"http://127.0.0.1:{ready.group(1)}", chromium,
                          os.path.join(home, "profile"))
        stack.callback(browser.quit)
        browser.do("url", url=f"{address}/")
        browser.wait_until_live()
        yield browser


def main():
    if len(sys.argv) not in (2, 3) or not sys.argv[1].startswith("http://"):
        raise SystemExit("usage: scan_browser.py ADDRESS [BUTTON]")
    with open_console(sys.argv[1].rstrip("/")) as browser:
        browser.click(sys.argv[2] if len(sys.argv) == 3 else "Confirm")


if __name__ == "__main__":
    main()
