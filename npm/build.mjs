// Assembles the package from its sources and the build's outputs: `node npm/build.mjs WASM SCRIPT-API LANGUAGES
// FOLDER`.
import { execFileSync } from 'node:child_process';
import { cpSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { basename, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { textOfRank } from './simulator/packing.js';

const source = fileURLToPath(new URL('.', import.meta.url));
const runtimePages = ['console', 'runtime'].map((name) => join(source, `../runtime/page/${name}.js`));
const [wasm, scriptApi, languages, folder] = process.argv.slice(2).map((path) => resolve(path));
const generated = `${folder}-generated`;

/** The globals of a page that the script API and the runtime's script use. */
const pageNames = ['document', 'XPathResult', 'MouseEvent'];

function modulePart() {
  const bytes = readFileSync(wasm);
  const counts = new Array(256).fill(0);
  for (const byte of bytes) counts[byte]++;
  const order = [...counts.keys()].sort((a, b) => counts[b] - counts[a]);
  const texts = new Array(256);
  order.forEach((byte, rank) => (texts[byte] = textOfRank(rank)));
  const text = Array.from(bytes, (byte) => texts[byte]).join('');
  return `// simulator.wasm; simulator/packing.js reads it.
export const size = ${bytes.length};
export const order = ${JSON.stringify(order)};
export const text = "${text}";
`;
}

function pagePart() {
  const [reports, runtime] = runtimePages.map((page) =>
    readFileSync(page, 'utf8').trimEnd().replace(/;$/, '')
  );
  const api = readFileSync(scriptApi, 'utf8').trim();
  return `// The runtime's scripts and the script API, as they are on a TV.
export const consoleIn = (window, console) =>
${reports};
export const runtimeIn = (window) =>
${runtime};
export function scriptApiIn(window, CorviException, xwalk, extension, console, String) {
const { ${pageNames.join(', ')} } = window;
var exports = {};
${api}
return exports;
}
`;
}

function writeLanguages() {
  mkdirSync(join(folder, 'languages'));
  for (const file of readdirSync(languages)) {
    const language = {
      tag: basename(file, '.phrases'),
      phrases: readFileSync(join(languages, file), 'utf8'),
    };
    const output = join(folder, `languages/${language.tag}`);
    writeFileSync(`${output}.js`, `export default ${JSON.stringify(language)};\n`);
    cpSync(join(source, 'languages/language.d.ts'), `${output}.d.ts`);
  }
}

function bundle(entry, output, ...options) {
  const aliases = ['module', 'page'].map((name) => `--alias:#${name}=${join(generated, `${name}.js`)}`);
  const common = [
    '--bundle',
    '--target=es2022',
    '--charset=utf8',
    '--log-level=warning',
    '--minify',
    ...aliases,
  ];
  execFileSync('esbuild', [join(source, entry), `--outfile=${join(folder, output)}`, ...common, ...options]);
}

rmSync(folder, { recursive: true, force: true });
mkdirSync(generated, { recursive: true });
writeFileSync(join(generated, 'module.js'), modulePart());
writeFileSync(join(generated, 'page.js'), pagePart());
bundle('simulator/index.js', 'simulator/index.js', '--format=esm');
// Defines the global even if a test tool evaluates the file inside a function.
const global = '--footer:js=globalThis.corvisSimulator = corvisSimulator;';
bundle('simulator/index.js', 'simulator/script.js', '--format=iife', '--global-name=corvisSimulator', global);
bundle('component/index.js', 'component/index.js', '--format=esm');
bundle('component/index.js', 'component/script.js', '--format=iife');
writeLanguages();
const copied = [
  'package.json',
  'README.md',
  'index.d.ts',
  'simulator/index.d.ts',
  'component/index.d.ts',
  'playwright',
  'kit',
];
for (const file of copied) {
  cpSync(join(source, file), join(folder, file), { recursive: true });
}
