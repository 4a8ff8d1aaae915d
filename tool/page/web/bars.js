// Bars: how a whole is divided, and how much happened to each late type. Numbers always stand beside them.

/**
 * One bar divided by its parts; what the parts are is told by what stands beside it.
 * @param {{kind: string, count: number}[]} parts
 */
function dividedBar(parts) {
  const bar = el("div", {class: "divided", "aria-hidden": "true"});
  for (const part of parts) {
    if (part.count === 0) continue;
    const piece = el("span", {class: part.kind});
    piece.style.flexGrow = String(part.count);
    bar.append(piece);
  }
  return bar;
}

/** The kinds of change, in the order of `TypeTotals`. */
const changeKinds = ["changed", "made", "removed", "failed"];

/** @param {string} kind */
function changeWord(kind) {
  const mark = Object.values(markWords).find((each) => each.kind === kind);
  return mark ? mark.word : kind;
}

/**
 * What happened to features of each late type.
 * @param {TypeTotals[]} types
 * @returns {Node[]}
 */
function typeBars(types) {
  const kinds = changeKinds.filter((_, at) => types.some((type) => Number(type[at + 1]) > 0));
  const largest =
    Math.max(...types.map((type) => Number(type[1]) + Number(type[2]) + Number(type[3]) + Number(type[4])));
  const body = el("tbody");
  const table = el("table", {class: "types"},
    el("thead", null,
      el("tr", null, el("th", {scope: "col"}, "Late type"),
        el("th", {scope: "col", class: "bar"}, unseen("As bars")),
        kinds.map((kind) => el("th", {scope: "col", class: "count"},
                    el("span", {class: `swatch ${kind}`, "aria-hidden": "true"}), changeWord(kind))))),
    body);
  return [table, inPortions(types, 15, (type) => typeRow(type, kinds, largest), body, "late types")];
}

/**
 * @param {TypeTotals} type
 * @param {string[]} kinds
 * @param {number} largest
 */
function typeRow(type, kinds, largest) {
  const bar = el("div", {class: "divided thin", "aria-hidden": "true"});
  const counts = kinds.map((kind) => Number(type[changeKinds.indexOf(kind) + 1]));
  counts.forEach((count, at) => {
    if (count === 0) return;
    const piece = el("span", {class: kinds[at]});
    piece.style.width = `max(3px, ${(100 * count) / largest}%)`;
    bar.append(piece);
  });
  return el("tr", null, el("th", {scope: "row"}, value(type[0], "code")), el("td", {class: "bar"}, bar),
    counts.map((count) => el("td", {class: count ? "count" : "count none"}, number(count))));
}
