#!/usr/bin/python3
"""Opens the scan page in a headless browser, as a person would, and confirms the login of a game.

Run by tests/support/run-case.sh, in a game's folder with an interactive messenger.
VESK_SCREENSHOTS=FOLDER keeps scan-page-light.png and scan-page-dark.png there.
"""
import json
import os
import re
import subprocess
import sys
import urllib.request

sys.dont_write_bytecode = True
from scan_browser import By, button, click, open_page, wait_for
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

FOLDER, CONTROL = os.environ["VESK_TEST_FOLDER"], os.environ["VESK_TEST_CONTROL_URL"]
OPENER = urllib.request.build_opener(urllib.request.ProxyHandler({}))


def call(path, body=None):
    data = None if body is None else json.dumps(body).encode()
    request = urllib.request.Request(CONTROL + path, data, {"Content-Type": "application/json"})
    with OPENER.open(request, timeout=20) as answer:
        return json.loads(answer.read())


def login():
    return subprocess.Popen(
        [os.path.join(FOLDER, "vesk-console"), "login", "status", "--channel", "Ferno",
         "--timeout", "40", "--json"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
        stderr=subprocess.PIPE, text=True)


def results_of(game, event):
    output = game.communicate(timeout=40)[1]
    return [line for line in map(json.loads, output.splitlines()) if line["event"] == event][-1]


def check_listeners():
    """Every listening socket of the backend must be on 127.0.0.1."""
    ports = {int(os.environ[name].rsplit(":", 1)[1])
             for name in ("VESK_TEST_BACKEND_URL", "VESK_TEST_CONTROL_URL")}
    found = []
    for family in ("tcp", "tcp6"):
        with open(f"/proc/net/{family}", encoding="ascii") as table:
            rows = [line.split() for line in list(table)[1:]]
        found += [row[1].split(":")[0] for row in rows
                  if row[3] == "0A" and int(row[1].split(":")[1], 16) in ports]
    assert found == ["0100007F"] * len(ports), found


def texts(browser, selector):
    return [found.get_property("textContent")
            for found in browser.find_elements(By.CSS_SELECTOR, selector)]


def press_by_keyboard(browser, name):
    """Moves on with the Tab key until the button has the focus, and presses Enter."""
    for _ in range(30):
        ActionChains(browser).send_keys(Keys.TAB).perform()
        if browser.switch_to.active_element.accessible_name == name:
            ActionChains(browser).send_keys(Keys.ENTER).perform()
            return
    raise AssertionError(f"the Tab key does not reach {name}")


def check_hostile_texts(browser):
    evil = "<img src=x onerror=window.pwned=1><script>window.pwned=1</script>"
    session = call("/sessions", {"channel": "KZ", "seq": evil, "qrcode": evil})
    wait_for(browser, "the hostile text, shown as text", lambda: evil in texts(browser, ".seq"))
    assert browser.execute_script("return window.pwned") is None
    assert not texts(browser, "img:not(.code)")
    call(f"/sessions/{session['id']}/end", {})


def wait_for_codes(browser, count):
    wait_for(browser, f"{count} codes on the page",
             lambda: len(texts(browser, ".sessions .session")) == count)


def check_phone_width(browser):
    browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                            {"width": 360, "height": 740, "deviceScaleFactor": 1, "mobile": True})
    wide = browser.execute_script("return document.documentElement.scrollWidth")
    assert wide <= 360, f"the page is {wide} pixels wide on a telephone of 360"
    buttons = browser.find_elements(By.CSS_SELECTOR, ".sessions button")
    assert buttons and all(one.size["height"] >= 36 for one in buttons)
    browser.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})


def check_schemes(browser):
    body = browser.find_element(By.TAG_NAME, "body")
    for scheme in ("light", "dark"):
        browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})
        # Brightness of text and background, 0 to 255.
        text, back = (sum(map(int, re.findall(r"\d+", body.value_of_css_property(name))[:3])) / 3
                      for name in ("color", "background-color"))
        assert (text < 80 and back > 200) if scheme == "light" else (text > 200 and back < 80)
        if "VESK_SCREENSHOTS" in os.environ:
            browser.save_screenshot(f"{os.environ['VESK_SCREENSHOTS']}/scan-page-{scheme}.png")


def visit(browser):
    refused = login()
    click(browser, "Deny")
    assert results_of(refused, "login")["retCode"] == 9999 and refused.returncode == 1

    confirmed = login()
    wait_for(browser, "the session", lambda: button(browser, "Confirm"))
    code = browser.find_element(By.CLASS_NAME, "code")
    wait_for(browser, "the code", lambda: int(code.get_property("naturalWidth")) > 0)
    press_by_keyboard(browser, "Scanned")
    wait_for(browser, "the scan", lambda: [session["state"] for session in call("/sessions")] ==
             ["denied", "scanned"])
    check_hostile_texts(browser)
    check_phone_width(browser)
    other = call("/sessions", {"channel": "KZ", "seq": "31f7-2"})
    wait_for_codes(browser, 2)
    check_schemes(browser)
    call(f"/sessions/{other['id']}/end", {})
    wait_for_codes(browser, 1)
    click(browser, "Confirm")
    assert results_of(confirmed, "status")["held"] is True and confirmed.returncode == 0

    wait_for(browser, "the login request",
             lambda: "POST /v2/auth/login" in texts(browser, ".request .what"))
    findings = texts(browser, ".request .finding")
    assert set(findings) == {"signature ✓", "time ✓", "body ✓"}, findings
    complaints = [entry for entry in browser.get_log("browser") if entry["level"] == "SEVERE"]
    assert not complaints, complaints


with open(os.path.join(FOLDER, "VESKConfig.ini"), "a", encoding="utf-8") as ini:
    ini.write("FERNO_APP_ID = f-7\n")
with open(os.path.join(FOLDER, "ferno_sim.ini"), "w", encoding="utf-8") as ini:
    ini.write(f"interactive={CONTROL}\n")
check_listeners()
with open_page(CONTROL) as page:
    visit(page)
print("the browser has confirmed a login")
