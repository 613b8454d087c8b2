// What reaches the author of a page that goes wrong: the console's lines, and errors with their places in the files that
// were written.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { rowsOf, run, scratchFolder, testApp } from '../../testing/corvis.mjs';
import { servePages } from '../../testing/tv.mjs';

// What is printed when a script runs against a folder of these files.
async function runPage(t, files, script, options = []) {
  const { text } = await testApp(t, files, script, ['--timeout', '3000', ...options]);
  return text.replace(/^ALSA .*\n|^AL lib: .*\n/gm, '');
}

const head = '<!doctype html><meta charset="utf-8">';
const listen =
  'corvis.voiceinteraction.setCallback({ onplay: function () {} }); corvis.voiceinteraction.listen();';

// Calls of the console, and the lines that they write.
const rows = rowsOf(String.raw`
  log("%s is %d %i %f %o %% %c!", { x: 1 }, "42", 3.7, "2.5", [1], "color: red", "rest") → log: {"x":1} is 42 3 2.5 [1] % ! rest
  log("%s", "50% of %s") → log: 50% of %s
  info({ a: { b: { c: { d: { e: 1 } } } } }) → info: {"a":{"b":{"c":{"d":{…}}}}}
  warn(new Map([[1, { a: 2 }]]), new Set("ab"), 10n, Symbol("q")) → warn: Map(1) {1 => {"a":2}} Set(2) {"a","b"} 10n Symbol(q)
  debug(loop, new Foo()) → debug: {"self":(circular)} Foo {"a":undefined}
  log({ get a() { throw 1; } }, document.querySelector("b")) → log: {"a":(getter)} <b id="i" class="c">
  log({ toJSON: function () { throw 1; } }, new Date(0)) → log: {"toJSON":function toJSON()} 1970-01-01T00:00:00.000Z
  log(new Array(105).fill(0)) → log: [${'0,'.repeat(100)}… 5 more]
  dir(["a"]) → log: ["a"]
  table([{ a: 1, b: "x" }, { a: 22 }]) → log: (index)  a   b¶    0        1   x¶    1        22
  assert(true), console.assert(false, "as %s", "sert") → error: Assertion failed: as sert
  group("g"), console.log("a\nb"), console.groupEnd(), console.log("c") → log: g¶[page] log:   a¶      b¶[page] log: c
  count(), console.count(), console.countReset(), console.count("x") → log: default: 1¶[page] log: default: 2¶[page] log: x: 1
  timeEnd("t") → log: There is no timer "t".
  error(new TypeError("boom")) → error: TypeError: boom (index.html:2:
  trace("here") → log: Trace: here¶        at global code (index.html:2:
  log(hostile) → log: (no text)`);

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

