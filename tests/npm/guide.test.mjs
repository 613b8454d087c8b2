// docs/in-the-browser.md: its commands, run in the application that vite makes, print what it says.
import assert from 'node:assert/strict';
import { mkdirSync, readFileSync, symlinkSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { root, scratchFolder } from '../../testing/corvis.mjs';
import { runGuide } from '../docs/guide.mjs';
import { chromium } from './application.mjs';

/** What `npm create vite -- --template vanilla-ts` makes, but for the tools' versions: they are this workspace's. */
const template = {
  'package.json': JSON.stringify({
    name: 'my-tv',
    private: true,
    version: '0.0.0',
    type: 'module',
    scripts: { dev: 'vite', build: 'tsc && vite build', preview: 'vite preview' },
  }),
  'index.html': `<!doctype html>
<html lang="en">
  <head><meta charset="UTF-8" /><title>my-tv</title></head>
  <body><div id="app"></div><script type="module" src="/src/main.ts"></script></body>
</html>
`,
  'tsconfig.json': JSON.stringify({
    compilerOptions: {
      target: 'ES2022',
      useDefineForClassFields: true,
      module: 'ESNext',
      lib: ['ES2022', 'DOM', 'DOM.Iterable'],
      types: ['vite/client'],
      moduleResolution: 'bundler',
      allowImportingTsExtensions: true,
      verbatimModuleSyntax: true,
      moduleDetection: 'force',
      noEmit: true,
      strict: true,
      noUnusedLocals: true,
      noUnusedParameters: true,
      erasableSyntaxOnly: true,
      noFallthroughCasesInSwitch: true,
      noUncheckedSideEffectImports: true,
    },
    include: ['src'],
  }),
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
