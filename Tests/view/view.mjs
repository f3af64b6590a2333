// Drives the pages that `kivtree view` writes in a real browser: node view.mjs FOLDER, which holds small.html, diff.html and
// million.html of the trees that ViewTrees.cpp writes, and the module playwright-core. The last line is "N passed, N failed".
import { createRequire } from "node:module";
import { resolve } from "node:path";
import { pathToFileURL } from "node:url";

const folder = resolve(process.argv[2]);
const { chromium } = createRequire(folder + "/")("playwright-core");
const address = name => pathToFileURL(folder + "/" + name).href;

const OPEN_LIMIT = 3000;   // milliseconds until a million nodes can be seen
const PAUSE_LIMIT = 100;   // milliseconds between two pictures while scrolling
const NODES = 1020025;     // of the large tree

let passed = 0, failed = 0;
function check(name, ok, seen) {
  if (ok) { passed++; console.log("ok      " + name + (seen === undefined ? "" : ": " + seen)); }
  else { failed++; console.log("FAILED  " + name + ": " + seen); }
}
const same = (name, expected, seen) => check(name, JSON.stringify(expected) === JSON.stringify(seen), JSON.stringify(seen));

const browser = await chromium.launch({ executablePath: process.env.CHROMIUM || "/usr/bin/chromium", args: ["--no-sandbox"] });

async function open(name, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, offline: true, ...options });
  const page = await context.newPage();
  page.setDefaultTimeout(20000);
  page.requests = [];
  page.errors = [];
  page.on("request", request => page.requests.push(request.url()));
  page.on("pageerror", error => page.errors.push(String(error)));
  page.on("console", message => { if (message.type() === "error") page.errors.push(message.text()); });
  await page.goto(address(name));
  await page.waitForSelector(".row");
  return page;
}

/** The visible rows: index and value. */
const rowsOf = page => page.$$eval(".row:not([hidden])", rows => rows.map(row =>
  row.querySelector(".a .index").textContent + " = " + row.querySelector(".a .value").textContent));
const press = async (page, ...keys) => { for (const key of keys) await page.keyboard.press(key); };
const selectedKey = page => page.$eval("#detail code", code => code.textContent);

async function close(page, name) {
  same(name + " asks for nothing but itself", [address(name)], page.requests);
  same(name + " has no errors", [], page.errors);
  await page.context().close();
}

async function testSmall() {
  const page = await open("small.html");
  same("a large part is folded at first", ["root = 3 children", "0 = 300 children", "1 = 20 children", "2 = 1 child"], await rowsOf(page));
  await press(page, "Home", "ArrowDown", "ArrowRight");
  same("the right arrow unfolds", ["0 = 300 children", "0 = 5 children"], (await rowsOf(page)).slice(1, 3));
  await press(page, "ArrowDown", "ArrowDown", "ArrowRight", "ArrowDown");
  same("the keyboard goes into the tree", "0:1:0:", await selectedKey(page));
  await press(page, "ArrowLeft", "ArrowLeft", "ArrowLeft", "ArrowLeft");
  same("the left arrow folds again", 4, (await rowsOf(page)).length);
  await page.locator(".row", { hasText: "20 children" }).locator(".fold").first().click();
  same("a click on the mark unfolds", "2 = 4", (await rowsOf(page))[5]);
  await press(page, "c");
  same("C folds all", 4, (await rowsOf(page)).length);
  await press(page, "e");
  check("E unfolds all and only what is on screen is built", (await page.$$(".row")).length < 60, (await page.$$(".row")).length + " rows");
  await page.screenshot({ path: folder + "/small.png" });
  await page.fill("#search", "person 277");
  await page.waitForFunction(() => document.querySelector("#matches").textContent === "1 match");
  same("search finds text, whatever its case", "0:277:0:", await selectedKey(page));
  await page.fill("#search", "ZO\u00cb");
  await page.waitForFunction(() => document.querySelector("#matches").textContent === "60 matches");
  await page.focus("#view");
  await press(page, "n");
  same("N goes to the next match", "0:5:0:", await selectedKey(page));
  await press(page, "Shift+N");
  same("Shift+N goes back", "0:0:0:", await selectedKey(page));
  await page.fill("#search", "0:123:2:");
  await page.waitForFunction(() => document.querySelector("#detail code").textContent === "0:123:2:");
  check("search goes to a key", true);
  await page.fill("#search", "no such text");
  await page.waitForFunction(() => document.querySelector("#matches").textContent === "0 matches");
  check("search says when there is nothing", true);
  await page.fill("#search", "");
  await page.locator("#kinds .chip", { hasText: "IntegerSet" }).click();
  same("a filter by kind shows what fits and what is above", ["root = 3 children", "2 = 1 child"], (await rowsOf(page)).slice(0, 2));
  check("the value of a set is shown", (await rowsOf(page))[2].startsWith("0 = {2, 3, 5, 7, 11}"), (await rowsOf(page))[2]);
  await page.locator("#clear").click();
  await page.locator("#temporalities .chip", { hasText: "transient" }).click();
  same("a filter by temporality", ["root = 3 children", "0 = 300 children", "0 = 5 children", "4 = 0"], (await rowsOf(page)).slice(0, 4));
  const color = await page.$eval(".row:nth-of-type(4) .side", side => getComputedStyle(side).borderLeftColor);
  same("the colour of a temporality", "rgb(178, 106, 0)", color);
  await page.locator("#clear").click();
  await page.selectOption("#tags", "4107");
  same("a filter by tag", ["root = 3 children", "0 = 300 children", "0 = 5 children", "3 = 5 children"], (await rowsOf(page)).slice(0, 4));
  await page.screenshot({ path: folder + "/filter.png" });
  await page.locator("#clear").click();
  same("the filter is gone", 300 * 6 + 20 + 5, await page.evaluate(() => rows.length));
  await close(page, "small.html");
  const dark = await open("small.html", { colorScheme: "dark" });
  same("dark where people want it dark", "rgb(23, 25, 28)", await dark.$eval("body", body => getComputedStyle(body).backgroundColor));
  await dark.screenshot({ path: folder + "/dark.png" });
  await press(dark, "t");
  same("T makes it light", "rgb(255, 255, 255)", await dark.$eval("body", body => getComputedStyle(body).backgroundColor));
  await close(dark, "small.html");
}

