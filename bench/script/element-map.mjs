// How long the script takes to map a page, beside the floor (visiting the same elements and reading box, style
// and text, nothing else) and beside the plainest implementation, interleaved in one browser.
//   node bench/script/element-map.mjs [--short] [--json FILE]
import { writeFileSync } from 'node:fs';
import { parseArgs } from 'node:util';
import { startBrowser } from '../../tests/script/browser.mjs';
import { plainElementMap } from './plain-element-map.mjs';

const { values: options } = parseArgs({ options: { short: { type: 'boolean' }, json: { type: 'string' } } });
const sizes = options.short ? [100] : [1000, 5000, 20000];
const rounds = options.short ? 3 : 15;
// Run first and not counted, so that a page's first round doesn't time the compiler.
const warmUps = options.short ? 0 : 3;
// The plain implementation takes minutes on the largest lists; it runs where it stays below some 10 s a round.
const plainRounds = options.short ? 1 : 3;
const plainLimit = 5000;

const repeat = (count, make) => Array.from({ length: count }, (_, i) => make(i)).join('');
const nested = (levels, inner) => '<div>'.repeat(levels) + inner + '</div>'.repeat(levels);
const row = (i) =>
  `<section><h2>Row ${i}</h2><div>${repeat(
    10,
    (k) => `<div class="card"><a href="#${i}-${k}"><span>Card ${i} ${k}</span></a><p>About it</p></div>`
  )}</div></section>`;

/** Each workload makes a page with `size` activatable elements. */
const workloads = new Map([
  ['one list', (size) => `<ul>${repeat(size, (i) => `<li tabindex="0">Item ${i}</li>`)}</ul>`],
  ['cards in rows', (size) => repeat(size / 10, row)],
  [
    'buttons 30 levels deep',
    (size) =>
      nested(
        30,
        repeat(size, (i) => `<button>Button ${i}</button>`)
      ),
  ],
  [
    'button each 30 levels deep',
    (size) =>
      repeat(size / 10, (i) =>
        nested(
          30,
          repeat(10, (k) => `<button>B ${i} ${k}</button>`)
        )
      ),
  ],
  ['image tiles', (size) => repeat(size, (i) => `<div><a href="#${i}"><img alt="Tile ${i}"></a></div>`)],
]);

/** Runs in the page: milliseconds of one run of each kind, and how many elements were found. */
function measure({ reference, withPlain }) {
  const activatable = new Set(document.querySelectorAll('li[tabindex], button, a[href]'));
  const wanted = [...document.getElementsByTagName('*')].map((element) => activatable.has(element));
  function floor() {
    const elements = document.getElementsByTagName('*');
    const count = elements.length;
    let seen = 0;
    for (let i = 0; i < count; i++) {
      const element = elements[i];
      const box = element.getBoundingClientRect();
      seen += box.left + box.top + box.width + box.height;
      if (wanted[i]) {
        const style = window.getComputedStyle(element);
        seen += style.display.length + style.visibility.length + element.textContent.length;
      }
    }
    return seen;
  }
  function time(run) {
    const start = performance.now();
    run();
    return performance.now() - start;
  }
  const plain = new Function(`return ${reference}`)();
  const ours = () => window.voice.peek('onRequestContentContext()');
  return {
    floor: time(floor),
    ours: time(ours),
    plain: withPlain ? time(() => JSON.stringify(plain().layout)) : null,
    found: window.voice.peek('layoutMap.length'),
  };
}

function median(numbers) {
  const sorted = [...numbers].sort((a, b) => a - b);
  return sorted[Math.floor(sorted.length / 2)];
}

async function measurePage(browser, name, size) {
  const page = await browser.open(workloads.get(name)(size));
  const runs = [];
  for (let i = -warmUps; i < rounds; i++) {
    const withPlain = size <= plainLimit && i >= 0 && i < plainRounds;
    const run = await page.evaluate(measure, { reference: String(plainElementMap), withPlain });
    if (i >= 0) runs.push(run);
  }
  await page.close();
  const middle = (kind) => median(runs.map((run) => run[kind]).filter((time) => time !== null));
  const [floor, ours, plain] = [middle('floor'), middle('ours'), middle('plain')];
  return { workload: name, items: size, found: runs[0].found, floor, plain, ours, ratio: ours / floor };
}

const browser = await startBrowser();
const results = [];
console.log('| workload | items | floor ms | plain ms | ours ms | ours / floor |');
console.log('|---|---:|---:|---:|---:|---:|');
for (const name of workloads.keys()) {
  for (const size of sizes) {
    const result = await measurePage(browser, name, size);
    if (result.found !== size) throw new Error(`${name}: found ${result.found} of ${size} elements`);
    results.push(result);
    const shown = [result.floor, result.plain, result.ours].map((time) => time?.toFixed(1) ?? '–');
    console.log(`| ${name} | ${size} | ${shown.join(' | ')} | ${result.ratio.toFixed(2)} |`);
  }
}
await browser.close();
if (options.json) writeFileSync(options.json, JSON.stringify({ rounds, results }, null, 2) + '\n');
