// What a page of many documents starts with: the head, the table and what is said of all documents.

/**
 * @param {Page} page
 * @param {Address} address
 * @returns {View}
 */
function documentsView(page, address) {
  const state = tableState(address.table);
  const rows = new DocumentRows(page.documents);
  const table = new DocumentTable(page, state, () => update());
  const count = el("p", {class: "found", role: "status"});
  const bar = el("div", {class: "groups"});
  const search = el("input", {
    type: "search",
    id: "search",
    placeholder: "Part of the file name",
    autocomplete: "off",
    spellcheck: "false",
    value: state.search,
    "aria-keyshortcuts": "/"
  });
  const person = el("span");
  const none = el("p", {class: "nothing", hidden: true}, "No document is like that. ",
    el("button", {type: "button", class: "more", click: () => clear()}, "Show all documents"));

  function update() {
    const shown = rows.shown(state);
    table.take(shown);
    none.hidden = shown.length > 0;
    table.scroller.hidden = shown.length === 0;
    count.textContent = shown.length === rows.count
      ? counted(rows.count, "document")
      : `${number(shown.length)} of ${counted(rows.count, "document")}`;
    drawFilters();
    history.replaceState(history.state, "", tableAddress(state));
  }
  function clear() {
    state.search = search.value = "";
    state.person = false;
    state.groups.clear();
    update();
  }
  function drawFilters() {
    const held =
      document.activeElement instanceof HTMLElement ? document.activeElement.dataset.filter : undefined;
    bar.replaceChildren(...groupFilters(page, state, update));
    person.replaceChildren(personFilter(page, state, update));
    if (held)
      view.querySelectorAll("[data-filter]")
        .forEach((each) => each instanceof HTMLElement && each.dataset.filter === held && each.focus());
  }
  const typed = afterQuiet(120, () => {
    if (state.search === search.value) return;
    state.search = search.value;
    update();
  });
  search.addEventListener("input", typed);
  search.addEventListener("keydown", (event) => {
    if (event.key === "Escape" && search.value !== "") {
      search.value = "";
      typed();
      event.preventDefault();
    } else if (event.key === "ArrowDown" || event.key === "Enter") {
      table.moveTo(0, true);
      event.preventDefault();
    }
  });

  const view = el("div", {class: "start"}, verdictPanel(page.verdict, "h1", page.title),
    numberTiles(page.numbers), noteList(page.notes),
    el("section", {"aria-labelledby": "documents"}, el("h2", {id: "documents"}, "Documents"), bar,
      el("div", {class: "controls"},
        el("label", {class: "search"}, el("span", {class: "label"}, "Search"), search), person, count),
      table.scroller, table.rest, none),
    page.types.length > 0 ? el("section", {"aria-labelledby": "types"},
                              el("h2", {id: "types"}, "Changes by late type"), typeBars(page.types))
                          : null,
    upgradeSection(page), runFacts(page.runs));
  update();
  return {
    title: page.title,
    root: view,
    search,
    placed: () => table.windowed.show(),
    print: (begins) => table.print(begins),
    scroller: table.scroller,
  };
}

/**
 * Documents by verdict: a bar, and its legend, whose entries filter the table.
 * @param {Page} page
 * @param {TableState} state
 * @param {() => void} update
 * @returns {Node[]}
 */
function groupFilters(page, state, update) {
  if (page.groups.length === 0) return [];
  const all = page.groups.reduce((sum, group) => sum + group.count, 0);
  const kinds = groupKinds(page.groups);
  const legend = page.groups.map((group, at) => {
    const button = toggle({down: state.groups.has(at), class: "toggle group"},
      () => {
        if (!state.groups.delete(at)) state.groups.add(at);
        update();
      },
      el("span", {class: `swatch ${kinds[at]}`, "aria-hidden": "true"}), group.words, " ",
      el("strong", null, number(group.count)), el("span", {class: "share"}, ` ${share(group.count, all)}`));
    button.dataset.filter = `group ${at}`;
    return el("li", null, button);
  });
  return [
    dividedBar(page.groups.map((group, at) => ({kind: kinds[at], count: group.count}))),
    el("ul", {class: "legend", "aria-label": "Show only documents with these verdicts"}, legend)
  ];
}

/**
 * Classes that set apart groups of one tone.
 * @param {Page["groups"]} groups
 */
function groupKinds(groups) {
  return groups.map((group, at) => {
    const before = groups.slice(0, at).filter((each) => each.tone === group.tone).length;
    return `${group.tone} shade${Math.min(before, 2)}`;
  });
}

/**
 * @param {Page} page
 * @param {TableState} state
 * @param {() => void} update
 */
function personFilter(page, state, update) {
  const needed = page.documents.person.reduce((sum, one) => sum + one, 0);
  if (needed === 0) return el("span");
  const button = toggle({down: state.person}, () => {
    state.person = !state.person;
    update();
  }, `Only what needs a person (${number(needed)})`);
  button.dataset.filter = "person";
  return button;
}

/**
 * What each upgrade did in all documents.
 * @param {Page} page
 */
function upgradeSection(page) {
  const at = page.upgrades.map((_, place) => place).filter((place) => page.upgrades[place].documents > 0);
  if (at.length === 0) return null;
  const body = el("tbody");
  const more = inPortions(at, 15, (place) => {
    const upgrade = page.upgrades[place];
    return el("tr", null,
      el("th", {scope: "row"}, upgradeLink(page, -1, place),
        el("span", {class: "about"}, firstSentence(upgrade.about))),
      el("td", {class: "count"}, number(upgrade.documents)),
      el("td", {class: "count"}, number(upgrade.features)));
  }, body, "upgrades");
  return el("section", {"aria-labelledby": "upgrades"},
    el("h2", {id: "upgrades"}, "Upgrades that changed something"),
    el("table", {class: "plain upgrades"},
      tableHead("Upgrade", ["Documents", "count"], ["Features", "count"]), body),
    more);
}
