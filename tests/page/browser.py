"""A browser for tests: without a network, at a given size, with a look at what it complains about."""
import contextlib
import time
import unittest

from selenium import webdriver
from selenium.common.exceptions import StaleElementReferenceException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

SIZES = {400: 800, 1000: 900, 1600: 1000}


class Browser:
    driver = None

    @classmethod
    def get(cls):
        if cls.driver is None:
            options = webdriver.ChromeOptions()
            for each in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
                         "--disable-background-networking", "--host-resolver-rules=MAP * ~NOTFOUND"):
                options.add_argument(each)
            options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
            cls.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
            unittest.addModuleCleanup(cls.close)
        return cls.driver

    @classmethod
    def close(cls):
        cls.driver.quit()
        cls.driver = None


class PageTest(unittest.TestCase):
    """A test of a page that must not complain. A page is opened anew for each test."""

    def setUp(self):
        self.driver = Browser.get()
        self.size(1000)
        self.driver.get_log("browser")

    def tearDown(self):
        self.assertEqual([], self.driver.get_log("browser"), "the browser complains")

    def size(self, width):
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": SIZES[width], "deviceScaleFactor": 1, "mobile": False})

    def open(self, page, address=""):
        """Opens a page at an address within it, and waits for what it shows."""
        self.driver.get("about:blank")
        self.driver.get(page.as_uri() + address)
        self.until(lambda: self.all("main h1"), f"{page.name}{address} shows nothing")

    def go(self, address):
        """Goes to another address within the page, as a link does."""
        before = self.one("main > *")
        self.driver.execute_script("location.hash = arguments[0]", address)
        self.until(lambda: self.one("main > *") != before, f"{address} shows nothing")

    def back(self):
        before = self.one("main > *")
        self.driver.back()
        self.until(lambda: self.one("main > *") != before, "the way back shows nothing")

    def until(self, true, words, seconds=10):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            # What was looked at may just be replaced by what is waited for.
            with contextlib.suppress(StaleElementReferenceException):
                found = true()
                if found:
                    return found
            time.sleep(0.02)
        return self.fail(words)

    def until_equal(self, expected, get):
        """Waits until it becomes so; tells what it is instead."""
        with contextlib.suppress(AssertionError):
            self.until(lambda: get() == expected, "")
        self.assertEqual(expected, get())

    def all(self, selector, within=None):
        return (within or self.driver).find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector, within=None):
        return (within or self.driver).find_element(By.CSS_SELECTOR, selector)

    def texts(self, selector, within=None):
        """What elements say, also those that are out of sight."""
        return self.script("return [...(arguments[1] || document).querySelectorAll(arguments[0])].map((e) => e.textContent)",
                           selector, within)

    def button(self, words, within="main"):
        found = [each for each in self.all(f"{within} button") if words in each.text]
        self.assertTrue(found, f"there is no button '{words}'")
        return found[0]

    def section(self, title):
        found = [each for each in self.all("main section") if title in each.find_element(By.CSS_SELECTOR, "h2").text]
        self.assertTrue(found, f"there is no section '{title}'")
        return found[0]

    def press(self, *keys):
        webdriver.ActionChains(self.driver).send_keys(*keys).perform()

    def focused(self):
        return self.driver.switch_to.active_element

    def script(self, code, *values):
        return self.driver.execute_script(code, *values)

    def count(self):
        return self.one(".controls .found").text


__all__ = ["Browser", "Keys", "PageTest", "SIZES"]
