// Shows those rows of a long list that are in sight. All rows are equally high; what is above and below them
// is held open by a spacer at either end.

/** Rows beyond those in sight that are there as well, so that quick scrolling shows no gap. */
const windowMargin = 12;

class Windowed {
  /**
   * @param {HTMLElement} scroller what scrolls
   * @param {HTMLElement} body what holds the rows
   * @param {number} height of a row, in pixels
   * @param {() => HTMLElement} makeSpacer
   * @param {(at: number) => HTMLElement} makeRow
   */
  constructor(scroller, body, height, makeSpacer, makeRow) {
    this.scroller = scroller;
    this.body = body;
    this.height = height;
    this.makeRow = makeRow;
    this.above = makeSpacer();
    this.below = makeSpacer();
    this.count = 0;
    this.printing = 0;
    /** @type {Map<number, HTMLElement>} */
    this.rows = new Map();
    body.replaceChildren(this.above, this.below);
    let asked = false;
    scroller.addEventListener("scroll", () => {
      if (asked) return;
      asked = true;
      requestAnimationFrame(() => {
        asked = false;
        this.show();
      });
    }, {passive: true});
    new ResizeObserver(() => this.show()).observe(scroller);
  }

  /**
   * Takes another list: all rows are made anew.
   * @param {number} count
   */
  reset(count) {
    this.count = count;
    this.rows.forEach((row) => row.remove());
    this.rows.clear();
    this.show();
  }

  /** Makes the rows in sight and takes away the others. */
  show() {
    const seen = this.scroller.clientHeight || 600;
    const top = this.printing ? 0 : Math.floor(this.scroller.scrollTop / this.height);
    const first = Math.max(0, Math.min(top, this.count - 1) - windowMargin);
    const end = Math.min(this.count, this.printing || top + Math.ceil(seen / this.height) + windowMargin);
    for (const [at, row] of this.rows) {
      if (at >= first && at < end) continue;
      if (row.contains(document.activeElement)) this.scroller.focus({preventScroll: true});
      row.remove();
      this.rows.delete(at);
    }
    let next = /** @type {Element} */ (this.above.nextElementSibling);
    for (let at = first; at < end; ++at) {
      const row = this.rows.get(at);
      if (row) {
        next = /** @type {Element} */ (row.nextElementSibling);
        continue;
      }
      const made = this.makeRow(at);
      this.rows.set(at, made);
      this.body.insertBefore(made, next);
    }
    this.above.style.height = `${first * this.height}px`;
    this.below.style.height = `${this.printing ? 0 : (this.count - end) * this.height}px`;
    this.above.hidden = first === 0;
    this.below.hidden = this.printing > 0 || end === this.count;
  }

  /**
   * Scrolls as little as is needed to have a row in sight, and makes it.
   * @param {number} at
   * @param {number} covered pixels at the top that something else covers
   * @returns {HTMLElement | undefined}
   */
  reveal(at, covered) {
    const top = at * this.height;
    const room = this.scroller.clientHeight - covered - this.height;
    if (top < this.scroller.scrollTop)
      this.scroller.scrollTop = top;
    else if (top > this.scroller.scrollTop + room)
      this.scroller.scrollTop = top - room;
    this.show();
    return this.rows.get(at);
  }

  /** How many rows a page of the keyboard moves. */
  pageRows() {
    return Math.max(1, Math.floor(this.scroller.clientHeight / this.height) - 2);
  }

  /**
   * Shows the first rows instead of those in sight, for paper; 0: as before.
   * @param {number} most
   */
  print(most) {
    this.printing = most;
    this.show();
  }
}
