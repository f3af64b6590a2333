"use strict";
// One row for each node, in columns of numbers; values stay in the bytes that came with the page until they are on screen.

const KINDS = ["", "Integer", "GlobalID", "String", "Double", "Boolean", "Vector", "Map", "IntegerSet", "IdSet", "StringSet", "DoubleSet", "Integer64"];
const TEMPORALITIES = ["reserved", "default", "persistent", "transient", "temporary", "5", "6", "7"];
const VECTOR = 6, MAP = 7;
const SAME = 0, CHANGED = 1, ONLY_A = 2, ONLY_B = 3;
const ROW_HEIGHT = 22;
const MAX_HEIGHT = 8000000;  // browsers draw no taller element without errors
const SLICE = 30;            // milliseconds of work between two looks at what the user does

const $ = id => document.getElementById(id);
const names = JSON.parse($("names").textContent);
const decoder = new TextDecoder();

function decodeBase64(text) {
  if (Uint8Array.fromBase64) return Uint8Array.fromBase64(text);
  const binary = atob(text);
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < bytes.length; i++) bytes[i] = binary.charCodeAt(i);
  return bytes;
}

/** The columns of one side of the page. */
function makeSide(count) {
  return { kind: new Uint8Array(count), temporality: new Uint8Array(count), tag: new Int32Array(count),
           children: new Int32Array(count), start: new Uint32Array(count), length: new Uint16Array(count) };
}

/** Reads the page's bytes: Inspect/view/PageData.cpp writes them. */
function readTree(bytes) {
  let at = 0;
  const number = () => {
    let value = 0, factor = 1;
    for (;;) {
      const byte = bytes[at++];
      value += (byte & 127) * factor;
      if (byte < 128) return value;
      factor *= 128;
    }
  };
  const isDiff = number() === 1;
  const count = number();
  const tree = { bytes, isDiff, count, index: new Int32Array(count), parent: new Int32Array(count), end: new Int32Array(count),
                 depth: new Uint16Array(count), state: new Uint8Array(count), a: makeSide(count), b: isDiff ? makeSide(count) : null };
  const readSide = (side, i) => {
    const byte = bytes[at++];
    side.kind[i] = byte & 15;
    side.temporality[i] = byte >> 4 & 7;
    if (side.kind[i] === MAP) side.tag[i] = number() | 0;
    if (side.kind[i] === MAP || side.kind[i] === VECTOR) {
      side.children[i] = number();
    } else {
      side.length[i] = number();
      side.start[i] = at;
      at += side.length[i];
    }
  };
  const open = [], left = [];
  for (let i = 0; i < count; i++) {
    while (left.length > 0 && left[left.length - 1] === 0) {
      tree.end[open.pop()] = i;
      left.pop();
    }
    tree.parent[i] = open.length > 0 ? open[open.length - 1] : -1;
    tree.depth[i] = open.length;
    if (left.length > 0) left[left.length - 1]--;
    tree.index[i] = number() - 1;
    const state = isDiff ? bytes[at++] : SAME;
    tree.state[i] = state;
    if (state !== ONLY_B) readSide(tree.a, i);
    if (state === CHANGED || state === ONLY_B) readSide(tree.b, i);
    tree.end[i] = i + 1;
    open.push(i);
    left.push(number());
  }
  while (open.length > 0) tree.end[open.pop()] = count;
  return tree;
}

const tree = readTree(decodeBase64($("data").textContent));
const count = tree.count;

// ---- what is visible

const folded = new Uint8Array(count);
let foldedBefore = null;  // while a filter is on
let rows = new Int32Array(0);
let shown = null;         // with a filter: which nodes pass it, or lie above one that does
let selected = count > 0 ? 0 : -1;
let found = null;         // which nodes match the search

const isComposite = i => tree.end[i] > i + 1;
const sideOf = i => tree.state[i] === ONLY_B ? tree.b : tree.a;

function foldAll(depth) {
  for (let i = 0; i < count; i++) folded[i] = isComposite(i) && tree.depth[i] >= depth ? 1 : 0;
}

