// The tree of features in which something happened. It follows the practice for trees: one of its rows has
// the focus, arrows move it, fold and unfold, Enter opens the feature.

/** Height of a row, in pixels; style.css says the same. */
const treeRowHeight = 30;
/** Rows on paper. */
const mostPrintedNodes = 400;

class FeatureTree {
  /** @param {Looked} looked */
  constructor(looked) {
    this.looked = looked;
    this.tree = looked.detail.tree;
    this.nodes = new TreeNodes(this.tree);
    this.search = "";
    /** @type {Set<string>} */
    this.marks = new Set();
    /** @type {number[]} */
    this.shown = [];
    /**
     * Of each row in sight: its place among its siblings, and how many they are.
     * @type {[number, number][]}
     */
    this.places = [];
    this.current = 0;
    this.body = el("div", {class: "treebody", role: "presentation"});
    this.scroller = el("div", {
      class: "scroller tree",
      role: "tree",
      tabindex: "0",
      "aria-label": "Features in which something happened",
      keydown: (event) => this.key(event)
    },
      this.body);
    this.count = el("p", {class: "found", role: "status"});
    this.filters = el("div", {class: "toggles"});
    this.windowed = new Windowed(this.scroller, this.body, treeRowHeight,
      () => el("div", {role: "presentation"}), (row) => this.row(row));
    this.drawFilters();
    this.update();
  }

  /** @returns {Child[]} */
  parts() {
    const typed = afterQuiet(120, () => {
      this.search = search.value.trim().toLowerCase();
      this.scroller.scrollTop = 0;
      this.update();
    });
    const search = el("input", {
      type: "search",
      placeholder: "Name, late type or id",
      autocomplete: "off",
      spellcheck: "false",
      input: typed,
      "aria-label": "Filter the tree"
    });
    return [
      el("div", {class: "controls"},
        el("label", {class: "search"}, el("span", {class: "label"}, "Filter"), search), this.filters,
        el("span", {class: "toggles"}, this.openButton("Unfold all", 1), this.openButton("Fold all", 0)),
        this.count),
      this.scroller, cutNote(this.tree.id.length, this.tree.count, this.looked.detail.cut)
    ];
  }

  /**
   * @param {string} words
   * @param {0 | 1} open
   */
  openButton(words, open) {
    return el("button", {
      type: "button",
      class: "toggle",
      click: () => {
        this.nodes.open.fill(open);
        this.update();
      }
    },
      words);
  }

  drawFilters() {
    const buttons = ["c", "m", "r"].map((mark) => {
      const count = this.tree.marks.split(mark).length - 1;
      if (count === 0) return null;
      const button = toggle({down: this.marks.has(mark)}, () => {
        if (!this.marks.delete(mark)) this.marks.add(mark);
        button.setAttribute("aria-pressed", String(this.marks.has(mark)));
        this.update();
      }, featureMark(mark), el("span", {"aria-hidden": "true"}, markWords[mark].word), ` ${number(count)}`);
      return button;
    });
    add(this.filters, buttons);
  }

  update() {
    const held = this.shown[this.current];
    this.shown = this.nodes.shown(this.search, this.marks);
    this.current = Math.max(0, this.shown.indexOf(held));
    this.findPlaces();
    const filtered = this.search !== "" || this.marks.size > 0;
    this.count.textContent =
      filtered ? `${number(this.shown.length)} of ${counted(this.nodes.count, "feature")} in sight` : "";
    this.body.classList.toggle("filtered", filtered);
    this.windowed.reset(this.shown.length);
    this.windowed.rows.get(this.current)?.setAttribute("tabindex", "0");
  }

  findPlaces() {
    /** @type {Map<number, number>} */
    const counts = new Map();
    const nth = this.shown.map((at) => {
      const parent = this.nodes.parent[at];
      const place = (counts.get(parent) || 0) + 1;
      counts.set(parent, place);
      return place;
    });
    this.places = this.shown.map((at, row) => [nth[row], counts.get(this.nodes.parent[at]) || 1]);
  }

