// What reaches the author of a page that goes wrong: the console's lines, and errors with their places in the files that
// were written.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { run, scratchFolder } from '../../testing/corvis.mjs';

// Runs a script against a folder of these files; gives what was printed.
async function runPage(t, files, script, options = []) {
  const folder = scratchFolder(t);
  for (const [name, text] of Object.entries(files)) writeFileSync(path.join(folder, name), text);
  writeFileSync(path.join(folder, 'a.voice'), script);
  const { text } = await run(['test-app', '--timeout', '3000', ...options, folder, 'a.voice'], {
    cwd: folder,
  });
  return text.replace(/^ALSA .*\n|^AL lib: .*\n/gm, '');
}

const head = '<!doctype html><meta charset="utf-8">';
const listen =
  'corvis.voiceinteraction.setCallback({ onplay: function () {} }); corvis.voiceinteraction.listen();';

// Calls of the console, and the lines that they write.
const rows = [
  [
    'log("%s is %d %i %f %o %% %c!", { x: 1 }, "42", 3.7, "2.5", [1], "color: red", "rest")',
    'log: {"x":1} is 42 3 2.5 [1] % ! rest',
  ],
  ['log("%s", "50% of %s")', 'log: 50% of %s'],
  ['info({ a: { b: { c: { d: { e: 1 } } } } })', 'info: {"a":{"b":{"c":{"d":{…}}}}}'],
  [
    'warn(new Map([[1, { a: 2 }]]), new Set("ab"), 10n, Symbol("q"))',
    'warn: Map(1) {1 => {"a":2}} Set(2) {"a","b"} 10n Symbol(q)',
  ],
  ['debug(loop, new Foo())', 'debug: {"self":(circular)} Foo {"a":undefined}'],
  ['log({ get a() { throw 1; } }, document.querySelector("b"))', 'log: {"a":(getter)} <b id="i" class="c">'],
  [
    'log({ toJSON: function () { throw 1; } }, new Date(0))',
    'log: {"toJSON":function toJSON()} 1970-01-01T00:00:00.000Z',
  ],
  ['log(new Array(105).fill(0))', `log: [${'0,'.repeat(100)}… 5 more]`],
  ['dir(["a"])', 'log: ["a"]'],
  ['table([{ a: 1, b: "x" }, { a: 22 }])', 'log: (index)  a   b\n    0        1   x\n    1        22'],
  ['assert(true), console.assert(false, "as %s", "sert")', 'error: Assertion failed: as sert'],
  [
    'group("g"), console.log("a\\nb"), console.groupEnd(), console.log("c")',
    'log: g\n[page] log:   a\n      b\n[page] log: c',
  ],
  [
    'count(), console.count(), console.countReset(), console.count("x")',
    'log: default: 1\n[page] log: default: 2\n[page] log: x: 1',
  ],
  ['timeEnd("t")', 'log: There is no timer "t".'],
  ['error(new TypeError("boom"))', 'error: TypeError: boom (index.html:2:'],
  ['trace("here")', 'log: Trace: here\n        at global code (index.html:2:'],
  ['log(hostile)', 'log: (no text)'],
];

test('every method of the console writes what it says', async (t) => {
  const calls = rows.map(([call]) => `console.${call};`).join('');
  const html = `${head}<b id="i" class="c"></b><script>var loop = {}; loop.self = loop; function Foo() { this.a = undefined; }
    var hostile = new Proxy({}, { ownKeys: function () { console.log('again'); throw 1; } });</script><script>${calls}${listen}</script>`;
  const text = await runPage(t, { 'index.html': html }, 'say play\n', ['--console', 'page']);
  let from = 0;
  for (const [call, line] of rows) {
    const at = text.indexOf(`[page] ${line}`, from);
    assert.ok(at >= 0, `${call}: "${line}" is missing after:\n${text.slice(0, from)}\nin:\n${text}`);
    from = at + line.length;
  }
  assert.doesNotMatch(text, /again/);
});

const source = `const nothing: any = null;
declare const corvis: any;
function inner(): number {
  return nothing.foo;
}
const outer = () => inner();
setTimeout(() => outer(), 0);
setTimeout(() => { throw { code: 7 }; }, 0);
Promise.reject(new Error('rejected', { cause: new Error('why') }));
corvis.voiceinteraction.setCallback({
  onplay: () => outer(),
});
corvis.voiceinteraction.listen();
`;

function compiled(t, kind) {
  const folder = scratchFolder(t);
  writeFileSync(path.join(folder, 'app.ts'), source);
  execFileSync(
    'esbuild',
    ['app.ts', '--minify', `--sourcemap${kind}`, '--outfile=app.js', '--log-level=error'],
    { cwd: folder }
  );
  return folder;
}

for (const kind of ['', '=inline']) {
  test(`errors have their places in the written file, by a source map (${kind || 'beside the file'})`, async (t) => {
    const folder = compiled(t, kind);
    // The map is no concern of the page's policy.
    const policy = `<meta http-equiv="Content-Security-Policy" content="default-src 'self'; connect-src 'none'">`;
    writeFileSync(path.join(folder, 'index.html'), `${head}${policy}<script src="app.js"></script>`);
    writeFileSync(path.join(folder, 'a.voice'), 'say play\nexpect success\n');
    const { text } = await run(['test-app', '--timeout', '3000', folder, 'a.voice'], { cwd: folder });
    const stack = String.raw`\n {8}at \w+ \(app\.ts:4:\d+\)\n {8}at \w+ \(app\.ts:6:\d+\)\n {8}at `;
    const error = String.raw`TypeError: null is not an object[^\n]* \(app\.ts:4:\d+\)`;
    assert.match(text, new RegExp(String.raw`^\[page\] uncaught: ${error}${stack}app\.ts:7:\d+$`, 'm'));
    assert.match(
      text,
      new RegExp(String.raw`^\[page\] uncaught: ${error}${stack}\w+ \(app\.ts:11:\d+\)$`, 'm')
    );
    assert.match(text, /^\[page\] uncaught: \{"code":7\} \(app\.ts:8:\d+\)$/m);
    assert.match(
      text,
      /uncaught: Unhandled rejection: Error: rejected \(app\.ts:9:\d+\)\n {4}caused by Error: why \(app\.ts:9:/
    );
    assert.match(text, /^ {4}- "uncaught: TypeError: [^\n]*\\n {4}at \w+ \(app\.ts:4:\d+\)\\n/m);
  });
}
