// The data: gzip of JSON in base64, in elements that the browser does not run. Fetching is out of the
// question, as the page is a file. Details are in many blocks, of which only a few are held unpacked.

const mostBlocks = 4;

/** @type {Map<number, Promise<Block>>} the one that was used last stands last */
const unpackedBlocks = new Map();

function canUnpack() {
  return typeof DecompressionStream === "function";
}

/**
 * @param {string} text
 * @returns {Promise<any>}
 */
async function unpack(text) {
  const raw = atob(text.trim());
  const bytes = new Uint8Array(raw.length);
  for (let i = 0; i < raw.length; ++i) bytes[i] = raw.charCodeAt(i);
  return new Response(new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"))).json();
}

/** Waits until the browser has read the file to its end. */
function wholePage() {
  if (document.readyState !== "loading") return Promise.resolve();
  return new Promise(
    (resolve) => document.addEventListener("DOMContentLoaded", () => resolve(undefined), {once: true}));
}

/**
 * The text of a block. An element can be there with a part of its text only; something behind it proves it
 * whole.
 * @param {number} block
 */
async function blockText(block) {
  let found = document.getElementById(`block-${block}`);
  if (!found || !found.nextSibling) {
    await wholePage();
    found = document.getElementById(`block-${block}`);
  }
  if (!found)
    throw new Error(
      "The file is not whole: the part with this document is missing. Get it again from where it came from.");
  return found.textContent || "";
}

/**
 * @param {number} block
 * @returns {Promise<Block>}
 */
function unpackedBlock(block) {
  const held = unpackedBlocks.get(block) || blockText(block).then(unpack);
  unpackedBlocks.delete(block);
  unpackedBlocks.set(block, held);
  held.catch(() => unpackedBlocks.delete(block));
  for (const oldest of unpackedBlocks.keys()) {
    if (unpackedBlocks.size <= mostBlocks) break;
    unpackedBlocks.delete(oldest);
  }
  return held;
}

/**
 * Null: the page was cut and does not hold it.
 * @param {Page} page
 * @param {number} at
 * @returns {Promise<Detail | null>}
 */
async function detailOf(page, at) {
  const block = page.documents.block[at];
  if (block === undefined || block < 0) return null;
  return (await unpackedBlock(block))[String(at)] || null;
}