function updateRows() {
  const visible = new Int32Array(count);
  let n = 0;
  for (let i = 0; i < count;) {
    if (shown !== null && shown[i] === 0) { i = tree.end[i]; continue; }
    visible[n++] = i;
    i = folded[i] === 1 ? tree.end[i] : i + 1;
  }
  rows = visible.subarray(0, n);
  resize();
}

/** The row of a node, or of the node above it that is visible. */
function rowOf(node) {
  let low = 0, high = rows.length - 1;
  while (low < high) {
    const middle = (low + high + 1) >> 1;
    if (rows[middle] <= node) low = middle; else high = middle - 1;
  }
  return low;
}

// ---- scrolling: only what is on screen is built

const view = $("view"), spacer = $("spacer"), layer = $("rows");
let first = 0;         // the topmost row, with its fraction
let scale = 1;         // rows may be more than an element can be tall
let settingScroll = false;
const pool = [];

const visibleCount = () => view.clientHeight / ROW_HEIGHT;
const lastFirst = () => Math.max(0, rows.length - visibleCount());

function resize() {
  const height = rows.length * ROW_HEIGHT;
  scale = height > MAX_HEIGHT ? MAX_HEIGHT / height : 1;
  spacer.style.height = Math.min(height, MAX_HEIGHT) + "px";
  scrollToRow(Math.min(first, lastFirst()));
}

function scrollToRow(row) {
  first = Math.max(0, Math.min(row, lastFirst()));
  const room = Math.min(rows.length * ROW_HEIGHT, MAX_HEIGHT) - view.clientHeight;
  const top = lastFirst() > 0 ? Math.round(first / lastFirst() * Math.max(0, room)) : 0;
  if (Math.round(view.scrollTop) !== top) {
    const before = view.scrollTop;
    view.scrollTop = top;
    settingScroll = view.scrollTop !== before;
  }
  draw();
}

view.addEventListener("scroll", () => {
  if (settingScroll) { settingScroll = false; draw(); return; }
  const room = view.scrollHeight - view.clientHeight;
  first = scale === 1 ? view.scrollTop / ROW_HEIGHT : (room > 0 ? view.scrollTop / room : 0) * lastFirst();
  draw();
}, { passive: true });

// Where a pixel of the scroll bar is many rows, the wheel still moves by pixels.
view.addEventListener("wheel", event => {
  if (scale === 1 || event.ctrlKey) return;
  event.preventDefault();
  const step = event.deltaMode === 1 ? event.deltaY * 3 : event.deltaMode === 2 ? event.deltaY * visibleCount() : event.deltaY / ROW_HEIGHT;
  scrollToRow(first + step);
}, { passive: false });

function makeSideElements(row, name) {
  const side = document.createElement("div");
  side.className = "side " + name;
  const parts = { side };
  for (const part of ["fold", "index", "kind", "tag", "value", "holds"]) {
    parts[part] = document.createElement("span");
    parts[part].className = part;
    side.append(parts[part]);
  }
  row.append(side);
  return parts;
}

function makeRow() {
  const element = document.createElement("div");
  element.className = "row";
  element.setAttribute("role", "treeitem");
  const row = { element, a: makeSideElements(element, "a"), b: tree.isDiff ? makeSideElements(element, "b") : null, node: -1 };
  element.addEventListener("mousedown", event => {
    if (event.button !== 0) return;
    select(row.node, false);
    if (event.target.className === "fold" || event.detail === 2) toggle(row.node);
  });
  layer.append(element);
  return row;
}

const valueOf = (side, i) => decoder.decode(tree.bytes.subarray(side.start[i], side.start[i] + side.length[i]));
const tagText = tag => names.tags[tag] !== undefined ? tag + " " + names.tags[tag] : String(tag);

function indexText(i) {
  if (tree.parent[i] < 0) return "root";
  const above = tree.parent[i];
  const ofTag = sideOf(above).kind[above] === MAP ? names.indexes[sideOf(above).tag[above]] : undefined;
  const name = ofTag !== undefined ? ofTag[tree.index[i]] : undefined;
  return name !== undefined ? tree.index[i] + " " + name : String(tree.index[i]);
}

