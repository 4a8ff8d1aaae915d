// Which features of the tree are in sight: what is unfolded, and what a filter leaves.

/** So many rows are in sight at first, at most. */
const firstTreeRows = 60;

class TreeNodes {
  /** @param {Tree} tree */
  constructor(tree) {
    this.tree = tree;
    this.count = tree.id.length;
    this.parent = new Int32Array(this.count).fill(-1);
    this.end = new Int32Array(this.count);
    this.open = new Uint8Array(this.count);
    /** How many of those beneath have a mark. */
    this.marked = new Uint32Array(this.count);
    /** @type {number[]} */
    const path = [];
    for (let at = 0; at <= this.count; ++at) {
      const depth = at < this.count ? tree.depth[at] : 0;
      while (path.length > depth) this.end[/** @type {number} */ (path.pop())] = at;
      if (at === this.count) break;
      if (path.length > 0) this.parent[at] = path[path.length - 1];
      if (this.mark(at) !== "")
        for (const place of path) ++this.marked[place];
      path.push(at);
    }
    this.openFirst();
  }

  /** @param {number} at */
  mark(at) {
    return (this.tree.marks[at] || "").trim();
  }

  /** @param {number} at */
  hasChildren(at) {
    return this.end[at] > at + 1;
  }

  /** Unfolds level by level, as far as there is room: what is high up is the way to what changed. */
  openFirst() {
    let rows = this.children(-1).length;
    for (let level = this.children(-1); level.length > 0;) {
      /** @type {number[]} */
      const next = [];
      for (const at of level) {
        if (!this.hasChildren(at)) continue;
        const children = this.children(at);
        if (rows + children.length > firstTreeRows) continue;
        rows += children.length;
        this.open[at] = 1;
        next.push(...children);
      }
      level = next;
    }
  }

  /** @param {number} parent -1: those at the top */
  children(parent) {
    const found = [];
    const end = parent < 0 ? this.count : this.end[parent];
    for (let at = parent + 1; at < end; at = this.end[at]) found.push(at);
    return found;
  }

  /**
   * Unfolds all that stands above.
   * @param {number} at
   */
  openTo(at) {
    for (let place = this.parent[at]; place >= 0; place = this.parent[place]) this.open[place] = 1;
  }

  /**
   * Those in sight.
   * @param {string} search
   * @param {Set<string>} marks
   * @returns {number[]}
   */
  shown(search, marks) {
    const found = [];
    if (search === "" && marks.size === 0) {
      for (let at = 0; at < this.count; at = this.open[at] ? at + 1 : this.end[at]) found.push(at);
      return found;
    }
    const kept = new Uint8Array(this.count);
    for (let at = 0; at < this.count; ++at) {
      if (marks.size > 0 && !marks.has(this.mark(at))) continue;
      if (search !== "" && !this.matches(at, search)) continue;
      for (let place = at; place >= 0 && !kept[place]; place = this.parent[place]) kept[place] = 1;
    }
    for (let at = 0; at < this.count; ++at)
      if (kept[at]) found.push(at);
    return found;
  }

  /**
   * @param {number} at
   * @param {string} search in lower case
   */
  matches(at, search) {
    return this.tree.name[at].toLowerCase().includes(search) ||
      this.tree.type[at].toLowerCase().includes(search) || String(this.tree.id[at]) === search;
  }
}