  /** @param {number} row */
  isOpen(row) {
    return this.nodes.parent[this.shown[row + 1]] === this.shown[row];
  }

  /** @param {number} row */
  row(row) {
    const at = this.shown[row];
    const {id, type, name, depth} = this.tree;
    const parent = this.nodes.hasChildren(at);
    const open = parent && this.isOpen(row);
    const beneath = this.nodes.marked[at];
    const made = el("div", {
      class: "node",
      role: "treeitem",
      tabindex: row === this.current ? "0" : "-1",
      "aria-level": String(depth[at] + 1),
      "aria-expanded": parent ? String(open) : null,
      "aria-setsize": String(this.places[row][1]),
      "aria-posinset": String(this.places[row][0]),
      title: `${type[at]} "${name[at]}", feature ${id[at]}`,
      focus: () => (this.current = row),
      click: (event) => this.click(event, row)
    },
      el("span", {class: "twist", "aria-hidden": "true"}, parent ? (open ? "▾" : "▸") : ""),
      featureMark(this.nodes.mark(at)),
      el("a", {href: featureAddress(this.looked.at, id[at]), tabindex: "-1"}, value(name[at] || type[at])),
      name[at] ? value(type[at], "code type") : null, el("span", {class: "id"}, `${id[at]}`),
      parent && !open && beneath > 0 ? el("span", {class: "beneath"}, `${number(beneath)} beneath`) : null);
    made.style.setProperty("--depth", String(Math.min(depth[at], 14)));
    return made;
  }

  /**
   * @param {MouseEvent} event
   * @param {number} row
   */
  click(event, row) {
    if (event.target instanceof Element && event.target.closest("a")) return;
    this.turn(row, !this.isOpen(row));
    this.focus(row);
  }

  /**
   * @param {number} row
   * @param {boolean} open
   */
  turn(row, open) {
    const at = this.shown[row];
    if (!this.nodes.hasChildren(at) || this.search !== "" || this.marks.size > 0) return;
    this.nodes.open[at] = open ? 1 : 0;
    this.current = row;
    this.update();
  }

  /** @param {number} row */
  focus(row) {
    this.windowed.rows.get(this.current)?.setAttribute("tabindex", "-1");
    this.current = Math.max(0, Math.min(this.shown.length - 1, row));
    const now = this.windowed.reveal(this.current, 0);
    now?.setAttribute("tabindex", "0");
    now?.focus({preventScroll: true});
  }

  /** @param {KeyboardEvent} event */
  key(event) {
    if (event.ctrlKey || event.metaKey || event.altKey || this.shown.length === 0) return;
    const row = this.current;
    const page = this.windowed.pageRows();
    /** @type {{[key: string]: number}} */
    const moves = {
      ArrowDown: event.target === this.scroller ? row : row + 1,
      ArrowUp: row - 1,
      PageDown: row + page,
      PageUp: row - page,
      Home: 0,
      End: this.shown.length - 1
    };
    if (event.key in moves)
      this.focus(moves[event.key]);
    else if (event.key === "ArrowRight" && this.isOpen(row))
      this.focus(row + 1);
    else if (event.key === "ArrowRight" || event.key === " ")
      this.turnAndFocus(row, event.key === "ArrowRight" || !this.isOpen(row));
    else if (event.key === "ArrowLeft" && this.isOpen(row))
      this.turnAndFocus(row, false);
    else if (event.key === "ArrowLeft")
      this.focus(Math.max(0, this.shown.indexOf(this.nodes.parent[this.shown[row]])));
    else if (event.key === "Enter")
      location.hash = featureAddress(this.looked.at, this.tree.id[this.shown[row]]);
    else
      return;
    event.preventDefault();
  }

  /**
   * @param {number} row
   * @param {boolean} open
   */
  turnAndFocus(row, open) {
    this.turn(row, open);
    this.focus(row);
  }

  /** @param {boolean} begins */
  print(begins) {
    this.windowed.print(begins ? mostPrintedNodes : 0);
  }
}
