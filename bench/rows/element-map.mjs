// The time that the script takes to map a page, compared with the floor (only visiting the same elements and reading
// box, style and text), with two packages that find elements and their names, and with the plainest implementation.
import path from 'node:path';
import { plainElementMap, startBrowser } from '../../testing/browser.mjs';
import { atLeast, atMost, ratioAtMost } from '../report/result.mjs';
import { median, threeDigits, timeText } from '../report/statistics.mjs';
import { workloads } from '../script/workloads.mjs';
import { outputOf, root } from './programs.mjs';

// Rounds that run first and are not counted, so that the first sample does not include compilation.
const warmUps = 3;
// The plain implementation takes minutes for one round on the largest pages.
const plainLimit = 5000;

/** The implementation with packages, bundled as one script. */
const packagedScript = () =>
  outputOf('esbuild', [
    '--bundle',
    '--format=iife',
    path.join(root, 'bench/script/packaged-element-map.mjs'),
  ]);

/** Runs in the page: measures one run of each kind in milliseconds, and counts the elements found. */
function measureOnce({ plainMap, withPackages, withPlain }) {
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
  const found = new Set();
  function time(run) {
    const start = performance.now();
    const count = run();
    const milliseconds = performance.now() - start;
    if (count !== undefined) found.add(count);
    return milliseconds;
  }
  const plain = new Function(`return ${plainMap}`)();
  const times = { floor: time(() => void floor()) };
  times.ours = time(() => void window.voice.peek('onRequestContentContext()'));
  found.add(window.voice.peek('layoutMap.length'));
  if (withPackages) times.packages = time(() => window.packagedElementMap().length);
  if (withPlain) times.plain = time(() => plain().layout.length);
  return { times, found: [...found] };
}

async function measurePage(browser, name, size, { rounds, packages }) {
  const page = await browser.open(workloads.get(name)(size));
  await page.evaluate(packages);
  const samples = { floor: [], ours: [], packages: [], plain: [] };
  for (let i = -warmUps; i < rounds; i++) {
    const { times, found } = await page.evaluate(measureOnce, {
      plainMap: plainElementMap,
      withPackages: i >= 0 && i < 5,
      withPlain: size <= plainLimit && i >= 0 && i < 3,
    });
    if (found.some((count) => count !== size)) throw new Error(`${name}: found ${found} of ${size} elements`);
    if (i < 0) continue;
    for (const [kind, time] of Object.entries(times)) samples[kind].push(time * 1000);
  }
  await page.close();
  return { name, size, samples };
}

const ratioTo = (kind) => (page) => median(page.samples[kind]) / median(page.samples.ours);

/** The page for which `figureOf` is largest. */
const largestBy = (figureOf, pages) => pages.reduce((a, b) => (figureOf(b) > figureOf(a) ? b : a));
const placeOf = ({ name, size }) => `${name}, ${size.toLocaleString('en')} items`;

function lines(pages, sizes) {
  const most = pages.filter(({ size }) => size === sizes.at(-1));
  const worst = largestBy((page) => 1 / ratioTo('floor')(page), most);
  const closest = largestBy((page) => -ratioTo('packages')(page), pages);
  const growthOf = (page, kind) => {
    const small = pages.find(({ name, size }) => name === page.name && size === sizes[0]);
    return median(page.samples[kind]) / median(small.samples[kind]) / (page.size / small.size);
  };
  const steepest = largestBy((page) => growthOf(page, 'ours'), most);
  const what = 'element map';
  return [
    ratioAtMost(
      1.3,
      { ours: worst.samples.ours, against: worst.samples.floor },
      {
        what: `${what}, worst workload (${placeOf(worst)})`,
        against: 'visiting the elements and reading box, style and text',
      }
    ),
    atLeast(1.5, {
      what: `${what}: times faster than packages, closest workload (${placeOf(closest)})`,
      against: '`tabbable` with `dom-accessibility-api`',
      figure: ratioTo('packages')(closest),
      details: ['ours', 'packages'].map((kind) => timeText(median(closest.samples[kind]))).join(' : '),
    }),
    atMost(1.5, {
      what: `${what}: time for each item, steepest workload (${steepest.name})`,
      against: `of ${sizes.at(-1).toLocaleString('en')} items, to that of ${sizes[0].toLocaleString('en')} (linear is 1)`,
      figure: growthOf(steepest, 'ours'),
      details: `that of visiting the elements is ${threeDigits(growthOf(steepest, 'floor'))}`,
    }),
  ];
}

/** Every workload and size, with the plainest implementation and the packages where they were measured. */
function tableOf(pages) {
  const kinds = ['floor', 'plain', 'packages', 'ours'];
  const rows = pages.map((page) => {
    const times = kinds.map((kind) =>
      page.samples[kind].length > 0 ? timeText(median(page.samples[kind])) : ''
    );
    return [page.name, page.size, ...times, threeDigits(1 / ratioTo('floor')(page))];
  });
  const heading = ['workload', 'items', 'floor', 'plainest', 'packages', 'ours', 'ours : floor'];
  return [heading, heading.map(() => '---'), ...rows].map((cells) => `| ${cells.join(' | ')} |`).join('\n');
}

function plotOf(name, pages) {
  const labels = {
    ours: 'the script',
    floor: 'reading box, style, text',
    packages: 'packages',
    plain: 'plainest',
  };
  const points = (kind) =>
    pages
      .filter((page) => page.name === name && page.samples[kind].length > 0)
      .map(({ size, samples }) => [size, median(samples[kind]) / 1000]);
  const series = Object.fromEntries(Object.entries(labels).map(([kind, label]) => [label, points(kind)]));
  return { kind: 'scaling', title: `Element map: ${name}`, unit: 'ms', sizes: 'items', series };
}

export async function measure({ short }) {
  const sizes = short ? [50, 100] : [1000, 5000, 20000];
  const settings = { rounds: short ? 2 : 15, packages: packagedScript() };
  const browser = await startBrowser();
  const pages = [];
  try {
    for (const name of workloads.keys()) {
      for (const size of sizes) pages.push(await measurePage(browser, name, size, settings));
    }
  } finally {
    await browser.close();
  }
  const plots = ['one list', 'cards in rows'].map((name) => plotOf(name, pages));
  return { lines: lines(pages, sizes), samples: pages, plots, table: tableOf(pages) };
}
