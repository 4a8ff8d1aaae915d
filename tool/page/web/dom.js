// Makes elements. Whatever a document says gets into the page here, as text nodes and attribute values, never
// as markup.

/**
 * Makes an element. Functions among the attributes listen to the event they are named for; true stands for an
 * attribute without value; false, null and undefined leave it out.
 * @template {keyof HTMLElementTagNameMap} Tag
 * @param {Tag} tag
 * @param {{[name: string]: string | number | boolean | null | undefined | ((event: any) => void)} | null}
 *   [attributes]
 * @param {...Child} children
 * @returns {HTMLElementTagNameMap[Tag]}
 */
function el(tag, attributes, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes || {})) {
    if (typeof value === "function")
      made.addEventListener(name, value);
    else if (value === true)
      made.setAttribute(name, "");
    else if (value !== false && value !== null && value !== undefined)
      made.setAttribute(name, String(value));
  }
  add(made, children);
  return made;
}

/**
 * @param {Node} to
 * @param {Child[]} children
 */
function add(to, children) {
  for (const child of children) {
    if (Array.isArray(child))
      add(to, child);
    else if (child instanceof Node)
      to.appendChild(child);
    else if (child !== null && child !== undefined && child !== false)
      to.appendChild(document.createTextNode(String(child)));
  }
}

/**
 * A value or a name as a document holds it: isolated, so that its writing direction does not spread.
 * @param {string} text
 * @param {string} [kind] a class
 */
function value(text, kind) {
  return el("span", {class: kind ? `value ${kind}` : "value"}, text);
}

/**
 * Text for those who do not see colours and marks.
 * @param {string} text
 */
function unseen(text) {
  return el("span", {class: "unseen"}, text);
}

/**
 * The heads of a table's columns.
 * @param {...(string | [string, string] | null | false)} labels with a class, where they need one; none for
 *   null
 */
function tableHead(...labels) {
  return el("thead", null, el("tr", null, labels.map((label) => {
    if (!label) return null;
    const [text, kind] = typeof label === "string" ? [label, null] : label;
    return el("th", {scope: "col", class: kind}, text);
  })));
}

/**
 * The element with that id, which body.html holds.
 * @param {string} id
 */
function there(id) {
  const found = document.getElementById(id);
  if (!found) throw new Error(`The page lacks its element ${id}.`);
  return found;
}

/**
 * A button that can be down or up.
 * @param {{down: boolean, class?: string, title?: string}} options
 * @param {() => void} press
 * @param {...Child} children
 */
function toggle(options, press, ...children) {
  return el("button", {
    type: "button",
    class: options.class || "toggle",
    "aria-pressed": String(options.down),
    title: options.title,
    click: press
  },
    ...children);
}

/**
 * Calls once things have been quiet for that long.
 * @param {number} milliseconds
 * @param {() => void} call
 */
function afterQuiet(milliseconds, call) {
  let timer = 0;
  return () => {
    clearTimeout(timer);
    timer = window.setTimeout(call, milliseconds);
  };
}
