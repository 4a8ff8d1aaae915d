// The table of documents.

/** Height of a row, in pixels; style.css says the same. */
const documentRowHeight = 46;
/** Rows on paper. */
const mostPrintedRows = 500;

class DocumentTable {
  /**
   * @param {Page} page
   * @param {TableState} state
   * @param {() => void} sortChanged
   */
  constructor(page, state, sortChanged) {
    this.page = page;
    this.state = state;
    this.sortChanged = sortChanged;
    /** Places of the documents shown. */
    this.shown = new Uint32Array(0);
    /** The row that the keyboard is at. */
    this.current = 0;
    this.heads = el("tr", {"aria-rowindex": "1"});
    this.table = el("table", {class: "documents"}, el("caption", {class: "unseen"}, "Documents"),
      this.columnWidths(), el("thead", null, this.heads));
    this.body = el("tbody");
    this.table.append(this.body);
    this.scroller = el("div", {
      class: "scroller",
      tabindex: "0",
      role: "region",
      "aria-label": "Documents: arrows move, Enter opens",
      keydown: (event) => this.key(event),
      focusin: (event) => this.focused(event)
    },
      this.table);
    this.scroller.style.setProperty("--columns", String(page.documents.columns.length));
    this.rest = el("p", {class: "rest"});
    this.makeHeads();
    this.windowed =
      new Windowed(this.scroller, this.body, documentRowHeight, () => this.spacer(), (at) => this.row(at));
  }

  columnWidths() {
    return el("colgroup", null, el("col", {class: "file"}), el("col", {class: "came"}),
      el("col", {class: "person"}), this.page.documents.columns.map(() => el("col", {class: "extra"})));
  }

  makeHeads() {
    this.heads.replaceChildren(this.head("file", "Document", "file", "", "The name of its file"),
      this.head("verdict", "Verdict", "came", "", "What came of it"),
      this.head("person", "Needs a person", "person", "", "Whether somebody must look at it"));
    this.page.documents.columns.forEach(
      (column, at) => this.heads.append(this.head(String(at), column.label, "extra", "count", column.help)));
  }

  /**
   * @param {string} sort
   * @param {string} label
   * @param {string} kind
   * @param {string} more
   * @param {string} help
   */
  head(sort, label, kind, more, help) {
    const sorted = this.state.sort === sort;
    const direction = this.state.descending ? "descending" : "ascending";
    return el("th", {scope: "col", class: `${kind} ${more}`, "aria-sort": sorted ? direction : "none"},
      el("button", {type: "button", "data-sort": sort, title: help, click: () => this.sortBy(sort)}, label,
        el("span", {class: "arrow", "aria-hidden": "true"},
          sorted ? (this.state.descending ? "▼" : "▲") : "")));
  }

  /** @param {string} sort */
  sortBy(sort) {
    // Names go up first, numbers down: the large ones are looked for.
    this.state.descending =
      this.state.sort === sort ? !this.state.descending : sort !== "file" && sort !== "verdict";
    this.state.sort = sort;
    this.makeHeads();
    /** @type {HTMLElement | null} */ (this.heads.querySelector(`[data-sort="${sort}"]`))?.focus();
    this.sortChanged();
  }

  /** @param {Uint32Array} shown */
  take(shown) {
    this.shown = shown;
    this.current = 0;
    this.table.setAttribute("aria-rowcount", String(shown.length + 1));
    this.scroller.scrollTop = 0;
    this.windowed.reset(shown.length);
  }

  spacer() {
    return el("tr", {class: "spacer", "aria-hidden": "true"}, el("td"));
  }

  /** @param {number} row */
  row(row) {
    const {documents, groups} = this.page;
    const at = this.shown[row];
    const group = groups[documents.group[at]] || {words: "", tone: "quiet"};
    const file = fileParts(documents.file[at]);
    return el("tr", {
      "aria-rowindex": String(row + 2),
      "data-row": String(row),
      class: row % 2 ? "odd" : "",
      click: (event) => this.click(event, at)
    },
      el("th", {scope: "row", class: "file", title: documents.file[at]},
        el("a", {href: documentAddress(at), tabindex: row === this.current ? "0" : "-1"}, value(file.name)),
        el("span", {class: "folder"}, value(file.folder))),
      el("td", {class: "came", title: group.words},
        el("div", null, toneMark(group.tone), el("span", {class: "says"}, group.words))),
      el("td", {class: "person"},
        documents.person[at] ? el("strong", null, "yes") : el("span", {class: "none"}, "no")),
      documents.columns.map(
        (column) => el("td", {class: column.values[at] ? "extra count" : "extra count none"},
          measured(column.values[at], column.unit))));
  }

  /**
   * @param {MouseEvent} event
   * @param {number} at
   */
  click(event, at) {
    const selected = getSelection();
    if (event.target instanceof Element && event.target.closest("a")) return;
    if (selected && !selected.isCollapsed) return;
    location.hash = documentAddress(at);
  }

  /** @param {FocusEvent} event */
  focused(event) {
    const row = event.target instanceof Element ? event.target.closest("tr[data-row]") : null;
    if (row instanceof HTMLElement) this.moveTo(Number(row.dataset.row), false);
  }

  /**
   * @param {number} row
   * @param {boolean} focus
   */
  moveTo(row, focus) {
    const before = this.windowed.rows.get(this.current);
    before?.querySelector("a")?.setAttribute("tabindex", "-1");
    before?.classList.remove("current");
    this.current = Math.max(0, Math.min(this.shown.length - 1, row));
    const now = focus ? this.windowed.reveal(this.current, this.heads.offsetHeight)
                      : this.windowed.rows.get(this.current);
    const link = now?.querySelector("a");
    link?.setAttribute("tabindex", "0");
    now?.classList.add("current");
    if (focus) link?.focus({preventScroll: true});
  }

  /** @param {KeyboardEvent} event */
  key(event) {
    if (event.ctrlKey || event.metaKey || event.altKey || this.shown.length === 0) return;
    if (event.target instanceof HTMLButtonElement) return;
    const onRow = event.target !== this.scroller;
    const page = this.windowed.pageRows();
    /** @type {{[key: string]: number}} */
    const moves = {
      ArrowDown: onRow ? this.current + 1 : this.current,
      ArrowUp: this.current - 1,
      PageDown: this.current + page,
      PageUp: this.current - page,
      Home: 0,
      End: this.shown.length - 1
    };
    if (event.key in moves)
      this.moveTo(moves[event.key], true);
    else if (event.key === "Enter" && !onRow)
      location.hash = documentAddress(this.shown[this.current]);
    else
      return;
    event.preventDefault();
  }

  /**
   * Paper takes the first rows.
   * @param {boolean} begins
   */
  print(begins) {
    this.windowed.print(begins ? mostPrintedRows : 0);
    const more = this.shown.length - mostPrintedRows;
    this.rest.textContent = begins && more > 0
      ? `... and ${number(more)} more of ${
          counted(this.shown.length, "document")}, which the page itself shows.`
      : "";
  }
}