function valueClass(kind) {
  if (kind === 3 || kind === 10) return "value text";
  return kind === VECTOR || kind === MAP ? "value children" : "value number";
}

function drawSide(parts, side, i, present) {
  parts.side.style.visibility = present ? "" : "hidden";
  if (!present) { parts.side.style.borderLeftColor = "transparent"; return; }
  const kind = side.kind[i];
  parts.side.style.borderLeftColor = "var(--t" + Math.min(side.temporality[i], 4) + ")";
  parts.side.style.paddingLeft = Math.min(tree.depth[i], 60) * 16 + 4 + "px";
  parts.fold.textContent = isComposite(i) ? (folded[i] ? "\u25b6" : "\u25bc") : "";
  parts.index.textContent = indexText(i);
  parts.kind.textContent = KINDS[kind] || "kind " + kind;
  parts.tag.hidden = kind !== MAP;
  if (kind === MAP) parts.tag.textContent = tagText(side.tag[i]);
  parts.value.className = valueClass(kind);
  const children = side.children[i];
  parts.value.textContent = kind === VECTOR || kind === MAP ? children + (children === 1 ? " child" : " children") : valueOf(side, i);
  parts.holds.textContent = differs !== null && tree.state[i] === SAME && differs[i] ? "\u25cf differs below" : "";
}

const STATE_CLASS = ["", " changed", " removed", " added"];

function drawRow(row, i, position) {
  row.node = i;
  const element = row.element;
  element.hidden = false;
  element.id = "row" + position;
  element.className = "row" + (i === selected ? " selected" : "") + STATE_CLASS[tree.state[i]] + (found !== null && found[i] ? " match" : "");
  element.setAttribute("aria-level", tree.depth[i] + 1);
  element.setAttribute("aria-selected", i === selected);
  if (isComposite(i)) element.setAttribute("aria-expanded", folded[i] === 0); else element.removeAttribute("aria-expanded");
  drawSide(row.a, tree.a, i, tree.state[i] !== ONLY_B);
  if (row.b !== null) drawSide(row.b, tree.state[i] === SAME ? tree.a : tree.b, i, tree.state[i] !== ONLY_A);
}

function draw() {
  const top = Math.floor(first);
  const size = Math.min(rows.length - top, Math.ceil(visibleCount()) + 1);
  while (pool.length < size) pool.push(makeRow());
  for (let k = 0; k < pool.length; k++) {
    if (k < size) drawRow(pool[k], rows[top + k], top + k); else pool[k].element.hidden = true;
  }
  layer.style.transform = "translateY(" + (view.scrollTop - (first - top) * ROW_HEIGHT) + "px)";
  const row = selected >= 0 && rows.length > 0 ? rowOf(selected) : -1;
  if (row >= top && row < top + size) view.setAttribute("aria-activedescendant", "row" + row); else view.removeAttribute("aria-activedescendant");
}

// ---- selecting and folding

function keyOf(i) {
  let key = "";
  for (; tree.parent[i] >= 0; i = tree.parent[i]) key = tree.index[i] + ":" + key;
  return key;
}

function describe(side, i) {
  const kind = side.kind[i];
  const text = [KINDS[kind] || "kind " + kind, TEMPORALITIES[side.temporality[i]]];
  if (kind === MAP) text.push("tag " + tagText(side.tag[i]));
  text.push(kind === VECTOR || kind === MAP ? side.children[i] + " children" : valueOf(side, i));
  return text.join(" \u00b7 ");
}

function showDetail() {
  const detail = $("detail");
  detail.textContent = "";
  if (selected < 0) return;
  const line = (label, text) => {
    const element = document.createElement("div"), bold = document.createElement("b"), code = document.createElement("code");
    bold.textContent = label + " ";
    code.textContent = text;
    element.append(bold, code);
    detail.append(element);
  };
  line("Key", keyOf(selected) || "(the root)");
  const state = tree.state[selected];
  if (state !== ONLY_B) line(tree.isDiff ? "A" : "Node", describe(tree.a, selected));
  if (tree.isDiff && state !== ONLY_A && state !== SAME) line("B", describe(tree.b, selected));
}

