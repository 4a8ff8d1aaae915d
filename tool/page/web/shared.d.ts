/** What the scripts hand to each other. */

/** What `el` puts into an element; null, undefined and false stand for nothing. */
type Child = Node | string | number | null | undefined | false | Child[];

/** A feature, as far as the details of its document know it. */
interface Known {
  id: number;
  type: string;
  name: string;
  /** Its place in the tree; -1: it is not there. */
  at: number;
}

/** A document that is looked at. */
interface Looked {
  page: Page;
  /** Its place in `Page.documents`. */
  at: number;
  detail: Detail;
  known: Map<number, Known>;
}

/** What an address asks for. */
interface Address {
  view: "start" | "document" | "feature" | "upgrade";
  /** Place in `Page.documents`; -1: none. */
  document: number;
  section: string;
  feature: number;
  upgrade: string;
  table: URLSearchParams;
}

interface View {
  title: string;
  root: HTMLElement;
  /** Where "/" leads. */
  search?: HTMLInputElement;
  /** What scrolls beside the page itself. */
  scroller?: HTMLElement;
  /** Called once it is in the page. */
  placed?: () => void;
  /** Called before and after it goes to paper. */
  print?: (begins: boolean) => void;
}

/** How the table of documents is set. */
interface TableState {
  search: string;
  /** Only what needs a person. */
  person: boolean;
  /** Only these verdicts, by their places in `Page.groups`; none: all. */
  groups: Set<number>;
  /** "person", "file", "verdict" or the place of a column. */
  sort: string;
  descending: boolean;
}