async function testDiff() {
  const page = await open("diff.html");
  // Each of 3 missing persons, 6 other numbers, and one text.
  same("differences are counted", "10 differences", await page.textContent("#differenceCount"));
  await press(page, "d");
  check("the foot names the key", (await page.innerText("#keys")).includes("D next difference"), await page.innerText("#keys"));
  same("D goes to the first difference", "0:7:1:", await selectedKey(page));
  const sides = await page.$$eval(".row.changed .value", values => values.map(value => value.textContent));
  same("both sides of a difference stand side by side", ["21", "-7"], sides.slice(0, 2));
  await page.screenshot({ path: folder + "/diff.png" });
  await page.check("#onlyDifferences");
  check("only differences", (await page.evaluate(() => rows.length)) === 34, await page.evaluate(() => rows.length) + " rows");
  const removed = await page.$$eval(".row.removed", found => found.length), added = await page.$$eval(".row.added", found => found.length);
  check("parts of one side alone are marked", removed > 0 && added + removed > 0, removed + " and " + added);
  await page.screenshot({ path: folder + "/differences.png" });
  await close(page, "diff.html");
}

/** The longest time between two pictures while `act` runs in the page. */
const longestPause = (page, act) => page.evaluate(`(async () => {
  const step = ${act};
  let longest = 0, last = performance.now();
  for (let n = 0; n < 60; n++) {
    step(n);
    await new Promise(resolve => requestAnimationFrame(resolve));
    const now = performance.now();
    longest = Math.max(longest, now - last);
    last = now;
  }
  return Math.round(longest);
})()`);

async function testMillion() {
  const start = Date.now();
  const page = await open("million.html");
  const opened = Date.now() - start;
  check("a million nodes open in less than " + OPEN_LIMIT + " ms", opened < OPEN_LIMIT, opened + " ms");
  same("all of them", NODES, await page.evaluate(() => count));
  await press(page, "e");
  same("all of them unfolded", NODES, await page.evaluate(() => rows.length));
  check("only what is on screen is built", (await page.$$(".row")).length < 60, (await page.$$(".row")).length + " rows");
  await longestPause(page, "n => scrollToRow(n * 10)");
  const wheel = await longestPause(page, "n => view.dispatchEvent(new WheelEvent('wheel', { deltaY: 400, cancelable: true }))");
  check("the wheel scrolls without a pause over " + PAUSE_LIMIT + " ms", wheel < PAUSE_LIMIT, wheel + " ms");
  const bar = await longestPause(page, "n => { view.scrollTop = n * 130000; }");
  check("so does the scroll bar", bar < PAUSE_LIMIT, bar + " ms");
  await press(page, "End");
  check("the last row can be reached", (await rowsOf(page)).pop().startsWith("0 = {2, 3"), (await rowsOf(page)).pop());
  await press(page, "Home");
  same("and the first", "root = 3 children", (await rowsOf(page))[0]);
  const from = Date.now();
  await page.fill("#search", "person 169999");
  await page.waitForFunction(() => document.querySelector("#matches").textContent === "1 match");
  check("a search through all of it", (await selectedKey(page)) === "0:169999:0:", Date.now() - from + " ms");
  await page.screenshot({ path: folder + "/million.png" });
  await page.fill("#search", "");
  const filterFrom = Date.now();
  await page.locator("#kinds .chip", { hasText: "Double" }).click();
  await page.waitForFunction(() => shown !== null);
  check("a filter over all of it", (await page.evaluate(() => rows.length)) === 340002, Date.now() - filterFrom + " ms");
  await close(page, "million.html");
}

try {
  for (const test of [testSmall, testDiff, testMillion]) {
    try { await test(); } catch (error) { check(test.name, false, error.stack); }
  }
} finally {
  await browser.close();
}
console.log(passed + " passed, " + failed + " failed");
process.exit(failed === 0 ? 0 : 1);
