// Parts that unfold. What is in them is made when they are first opened: a document can have tens of
// thousands of values.

/** @type {WeakMap<HTMLDetailsElement, () => void>} */
const foldFillers = new WeakMap();

/**
 * @param {Child} summary
 * @param {() => Child} make
 * @param {{open?: boolean, class?: string}} [options]
 */
function fold(summary, make, options) {
  const made = el("details", {class: options && options.class}, el("summary", null, summary));
  let empty = true;
  foldFillers.set(made, () => {
    if (!empty) return;
    empty = false;
    add(made, [make()]);
  });
  made.addEventListener("toggle", () => made.open && fill(made));
  if (options && options.open) unfold(made);
  return made;
}

/** @param {HTMLDetailsElement} folded */
function fill(folded) {
  const filler = foldFillers.get(folded);
  if (filler) filler();
}

/** @param {HTMLDetailsElement} folded */
function unfold(folded) {
  fill(folded);
  folded.open = true;
}

/**
 * Unfolds what is in an element, and what is in that, until it has grown to so many elements.
 * @param {Element} root
 * @param {number} most
 * @returns {HTMLDetailsElement[]} those that were folded
 */
function unfoldAll(root, most) {
  /** @type {HTMLDetailsElement[]} */
  const opened = [];
  const elements = root.getElementsByTagName("*");
  for (let again = true; again && elements.length < most;) {
    again = false;
    for (const folded of root.querySelectorAll("details:not([open])")) {
      if (!(folded instanceof HTMLDetailsElement)) continue;
      if (elements.length >= most) break;
      unfold(folded);
      opened.push(folded);
      again = true;
    }
  }
  return opened;
}

/**
 * Puts the first so many entries into an element, and makes a button that puts in more.
 * @template Entry
 * @param {Entry[]} entries
 * @param {number} step how many at once
 * @param {(entry: Entry, at: number) => Child} make
 * @param {HTMLElement} into
 * @param {string} many what they are called
 * @returns {HTMLButtonElement}
 */
function inPortions(entries, step, make, into, many) {
  let shown = 0;
  const more = el("button", {type: "button", class: "more", click: () => next()});
  function next() {
    const from = shown;
    shown = Math.min(entries.length, shown + step);
    for (let at = from; at < shown; ++at) add(into, [make(entries[at], at)]);
    more.hidden = shown >= entries.length;
    more.textContent =
      `Show ${number(Math.min(step, entries.length - shown))} more of ${number(entries.length)} ${many}`;
  }
  next();
  return more;
}
