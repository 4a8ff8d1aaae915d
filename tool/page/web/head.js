// The head of the page: whether all is well, what to do next, and the numbers that matter most.

/** More notes than these are folded: they must not push what matters out of sight. */
const mostOpenNotes = 3;

/**
 * A verdict, so large that nobody misses it.
 * @param {{tone: Tone, words: string, next: string}} verdict
 * @param {"h1" | "p"} heading
 * @param {string} [above] what it is the verdict on
 */
function verdictPanel(verdict, heading, above) {
  return el("div", {class: `verdict ${verdict.tone}`}, toneMark(verdict.tone),
    el("div", null, above ? el("p", {class: "above"}, value(above)) : null,
      el(heading, {class: "words", tabindex: heading === "h1" ? "-1" : null}, verdict.words),
      verdict.next ? el("p", {class: "next"}, el("strong", null, "Next: "), value(verdict.next)) : null));
}

/** @param {Page["numbers"]} numbers */
function numberTiles(numbers) {
  if (numbers.length === 0) return null;
  return el("dl", {class: "numbers"},
    numbers.map((each) => el("div", {class: each.value > 0 ? each.tone : "quiet"}, el("dt", null, each.label),
                  el("dd", null, number(each.value)))));
}

/**
 * Texts that must be known; nothing when there are none.
 * @param {string[]} notes
 */
function noteList(notes) {
  if (notes.length === 0) return null;
  if (notes.length > mostOpenNotes)
    return fold(counted(notes.length, "note"), () => noteItems(notes), {class: "notes"});
  return noteItems(notes);
}

/** @param {string[]} notes */
function noteItems(notes) {
  return el("ul", {class: "notes", "aria-label": "Notes"}, notes.map((note) => el("li", null, value(note))));
}

/** @param {[string, string][]} pairs */
function factList(pairs) {
  return el("dl", {class: "facts"},
    pairs.map(([label, text]) => el("div", null, el("dt", null, label), el("dd", null, value(text)))));
}

/**
 * Who ran what, when and where.
 * @param {[string, string][][]} runs
 */
function runFacts(runs) {
  const told = runs.filter((run) => run.length > 0);
  if (told.length === 0) return null;
  const list = el("div");
  const more = inPortions(told, 20,
    (run, at) => [told.length > 1 ? el("h3", null, `Run ${number(at + 1)}`) : null, factList(run)], list,
    "runs");
  return fold(told.length > 1 ? `${number(told.length)} runs: who, when, where, with what`
                              : "Who, when, where, with what",
    () => [list, more], {class: "runs"});
}
