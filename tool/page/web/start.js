// Starts the page, shows the view that the address asks for, and goes back to where one was.

/** So many elements a document has on paper, at most. */
const mostPrintedElements = 40000;

/**
 * @param {Page | null} page
 * @param {string} words
 * @returns {View}
 */
function messageView(page, words) {
  return {
    title: page ? page.title : "Report",
    root: el("div", {class: "message"}, el("h1", {tabindex: "-1"}, words))
  };
}

class Shell {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    this.main = there("main");
    this.alone = page.documents.file.length === 1;
    /** @type {View | null} */
    this.view = null;
    this.shownPath = "";
    this.turn = 0;
    /** @type {HTMLDetailsElement[]} */
    this.unfolded = [];
    /** @type {WeakMap<Detail, Looked>} */
    this.looked = new WeakMap();
    if (page.kind === "diff") speakOfTwoDocuments();
    history.scrollRestoration = "manual";
    addEventListener("hashchange", () => this.show(false));
    addEventListener("beforeprint", () => this.print(true));
    addEventListener("afterprint", () => this.print(false));
    document.addEventListener("click", (event) => this.click(event), true);
    document.addEventListener("keydown", (event) => this.key(event));
  }

  /** Remembers how far one has scrolled, for the way back. */
  remember() {
    history.replaceState(
      {page: scrollY, inside: this.view && this.view.scroller ? this.view.scroller.scrollTop : 0}, "");
  }

  /** @param {boolean} first */
  async show(first) {
    const address = parseAddress(location.hash);
    const path = location.hash.split("?")[0];
    if (address.section !== "" && this.view && this.shownPath === documentAddress(address.document)) {
      this.toSection(address.section);
      return;
    }
    const turn = ++this.turn;
    let view;
    try {
      view = await this.made(address);
    } catch (error) {
      view = messageView(this.page,
        `This part of the page cannot be shown. ${error instanceof Error ? error.message : error}`);
    }
    if (turn !== this.turn) return;
    this.view = view;
    this.shownPath = address.section !== "" ? documentAddress(address.document) : path;
    document.title = view.title;
    there("bar").replaceChildren(...this.breadcrumbs(address));
    this.main.replaceChildren(view.root);
    if (view.placed) view.placed();
    this.place(first, address.section);
  }

  /**
   * @param {Address} address
   * @returns {Promise<View>}
   */
  async made(address) {
    const {page} = this;
    const at = this.alone && address.document < 0 ? 0 : address.document;
    if (address.view === "start" && !this.alone) return documentsView(page, address);
    if (address.view === "upgrade" && at < 0) return upgradeView(page, address.upgrade, null);
    if (at < 0 || at >= page.documents.file.length)
      return messageView(page, "This page holds no such document.");
    const detail = await detailOf(page, at);
    if (!detail && address.view === "upgrade") return upgradeView(page, address.upgrade, null);
    if (!detail) return cutDocumentView(page, at);
    const looked = this.looked.get(detail) || {page, at, detail, known: knownFeatures(detail)};
    this.looked.set(detail, looked);
    if (address.view === "feature") return featureView(looked, address.feature);
    if (address.view === "upgrade") return upgradeView(page, address.upgrade, looked);
    return documentView(looked, this.alone);
  }

  /**
   * Scrolls to where one was, or to the top or the section of a new view, and tells those who listen.
   * @param {boolean} first
   * @param {string} section
   */
  place(first, section) {
    const was = history.state;
    if (was && typeof was.page === "number") {
      scrollTo(0, was.page);
      if (this.view && this.view.scroller) this.view.scroller.scrollTop = was.inside;
    } else if (section !== "") {
      this.toSection(section);
      return;
    } else {
      scrollTo(0, 0);
    }
    if (first) return;
    const heading = this.main.querySelector("h1");
    if (heading) heading.focus({preventScroll: true});
  }

  /** @param {string} section */
  toSection(section) {
    const head = document.getElementById(`${section}-head`);
    if (!head) return;
    head.scrollIntoView({block: "start"});
    head.focus({preventScroll: true});
  }

  /**
   * @param {Address} address
   * @returns {Node[]}
   */
  breadcrumbs(address) {
    const {page} = this;
    // The view that the page starts with says itself what it is.
    if (address.view === "start" || (this.alone && address.view === "document")) return [];
    /** @type {Child[]} */
    const items = [el("a", {href: "#/"}, value(page.title))];
    if (!this.alone && address.document >= 0 && address.document < page.documents.file.length) {
      const {name} = fileParts(page.documents.file[address.document]);
      items.push(address.view === "document"
          ? el("span", {"aria-current": "page"}, value(name))
          : el("a", {href: documentAddress(address.document)}, value(name)));
    }
    return [el(
      "nav", {"aria-label": "Where you are"}, el("ol", null, items.map((item) => el("li", null, item))))];
  }

  /** @param {MouseEvent} event */
  click(event) {
    const link = event.target instanceof Element ? event.target.closest("a[href]") : null;
    const href = link ? link.getAttribute("href") || "" : "";
    if (href === "#main") {
      event.preventDefault();
      this.main.focus();
    } else if (event.target instanceof Element && this.main.contains(event.target)) {
      this.remember();
    }
    // The section that the address names already is gone to again.
    if (href !== "" && href === location.hash) this.toSection(parseAddress(href).section);
  }

  /** @param {KeyboardEvent} event */
  key(event) {
    if (event.key === "Enter") this.remember();
    if (event.key !== "/" || event.ctrlKey || event.metaKey || event.altKey) return;
    if (event.target instanceof HTMLInputElement || !this.view || !this.view.search) return;
    event.preventDefault();
    this.view.search.focus();
    this.view.search.select();
  }

  /** @param {boolean} begins */
  print(begins) {
    if (this.view && this.view.print) this.view.print(begins);
    if (begins)
      this.unfolded = unfoldAll(this.main, mostPrintedElements);
    else
      for (const folded of this.unfolded) folded.open = false;
  }
}

async function start() {
  if (!canUnpack()) {
    there("wait").textContent =
      "This browser cannot unpack the page. Please open it with Chrome or Edge 80 " +
      "or newer, Firefox 113 or newer, or Safari 16.4 or newer.";
    return;
  }
  try {
    await new Shell(await unpack(there("page").textContent || "")).show(true);
  } catch (error) {
    there("wait").textContent =
      `The page's data cannot be read: the file is damaged. Get it again from where it came from. (${error})`;
  }
}

start();
