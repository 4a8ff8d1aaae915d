// Finds features of a document by name, late type or id.

const mostFound = 12;

/**
 * @param {Looked} looked
 * @returns {{root: HTMLElement, input: HTMLInputElement}}
 */
function featureFinder(looked) {
  const results = el("ul", {class: "results"});
  const status = el("p", {class: "found", role: "status"});
  const input = el("input", {
    type: "search",
    placeholder: "Name, late type or id",
    autocomplete: "off",
    spellcheck: "false",
    "aria-keyshortcuts": "/",
    input: afterQuiet(100, () => search()),
    keydown: (event) => key(event)
  });

  function search() {
    const found = foundFeatures(looked.known, input.value);
    results.replaceChildren(
      ...found.first.map((feature) => el("li", null,
                           el("a", {href: featureAddress(looked.at, feature.id)},
                             featureMark(feature.at < 0 ? "" : looked.detail.tree.marks[feature.at]),
                             value(feature.name || feature.type),
                             el("span", {class: "owner"}, value(feature.type, "code"), ` ${feature.id}`)))));
    status.textContent = input.value.trim() === "" ? ""
      : found.count === 0                          ? "Nothing happened to a feature like that."
      : found.count > mostFound                    ? `The first ${mostFound} of ${number(found.count)}`
                                                   : counted(found.count, "feature");
  }

  /** @param {KeyboardEvent} event */
  function key(event) {
    const first = results.querySelector("a");
    if (event.key === "Escape") {
      input.value = "";
      search();
    } else if (event.key === "Enter") {
      search();
      const found = foundFeatures(looked.known, input.value).first[0];
      if (found) location.hash = featureAddress(looked.at, found.id);
    } else if (event.key === "ArrowDown" && first) {
      first.focus();
    } else {
      return;
    }
    event.preventDefault();
  }

  results.addEventListener("keydown", (event) => {
    const step = {ArrowDown: 1, ArrowUp: -1}[event.key];
    if (!step || !(event.target instanceof HTMLElement)) return;
    const links = [...results.querySelectorAll("a")];
    const next = links.findIndex((link) => link === event.target) + step;
    (next < 0 ? input : links[Math.min(next, links.length - 1)]).focus();
    event.preventDefault();
  });
  return {
    root: el("div", {class: "finder", role: "search"},
      el("label", null, el("span", {class: "label"}, "Find a feature"), input), status, results),
    input
  };
}

/**
 * Those whose name begins with it come before those that only hold it.
 * @param {Map<number, Known>} known
 * @param {string} search
 * @returns {Cut<Known>}
 */
function foundFeatures(known, search) {
  const words = search.trim().toLowerCase().split(/\s+/).filter((word) => word !== "");
  /** @type {[number, Known][]} */
  const found = [];
  if (words.length > 0) {
    for (const feature of known.values()) {
      const name = feature.name.toLowerCase();
      const all = `${name} ${feature.type.toLowerCase()} ${feature.id}`;
      if (!words.every((word) => all.includes(word))) continue;
      const rank = String(feature.id) === words[0] ? 0
        : name === words.join(" ")                 ? 1
        : name.startsWith(words[0])                ? 2
        : name.includes(words[0])                  ? 3
                                                   : 4;
      found.push([rank, feature]);
    }
  }
  found.sort((a, b) => a[0] - b[0] || a[1].id - b[1].id);
  return {count: found.length, first: found.slice(0, mostFound).map(([, feature]) => feature)};
}
