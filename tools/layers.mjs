// Checks the layers: which folders a file may include or import. Prints each line that breaks a rule.
import { execFileSync } from 'node:child_process';
import { existsSync, readFileSync } from 'node:fs';
import path from 'node:path';

// What the files of a folder may use of the tree. The most particular folder decides.
const product = ['src', 'platform', 'runtime', 'kit'];
const layers = {
  src: ['platform/include'],
  platform: [],
  runtime: ['platform/include', 'platform/desktop/include'],
  kit: ['platform/include', 'platform/desktop/include', 'runtime/include'],
  'kit/language': ['kit/base'],
  npm: ['platform', 'src', 'kit'],
  testing: product,
  tests: [...product, 'npm', 'testing', 'tools'],
  fuzz: [...product, 'testing'],
  bench: [...product, 'testing'],
};

// What the files of a folder may use beyond the tree, where that is limited.
const standardHeader = /^[a-z_0-9]+$/;
const systemHeaders = {
  src: [standardHeader, /^(assert|unistd|picojson)\.h$/],
  'kit/language': [standardHeader],
  // Programs of the build.
  'kit/language/generate': [/./],
};

// Folders that know nothing of a word, but for the headers' examples.
const unknownWords = { platform: /voice(?!interaction")/i, runtime: /voice/i };

// Where a quoted name may be; the build generates what is in none of them.
const roots = [
  '.',
  'src',
  'platform',
  'platform/include',
  'platform/desktop/include',
  'runtime',
  'runtime/include',
];
roots.push('kit', 'tests', 'bench');

const isBelow = (file, folder) => file.startsWith(`${folder}/`);
const folderOf = (file, table) =>
  Object.keys(table)
    .filter((folder) => isBelow(file, folder))
    .sort((a, b) => b.length - a.length)[0];

/** The tree's file that `name` means in `file`. */
function resolve(file, name) {
  const candidates = [path.dirname(file), ...roots].map((root) => path.normalize(path.join(root, name)));
  return candidates.find((candidate) => existsSync(candidate));
}

/** What is wrong with a line of `file`, if anything. */
function problemOf(file, line) {
  const layer = folderOf(file, layers);
  const used = /^#include "(.+)"|^(?:import|export) .*from '(\.\.?\/.+)'|^} from '(\.\.?\/.+)'/.exec(line);
  const target = used && resolve(file, used[1] ?? used[2] ?? used[3]);
  const isAllowed = !target || [layer, ...layers[layer]].some((folder) => isBelow(target, folder));
  if (!isAllowed) return `${layer} may not use ${target}`;

  const [, system] = /^#include <(.+)>/.exec(line) ?? [];
  const allowed = systemHeaders[folderOf(file, systemHeaders)];
  if (system && allowed && !allowed.some((pattern) => pattern.test(system)))
    return `<${system}> is not for ${layer}`;

  if (unknownWords[layer]?.test(line)) return `${layer} knows nothing of voice`;
  return undefined;
}

const files = execFileSync('git', ['ls-files', '*.cc', '*.h', '*.mjs', '*.js'], { encoding: 'utf8' })
  .trim()
  .split('\n')
  .filter((file) => folderOf(file, layers) && existsSync(file));
for (const file of files) {
  readFileSync(file, 'utf8')
    .split('\n')
    .forEach((line, i) => {
      const problem = problemOf(file, line);
      if (!problem) return;
      console.log(`${file}:${i + 1}: ${problem}`);
      process.exitCode = 1;
    });
}
