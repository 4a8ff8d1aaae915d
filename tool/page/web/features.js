// What the details of a document know of each feature, so that it can be named, found and followed.

/**
 * @param {Detail} detail
 * @returns {Map<number, Known>}
 */
function knownFeatures(detail) {
  /** @type {Map<number, Known>} */
  const known = new Map();
  /**
   * @param {number} id
   * @param {string} type
   * @param {string} name
   * @param {number} at
   */
  function tell(id, type, name, at) {
    const before = known.get(id);
    if (!before)
      known.set(id, {id, type, name, at});
    else if (!before.name && name)
      before.name = name;
  }
  const tree = detail.tree;
  tree.id.forEach((id, at) => tell(id, tree.type[at], tree.name[at], at));
  for (const each of detail.attention.first)
    for (const feature of each.features.first) tell(feature.id, each.type, feature.name, -1);
  for (const each of detail.dropped.first) tell(each.id, each.type, each.name, -1);
  for (const step of detail.steps) {
    for (const each of [...step.changes.first, ...step.makes, ...step.removes])
      for (const id of each.ids) tell(id, each.type, "", -1);
  }
  if (detail.sheet)
    for (const subject of detail.sheet.subjects.first) tell(subject.id, "", subject.name, -1);
  for (const id of known.keys())
    if (id <= 0) known.delete(id);
  return known;
}

/**
 * A feature's name, as a link to all that is known of it.
 * @param {Looked} looked
 * @param {number} id
 * @param {{type?: boolean, name?: string}} [options] with its late type; its name, where it is known
 */
function featureLink(looked, id, options) {
  const feature = looked.known.get(id);
  const name = (options && options.name) || (feature && feature.name) || "";
  const type = (feature && feature.type) || "Feature";
  if (!feature) return el("span", null, value(name || `feature ${id}`));
  return el("a",
    {class: "feature", href: featureAddress(looked.at, id), title: `${type} "${name}", feature ${id}`},
    options && options.type ? [value(type, "code"), " "] : null,
    value(name || `${options && options.type ? "" : `${type} `}${id}`));
}

/**
 * Links to features, in portions.
 * @param {Looked} looked
 * @param {number[]} ids
 * @param {number} count how many there are in truth
 */
function featureList(looked, ids, count) {
  const list = el("ul", {class: "features"});
  return [
    list, inPortions(ids, 60, (id) => el("li", null, featureLink(looked, id)), list, "features"),
    cutNote(ids.length, count, looked.detail.cut)
  ];
}

/**
 * What stands above a feature in the tree, from the top.
 * @param {Tree} tree
 * @param {number} at
 * @returns {number[]} places
 */
function above(tree, at) {
  const found = [];
  for (let place = at - 1, depth = tree.depth[at]; place >= 0 && depth > 0; --place) {
    if (tree.depth[place] < depth) {
      depth = tree.depth[place];
      found.unshift(place);
    }
  }
  return found;
}

/**
 * The place behind the last feature beneath this one.
 * @param {Tree} tree
 * @param {number} at
 */
function endOfBranch(tree, at) {
  let end = at + 1;
  while (end < tree.id.length && tree.depth[end] > tree.depth[at]) ++end;
  return end;
}

/**
 * Before and after, side by side, for one feature or for many alike.
 * @param {string} before
 * @param {string} after
 */
function beforeAfter(before, after) {
  return [el("td", {class: "before"}, longValue(before)), el("td", {class: "after"}, longValue(after))];
}

/**
 * A value; "-" stands for none. A very long one is cut and can be unfolded.
 * @param {string} text
 */
function longValue(text) {
  const most = 300;
  if (text === "-" || text === "") return el("span", {class: "none"}, "–", unseen(" nothing"));
  if (text.length <= most + 40) return value(text);
  return el("div", null, value(`${text.slice(0, most)} ...`), fold("the whole value", () => value(text)));
}
