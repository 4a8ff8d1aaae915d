// Values of the old document that stand nowhere in the result.

/** @param {Looked} looked */
function droppedSection(looked) {
  const dropped = looked.detail.dropped;
  return [
    droppedTable(looked, dropped.first, true), cutNote(dropped.first.length, dropped.count, looked.detail.cut)
  ];
}

/**
 * @param {Looked} looked
 * @param {Dropped[]} entries
 * @param {boolean} named says of which feature
 */
function droppedTable(looked, entries, named) {
  const body = el("tbody");
  const instead = entries.some((each) => each.instead !== "");
  const by = entries.some((each) => each.upgrades.length > 0);
  const more = inPortions(entries, 50,
    (each) => el("tr", null,
      named ? el("th", {scope: "row"}, featureLink(looked, each.id, {name: each.name}),
                el("span", {class: "owner"}, value(each.type, "code")),
                each.owner ? el("span", {class: "owner"}, value(each.owner)) : null)
            : null,
      el("td", null, value(each.key, "code")), el("td", {class: "before"}, longValue(each.values)),
      instead ? el("td", {class: "after"}, longValue(each.instead)) : null,
      !by ? null
          : el("td", null,
              each.upgrades.map((upgrade) => el("div", null, upgradeLink(looked.page, looked.at, upgrade))))),
    body, "values");
  return [
    el("table", {class: "plain stacks"},
      tableHead(named && "Feature", "Attribute", "Was", instead && "Now there is", by && "Upgrade"), body),
    more
  ];
}
