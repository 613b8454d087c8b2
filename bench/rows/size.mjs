// The footprint of the library on a TV: file sizes, relocations and memory. Includes other processors if `./corvis` has
// built for them.
import { existsSync, mkdtempSync, readFileSync, rmSync, statSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { gzipSync } from 'node:zlib';
import { atMost } from '../report/result.mjs';
import { median } from '../report/statistics.mjs';
import { load } from './library.mjs';
import { build, libraryPath, ourLibrary, outputOf } from './programs.mjs';

const processors = [
  { name: 'this machine', library: ourLibrary, tool: (name) => name },
  ...['arm-linux-gnueabihf', 'aarch64-linux-gnu'].map((triplet) => ({
    name: triplet,
    library: path.join(`${build}-${triplet}`, 'lib/headers-only/libcorvis_voiceinteraction.so'),
    tool: (name) => `${triplet}-${name}`,
  })),
];

function strippedSize({ library, tool }, folder) {
  const file = path.join(folder, 'stripped.so');
  outputOf(tool('strip'), ['-o', file, library]);
  return statSync(file).size;
}

/** The number of relocations that the loader applies to the library. */
function relocations({ library }) {
  const counts = outputOf('readelf', ['--relocs', '--wide', library]).matchAll(/contains (\d+) entr/g);
  return [...counts].reduce((sum, [, count]) => sum + Number(count), 0);
}

/** The additional KiB of the median process, compared with an empty library of the same dependencies. */
function memory(samples) {
  const libraries = [ourLibrary, libraryPath('bench_empty_library')];
  const [ours, against] = libraries.map((library) =>
    median(Array.from({ length: samples }, () => load(library)[1]))
  );
  return { ours: ours / 1024, against: against / 1024 };
}

export function measure({ short }) {
  const folder = mkdtempSync(path.join(tmpdir(), 'corvis-bench-'));
  const built = processors.filter(({ library }) => existsSync(library));
  const sizes = built.map((processor) => strippedSize(processor, folder) / 1024);
  rmSync(folder, { recursive: true });
  const script = readFileSync(path.join(build, 'voiceinteraction_api.js'));
  const { ours, against } = memory(short ? 3 : 31);
  const lines = [
    ...built.map(({ name }, i) =>
      atMost(144, { what: `stripped library, ${name}`, against: 'its file', figure: sizes[i], unit: ' KiB' })
    ),
    atMost(200, {
      what: 'relocations of the library',
      against: 'its file',
      figure: relocations(built[0]),
    }),
    atMost(26, {
      what: 'script API',
      against: 'its file',
      figure: script.length / 1024,
      unit: ' KiB',
      details: `compressed ${(gzipSync(script, { level: 9 }).length / 1024).toFixed(1)} KiB`,
    }),
    atMost(256, {
      what: 'resident memory of a process with the library',
      against: 'with an empty library that links the same libraries: the difference',
      figure: ours - against,
      unit: ' KiB',
      details: `${Math.round(ours)} − ${Math.round(against)}`,
    }),
  ];
  return { lines, samples: { sizes, ours, against }, plots: [] };
}
