// Numbers, counts, names and tones in words.

const plainNumber = new Intl.NumberFormat("en");
const shortNumber = new Intl.NumberFormat("en", {maximumSignificantDigits: 3});

/** What stands beside a tone's colour, so that it can be told without. */
const toneMarks = {
  good: "✓",
  attention: "!",
  bad: "✕",
  quiet: "·"
};

/**
 * How features are marked: letter of the data, sign, word.
 * @type {{[mark: string]: {sign: string, word: string, kind: string}}}
 */
const markWords = {
  c: {sign: "~", word: "changed", kind: "changed"},
  m: {sign: "+", word: "created", kind: "made"},
  r: {sign: "−", word: "removed", kind: "removed"},
};

/** Two documents that are compared did not make each other's features. */
function speakOfTwoDocuments() {
  markWords.c.word = "different";
  markWords.m.word = "only in the second";
  markWords.r.word = "only in the first";
}

/** @param {string} text */
function capitalized(text) {
  return text === "" ? "" : text[0].toUpperCase() + text.slice(1);
}

/** @param {number} count */
function number(count) {
  return plainNumber.format(count);
}

/**
 * "1 feature", "4 features".
 * @param {number} count
 * @param {string} one
 * @param {string} [many]
 */
function counted(count, one, many) {
  return `${number(count)} ${count === 1 ? one : many || `${one}s`}`;
}

/**
 * A number with its unit, short enough for a column.
 * @param {number} amount
 * @param {"" | "s" | "B"} unit
 */
function measured(amount, unit) {
  if (unit === "s") return `${amount >= 100 ? number(Math.round(amount)) : shortNumber.format(amount)} s`;
  if (unit === "B") {
    const step = amount >= 1e9 ? 3 : amount >= 1e6 ? 2 : amount >= 1e3 ? 1 : 0;
    return `${shortNumber.format(amount / 1000 ** step)} ${["B", "kB", "MB", "GB"][step]}`;
  }
  return number(amount);
}

/**
 * @param {number} part
 * @param {number} whole
 */
function share(part, whole) {
  const percent = (100 * part) / whole;
  if (percent > 0 && percent < 0.1) return "under 0.1 %";
  return `${percent > 99.9 && part < whole ? "99.9" : shortNumber.format(percent)} %`;
}

/** @param {Tone} tone */
function toneMark(tone) {
  return el("span", {class: `mark ${tone}`, "aria-hidden": "true"}, toneMarks[tone]);
}

/** @param {string} letter */
function featureMark(letter) {
  const mark = markWords[letter];
  return mark ? el("span", {class: `sign ${mark.kind}`, title: mark.word},
                  el("span", {"aria-hidden": "true"}, mark.sign), unseen(`${mark.word} `))
              : el("span", {class: "sign"});
}

/**
 * "Changed 4 features, created 3, removed 3"; of two documents "4 features different, 3 only in the second".
 * @param {number} changed
 * @param {number} made
 * @param {number} removed
 */
function happened(changed, made, removed) {
  /** @type {[string, number][]} */
  const all = [[markWords.c.word, changed], [markWords.m.word, made], [markWords.r.word, removed]];
  const some = all.filter(([, count]) => count > 0);
  const turned = markWords.c.word !== "changed";
  const words = some.map(([what, count], at) => {
    const many = at === 0 ? counted(count, "feature") : number(count);
    return turned ? `${many} ${what}` : `${what} ${many}`;
  });
  return capitalized(words.join(", ")) || "Changed no feature";
}

/**
 * The first sentence of a text.
 * @param {string} text
 */
function firstSentence(text) {
  const end = text.search(/[.!?](\s+[A-Z]|$)/);
  return end < 0 ? text : text.slice(0, end + 1);
}

/**
 * The file's own name and the folder that it is in.
 * @param {string} file
 */
function fileParts(file) {
  // A backslash is part of a name, and stands in the place of what cannot be shown.
  const at = file.lastIndexOf("/");
  return {name: file.slice(at + 1) || file, folder: at > 0 ? file.slice(0, at) : ""};
}

/**
 * Says that a list was cut; null when it was not.
 * @param {number} shown
 * @param {number} count
 * @param {string} [where]
 */
function cutNote(shown, count, where) {
  if (shown >= count) return null;
  return el("p", {class: "cut"}, `The first ${number(shown)} of ${number(count)}. ${where || ""}`);
}
