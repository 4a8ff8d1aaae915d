// What the upgrades did, one after the other, in sentences that unfold to what was changed.

/**
 * @param {Looked} looked
 * @returns {Child}
 */
function stepsSection(looked) {
  const {page, detail, at} = looked;
  if (page.kind === "diff")
    return detail.steps.map((step) => [el("p", null, `${happened(step.changed, step.made, step.removed)}.`),
                              stepBody(looked, step)]);
  const list = el("ol", {class: "steps"});
  const only = detail.steps.length === 1;
  const more = inPortions(detail.steps, 100, (step) => stepEntry(looked, step, only), list, "upgrades");
  const idle = detail.idle.length === 0
    ? null
    : fold(`${counted(detail.idle.length, "upgrade")} ran and changed nothing`,
        () => el("ul", {class: "features"},
          detail.idle.map((upgrade) => el("li", null, upgradeLink(page, at, upgrade)))),
        {class: "idle"});
  return [detail.steps.length > 0 ? [list, more] : null, idle];
}

/**
 * @param {Looked} looked
 * @param {Step} step
 * @param {boolean} open
 */
function stepEntry(looked, step, open) {
  const upgrade = looked.page.upgrades[step.upgrade];
  return el("li", {class: "step"},
    upgrade
      ? el("h3", null,
          upgrade.number ? el("span", {class: "place", title: `Upgrade ${upgrade.number} of ${upgrade.of}`},
                             number(upgrade.number))
                         : null,
          upgradeLink(looked.page, looked.at, step.upgrade))
      : null,
    upgrade && upgrade.about ? el("p", {class: "about"}, upgrade.about) : null, stepFold(looked, step, open));
}

/**
 * @param {Looked} looked
 * @param {Step} step
 * @param {boolean} open
 */
function stepFold(looked, step, open) {
  return fold(`${happened(step.changed, step.made, step.removed)}.`, () => stepBody(looked, step),
    {open, class: "what"});
}

/**
 * @param {Looked} looked
 * @param {Step} step
 */
function stepBody(looked, step) {
  const changes = step.changes.first;
  const body = el("tbody");
  const table =
    el("table", {class: "plain changes stacks"}, tableHead("Changed", "Before", "After", "Features"), body);
  return el("div", {class: "stepbody"},
    changes.length > 0
      ? [table, inPortions(changes, 30, (change) => changeRow(looked, change), body, "changes")]
      : null,
    cutNote(changes.length, step.changes.count, looked.detail.cut), gatheredList(looked, "m", step.makes),
    gatheredList(looked, "r", step.removes));
}

/**
 * @param {Looked} looked
 * @param {Change} change
 */
function changeRow(looked, change) {
  const features = change.count === 1 && change.ids.length === 1
    ? featureLink(looked, change.ids[0])
    : fold(counted(change.count, "feature"),
        () => (
          change.own.length > 0 ? ownValues(looked, change) : featureList(looked, change.ids, change.count)));
  return el("tr", null,
    el("th", {scope: "row"}, value(change.type, "code"),
      change.key ? [": ", value(change.key, "code")] : null),
    beforeAfter(change.before, change.after), el("td", {class: "who"}, features));
}

/**
 * Where each feature has values of its own.
 * @param {Looked} looked
 * @param {Change} change
 */
function ownValues(looked, change) {
  const list = el("ul", {class: "own"});
  return [
    list,
    inPortions(change.own, 20,
      ([before, after], at) => el("li", null, featureLink(looked, change.ids[at]),
        el("div", {class: "pair"}, el("span", {class: "before"}, longValue(before)),
          el("span", {class: "arrow"}, " → "), el("span", {class: "after"}, longValue(after)))),
      list, "features"),
    cutNote(change.own.length, change.count, looked.detail.cut)
  ];
}

/**
 * Features that were made or removed, by late type.
 * @param {Looked} looked
 * @param {"m" | "r"} mark
 * @param {Gathered[]} gathered
 */
function gatheredList(looked, mark, gathered) {
  if (gathered.length === 0) return null;
  const {word, kind} = markWords[mark];
  const count = gathered.reduce((sum, each) => sum + each.count, 0);
  return el("div", {class: `gathered ${kind}`},
    el("h4", null, featureMark(mark), `${capitalized(word)}: ${counted(count, "feature")}`),
    el("ul", null,
      gathered.map((each) => el("li", null,
                     each.count === 1 && each.ids.length === 1
                       ? featureLink(looked, each.ids[0], {type: true})
                       : fold([value(each.type, "code"), ` × ${number(each.count)}`],
                           () => featureList(looked, each.ids, each.count))))));
}
