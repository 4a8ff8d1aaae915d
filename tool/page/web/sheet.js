// What the analysis says, before and after, in engineering terms.

/**
 * What a difference means, in the order of `SheetRow`.
 * @type {{words: string, tone: Tone, kind: string}[]}
 */
const meanings = [
  {words: "equal", tone: "quiet", kind: "equal"},
  {words: "expressed differently", tone: "good", kind: "otherwise"},
  {words: "changed on purpose", tone: "good", kind: "purpose"},
  {words: "unaccounted for", tone: "bad", kind: "unaccounted"},
];

/** So many rows are unfolded without being asked for: of differences, and of all values. */
const mostOpenDifferences = 1500;
const mostOpenValues = 300;

/**
 * The short answer.
 * @param {Looked} looked
 */
function analysisSection(looked) {
  const sheet = looked.detail.sheet;
  if (!sheet) return null;
  return [
    el("p", {class: `words ${sheet.tone}`}, toneMark(sheet.tone),
      el("span", null, `${sheet.words}.`.replace(/\.\.$/, "."))),
    dividedBar(sheet.counts.map((count, at) => ({kind: meanings[at].kind, count}))),
    el("ul", {class: "legend still"},
      sheet.counts.map((count, at) => count === 0
          ? null
          : el("li", null, el("span", {class: `swatch ${meanings[at].kind}`, "aria-hidden": "true"}),
              meanings[at].words, " ", el("strong", null, number(count))))),
    sheet.subjects.first.length > 0 ? el("p", null,
                                        el("a", {href: documentAddress(looked.at, "sheet")},
                                          "Compare the analysis before and after, value by value"))
                                    : null
  ];
}

/**
 * The two sheets side by side.
 * @param {Looked} looked
 */
function sheetSection(looked) {
  const sheet = looked.detail.sheet;
  if (!sheet) return null;
  const subjects = sheet.subjects.first;
  const counts = [0, 1, 3].map(
    (least) => subjects.reduce((sum, each) => sum + each.rows.filter((row) => row[3] >= least).length, 0));
  let least = counts[2] > 0 ? 3 : counts[1] > 0 ? 1 : 0;
  const toggles = el("div", {class: "toggles", role: "group", "aria-label": "Which values"});
  const body = el("div");
  const choices = [
    {least: 0, words: "All values"}, {least: 1, words: "Only differences"},
    {least: 3, words: "Only unaccounted"}
  ];
  function draw() {
    const held = toggles.contains(document.activeElement);
    toggles.replaceChildren();
    choices.forEach((choice, at) => {
      if (choice.least > 0 && counts[at] === 0) return;
      toggles.append(toggle({down: choice.least === least}, () => {
        least = choice.least;
        draw();
      }, choice.words));
    });
    if (held) /** @type {HTMLElement | null} */
      (toggles.querySelector("[aria-pressed=true]"))?.focus();
    body.replaceChildren(...chapters(looked, subjects, least));
  }
  draw();
  return [
    el("div", {class: "controls"}, toggles), body,
    cutNote(subjects.length, sheet.subjects.count, looked.detail.cut)
  ];
}

/**
 * @param {Looked} looked
 * @param {Subject[]} subjects
 * @param {number} least
 */
function chapters(looked, subjects, least) {
  /** @type {Map<string, Subject[]>} */
  const all = new Map();
  let rows = 0;
  for (const subject of subjects) {
    const some = subject.rows.filter((row) => row[3] >= least);
    if (some.length === 0 && (least > 0 || subject.rows.length > 0)) continue;
    rows += some.length;
    all.set(subject.chapter, [...(all.get(subject.chapter) || []), {...subject, rows: some}]);
  }
  const open = rows <= (least > 0 ? mostOpenDifferences : mostOpenValues);
  return [...all].map(([chapter, entries]) => fold(
                        [
                          el("span", {class: "chapter", role: "heading", "aria-level": "3"}, chapter), " ",
                          el("span", {class: "badge"}, counted(entries.length, "subject"))
                        ],
                        () => chapterTable(looked, entries), {open, class: "chapter"}));
}

/**
 * @param {Looked} looked
 * @param {Subject[]} subjects
 */
function chapterTable(looked, subjects) {
  const table = el("table", {class: "plain sheet stacks"}, sheetHead());
  return [table, inPortions(subjects, 60, (subject) => subjectRows(looked, subject), table, "subjects")];
}

function sheetHead() {
  return tableHead("Quantity", "Before", "After", "What it means");
}

/**
 * @param {Looked} looked
 * @param {Subject} subject
 */
function subjectRows(looked, subject) {
  const where = [subject.inCase, subject.step].filter((each) => each !== "").join(", ");
  const state = {"": "", new: "only after", lost: "only before"}[subject.state];
  return el("tbody", null,
    el("tr", {class: "subject"},
      el("th", {scope: "rowgroup", colspan: "4"},
        featureLink(looked, subject.id, {name: subject.name || subject.kind}), " ",
        el("span", {class: "kind"}, value(subject.kind)),
        state ? el("span", {class: `badge ${subject.state}`}, state) : null,
        where ? el("span", {class: "owner"}, value(where)) : null)),
    subject.rows.map((row) => sheetRow(looked, row)));
}

/**
 * @param {Looked} looked
 * @param {SheetRow} row
 */
function sheetRow(looked, row) {
  const [quantity, before, after, meaning, upgrade, why] = row;
  const {words, tone, kind} = meanings[meaning] || meanings[3];
  const link = upgradeLink(looked.page, looked.at, upgrade);
  return el("tr", {class: kind}, el("th", {scope: "row"}, value(quantity)), beforeAfter(before, after),
    el("td", {class: "means"}, meaning === 0 ? el("span", {class: "none"}, words) : [
      el("span", {class: `tag ${kind}`}, meaning === 3 ? toneMark(tone) : null, words),
      why ? el("span", {class: "why"}, value(why)) : null, link ? el("span", {class: "by"}, link) : null
    ]));
}
