"""A document: its sections, what unfolds, its tree, its sheet, its features and upgrades."""
import pages
from browser import Keys, PageTest


class DocumentTest(PageTest):
    @classmethod
    def setUpClass(cls):
        cls.page = pages.upgraded()
        cls.data = pages.data(cls.page)
        cls.detail = pages.data(cls.page, "block-0")["0"]

    def opened(self, title):
        self.open(self.page)
        return self.section(title)

    def test_headings_are_in_order_and_no_section_is_empty(self):
        self.open(self.page)
        levels = [int(each.tag_name[1]) for each in self.all("main :is(h1, h2, h3, h4)")]
        self.assertEqual(1, levels[0])
        self.assertEqual(1, levels.count(1))
        self.assertTrue(all(after <= before + 1 for before, after in zip(levels, levels[1:])), levels)
        for section in self.all("main section"):
            heading = self.one("h2", section).text
            self.assertGreater(len(section.text), len(heading) + 5, heading)

    def test_steps_are_sentences_that_unfold_to_changes(self):
        section = self.opened("What the upgrades did")
        steps = self.all(".step", section)
        names = [self.data["upgrades"][step["upgrade"]]["name"] for step in self.detail["steps"]]
        self.assertEqual(names, self.texts("h3 a", section))
        at = names.index("UpgradeJobMemoryUnit")
        step = self.detail["steps"][at]
        self.assertIn(f"Changed {step['changed']} features", steps[at].text)
        self.assertIn(self.data["upgrades"][step["upgrade"]]["about"], steps[at].text)
        self.assertEqual([], self.all("table", steps[at]))
        self.one("summary", steps[at]).click()
        self.until(lambda: self.all("table", steps[at]), "it does not unfold")
        change = next(each for each in step["changes"]["first"] if each["count"] > 1)
        row = next(row for row in self.all("tbody tr", steps[at]) if f"{change['count']} features" in row.text)
        self.assertEqual(f"{change['type']}: {change['key']}", self.one("th", row).text)
        self.assertEqual(change["after"], self.one(".after", row).text)
        self.one("summary", row).click()
        self.until(lambda: len(self.all("a.feature", row)) == change["count"], "its features are not listed")
        idle = self.one(".idle", section)
        self.one("summary", idle).click()
        self.until(lambda: len(self.all("li a", idle)) == len(self.detail["idle"]), "upgrades without changes are not listed")

    def test_feature_is_found_and_tells_which_upgrade_and_why(self):
        self.open(self.page)
        self.press("/", "pressure.1")
        self.until(lambda: self.all(".results a"), "nothing is found")
        self.press(Keys.ENTER)
        self.until_equal("Pressure.1", lambda: self.one("h1").text)
        told = self.section("What happened, and why").text
        about = next(each["about"] for each in self.data["upgrades"] if each["name"] == "UpgradePressureBasicComponents")
        self.assertIn(about, told)
        self.assertIn("pressure_param", told)
        self.assertIn("1.25e+07", self.section("What the analysis says").text.replace("12500000", "1.25e+07"))
        # The parameter was removed and the component created: both stand beneath.
        beneath = self.section("Beneath it").text
        self.assertIn("created", beneath)
        self.assertIn("removed", beneath)
        self.back()
        self.assertTrue(self.all(".finder"))

    def test_finds_by_late_type_and_id(self):
        self.open(self.page)
        tree = self.detail["tree"]
        field = self.one(".finder input")
        field.send_keys(str(tree["id"][5]))
        self.until(lambda: self.all(".results a"), "the id is not found")
        self.assertTrue(self.one(".results a").get_attribute("href").endswith(f"/f/{tree['id'][5]}"))
        field.send_keys(Keys.ESCAPE)
        self.until_equal([], lambda: self.all(".results a"))
        field.send_keys("hvxjob")
        self.until(lambda: self.all(".results a"), "the late type is not found")
        self.assertTrue(all("HVXJob" in text for text in self.texts(".results li")))
        field.send_keys("zzz")
        self.until_equal([], lambda: self.all(".results a"))
        self.assertIn("Nothing happened", self.one(".finder .found").text)

    def test_tree_by_keyboard(self):
        section = self.opened("Where it happened")
        tree = self.one("[role=tree]", section)
        self.assertLess(len(self.all("[role=treeitem]", tree)), 120)
        self.script("arguments[0].querySelector('[tabindex=\"0\"]').focus()", tree)
        where = """
            const row = document.activeElement;
            return [row.ariaLevel, row.ariaExpanded, row.querySelector('.id').textContent];"""
        top = self.script(where)
        self.assertEqual(["1", "true"], top[:2])
        self.press(Keys.ARROW_LEFT)
        self.assertEqual(["1", "false", top[2]], self.script(where))
        self.press(Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
        inner = self.script(where)
        self.assertEqual("2", inner[0])
        self.press(Keys.ARROW_LEFT, Keys.ARROW_LEFT)
        self.assertEqual(top[2], self.script(where)[2])
        self.press(Keys.END)
        last = self.script(where)[2]
        self.assertNotEqual(top[2], last)
        self.button("removed", ".toggles").click()
        kept = self.with_those_above([mark == "r" for mark in self.detail["tree"]["marks"]])
        words = f"{kept} of {len(self.detail['tree']['id'])} features in sight"
        self.until_equal(words, lambda: self.one(".found", section).text)
        self.assertIn(str(self.detail["tree"]["marks"].count("r")), self.button("removed", ".toggles").text)
        self.button("removed", ".toggles").click()
        self.button("Unfold all").click()
        self.script("document.querySelector('[role=tree]').scrollTop = 1e9")
        last = str(self.detail["tree"]["id"][-1])
        self.until(lambda: last in self.texts("[role=treeitem] .id"), "the last one is missing")
        self.assertLess(len(self.all("[role=treeitem]")), 120)
        self.script("[...document.querySelectorAll('[role=treeitem]')].pop().focus()")
        name = self.script("return document.activeElement.querySelector('.id').textContent")
        self.press(Keys.ENTER)
        self.until(lambda: f"feature {name}" in self.one(".what").text, "Enter does not open the feature")

    def with_those_above(self, wanted):
        """How many features of the tree are wanted, or stand above one that is."""
        kept, depths = set(), self.detail["tree"]["depth"]
        path = []
        for at, depth in enumerate(depths):
            path[depth:] = [at]
            if wanted[at]:
                kept.update(path)
        return len(kept)

    def test_tree_filter_keeps_the_way_to_what_it_finds(self):
        section = self.opened("Where it happened")
        self.one("input", section).send_keys("Pressure.1")
        self.until(lambda: "in sight" in self.one(".found", section).text, "the filter does nothing")
        names = self.texts("[role=treeitem] a", section)
        self.assertEqual("Pressure.1", names[-1])
        self.assertEqual([str(level + 1) for level in range(len(names))],
                         [each.get_attribute("aria-level") for each in self.all("[role=treeitem]", section)])

    def test_sheet_shows_differences_or_all(self):
        section = self.opened("The analysis before and after")
        rows = [row for subject in self.detail["sheet"]["subjects"]["first"] for row in subject["rows"]]
        different = [row for row in rows if row[3] > 0]
        self.assertEqual("true", self.button("Only differences").get_attribute("aria-pressed"))
        self.show_all(section)
        self.assertEqual(len(different), len(self.all("tbody tr:not(.subject)", section)))
        self.assertEqual([], self.all("tr.equal", section))
        first = self.one("tbody tr:not(.subject)", section)
        self.assertEqual(different[0][:3], [self.one("th", first).text, self.one(".before", first).text.replace("–", "-"),
                                            self.one(".after", first).text.replace("–", "-")])
        self.assertIn(different[0][5], first.text)
        self.assertEqual(self.data["upgrades"][different[0][4]]["name"], self.one("a.upgrade", first).text)
        self.button("All values").click()
        for summary in self.all("details.chapter:not([open]) > summary", section):
            summary.click()
        self.until(lambda: not self.all("details.chapter:not(:has(table))", section), "chapters do not unfold")
        self.show_all(section)
        self.assertEqual(len(rows), len(self.all("tbody tr:not(.subject)", section)))

    def show_all(self, section):
        """Presses what shows more until all is shown."""
        while more := [each for each in self.all("button.more", section) if each.is_displayed()]:
            more[0].click()

    def test_upgrade_tells_what_it_did_here(self):
        self.open(self.page)
        self.one(".step a.upgrade").click()
        upgrade = self.data["upgrades"][self.detail["steps"][0]["upgrade"]]
        self.until_equal(upgrade["name"], lambda: self.one("h1").text)
        text = self.one("main").text
        self.assertIn(upgrade["about"], text)
        self.assertIn(f"Upgrade {upgrade['number']} of {upgrade['of']}", text)
        self.assertEqual(len(upgrade["does"]), len(self.all("tbody tr", self.section("What it does to which features"))))
        self.assertEqual(len(upgrade["example"]["rows"]), len(self.all("tbody tr", self.section("Example"))))
        self.assertIn(f"Changed {self.detail['steps'][0]['changed']} features", text)

    def test_dropped_values_and_late_types(self):
        self.open(self.page)
        dropped = self.detail["dropped"]
        rows = self.all("tbody tr", self.section("Dropped values"))
        self.assertEqual(min(50, len(dropped["first"])), len(rows))
        self.assertIn(dropped["first"][0]["values"], rows[0].text)
        types = self.section("Changes by late type")
        counts = [f"{count:,}" for count in self.detail["types"][0][1:4]]
        self.assertEqual(counts, self.texts("tbody tr:first-child td.count", types)[:3])
        self.button("late types").click()
        self.assertEqual(min(30, len(self.detail["types"])), len(self.all("tbody tr", types)))

    def test_section_has_an_address(self):
        self.open(self.page, "#/d/0/sheet")
        self.until(lambda: abs(self.script("return document.getElementById('sheet').getBoundingClientRect().top")) < 120,
                   "the address does not lead to the section")
        self.assertEqual("sheet-head", self.focused().get_attribute("id"))
        self.one(".contents a[href='#/d/0/steps']").click()
        self.until_equal("steps-head", lambda: self.focused().get_attribute("id"))


class OtherKindsTest(PageTest):
    def test_document_without_a_result_says_why(self):
        page = pages.archive(1000)
        files = pages.data(page)["documents"]["file"]
        at = next(at for at, name in enumerate(files) if "broken" in name)
        self.open(page, f"#/d/{at}")
        self.assertIn("cut off", self.one(".problem").text)
        self.assertEqual(["Files"], self.texts("main section h2"))
        self.assertEqual([], self.all(".finder"), "there are no features to be found")

    def test_what_needs_a_person_comes_with_reason_and_next_step(self):
        page = pages.checked()
        data = pages.data(page)
        detail = pages.data(page, "block-0")["0"]
        self.open(page)
        self.assertEqual(data["verdict"]["words"], self.one("h1").text)
        section = self.section("Findings")
        cards = self.all("article", section)
        self.assertEqual(min(50, len(detail["attention"]["first"])), len(cards))
        for each in detail["attention"]["first"][:20]:
            parts = (each["reason"], each["next"], each["type"])
            self.assertTrue(any(all(part in card.text for part in parts) for card in cards), parts)
        self.no_empty_sections(detail)
        link = self.one("a.feature", section)
        name = link.text
        link.click()
        self.until_equal(name, lambda: self.one("h1").text)
        self.assertTrue(self.section("Needs a person"))

    def test_difference_has_neither_upgrades_nor_verdicts(self):
        page = pages.difference()
        detail = pages.data(page, "block-0")["0"]
        self.open(page)
        self.assertEqual([], self.all(".groups .divided, .steps"))
        text = self.section("What differs").text
        self.assertIn(f"{detail['steps'][0]['changed']:,} features different", text)
        self.no_empty_sections(detail)

    def test_what_a_report_does_not_hold_is_not_made_up(self):
        page = pages.numbers_only()
        attention = pages.data(page, "block-0")["0"]["attention"]
        self.assertLess(len(attention["first"]), attention["count"])
        self.open(page)
        self.assertEqual([], self.all("#attention .cut"), "nothing of it was cut")
        for address in ("#/d/0/u/UpgradeJobMemoryUnit", "#/u/UpgradeJobMemoryUnit"):
            self.open(page, address)
            for wrong in ("not run here", "changed nothing"):
                self.assertNotIn(wrong, self.one("main").text)
        self.open(page, "#/d/0/u/UpgradeJobMemoryUnit")
        self.assertIn("In a\\u000ab.hvxdoc", self.texts("h2"))

    def no_empty_sections(self, detail):
        there = {each.get_attribute("id") for each in self.all(".sections > section")}
        expected = {"attention": detail["attention"]["count"], "steps": len(detail["steps"]) + len(detail["idle"]),
                    "types": len(detail["types"]), "tree": len(detail["tree"]["id"]), "dropped": detail["dropped"]["count"],
                    "analysis": detail["sheet"], "sheet": detail["sheet"], "files": len(detail["facts"])}
        self.assertEqual({name for name, count in expected.items() if count}, there)