for (const kind of ['', '=inline']) {
  test(`errors have their places in the written file, by a source map (${kind || 'beside the file'})`, async (t) => {
    const folder = scratchFolder(t);
    const args = ['app.ts', '--minify', `--sourcemap${kind}`, '--outfile=app.js', '--log-level=error'];
    writeFileSync(path.join(folder, 'app.ts'), source);
    execFileSync('esbuild', args, { cwd: folder });
    // The map is no concern of the page's policy.
    const policy = `<meta http-equiv="Content-Security-Policy" content="default-src 'self'; connect-src 'none'">`;
    writeFileSync(path.join(folder, 'index.html'), `${head}${policy}<script src="app.js"></script>`);
    writeFileSync(path.join(folder, 'a.voice'), 'say play\nexpect success\n');
    const { text } = await run(['test-app', '--timeout', '3000', folder, 'a.voice'], { cwd: folder });
    const stack = String.raw`\n {8}at \w+ \(app\.ts:4:\d+\)\n {8}at \w+ \(app\.ts:6:\d+\)\n {8}at `;
    const error = String.raw`TypeError: null is not an object[^\n]* \(app\.ts:4:\d+\)`;
    for (const last of [String.raw`app\.ts:7:\d+`, String.raw`\w+ \(app\.ts:11:\d+\)`])
      assert.match(text, new RegExp(String.raw`^\[page\] uncaught: ${error}${stack}${last}$`, 'm'));
    assert.match(text, /^\[page\] uncaught: \{"code":7\} \(app\.ts:8:\d+\)$/m);
    const why =
      /Unhandled rejection: Error: rejected \(app\.ts:9:\d+\)\n {4}caused by Error: why \(app\.ts:9:/;
    assert.match(text, why);
    assert.match(text, /^ {4}- "uncaught: TypeError: [^\n]*\\n {4}at \w+ \(app\.ts:4:\d+\)\\n/m);
  });
}

// What a page asks for, and what is reported of it. OTHER is a server of another origin.
const requests = rowsOf(String.raw`
  <link rel="stylesheet" href="no.css"> → no.css: status 404 .*; asked for by <link href="no.css"> in index.html
  <img src="no.png"> → no.png: status 404 .*; asked for by <img src="no.png"> in index.html
  <script src="no.js"></script> → no.js: status 404 .*; asked for by <script src="no.js"> in index.html
  <script type="module" src="no.mjs"></script> → no.mjs: status 404 .*; asked for by <script src="no.mjs"> in index.html
  <video src="no.mp4"></video> → no.mp4: it is missing, or in no format that can be played here; asked for by <video
  <img src="broken.png"> → broken.png: the engine refuses it, or its content can't be used; asked for by <img
  <link rel="stylesheet" href="style.css"><i>font</i> → no.woff2: status 404 .*; asked for by a style sheet, style.css
  <p style="background: url(back.png)"> → back.png: status 404 .*; asked for by <p> in index.html
  <img src="OTHER/policy.png"> → OTHER/policy.png: blocked by the content-security policy, img-src; asked for by <img
  <script>fetch("none").then(String)</script> → none: status 404 .*; asked for by index.html:\d+:\d+
  <script>fetch("OTHER/cors"); 1</script> → OTHER/cors: Origin .* is not allowed by Access-Control-Allow-Origin.*; asked for by index.html:
  <script>fetch("http://127.0.0.1:1/").catch(String)</script> → http://127.0.0.1:1/: the engine refuses it, .*; asked for by index.html:
  <script>x = new XMLHttpRequest(); x.open("GET", "xhr"); x.send()</script> → xhr: status 404 .*; asked for by index.html:
  <script>new EventSource("none.events")</script> → none.events: its server does not respond with an event stream; asked for by index.html:`);

test('what does not load is one line each, and nothing changes for the page', async (t) => {
  const other = await servePages(t, { '/cors': 'x' });
  const policy = `<meta http-equiv="Content-Security-Policy" content="img-src 'self'">`;
  const page = requests.map(([html]) => `${html.replaceAll('OTHER', other)}\n`).join('');
  const probe = `<script>var unhandled = 0; addEventListener('unhandledrejection', function () { unhandled++; });
    var stopped = new AbortController(); fetch('style.css', { signal: stopped.signal }).catch(String); stopped.abort();</script>`;
  const files = {
    'index.html': `${head}${policy}${probe}${page}<script>${listen}</script>`,
    'style.css': '@font-face { font-family: q; src: url(no.woff2); } i { font-family: q; }',
    'broken.png': 'no picture',
  };
  const script = 'value "unhandled" is 1\nwait 500 ms\nshow "#nothing" is "there"\n';
  const text = await runPage(t, files, script, ['--timeout', '1000']);
  const lines = text.split('\n').filter((line) => line.startsWith("[page] error: Can't load "));
  for (const [html, expected] of requests) {
    const line = new RegExp(`^\\[page\\] error: Can't load ${expected.replaceAll('OTHER', other)}`);
    assert.equal(lines.filter((candidate) => line.test(candidate)).length, 1, `${html}:\n${text}`);
  }
  assert.equal(lines.length, requests.length, text);
  assert.match(text, /^ok 1 /m);
  assert.match(text, /^ {4}- "error: Can't load /m, 'in the block of a failure');
});
