// Lint rules: the script API's files are ECMAScript 5 plus Map, joined into one scope; everything else is modern
// modules.
import { readFileSync } from 'node:fs';
import js from '@eslint/js';
import globals from 'globals';

const scriptFolder = new URL('src/voice-interaction/script/', import.meta.url);
const topLevelName = /^(?:var|function) (\w+)/gm;

/** What each of the script API's files may use of the others: their top-level names. */
function scriptApiNames(files = readFileSync(new URL('files.txt', scriptFolder), 'utf8').trim().split('\n')) {
  const text = files.map((name) => readFileSync(new URL(name, scriptFolder), 'utf8')).join('\n');
  return Object.fromEntries([...text.matchAll(topLevelName)].map((match) => [match[1], 'writable']));
}

export default [
  { ignores: ['build*/', 'node_modules/'] },
  js.configs.recommended,
  {
    rules: {
      eqeqeq: ['error', 'always', { null: 'ignore' }],
      'no-var': 'error',
      'prefer-const': 'error',
      'max-lines-per-function': ['error', 45],
    },
    languageOptions: { globals: { ...globals.node } },
  },
  {
    // Functions in these files also run inside pages.
    files: ['{tests,testing,bench,tools}/**/*.mjs', 'npm/**/*.js', 'kit/report/html/*.js'],
    languageOptions: { globals: { ...globals.browser } },
  },
  {
    // Bodies of functions that run inside pages.
    files: ['testing/page/*.js'],
    languageOptions: {
      sourceType: 'script',
      parserOptions: { ecmaFeatures: { globalReturn: true } },
      globals: { ...globals.browser, scriptText: 'readonly' },
    },
  },
  {
    // What TV engines run as it stands: the example's files, each of which offers one name, and the runtime's script.
    files: ['examples/**/*.js', 'runtime/page/*.js', 'kit/**/*.js'],
    ignores: ['kit/report/html/*.js'],
    languageOptions: {
      ecmaVersion: 2015,
      sourceType: 'script',
      globals: {
        ...globals.browser,
        corvis: 'readonly',
        catalogue: 'writable',
        player: 'writable',
        screens: 'writable',
        // Of the script API and kit/app/item_rules.js, for those that ask what an item is.
        ...scriptApiNames(['page-operations.js', 'element-tests.js']),
        isItem: 'writable',
        isShown: 'writable',
        hasBox: 'writable',
        framesAround: 'writable',
        ownOwnerDocument: 'writable',
        nameOf: 'writable',
      },
    },
    rules: {
      'no-var': 'off',
      'no-redeclare': ['error', { builtinGlobals: false }],
      'no-unused-vars': ['error', { vars: 'local', caughtErrors: 'none' }],
      'no-unused-expressions': 'off',
    },
  },
  {
    files: ['src/voice-interaction/script/*.js'],
    languageOptions: {
      ecmaVersion: 5,
      sourceType: 'script',
      globals: {
        ...globals.browser,
        ...scriptApiNames(),
        Map: 'readonly',
        CorviException: 'readonly',
        xwalk: 'readonly',
        extension: 'readonly',
        exports: 'writable',
      },
    },
    rules: {
      'no-console': 'error',
      'no-var': 'off',
      'no-redeclare': ['error', { builtinGlobals: false }],
      'no-unused-vars': ['error', { vars: 'local', caughtErrors: 'none' }],
    },
  },
  {
    // A function that is a scope for what is in it, not a sequence of steps.
    files: ['runtime/page/*.js', 'tests/runtime/{order,runtime}.test.mjs'],
    rules: { 'max-lines-per-function': 'off' },
  },
];
