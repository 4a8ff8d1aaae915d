// A document: what came of it, what needs a person, what happened to its analysis, and what each upgrade did.

/**
 * @typedef {object} Section
 * @property {string} id
 * @property {string} title
 * @property {string} [count]
 * @property {Child} content
 */

/**
 * @param {Looked} looked
 * @param {boolean} alone the page is about this document only
 * @returns {View}
 */
function documentView(looked, alone) {
  const {page, detail, at} = looked;
  const tree = detail.tree.id.length > 0 ? new FeatureTree(looked) : null;
  const sections = documentSections(looked, tree);
  const finder = looked.known.size > 0 ? featureFinder(looked) : null;
  const file = fileParts(page.documents.file[at] || "");
  const head = alone ? pageHead(looked) : documentHead(looked);
  const links = sections.length > 1
    ? el("nav", {class: "contents", "aria-label": "In this document"},
        el("ul", null,
          sections.map((section) => el("li", null,
                         el("a", {href: documentAddress(at, section.id)}, section.title,
                           section.count ? el("span", {class: "badge"}, section.count) : null)))))
    : null;
  const root = el("div", {class: "document"}, head, problemPanel(detail),
    noteList([...(alone ? page.notes : []), ...detail.notes, ...(detail.cut ? [detail.cut] : [])]),
    el("div", {class: "columns"}, finder || links ? el("aside", null, finder && finder.root, links) : null,
      el("div", {class: "sections"},
        sections.map((section) => el("section", {id: section.id, "aria-labelledby": `${section.id}-head`},
                       el("h2", {id: `${section.id}-head`, tabindex: "-1"}, section.title,
                         section.count ? el("span", {class: "badge"}, section.count) : null),
                       section.content)))),
    alone ? runFacts(page.runs) : null);
  return {
    title: alone ? page.title : `${file.name} - ${page.title}`,
    root,
    search: finder ? finder.input : undefined,
    placed: () => tree?.windowed.show(),
    print: (begins) => tree?.print(begins),
    scroller: tree?.scroller,
  };
}

/**
 * The head of a page that is about one document.
 * @param {Looked} looked
 * @returns {Child}
 */
function pageHead(looked) {
  const {page, detail} = looked;
  const next = page.verdict.next || detail.verdict.next;
  return [
    verdictPanel({tone: page.verdict.tone, words: page.verdict.words, next}, "h1", page.title),
    numberTiles(page.numbers)
  ];
}

/**
 * The head of one document among many.
 * @param {Looked} looked
 * @returns {Child}
 */
function documentHead(looked) {
  const {page, detail, at} = looked;
  const file = fileParts(page.documents.file[at] || "");
  return [
    el("h1", {tabindex: "-1"}, value(file.name)),
    file.folder ? el("p", {class: "folder"}, value(file.folder)) : null,
    verdictPanel(detail.verdict, "p"),
    documentNumbers(page, at),
  ];
}

/** @param {Detail} detail */
function problemPanel(detail) {
  if (!detail.problem) return null;
  return el("div", {class: "problem"}, el("h2", null, "Why there is no result"),
    detail.problem.split("\n").filter((line) => line !== "").map((line) => el("p", null, value(line))));
}

/**
 * What the table says of a document.
 * @param {Page} page
 * @param {number} at
 */
function documentNumbers(page, at) {
  if (page.documents.columns.length === 0) return null;
  return el("dl", {class: "numbers small"},
    page.documents.columns.map(
      (column) => el("div", {class: "quiet", title: column.help}, el("dt", null, column.label),
        el("dd", null, measured(column.values[at], column.unit)))));
}

/**
 * Those that have something to say.
 * @param {Looked} looked
 * @param {FeatureTree | null} tree
 * @returns {Section[]}
 */
function documentSections(looked, tree) {
  const {page, detail} = looked;
  /** @type {Section[]} */
  const sections = [];
  const told = toldAttention(detail);
  if (told.length > 0) {
    sections.push({
      id: "attention",
      title: page.kind === "check" ? "Findings" : "Needs a person",
      count: featuresOf(told) > 0 ? number(featuresOf(told)) : "",
      content: attentionSection(looked),
    });
  }
  if (detail.sheet)
    sections.push({id: "analysis", title: "What happened to the analysis", content: analysisSection(looked)});
  if (detail.steps.length > 0 || detail.idle.length > 0) {
    sections.push({
      id: "steps",
      title: page.kind === "diff" ? "What differs" : "What the upgrades did",
      count: page.kind === "diff" ? "" : number(detail.steps.length),
      content: stepsSection(looked)
    });
  }
  if (detail.types.length > 0)
    sections.push({
      id: "types",
      title: "Changes by late type",
      count: number(detail.types.length),
      content: typeBars(detail.types)
    });
  if (tree) sections.push({id: "tree", title: "Where it happened", count: "", content: tree.parts()});
  if (detail.dropped.count > 0) {
    sections.push({
      id: "dropped",
      title: "Dropped values",
      count: number(detail.dropped.count),
      content: [
        el("p", {class: "about"}, "Values of the old document that stand nowhere in the result."),
        droppedSection(looked)
      ]
    });
  }
  if (detail.sheet && detail.sheet.subjects.first.length > 0) {
    sections.push(
      {id: "sheet", title: "The analysis before and after", count: "", content: sheetSection(looked)});
  }
  if (detail.facts.length > 0)
    sections.push({id: "files", title: "Files", count: "", content: factList(detail.facts)});
  return sections;
}

/**
 * A document whose details the page does not hold.
 * @param {Page} page
 * @param {number} at
 * @returns {View}
 */
function cutDocumentView(page, at) {
  const file = page.documents.file[at];
  const group = page.groups[page.documents.group[at]];
  return {
    title: `${file} - ${page.title}`,
    root: el("div", {class: "document"}, el("h1", {tabindex: "-1"}, value(file)),
      group ? verdictPanel({tone: group.tone, words: group.words, next: ""}, "p") : null,
      documentNumbers(page, at),
      el("p", {class: "cut"}, "This page was cut and does not hold the details of this document."),
      noteList(page.notes)),
  };
}
