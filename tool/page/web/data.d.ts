/**
 * What a page holds, as the program writes it (tool/page) and the scripts beside this file show it. All texts are
 * plain text for people, put into words by the program; none is markup. Numbers are plain numbers.
 */

/** How a thing is coloured; the words beside it always say the same. */
type Tone = "good" | "attention" | "bad" | "quiet";

/** A list that may be cut: how many entries there are, and the first of them. */
interface Cut<Entry> {
  count: number;
  first: Entry[];
}

/** The first data block (element "page"). */
interface Page {
  /** "upgrade": runs of upgrades. "check": documents held against the rules. "diff": two documents. */
  kind: "upgrade" | "check" | "diff";
  /** Such as "Upgrade of 1,000 documents". */
  title: string;
  verdict: { tone: Tone; words: string; next: string };
  /** The few numbers that matter most, in order. */
  numbers: { label: string; value: number; tone: Tone }[];
  /** Documents by verdict. */
  groups: { words: string; tone: Tone; count: number }[];
  /** Who, when, where, with what: label and value, one list for each run that the page tells of. */
  runs: [string, string][][];
  /** What else has to be known of the page as a whole, such as that it was cut. */
  notes: string[];
  /** Changes by late type, of all documents, most first. */
  types: TypeTotals[];
  documents: Documents;
  /** In chronological order; other parts refer to them by their place in this list. */
  upgrades: Upgrade[];
}

/** Columns of the table of documents; all lists are equally long. */
interface Documents {
  file: string[];
  /** Place in `Page.groups`. */
  group: number[];
  /** 1 where a person must look at the document, also where it has no result. */
  person: number[];
  columns: { label: string; help: string; unit: "" | "s" | "B"; values: number[] }[];
  /** The data block (element "block-N") that holds the document's detail; -1: the page was cut. */
  block: number[];
}

/** [late type, changed, made, removed, failed] */
type TypeTotals = [string, number, number, number, number];

/** What one upgrade is there for. */
interface Upgrade {
  name: string;
  /** Its place among all that the program knows, from 1; 0 for one that it does not know. */
  number: number;
  of: number;
  /** What it does and why, in sentences; empty when nobody wrote them. */
  about: string;
  /** For each class that answers to it. */
  does: { types: string; purpose: string; failure: string }[];
  /** What a failure leaves behind: late types and what stays as it was. */
  leaves: { types: string; what: string }[];
  /** A real change on an example: of which feature, and rows of [what, before, after]; without rows: why there is none. */
  example: { of: string; rows: [string, string, string][]; none: string };
  /** In the documents of this page: how many it changed, and how many features it changed, made and removed there. */
  documents: number;
  features: number;
}

/** A data block with the details of documents: each by its place in `Documents`. */
type Block = { [document: string]: Detail };

interface Detail {
  verdict: { tone: Tone; words: string; next: string };
  /** Why there is no result, with what to do; empty when there is one. */
  problem: string;
  /** Label and value: where it came from, where the result is, sizes, SHA-256, time. */
  facts: [string, string][];
  /** Things are counted; those of which the same is to be said stand together. */
  attention: Cut<Attention>;
  dropped: Cut<Dropped>;
  /** Upgrades that changed something, in chronological order. Of a diff, one without an upgrade. */
  steps: Step[];
  /** Upgrades that were run and changed nothing. */
  idle: number[];
  /** What else is to be known, such as upgrades that came along. */
  notes: string[];
  types: TypeTotals[];
  tree: Tree;
  sheet: Sheet | null;
  /** What of this was cut and where all of it stands; empty when nothing was. */
  cut: string;
}

/** What a person must look at; features of which the same is to be said stand together. */
interface Attention {
  /** Such as "left behind" or "pending". */
  kind: string;
  reason: string;
  next: string;
  key: string;
  type: string;
  /** Whose upgrade failed, where it is not the built-in library's; else empty. */
  others: string;
  /** Place in `Page.upgrades`; -1 for none. */
  upgrade: number;
  features: Cut<{ id: number; name: string; owner: string; code: string }>;
}

/** Values of the old document that stand nowhere in the result. */
interface Dropped {
  id: number;
  type: string;
  name: string;
  owner: string;
  key: string;
  values: string;
  instead: string;
  upgrades: number[];
}

/** What one upgrade changed. */
interface Step {
  /** Place in `Page.upgrades`; -1 in a diff. */
  upgrade: number;
  /** Features that it changed, made and removed. */
  changed: number;
  made: number;
  removed: number;
  /** Equal ones together, most first. */
  changes: Cut<Change>;
  /** By late type. */
  makes: Gathered[];
  removes: Gathered[];
}

/** The same change of features of one late type. */
interface Change {
  type: string;
  /** The attribute or field. */
  key: string;
  /** With unit. "-": it was not there, or is not. */
  before: string;
  after: string;
  /** How many features, and the first of their ids. */
  count: number;
  ids: number[];
  /** Where features' own values differ in what they link to: theirs, in the order of `ids`; else empty. */
  own: [string, string][];
}

interface Gathered {
  type: string;
  count: number;
  ids: number[];
}

/** Features in which something happened, with all that they stand beneath; in the order of a walk from the top. */
interface Tree {
  /** How many there are; the lists may be shorter. */
  count: number;
  id: number[];
  /** 0 for those at the top. */
  depth: number[];
  /** "": unchanged. "c": changed. "m": made. "r": removed. One letter or blank (" ") for each. */
  marks: string;
  type: string[];
  /** As users see it; may be empty. */
  name: string[];
}

/** What the analysis says, before and after, in engineering terms. */
interface Sheet {
  /** In a sentence, such as "1,477 values equal, 143 said otherwise, 110 changed on purpose". */
  words: string;
  tone: Tone;
  /** Values that both say, differences that say the same otherwise, that are on purpose, that nothing accounts for. */
  counts: [number, number, number, number];
  subjects: Cut<Subject>;
}

interface Subject {
  id: number;
  /** Such as "Loads"; subjects of a chapter follow each other. */
  chapter: string;
  /** Such as "pressure". */
  kind: string;
  name: string;
  /** Names of the analysis case and the step that it belongs to; empty for none. */
  inCase: string;
  step: string;
  /** "": before and after. "new" and "lost": only after, only before. */
  state: "" | "new" | "lost";
  /** For each value: quantity, before, after (with units), what that means, the upgrade that did it, and why. */
  rows: SheetRow[];
}

/** Meaning: 0 equal, 1 said otherwise, 2 changed on purpose, 3 nothing accounts for it. Upgrade: place or -1. */
type SheetRow = [string, string, string, number, number, string];
