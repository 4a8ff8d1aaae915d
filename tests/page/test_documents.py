"""The start of a page of many documents: verdict, numbers, and the table."""
import re

import pages
from browser import Keys, PageTest


class DocumentsTest(PageTest):
    @classmethod
    def setUpClass(cls):
        cls.page = pages.archive(1000)
        cls.data = pages.data(cls.page)
        cls.documents = cls.data["documents"]

    def rows(self):
        """The places of the documents in sight, from the top."""
        return list(self.rows_by_place().values())

    def rows_by_place(self):
        found = self.script("""
            return [...document.querySelectorAll("tr[data-row]")].map((row) =>
              [+row.dataset.row, +row.querySelector("a").getAttribute("href").split("/").pop()])""")
        return dict(found)

    def whole_order(self):
        """The places of all documents that the table holds, by scrolling through it."""
        found = {}
        total = int(self.one("table.documents").get_attribute("aria-rowcount")) - 1
        while len(found) < total:
            before = len(found)
            found.update(self.rows_by_place())
            self.script("const scroller = document.querySelector('.scroller'); scroller.scrollTop += scroller.clientHeight")
            if len(found) < total:
                self.until(lambda: self.rows_by_place().keys() - found.keys(), f"no rows come behind {before}")
        return [found[row] for row in range(total)]

    def sort(self, by):
        self.one(f"[data-sort='{by}']").click()
        return self.one(f"th:has([data-sort='{by}'])").get_attribute("aria-sort")

    def test_tells_at_once_whether_all_is_well(self):
        self.open(self.page)
        self.assertEqual(self.data["verdict"]["words"], self.one("h1").text)
        self.assertIn(self.data["verdict"]["next"], self.one(".verdict").text)
        self.assertEqual([f"{each['value']:,}" for each in self.data["numbers"]], self.texts(".numbers dd"))
        self.assertEqual(self.data["title"], self.driver.title)
        self.assertIn("1,000 documents", self.count())
        # What needs a person comes first.
        first = self.rows()[:5]
        self.assertEqual([1] * 5, [self.documents["person"][at] for at in first])

    def test_holds_only_rows_in_sight(self):
        self.open(self.page)
        self.assertEqual("1001", self.one("table.documents").get_attribute("aria-rowcount"))
        self.assertLess(len(self.rows()), 80)
        self.script("document.querySelector('.scroller').scrollTop = 1e9")
        self.until(lambda: self.all("tr[aria-rowindex='1001']"), "the last row does not come")
        self.assertLess(len(self.rows()), 80)
        self.script("document.querySelector('.scroller').scrollTop = 0")
        self.until(lambda: self.all("tr[aria-rowindex='2']"), "the first row does not come back")

    def test_sorts_by_every_column(self):
        self.open(self.page, "#/?person=1")
        keys = {"file": [name.lower() for name in self.documents["file"]], "verdict": self.documents["group"]}
        keys.update({str(at): column["values"] for at, column in enumerate(self.documents["columns"])})
        for by, values in keys.items():
            for _ in range(2):
                direction = self.sort(by)
                self.assertIn(direction, ("ascending", "descending"))
                self.assertEqual(1, len(self.all("th[aria-sort=ascending], th[aria-sort=descending]")))
                order = [values[at] for at in self.whole_order()]
                if by == "file":
                    order = [natural(name) for name in order]
                self.assertEqual(sorted(order, reverse=direction == "descending"), order, f"by {by}, {direction}")

    def test_searches_and_filters_together(self):
        self.open(self.page)
        person = sum(self.documents["person"])
        self.button("Only what needs a person").click()
        self.until_equal(f"{person:,} of 1,000 documents", self.count)
        folder = next(name for name in self.documents["file"] if "faulty" in name).split("/")[-2] + "/"
        self.one("#search").send_keys(f"FAULTY {folder}")
        wanted = [at for at, name in enumerate(self.documents["file"])
                  if self.documents["person"][at] and "faulty" in name and folder in name]
        self.until_equal(f"{len(wanted):,} of 1,000 documents", self.count)
        self.assertEqual(sorted(wanted), sorted(self.whole_order()))
        self.one("#search").send_keys(Keys.ESCAPE)
        self.until_equal(f"{person:,} of 1,000 documents", self.count)
        self.one("#search").send_keys("no such name")
        self.until_equal("0 of 1,000 documents", self.count)
        self.button("Show all documents").click()
        self.until_equal("1,000 documents", self.count)

    def test_legend_filters_by_verdict(self):
        self.open(self.page)
        self.assertEqual(len(self.data["groups"]), len(self.all(".groups .divided span")))
        for at, group in enumerate(self.data["groups"]):
            button = self.all(".groups button")[at]
            self.assertTrue(button.text.startswith(f"{group['words']} {group['count']:,} "), button.text)
            button.click()
            self.until_equal(f"{group['count']:,} of 1,000 documents", self.count)
            self.assertEqual({at}, {self.documents["group"][row] for row in self.rows()})
            self.assertEqual("true", self.focused().get_attribute("aria-pressed"))
            self.focused().click()
        self.until_equal("1,000 documents", self.count)

    def test_keyboard_alone_suffices(self):
        self.open(self.page)
        self.press("/")
        self.assertEqual("search", self.focused().get_attribute("id"))
        self.press("broken")
        self.until(lambda: "of 1,000" in self.count(), "the search does nothing")
        found = int(self.count().split()[0])
        self.press(Keys.ARROW_DOWN)
        row = self.script("return document.activeElement.closest('tr').dataset.row")
        self.assertEqual("0", row)
        steps = ((Keys.ARROW_DOWN, 1), (Keys.ARROW_DOWN, 2), (Keys.ARROW_UP, 1), (Keys.END, found - 1), (Keys.HOME, 0))
        for key, expected in steps:
            self.press(key)
            self.assertEqual(str(expected), self.script("return document.activeElement.closest('tr').dataset.row"))
        self.press(Keys.PAGE_DOWN)
        self.assertGreater(int(self.script("return document.activeElement.closest('tr').dataset.row")), 5)
        self.press(Keys.PAGE_UP)
        self.assertEqual("0", self.script("return document.activeElement.closest('tr').dataset.row"))
        name = self.focused().text
        self.press(Keys.ENTER)
        self.until_equal(name, lambda: self.one("h1").text)

    def test_way_back_leads_to_the_same_table(self):
        self.open(self.page)
        self.one("#search").send_keys("current")
        self.until(lambda: "of 1,000" in self.count(), "the search does nothing")
        self.sort("file")
        self.script("document.querySelector('.scroller').scrollTop = 4000")
        self.until(lambda: self.all("tr[data-row='90']"), "it does not scroll")
        before, count = self.script("return location.hash"), self.count()
        link = self.one("tr[data-row='90'] a")
        name = link.text
        link.click()
        self.until_equal(name, lambda: self.one("h1").text)
        self.back()
        self.assertEqual(before, self.script("return location.hash"))
        self.assertEqual(count, self.count())
        self.assertEqual("current", self.one("#search").get_property("value"))
        self.assertTrue(self.all("tr[data-row='90']"), "it does not scroll back")
        # The address alone says as much.
        self.open(self.page, before)
        self.assertEqual(count, self.count())
        self.assertEqual("ascending", self.one("th:has([data-sort='file'])").get_attribute("aria-sort"))

    def test_narrow_table_keeps_what_matters(self):
        self.size(400)
        self.open(self.page)
        for row in ("thead tr", "tr[data-row='0']"):
            seen = [cell.is_displayed() for cell in self.all(f"table.documents {row} > *")]
            self.assertEqual([True] * 3 + [False] * len(self.documents["columns"]), seen)
        width = self.one("table.documents").size["width"]
        self.assertGreater(self.one("tr[data-row='0'] th").size["width"], width / 2, "the names have too little room")

    def test_upgrades_and_late_types_of_all_documents(self):
        self.open(self.page)
        most = self.data["types"][0]
        row = self.one(".types tbody tr")
        self.assertIn(most[0], row.text)
        self.assertEqual([f"{count:,}" for count in most[1:4]], self.texts("td.count", row)[:3])
        name = self.one(".upgrades a").text
        self.one(".upgrades a").click()
        self.until_equal(name, lambda: self.one("h1").text)
        self.button("List the documents").click()
        self.until(lambda: self.all(".where li"), "no document is listed")


def natural(name):
    """A key by which digits are numbers."""
    return re.sub(r"\d+", lambda digits: digits[0].zfill(12), name)
