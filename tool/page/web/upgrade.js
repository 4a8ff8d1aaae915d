// An upgrade: what it is there for, what a failure means, an example, and what it did here.

/** So many documents of an upgrade are listed. */
const mostListed = 500;

/**
 * @param {Page} page
 * @param {string} name
 * @param {Looked | null} looked the document that one comes from
 * @returns {View}
 */
function upgradeView(page, name, looked) {
  const place = page.upgrades.findIndex((each) => each.name === name);
  const upgrade = page.upgrades[place];
  if (!upgrade) return messageView(page, `This page tells of no upgrade "${name}".`);
  return {
    title: `${name} - ${page.title}`,
    root: el("div", {class: "upgradepage"},
      el("p", {class: "above"},
        upgrade.number ? `Upgrade ${number(upgrade.number)} of ${number(upgrade.of)}`
                       : "An upgrade that this program does not know"),
      el("h1", {tabindex: "-1"}, value(name)), upgrade.about ? el("p", {class: "lead"}, upgrade.about) : null,
      looked ? inDocument(looked, place) : null, inDocuments(page, place, looked),
      upgrade.does.length > 0 ? titled("What it does to which features", doesTable(upgrade)) : null,
      upgrade.leaves.length > 0 ? titled("What a failure leaves behind",
                                    el("ul", {class: "leaves"},
                                      upgrade.leaves.map((each) => el("li", null, value(each.types, "code"),
                                                           ": ", value(each.what)))))
                                : null,
      exampleSection(upgrade)),
  };
}

/** @param {Upgrade} upgrade */
function doesTable(upgrade) {
  return el("table", {class: "plain stacks three"}, tableHead("Late types", "What it does", "A failure"),
    el("tbody", null,
      upgrade.does.map((each) => el("tr", null, el("th", {scope: "row"}, value(each.types, "code")),
                         el("td", null, each.purpose), el("td", null, each.failure)))));
}

/** @param {Upgrade} upgrade */
function exampleSection(upgrade) {
  const {of, rows, none} = upgrade.example;
  if (rows.length === 0) return none ? titled("Example", el("p", null, none)) : null;
  return titled("Example", el("p", null, value(of)),
    el("table", {class: "plain stacks three"}, tableHead("What", "Before", "After"),
      el("tbody", null,
        rows.map(([what, before, after]) => el(
                   "tr", null, el("th", {scope: "row"}, value(what, "code")), beforeAfter(before, after))))));
}

/**
 * What it did in one document.
 * @param {Looked} looked
 * @param {number} place
 */
function inDocument(looked, place) {
  const {detail, at, page} = looked;
  const step = detail.steps.find((each) => each.upgrade === place);
  const said = detail.attention.first.filter((each) => each.upgrade === place);
  const subjects = detail.sheet
    ? detail.sheet.subjects.first
        .map((each) => ({...each, rows: each.rows.filter((row) => row[4] === place && row[3] > 0)}))
        .filter((each) => each.rows.length > 0)
    : [];
  const dropped = detail.dropped.first.filter((each) => each.upgrades.includes(place));
  const file = fileParts(page.documents.file[at]).name;
  const untold = detail.steps.length === 0 && detail.idle.length === 0 && detail.types.length > 0;
  const idle = detail.idle.includes(place) ? "It ran and changed nothing."
    : untold                               ? "The report does not say what it did here."
                                           : "It was not run here.";
  const link = el("a", {href: documentAddress(at)}, value(file));
  const cards = el("div", {class: "cards"}, said.map((each) => attentionCard(looked, each)));
  const section = el("section", null, el("h2", null, "In ", link),
    step ? stepFold(looked, step, step.changes.first.length <= 8) : el("p", null, idle));
  if (said.length > 0) add(section, [el("h3", null, "Needs a person"), cards]);
  if (subjects.length > 0) {
    add(section, [el("h3", null, "What the analysis says differently"), chapterTable(looked, subjects)]);
  }
  if (dropped.length > 0)
    add(section, [el("h3", null, "Dropped values"), droppedTable(looked, dropped, true)]);
  return section;
}

/**
 * In how many documents it changed something; which, when asked for: that takes unpacking all details.
 * @param {Page} page
 * @param {number} place
 * @param {Looked | null} looked
 */
function inDocuments(page, place, looked) {
  const upgrade = page.upgrades[place];
  if (page.documents.file.length < 2) return null;
  // Reports with numbers only do not say what each upgrade did.
  if (page.types.length > 0 && page.upgrades.every((each) => each.documents === 0)) return null;
  if (upgrade.documents === 0)
    return looked ? null : titled("In these documents", el("p", null, "It changed nothing in them."));
  const list = el("ul", {class: "where"});
  const status = el("p", {class: "found", role: "status"});
  const start = el("button", {
    type: "button",
    class: "toggle",
    click: async () => {
      start.hidden = true;
      await listDocuments(page, place, list, status);
    }
  },
    "List the documents");
  return titled("In these documents",
    el("p", null,
      `It changed ${counted(upgrade.features, "feature")} in ${counted(upgrade.documents, "document")}.`),
    start, status, list);
}

/**
 * @param {Page} page
 * @param {number} place
 * @param {HTMLElement} list
 * @param {HTMLElement} status
 */
async function listDocuments(page, place, list, status) {
  const blocks = [...new Set(page.documents.block)].filter((block) => block >= 0).sort((a, b) => a - b);
  let found = 0;
  let looked = 0;
  for (const block of blocks) {
    const details = Object.entries(await unpackedBlock(block));
    if (!list.isConnected) return;
    for (const [at, detail] of details) {
      const step = detail.steps.find((each) => each.upgrade === place);
      if (!step || found >= mostListed) continue;
      ++found;
      list.append(el("li", null,
        el("a", {href: `${documentAddress(Number(at))}/u/${encodeURIComponent(page.upgrades[place].name)}`},
          value(page.documents.file[Number(at)])),
        ` ${happened(step.changed, step.made, step.removed).toLowerCase()}`));
    }
    looked += details.length;
    status.textContent = `${number(found)} found in ${counted(looked, "document")}`;
    if (found >= mostListed) break;
  }
  if (found >= mostListed)
    status.textContent =
      `The first ${number(found)} of ${counted(page.upgrades[place].documents, "document")}`;
  else
    status.textContent = `${counted(found, "document")}${
      found < page.upgrades[place].documents ? `; this page does not hold the details of the others` : ""}`;
}
