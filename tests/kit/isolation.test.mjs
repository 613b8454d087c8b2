// What one script stores is nothing to the next; what keeps a run from beginning is said in every output.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:https';
import path from 'node:path';
import { test } from 'node:test';
import { run, scratchFolder, writePage } from '../../testing/corvis.mjs';

// Looks at what is stored when it is loaded (`before`), then stores something everywhere (`isStored`).
const page = `<script>
  const database = () => new Promise((resolve, reject) => {
    const request = indexedDB.open('d');
    request.onupgradeneeded = () => request.result.createObjectStore('s');
    request.onsuccess = () => resolve(request.result);
    request.onerror = () => reject(request.error);
  });
  const inStore = (db, mode, act) => new Promise((resolve) => {
    const request = act(db.transaction('s', mode).objectStore('s'));
    request.onsuccess = () => resolve(request.result);
  });
  async function look() {
    const db = await database();
    window.before = [
      localStorage.n || '-', sessionStorage.n || '-', document.cookie || '-',
      await inStore(db, 'readonly', (store) => store.count()),
      (await caches.keys()).length, (await navigator.serviceWorker.getRegistrations()).length].join(' ');
    localStorage.n = 'local';
    sessionStorage.n = 'session';
    document.cookie = 'n=cookie; max-age=999';
    await inStore(db, 'readwrite', (store) => store.put(1, 1));
    await (await caches.open('c')).put('/x', new Response('x'));
    await navigator.serviceWorker.register('worker.js');
    window.isStored = true;
  }
  look();
  corvis.voiceinteraction.listen();
</script>`;
const finds = (stored) => `value "window.before" is "${stored}"\nvalue "window.isStored" is "true"\n`;
const nothing = '- - - 0 0 0';
const all = 'local session n=cookie 1 1 1';

test('each script begins with nothing stored, unless a profile keeps it', async (t) => {
  const folder = writePage(t, page);
  const profile = path.join(scratchFolder(t), 'deep/profile');
  writeFileSync(path.join(folder, 'worker.js'), '');
  const script = (name, text) => writeFileSync(path.join(folder, name), text);
  script('fresh.voice', finds(nothing) + `reload\n${finds(all)}clear storage\nreload\n${finds(nothing)}`);
  script('also.voice', finds(nothing));
  // The engine keeps no service workers from run to run, and sessions end.
  script('kept.voice', finds('local - n=cookie 1 1 0'));
  script('same.voice', finds(all));
  for (const args of [
    [folder, 'fresh.voice', 'also.voice'],
    ['--profile', profile, folder, 'also.voice', 'same.voice'],
    ['--profile', profile, folder, 'kept.voice'],
  ]) {
    const { code, text } = await run(['test-app', ...args], { cwd: folder });
    assert.equal(code, 0, text);
  }
});

// A server with a certificate that nobody trusts.
async function serveUntrusted(t, html) {
  const folder = scratchFolder(t);
  const [key, cert] = ['key', 'cert'].map((name) => path.join(folder, name));
  const args = ['req', '-x509', '-newkey', 'rsa:2048', '-nodes', '-keyout', key, '-out', cert];
  execFileSync('openssl', [...args, '-days', '2', '-subj', '/CN=nobody'], { stdio: 'ignore' });
  const files = { key: readFileSync(key), cert: readFileSync(cert) };
  const server = createServer(files, (request, response) => {
    response.setHeader('content-type', 'text/html').end(html.replace('AGENT', request.headers['user-agent']));
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  t.after(() => server.close());
  return `https://127.0.0.1:${server.address().port}/`;
}

test('why a run can not begin is in every output', async (t) => {
  const folder = scratchFolder(t);
  const report = path.join(folder, 'report.xml');
  const script = path.join(folder, 'a.voice');
  writeFileSync(script, 'say play\n');
  for (const [page, reason] of [
    ['http://127.0.0.1:45999/', 'Connection refused'],
    ['http://no.such.host.invalid/', 'Error resolving'],
    [await serveUntrusted(t, ''), '--ignore-tls-errors'],
    [path.join(folder, 'missing'), 'does not exist'],
  ]) {
    const outputs = [];
    for (const form of ['--tap', '--json']) {
      const { code, text } = await run(['test-app', form, '--junit', report, page, script]);
      assert.equal(code, 3, text);
      outputs.push(text, readFileSync(report, 'utf8'));
    }
    assert.match(outputs[0], /^Bail out! /m);
    assert.match(outputs[2], /"event":"abort".*\n.*"event":"end","status":3/);
    for (const output of outputs) assert.ok(output.includes(reason), `${page}: ${reason}:\n${output}`);
  }
});

test('a server that nobody trusts is taken on request, and gets the user agent that is asked for', async (t) => {
  const server = await serveUntrusted(t, 'AGENT<script>corvis.voiceinteraction.listen();</script>');
  const script = path.join(scratchFolder(t), 'a.voice');
  writeFileSync(script, 'show "body" contains "MyTV/1.0"\nvalue "navigator.userAgent" is "MyTV/1.0"\n');
  const options = ['--ignore-tls-errors', '--user-agent', 'MyTV/1.0'];
  const { code, text } = await run(['test-app', ...options, server, script]);
  assert.equal(code, 0, text);
});
