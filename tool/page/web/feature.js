// A feature: all that happened to it and beneath it, by which upgrade, and why.

/**
 * @param {Looked} looked
 * @param {number} id
 * @returns {View}
 */
function featureView(looked, id) {
  const {detail, page, at} = looked;
  const tree = detail.tree;
  const feature = looked.known.get(id) || {id, type: "Feature", name: "", at: -1};
  const mark = feature.at < 0 ? "" : tree.marks[feature.at].trim();
  const place = feature.at < 0 ? [] : above(tree, feature.at);
  const said = attentionOf(looked, id);
  const rows = sheetOf(looked, id);
  const dropped = detail.dropped.first.filter((each) => each.id === id);
  const steps = stepsOf(looked, id);
  const beneath = feature.at < 0 ? null : beneathOf(looked, feature.at);
  const cut = listsCut(detail, feature.type);
  const nothing = said.length + rows.length + dropped.length + steps.length === 0 && !beneath && !cut;
  const word = mark in markWords ? markWords[mark].word : "";
  return {
    title: `${feature.name || `${feature.type} ${id}`} - ${fileParts(page.documents.file[at]).name}`,
    root: el("div", {class: "feature"},
      el("h1", {tabindex: "-1"}, value(feature.name || `${feature.type} ${id}`)),
      el("p", {class: "what"},
        word ? [featureMark(mark), " ", el("strong", {"aria-hidden": "true"}, word), ", "] : null,
        value(feature.type, "code"), `, feature ${id}`),
      place.length > 0
        ? el("p", {class: "path"}, unseen("Stands in "),
            place.map((each, nth) => [nth > 0 ? el("span", {"aria-hidden": "true"}, " / ") : null,
                        el("a", {href: featureAddress(at, tree.id[each])},
                          value(tree.name[each] || tree.type[each]))]))
        : null,
      analysisWords(looked, id),
      said.length > 0 ? titled("Needs a person", el("div", {class: "cards"}, said)) : null,
      steps.length > 0 ? titled("What happened, and why", el("ol", {class: "steps"}, steps)) : null,
      rows.length > 0 ? titled("What the analysis says", rows) : null,
      dropped.length > 0 ? titled("Dropped values", droppedTable(looked, dropped, false)) : null,
      beneath ? titled("Beneath it", beneath) : null,
      nothing ? el("p", {class: "nothing"}, "Nothing happened to this feature itself.") : null,
      cut ? el("p", {class: "cut"},
              "Lists of this document were cut: more may have happened to this feature. ", detail.cut)
          : null),
  };
}

/**
 * @param {string} title
 * @param {...Child} content
 */
function titled(title, ...content) {
  return el("section", null, el("h2", null, title), content);
}

/**
 * @param {Looked} looked
 * @param {number} id
 */
function attentionOf(looked, id) {
  return looked.detail.attention.first
    .filter((each) => each.features.first.some((feature) => feature.id === id))
    .map((each) => attentionCard(looked, each, id));
}

/**
 * @param {Looked} looked
 * @param {number} id
 * @returns {Child[]}
 */
function sheetOf(looked, id) {
  if (!looked.detail.sheet) return [];
  return looked.detail.sheet.subjects.first.filter((each) => each.id === id && each.rows.length > 0)
    .map((each) => el("table", {class: "plain sheet stacks"}, sheetHead(), subjectRows(looked, each)));
}

/**
 * Whether the analysis still says the same of a feature; null where it says nothing of it.
 * @param {Looked} looked
 * @param {number} id
 */
