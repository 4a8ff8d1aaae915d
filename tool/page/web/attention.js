// What a person must look at, and what to do about it; values that stand nowhere in the result.

/** Kinds of findings that ask nothing of anybody. */
const quietKinds = ["pending", "unknown"];

/**
 * What has something to say: a document without a result is among what needs a person, but its problem says
 * why.
 * @param {Detail} detail
 */
function toldAttention(detail) {
  return detail.attention.first.filter((each) => each.reason !== "");
}

/**
 * Features among what is told; the document itself may be among them, which has no id.
 * @param {Attention[]} entries
 */
function featuresOf(entries) {
  return entries.reduce(
    (sum, each) => sum + (each.features.first.every((feature) => feature.id > 0) ? each.features.count : 0),
    0);
}

/** @param {Looked} looked */
function attentionSection(looked) {
  const all = looked.detail.attention;
  // Things are counted, of which a group may hold several.
  const told = all.first.reduce((sum, each) => sum + each.features.count, 0);
  /** @type {Map<string, Attention[]>} */
  const kinds = new Map();
  for (const each of toldAttention(looked.detail))
    kinds.set(each.kind, [...(kinds.get(each.kind) || []), each]);
  return [
    [...kinds].map(([kind, entries]) => {
      const list = el("div", {class: "cards"});
      return [
        el("h3", null, `${capitalized(kind)} `,
          featuresOf(entries) > 0 ? el("span", {class: "badge"}, counted(featuresOf(entries), "feature"))
                                  : null),
        list, inPortions(entries, 50, (each) => attentionCard(looked, each), list, "entries")
      ];
    }),
    cutNote(told, all.count, looked.detail.cut)
  ];
}

/**
 * @param {Looked} looked
 * @param {Attention} each
 * @param {number} [only] the feature of which it is told, where that is clear
 */
function attentionCard(looked, each, only) {
  const link = upgradeLink(looked.page, looked.at, each.upgrade);
  const features = each.features.first.filter((feature) => only === undefined || feature.id === only);
  /** @type {Tone} */
  const tone = quietKinds.includes(each.kind) ? "quiet" : "attention";
  return el("article", {class: `card ${tone}`},
    el("p", {class: "reason"}, toneMark(tone), el("span", null, value(each.reason))),
    el("p", {class: "of"}, value(each.type, "code"), each.key ? [", ", value(each.key, "code")] : null,
      link ? [", by ", link] : null, each.others ? [", of ", value(each.others)] : null),
    each.next ? el("p", {class: "next"}, el("strong", null, "Next: "), value(each.next)) : null,
    only === undefined
      ? attentionFeatures(looked, each)
      : features.map((feature) => feature.code ? el("p", {class: "of"}, value(feature.code)) : null));
}

/**
 * @param {Looked} looked
 * @param {Attention} each
 */
function attentionFeatures(looked, each) {
  const list = el("ul", {class: "concerned"});
  const entries = each.features.first.filter((feature) => feature.id > 0);
  return [
    list,
    inPortions(entries, 5,
      (feature) => el("li", null, featureLink(looked, feature.id, {name: feature.name}),
        feature.owner ? el("span", {class: "owner"}, value(feature.owner)) : null,
        feature.code ? el("span", {class: "owner"}, value(feature.code, "code")) : null),
      list, "features"),
    cutNote(each.features.first.length, each.features.count, looked.detail.cut)
  ];
}
