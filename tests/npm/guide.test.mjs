// docs/in-the-browser.md: its commands, run in the application that vite makes, print what it says.
import assert from 'node:assert/strict';
import { mkdirSync, readFileSync, symlinkSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { root, scratchFolder } from '../../testing/corvis.mjs';
import { runGuide } from '../docs/guide.mjs';
import { chromium } from './application.mjs';

/** What of `npm create vite -- --template vanilla-ts` counts, but for the tools' versions: they are this workspace's. */
const template = {
  'package.json':
    '{ "name": "my-tv", "type": "module", "scripts": { "dev": "vite", "build": "tsc && vite build" } }',
  'index.html': '<div id="app"></div><script type="module" src="/src/main.ts"></script>',
  'tsconfig.json': `{ "include": ["src"], "compilerOptions": { "target": "ES2022", "module": "ESNext",
    "lib": ["ES2022", "DOM", "DOM.Iterable"], "types": ["vite/client"], "moduleResolution": "bundler",
    "verbatimModuleSyntax": true, "moduleDetection": "force", "noEmit": true, "strict": true, "noUnusedLocals": true,
    "noUnusedParameters": true, "erasableSyntaxOnly": true, "noUncheckedSideEffectImports": true } }`,
};

test('an empty vite application gets voice and tests of it', (t) => {
  const folder = scratchFolder(t);
  symlinkSync(path.join(root, 'node_modules'), path.join(folder, 'node_modules'));
  const application = path.join(folder, 'my-tv');
  for (const name of ['src', 'e2e']) mkdirSync(path.join(application, name), { recursive: true });
  for (const [name, text] of Object.entries(template)) writeFileSync(path.join(application, name), text);
  process.env.CHROMIUM = chromium;
  // What npm says of the machine's own settings.
  process.env.npm_config_loglevel = 'silent';
  const guide = readFileSync(path.join(root, 'docs/in-the-browser.md'), 'utf8');
  for (const { line, command, expected, printed } of runGuide(guide, application)) {
    assert.equal(printed, expected, `docs/in-the-browser.md:${line}: ${command}`);
  }
});
