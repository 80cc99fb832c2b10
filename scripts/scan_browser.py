#!/usr/bin/python3
"""Usage: scan_browser.py ADDRESS [BUTTON]

Opens the scan page at ADDRESS in a headless Chromium, as a person would in a window, waits for a
session and presses its BUTTON, "Confirm" unless given. Needs Debian's python3-selenium, chromium and
chromium-driver. The test of the page uses the functions below.
"""
import contextlib
import os
import sys
import tempfile

from selenium import webdriver
from selenium.common.exceptions import StaleElementReferenceException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import WebDriverWait

CHROMIUM, DRIVER = "/usr/bin/chromium", "/usr/bin/chromedriver"


def wait_for(browser, what, condition):
    return WebDriverWait(browser, 20, 0.05, [StaleElementReferenceException]).until(
        lambda _: condition(), f"waited in vain for {what}")


def button(browser, name):
    """The visible button with this accessible name, if there is one."""
    return next((found for found in browser.find_elements(By.TAG_NAME, "button")
                 if found.accessible_name == name and found.is_displayed()), None)


def click(browser, name):
    wait_for(browser, f"the button {name}",
             lambda: (found := button(browser, name)) and (found.click() or True))


@contextlib.contextmanager
def open_page(address):
    """A browser that shows the scan page and gets its news; ends with the block."""
    if not os.path.exists(CHROMIUM) or not os.path.exists(DRIVER):
        raise SystemExit("chromium and chromedriver are needed: scripts/bootstrap --browser")
    # A home of its own: the browser must neither find nor leave anything in the user's.
    with tempfile.TemporaryDirectory(prefix="vesk-browser.") as home:
        options = webdriver.ChromeOptions()
        options.binary_location = CHROMIUM
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--no-proxy-server",
                         "--disable-dev-shm-usage", "--window-size=1000,1300",
                         f"--user-data-dir={home}/profile"):
            options.add_argument(argument)
        os.environ.update(HOME=home, no_proxy="127.0.0.1,localhost")
        browser = webdriver.Chrome(service=Service(DRIVER), options=options)
        try:
            browser.get(f"{address}/")
            wait_for(browser, "the connection",
                     lambda: browser.find_element(By.ID, "connection").text == "Live")
            yield browser
        finally:
            browser.quit()


def main():
    if len(sys.argv) not in (2, 3) or not sys.argv[1].startswith("http://"):
        raise SystemExit("usage: scan_browser.py ADDRESS [BUTTON]")
    with open_page(sys.argv[1].rstrip("/")) as browser:
        click(browser, sys.argv[2] if len(sys.argv) == 3 else "Confirm")


if __name__ == "__main__":
    main()
