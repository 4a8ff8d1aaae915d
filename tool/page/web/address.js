// Every view has an address behind "#", so that it can be sent, kept as a bookmark and left with the back
// button:
//   #/?q=bolt&person=1         the documents, as the table is set
//   #/d/17, #/d/17/steps       a document, a section of it
//   #/d/17/f/254               a feature of it
//   #/d/17/u/NAME, #/u/NAME    an upgrade, in that document or in all

/**
 * @param {string} hash
 * @returns {Address}
 */
function parseAddress(hash) {
  const [path, query] = hash.replace(/^#\/?/, "").split("?", 2);
  const parts = path.split("/").map(decoded);
  /** @type {Address} */
  const address = {
    view: "start",
    document: -1,
    section: "",
    feature: 0,
    upgrade: "",
    table: new URLSearchParams(query || "")
  };
  if (parts[0] === "d") {
    address.view = "document";
    address.document = /^\d+$/.test(parts[1] || "") ? Number(parts[1]) : -1;
    parts.splice(0, 2);
  }
  if (parts[0] === "f" && address.document >= 0) {
    address.view = "feature";
    address.feature = Number(parts[1]) || 0;
  } else if (parts[0] === "u") {
    address.view = "upgrade";
    address.upgrade = parts[1] || "";
  } else if (address.view === "document") {
    address.section = parts[0] || "";
  }
  return address;
}

/** @param {string} part */
function decoded(part) {
  try {
    return decodeURIComponent(part);
  } catch (_) {
    return part;
  }
}

/**
 * @param {number} at
 * @param {string} [section]
 */
function documentAddress(at, section) {
  return `#/d/${at}${section ? `/${section}` : ""}`;
}

/**
 * @param {number} at
 * @param {number} id
 */
function featureAddress(at, id) {
  return `#/d/${at}/f/${id}`;
}

/**
 * @param {number} at -1: in all documents
 * @param {string} name
 */
function upgradeAddress(at, name) {
  return `#${at < 0 ? "" : `/d/${at}`}/u/${encodeURIComponent(name)}`;
}

/**
 * The name of an upgrade, as a link to its page.
 * @param {Page} page
 * @param {number} at the document that one looks at, -1: none
 * @param {number} upgrade
 * @returns {HTMLElement | null}
 */
function upgradeLink(page, at, upgrade) {
  const found = page.upgrades[upgrade];
  return found ? el("a", {class: "upgrade", href: upgradeAddress(at, found.name)}, value(found.name)) : null;
}