function analysisWords(looked, id) {
  const subjects =
    looked.detail.sheet ? looked.detail.sheet.subjects.first.filter((each) => each.id === id) : [];
  if (subjects.length === 0) return null;
  const rows = subjects.flatMap((each) => each.rows);
  const different = rows.filter((row) => row[3] > 0).length;
  const odd = rows.filter((row) => row[3] === 3).length;
  return el("p", {class: `words ${odd > 0 ? "bad" : "good"}`}, toneMark(odd > 0 ? "bad" : "good"),
    el("span", null,
      odd > 0 ? `In the analysis, nothing accounts for the difference of ${counted(odd, "value")} of it.`
        : different > 0
        ? `The analysis says ${counted(different, "value")} of it otherwise; each is accounted for below.`
        : "The analysis says the same of it as before."));
}

/**
 * What each upgrade did to a feature.
 * @param {Looked} looked
 * @param {number} id
 */
function stepsOf(looked, id) {
  const found = [];
  for (const step of looked.detail.steps) {
    const rows = step.changes.first.filter((change) => change.ids.includes(id)).map((change) => {
      const own = change.own[change.ids.indexOf(id)] || [change.before, change.after];
      return el("tr", null, el("th", {scope: "row"}, value(change.key || "feature", "code")),
        beforeAfter(own[0], own[1]));
    });
    const made = step.makes.some((each) => each.ids.includes(id));
    const removed = step.removes.some((each) => each.ids.includes(id));
    if (rows.length === 0 && !made && !removed) continue;
    const upgrade = looked.page.upgrades[step.upgrade];
    found.push(el("li", {class: "step"},
      upgrade ? el("h3", null, el("span", {class: "place"}, number(upgrade.number)),
                  upgradeLink(looked.page, looked.at, step.upgrade))
              : null,
      upgrade && upgrade.about ? el("p", {class: "why"}, upgrade.about) : null,
      made ? el("p", {class: "fate"}, featureMark("m"), "Created this feature.") : null,
      removed ? el("p", {class: "fate"}, featureMark("r"), "Removed this feature.") : null,
      rows.length > 0 ? el("table", {class: "plain stacks three"}, tableHead("Changed", "Before", "After"),
                          el("tbody", null, rows))
                      : null));
  }
  return found;
}

/**
 * The features beneath one in which something happened, each with the upgrades that did it.
 * @param {Looked} looked
 * @param {number} at
 */
function beneathOf(looked, at) {
  const tree = looked.detail.tree;
  const end = endOfBranch(tree, at);
  const places = [];
  for (let place = at + 1; place < end; ++place)
    if (tree.marks[place].trim() !== "") places.push(place);
  if (places.length === 0) return null;
  const by = upgradesByFeature(looked.detail);
  const body = el("tbody");
  const more = inPortions(places, 40,
    (place) => el("tr", null,
      el("th", {scope: "row"}, featureMark(tree.marks[place]), " ",
        featureLink(looked, tree.id[place], {type: true})),
      el("td", null, markWords[tree.marks[place]].word),
      el("td", null,
        [...(by.get(tree.id[place]) || [])].map(
          (upgrade) => el("div", null, upgradeLink(looked.page, looked.at, upgrade))))),
    body, "features");
  return [
    el("table", {class: "plain stacks three"}, tableHead("Feature", "What became of it", "Upgrade"), body),
    more
  ];
}

/**
 * @param {Detail} detail
 * @returns {Map<number, Set<number>>}
 */
function upgradesByFeature(detail) {
  /** @type {Map<number, Set<number>>} */
  const by = new Map();
  for (const step of detail.steps) {
    for (const each of [...step.changes.first, ...step.makes, ...step.removes]) {
      for (const id of each.ids) {
        const upgrades = by.get(id);
        if (upgrades)
          upgrades.add(step.upgrade);
        else
          by.set(id, new Set([step.upgrade]));
      }
    }
  }
  return by;
}

/**
 * Whether a feature of that late type may have been left out of some list.
 * @param {Detail} detail
 * @param {string} type
 */
function listsCut(detail, type) {
  return detail.steps.some((step) => step.changes.first.length < step.changes.count ||
      [...step.changes.first, ...step.makes, ...step.removes].some(
        (each) => each.type === type && each.ids.length < each.count));
}