function select(node, reveal) {
  selected = node;
  if (reveal) {
    const row = rowOf(node);
    if (row < first) scrollToRow(row);
    else if (row > first + visibleCount() - 1) scrollToRow(row - visibleCount() + 1);
  }
  showDetail();
  draw();
}

function toggle(node) {
  if (!isComposite(node)) return;
  folded[node] ^= 1;
  updateRows();
}

/** Unfolds what is above a node and goes there. */
function goTo(node) {
  let changed = false;
  for (let i = tree.parent[node]; i >= 0; i = tree.parent[i]) {
    if (folded[i]) { folded[i] = 0; changed = true; }
  }
  if (changed) updateRows();
  selected = node;
  const row = rowOf(node);
  if (row < first || row > first + visibleCount() - 2) scrollToRow(row - visibleCount() / 3);
  select(node, true);
}

function moveBy(step) {
  if (rows.length === 0) return;
  select(rows[Math.max(0, Math.min(rows.length - 1, rowOf(selected) + step))], true);
}

function setAllFolded(fold) {
  foldAll(fold ? 1 : Infinity);
  while (selected > 0 && fold && tree.depth[selected] > 1) selected = tree.parent[selected];
  updateRows();
}

view.addEventListener("keydown", event => {
  const keys = {
    ArrowDown: () => moveBy(1), ArrowUp: () => moveBy(-1),
    PageDown: () => moveBy(Math.floor(visibleCount()) - 1), PageUp: () => moveBy(1 - Math.floor(visibleCount())),
    Home: () => moveBy(-rows.length), End: () => moveBy(rows.length),
    ArrowRight: () => { if (isComposite(selected)) { if (folded[selected]) toggle(selected); else moveBy(1); } },
    ArrowLeft: () => {
      if (isComposite(selected) && !folded[selected]) toggle(selected);
      else if (tree.parent[selected] >= 0) select(tree.parent[selected], true);
    },
    Enter: () => toggle(selected), " ": () => toggle(selected),
  };
  if (event.ctrlKey || event.metaKey || event.altKey || keys[event.key] === undefined) return;
  event.preventDefault();
  keys[event.key]();
});

document.addEventListener("keydown", event => {
  const typing = event.target.tagName === "INPUT" && event.target.type !== "checkbox" || event.target.tagName === "SELECT";
  if (event.key === "Escape" && typing) { view.focus(); return; }
  if (typing || event.ctrlKey || event.metaKey || event.altKey) return;
  const keys = { "/": () => $("search").focus(), n: () => nextMatch(1), N: () => nextMatch(-1), e: () => setAllFolded(false),
                 c: () => setAllFolded(true), t: changeTheme, d: () => nextDifference(), };
  if (keys[event.key] === undefined) return;
  event.preventDefault();
  keys[event.key]();
});

$("expand").addEventListener("click", () => setAllFolded(false));
$("collapse").addEventListener("click", () => setAllFolded(true));
$("theme").addEventListener("click", changeTheme);

function changeTheme() {
  const root = document.documentElement;
  const dark = root.dataset.theme ? root.dataset.theme === "dark" : matchMedia("(prefers-color-scheme: dark)").matches;
  root.dataset.theme = dark ? "light" : "dark";
}

// ---- searching, in slices

let searchId = 0;
let matchCount = 0;

/** The node of a key such as "1:65:", or -1. */
function nodeOfKey(key) {
  let node = 0;
  for (const index of key.split(":").filter(part => part !== "").map(Number)) {
    let child = node + 1;
    while (child < tree.end[node] && tree.index[child] !== index) child = tree.end[child];
    if (child >= tree.end[node]) return -1;
    node = child;
  }
  return node;
}

