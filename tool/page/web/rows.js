// Which documents the table shows, and in what order. A hundred thousand must be sorted and searched while
// somebody types.

class DocumentRows {
  /** @param {Documents} documents */
  constructor(documents) {
    this.documents = documents;
    this.count = documents.file.length;
    /** @type {Map<string, Uint32Array>} */
    this.orders = new Map();
    /** @type {string[] | null} */
    this.lowNames = null;
  }

  /**
   * The places of the documents that a state shows.
   * @param {TableState} state
   * @returns {Uint32Array}
   */
  shown(state) {
    const order = this.ordered(state.sort);
    const words = state.search.toLowerCase().split(/\s+/).filter((word) => word !== "");
    const names = words.length > 0 ? this.names() : [];
    const kept = new Uint32Array(this.count);
    let length = 0;
    for (let i = 0; i < this.count; ++i) {
      const at = order[state.descending ? this.count - 1 - i : i];
      if (state.person && !this.documents.person[at]) continue;
      if (state.groups.size > 0 && !state.groups.has(this.documents.group[at])) continue;
      if (words.length > 0 && !words.every((word) => names[at].includes(word))) continue;
      kept[length++] = at;
    }
    return kept.subarray(0, length);
  }

  names() {
    if (!this.lowNames) this.lowNames = this.documents.file.map((file) => file.toLowerCase());
    return this.lowNames;
  }

  /**
   * All places in ascending order.
   * @param {string} sort
   */
  ordered(sort) {
    let order = this.orders.get(sort);
    if (!order) {
      order = this.sorted(sort);
      this.orders.set(sort, order);
    }
    return order;
  }

  /** @param {string} sort */
  sorted(sort) {
    const order = Uint32Array.from({length: this.count}, (_, at) => at);
    if (sort === "file") {
      // Digits as numbers, by one comparison of texts: comparing by the rules of a language takes ten times
      // as long.
      const keys = this.names().map((name) => name.replace(/\d+/g, (digits) => digits.padStart(12, "0")));
      return order.sort((a, b) => (keys[a] < keys[b] ? -1 : keys[a] > keys[b] ? 1 : a - b));
    }
    if (sort === "verdict")
      return order.sort((a, b) => this.documents.group[a] - this.documents.group[b] || a - b);
    const column = this.documents.columns[Number(sort)];
    const values = column && sort !== "person" ? column.values : this.documents.person;
    // Numbers are mostly looked at in descending order; equal ones then stand as the program has them.
    return order.sort((a, b) => values[a] - values[b] || b - a);
  }
}

/**
 * @param {URLSearchParams} table
 * @returns {TableState}
 */
function tableState(table) {
  const sort = table.get("sort") || "-person";
  return {
    search: table.get("q") || "",
    person: table.get("person") === "1",
    groups: new Set((table.get("verdict") || "").split(".").filter((group) => group !== "").map(Number)),
    sort: sort.replace(/^-/, ""),
    descending: sort.startsWith("-"),
  };
}

/** @param {TableState} state */
function tableAddress(state) {
  const table = new URLSearchParams();
  if (state.search) table.set("q", state.search);
  if (state.person) table.set("person", "1");
  if (state.groups.size > 0) table.set("verdict", [...state.groups].sort((a, b) => a - b).join("."));
  const sort = `${state.descending ? "-" : ""}${state.sort}`;
  if (sort !== "-person") table.set("sort", sort);
  const query = table.toString();
  return query ? `#/?${query}` : "#/";
}
