// Runs the benchmarks. Each figure is compared with a lower bound, both measured alternately in the same run.
//   node bench/run.mjs [--short] [--json FILE] [--plots FILE.svg] [NAME...]
// `./corvis bench` builds the programs and runs this file on a private bus.
import { writeFileSync } from 'node:fs';
import { parseArgs } from 'node:util';
import { plotPage } from './report/plots.mjs';
import { tableOf } from './report/result.mjs';
import * as answer from './rows/answer.mjs';
import * as bundleJson from './rows/bundle-json.mjs';
import * as command from './rows/command.mjs';
import * as elementMap from './rows/element-map.mjs';
import * as library from './rows/library.mjs';
import * as logging from './rows/logging.mjs';
import * as phrases from './rows/phrases.mjs';
import * as roundTrip from './rows/round-trip.mjs';
import * as script from './rows/script.mjs';
import * as simulator from './rows/simulator.mjs';
import * as size from './rows/size.mjs';
import * as testApp from './rows/test-app.mjs';

const benchmarks = new Map([
  ['round-trip', roundTrip],
  ['test-app', testApp],
  ['command', command],
  ['answer', answer],
  ['bundle-json', bundleJson],
  ['element-map', elementMap],
  ['script', script],
  ['library', library],
  ['size', size],
  ['phrases', phrases],
  ['logging', logging],
  ['simulator', simulator],
]);

const { values: options, positionals } = parseArgs({
  options: { short: { type: 'boolean' }, json: { type: 'string' }, plots: { type: 'string' } },
  allowPositionals: true,
});
const names = positionals.length > 0 ? positionals : [...benchmarks.keys()];
const unknown = names.find((name) => !benchmarks.has(name));
if (unknown) {
  console.error(`corvis: Unknown benchmark ${unknown}; use ${[...benchmarks.keys()].join(', ')}.`);
  process.exit(2);
}

const done = [];
for (const name of names) {
  console.error(`== ${name}`);
  done.push({ name, ...(await benchmarks.get(name).measure({ short: Boolean(options.short) })) });
}

console.log(tableOf(done.flatMap(({ lines }) => lines)));
for (const { name, table } of done) {
  // The full table of a benchmark whose row summarizes all workloads, if it was requested by name.
  if (table && positionals.includes(name)) console.log(`\n${table}`);
}
if (options.json) {
  const report = done.map(({ name, lines, samples }) => ({ name, lines, samples }));
  writeFileSync(options.json, JSON.stringify(report, null, 1) + '\n');
}
if (options.plots) writeFileSync(options.plots, await plotPage(done.flatMap(({ plots }) => plots)));