/** A test of one side of a node: plain letters are looked for in the bytes, others in the text. */
function makeTest(query) {
  const wanted = query.toLowerCase();
  const bytes = tree.bytes;
  const tags = new Set(Object.keys(names.tags).filter(tag => names.tags[tag].toLowerCase().includes(wanted)).map(Number));
  if (/^\d+$/.test(wanted)) tags.add(Number(wanted));
  const plain = /^[\x20-\x7e]*$/.test(wanted);
  const low = new TextEncoder().encode(wanted), high = new TextEncoder().encode(wanted.toUpperCase());
  const inBytes = (from, length) => {
    const last = from + length - low.length;
    for (let at = from; at <= last; at++) {
      let k = 0;
      while (k < low.length && (bytes[at + k] === low[k] || bytes[at + k] === high[k])) k++;
      if (k === low.length) return true;
    }
    return false;
  };
  return (side, i) => {
    const kind = side.kind[i];
    if (kind === MAP) return tags.has(side.tag[i]);
    if (side.length[i] === 0) return false;
    return plain ? inBytes(side.start[i], side.length[i]) : valueOf(side, i).toLowerCase().includes(wanted);
  };
}

function showMatches(searching) {
  $("matches").textContent = found === null ? "" : matchCount.toLocaleString("en") + (matchCount === 1 ? " match" : " matches") + (searching ? " \u2026" : "");
}

function search(query) {
  const id = ++searchId;
  matchCount = 0;
  found = null;
  if (query === "" || count === 0) { showMatches(false); draw(); return; }
  found = new Uint8Array(count);
  const byKey = /^(\d+:)+\d*$/.test(query) ? nodeOfKey(query) : -1;
  if (byKey >= 0) { found[byKey] = 1; matchCount = 1; showMatches(false); goTo(byKey); return; }
  const test = makeTest(query);
  let i = 0, gone = false;
  const slice = () => {
    if (id !== searchId) return;
    const until = performance.now() + SLICE;
    while (i < count) {
      const state = tree.state[i];
      if ((state !== ONLY_B && test(tree.a, i)) || ((state === CHANGED || state === ONLY_B) && test(tree.b, i))) {
        found[i] = 1;
        matchCount++;
        if (!gone && (shown === null || shown[i])) { gone = true; goTo(i); }
      }
      if ((++i & 255) === 0 && performance.now() > until) break;
    }
    showMatches(i < count);
    if (i < count) setTimeout(slice); else draw();
  };
  slice();
}

/** The next node that `marks` names, in the direction of `step`, around the end. */
function nextMarked(marks, step) {
  for (let n = 1, i = selected; n <= count; n++) {
    i = (i + step + count) % count;
    if (marks[i] && (shown === null || shown[i])) return i;
  }
  return -1;
}

function nextMatch(step) {
  const node = found !== null ? nextMarked(found, step) : -1;
  if (node >= 0) goTo(node);
}

let searchTimer = 0;
$("search").addEventListener("input", event => {
  clearTimeout(searchTimer);
  searchTimer = setTimeout(() => search(event.target.value.trim()), 120);
});
$("searchForm").addEventListener("submit", event => { event.preventDefault(); nextMatch(1); });
$("previous").addEventListener("click", () => nextMatch(-1));

// ---- filters

const wantedKinds = new Set(), wantedTemporalities = new Set();

function markFiltered() {
  const marks = new Uint8Array(count);
  const tag = $("tags").value === "" ? null : Number($("tags").value);
  const only = $("onlyDifferences").checked;
  const kinds = new Uint8Array(16).fill(wantedKinds.size === 0 ? 1 : 0), times = new Uint8Array(8).fill(wantedTemporalities.size === 0 ? 1 : 0);
  wantedKinds.forEach(kind => { kinds[kind] = 1; });
  wantedTemporalities.forEach(time => { times[time] = 1; });
  const fits = (side, i) => kinds[side.kind[i]] === 1 && times[side.temporality[i]] === 1 && (tag === null || (side.kind[i] === MAP && side.tag[i] === tag));
  // From the end, so that what lies below has been seen.
  for (let i = count - 1; i >= 0; i--) {
    const state = tree.state[i];
    if ((!only || state !== SAME) && ((state !== ONLY_B && fits(tree.a, i)) || ((state === CHANGED || state === ONLY_B) && fits(tree.b, i)))) marks[i] = 1;
    if (marks[i] && tree.parent[i] >= 0) marks[tree.parent[i]] = 1;
  }
  return marks;
}

function applyFilters() {
  const active = wantedKinds.size > 0 || wantedTemporalities.size > 0 || $("tags").value !== "" || $("onlyDifferences").checked;
  if (active) {
    if (foldedBefore === null) { foldedBefore = folded.slice(); folded.fill(0); }
    shown = markFiltered();
  } else if (foldedBefore !== null) {
    shown = null;
    folded.set(foldedBefore);
    foldedBefore = null;
  }
  $("clear").hidden = !active;
  updateRows();
}

function addChip(place, set, value, label, n, color) {
  const chip = document.createElement("button");
  chip.type = "button";
  chip.className = "chip";
  chip.dataset.value = value;
  chip.setAttribute("aria-pressed", "false");
  if (color !== undefined) {
    const swatch = document.createElement("span");
    swatch.className = "swatch";
    swatch.style.background = color;
    chip.append(swatch);
  }
  const number = document.createElement("span");
  number.className = "n";
  number.textContent = n.toLocaleString("en");
  chip.append(label, number);
  chip.addEventListener("click", () => {
    if (set.has(value)) set.delete(value); else set.add(value);
    chip.setAttribute("aria-pressed", set.has(value));
    applyFilters();
  });
  place.append(chip);
}

function addFilters() {
  const kinds = new Array(16).fill(0), times = new Array(8).fill(0), tags = new Map();
  for (let i = 0; i < count; i++) {
    const side = sideOf(i);
    kinds[side.kind[i]]++;
    times[side.temporality[i]]++;
    if (side.kind[i] === MAP) tags.set(side.tag[i], (tags.get(side.tag[i]) || 0) + 1);
  }
  kinds.forEach((n, kind) => { if (n > 0) addChip($("kinds"), wantedKinds, kind, KINDS[kind] || "kind " + kind, n); });
  times.forEach((n, t) => { if (n > 0) addChip($("temporalities"), wantedTemporalities, t, TEMPORALITIES[t], n, "var(--t" + Math.min(t, 4) + ")"); });
  for (const [tag, n] of [...tags].sort((x, y) => y[1] - x[1]).slice(0, 2000)) {
    const option = document.createElement("option");
    option.value = tag;
    option.textContent = tagText(tag) + " (" + n.toLocaleString("en") + ")";
    $("tags").append(option);
  }
}

$("tags").addEventListener("change", applyFilters);
$("onlyDifferences").addEventListener("change", applyFilters);
$("clear").addEventListener("click", () => {
  wantedKinds.clear();
  wantedTemporalities.clear();
  $("tags").value = "";
  $("onlyDifferences").checked = false;
  document.querySelectorAll(".chip").forEach(chip => chip.setAttribute("aria-pressed", "false"));
  applyFilters();
});

// ---- differences

let differs = null;   // for each node whether it, or something below it, differs
let ownDiffers = null;

function addDifferences() {
  differs = new Uint8Array(count);
  ownDiffers = new Uint8Array(count);
  let n = 0;
  for (let i = count - 1; i >= 0; i--) {
    const above = tree.parent[i];
    if (tree.state[i] !== SAME) {
      differs[i] = 1;
      // Of a part that only one side has, its top counts.
      ownDiffers[i] = above >= 0 && tree.state[above] === tree.state[i] && tree.state[i] !== CHANGED ? 0 : 1;
      n += ownDiffers[i];
    }
    if (differs[i] && above >= 0) differs[above] = 1;
  }
  $("differenceCount").textContent = n.toLocaleString("en") + (n === 1 ? " difference" : " differences");
  $("differences").hidden = false;
  $("heads").hidden = false;
  $("differenceKey").hidden = false;
  document.body.classList.add("diff");
}

function nextDifference() {
  const node = ownDiffers !== null ? nextMarked(ownDiffers, 1) : -1;
  if (node >= 0) goTo(node);
}
$("nextDifference").addEventListener("click", nextDifference);

// ---- the beginning

$("count").textContent = count.toLocaleString("en") + (count === 1 ? " node" : " nodes");
if (tree.isDiff) addDifferences();
addFilters();
foldAll(count <= 200 ? Infinity : 1);
updateRows();
showDetail();
new ResizeObserver(() => resize()).observe(view);
view.focus({ preventScroll: true });
