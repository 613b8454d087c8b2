// A folder served over HTTP: what a page of it finds, what a request from anywhere else on the machine gets.
import assert from 'node:assert/strict';
import { mkdirSync, statSync, symlinkSync, utimesSync, writeFileSync } from 'node:fs';
import { request } from 'node:http';
import path from 'node:path';
import { test } from 'node:test';
import { scratchFolder, until } from '../../testing/corvis.mjs';
import { Tv, serve, startBus } from '../../testing/tv.mjs';

const large = 'x'.repeat(600_000) + 'end';

// A folder to serve, in one that is not served.
function writeSite(t) {
  const outside = scratchFolder(t);
  const site = path.join(outside, 'site');
  const write = (name, text) => {
    mkdirSync(path.dirname(path.join(site, name)), { recursive: true });
    writeFileSync(path.join(site, name), text);
  };
  write('index.html', '<!doctype html><p>Home</p>');
  write('app.mjs', 'export default 1');
  write('0123.txt', '0123456789');
  write('Ünï cödé.webmanifest', '{}');
  write('live/index.html', '<p>Live</p>');
  write('live/a.M3U8', '#EXTM3U');
  write('empty/.keep', '');
  write('empty.vtt', '');
  write('large.bin', large);
  writeFileSync(path.join(outside, 'secret.txt'), 'SECRET');
  symlinkSync(path.join(outside, 'secret.txt'), path.join(site, 'leak.txt'));
  symlinkSync(outside, path.join(site, 'up'));
  symlinkSync('0123.txt', path.join(site, 'same.txt'));
  return site;
}

// One request as it is, whatever the path looks like. The status of one that is not even answered is its error's code.
function ask(origin, target, { method = 'GET', ...headers } = {}) {
  const { host, port } = new URL(origin);
  return new Promise((resolve) => {
    const sent = request({ host: '127.0.0.1', port, path: target, method, headers: { host, ...headers } });
    sent
      .on('error', ({ code }) => resolve({ status: code, body: '' }))
      .on('response', async (response) => {
        let body = '';
        for await (const text of response.setEncoding('utf8')) body += text;
        resolve({ status: response.statusCode, headers: response.headers, body });
      });
    sent.end();
  });
}

const startSite = async (t, options) => {
  const site = writeSite(t);
  const tv = new Tv(t, await startBus(t), site, { options });
  await tv.loaded();
  return { site, tv, origin: new URL((await tv.status()).url).origin };
};

// Each request, and what its response has.
const responses = (origin) => [
  ['/', {}, 200, 'Home', { 'content-type': 'text/html', 'cache-control': 'no-cache' }],
  ['/app.mjs?v=1', {}, 200, 'export', { 'content-type': 'text/javascript', 'content-length': '16' }],
  ['/%C3%9Cn%C3%AF%20c%C3%B6d%C3%A9.webmanifest', {}, 200, '{}', { 'content-type': /manifest\+json/ }],
  ['/live/', {}, 200, 'Live', {}],
  ['/live?a=b', {}, 301, '', { location: `${origin}/live/?a=b` }],
  ['//live', {}, 301, '', { location: `${origin}//live/` }],
  ['/live/a.M3U8', {}, 200, '#EXTM3U', { 'content-type': 'application/vnd.apple.mpegurl' }],
  ['/empty.vtt', {}, 200, /^$/, { 'content-length': '0', 'content-type': 'text/vtt' }],
  ['/large.bin', {}, 200, large, { 'content-type': 'application/octet-stream' }],
  ['/large.bin', { range: 'bytes=600000-' }, 206, /^end$/, {}],
  ['/0123.txt', { range: 'bytes=2-4' }, 206, /^234$/, { 'content-range': 'bytes 2-4/10' }],
  ['/0123.txt', { range: 'bytes=-3' }, 206, /^789$/, { 'content-length': '3' }],
  ['/0123.txt', { range: 'bytes=-99' }, 206, /^0123456789$/, {}],
  ['/0123.txt', { range: 'bytes=8-99' }, 206, /^89$/, { 'content-range': 'bytes 8-9/10' }],
  ['/0123.txt', { range: 'bytes=10-' }, 416, /^$/, { 'content-range': 'bytes */10' }],
  ['/0123.txt', { range: 'bytes=4-2' }, 200, /^0123456789$/, {}],
  ['/0123.txt', { range: 'lines=1-2' }, 200, /^0123456789$/, {}],
  ['/0123.txt', { range: 'bytes=0-1', 'if-range': '"other"' }, 200, /^0123456789$/, {}],
  ['/0123.txt', { method: 'HEAD' }, 200, /^$/, { 'content-length': '10', 'accept-ranges': 'bytes' }],
  ['/same.txt', {}, 200, '0123456789', {}],
  ['/0123.txt', { method: 'POST' }, 405, '', { allow: 'GET, HEAD' }],
  ['/0123.txt', { method: 'DELETE' }, 405, '', {}],
  ['/missing', {}, 404, 'Not Found', {}],
];

// Requests that get nothing, and the statuses that they may have.
function trespasses(origin) {
  const { host, port } = new URL(origin);
  const inside = ['/../secret.txt', '/%2e%2e/secret.txt', '/..%2fsecret.txt', '/live/..%5c..%5csecret.txt'];
  const links = ['/leak.txt', '/up/secret.txt', '/up/site/../secret.txt', '/%00', '/%', '//etc/passwd'];
  const rows = [...inside, ...links, '/empty/', '/empty', '/live/../../secret.txt'].map((target) => [
    target,
    {},
    ['ECONNRESET', 400, 404],
  ]);
  for (const other of [`127.0.0.1:${port}`, `localhost:${port}`, `${host}, ${host}`, 'evil.example', ''])
    rows.push(['/0123.txt', { host: other }, ['ECONNRESET', 400, 403]]);
  rows.push([`http://evil.example:${port}/0123.txt`, {}, [403]]);
  return rows;
}

test('a folder is served as a web server does, to those who know its name', async (t) => {
  const { site, tv, origin } = await startSite(t);
  const get = (target, headers) => ask(origin, target, headers);
  // Where a router expects the page.
  assert.equal((await tv.status()).url, `${origin}/`);
  assert.match(origin, /^http:\/\/app-[0-9a-f]{32}\.localhost:\d+$/);

  await t.test('files, parts of files, and what is no file', async () => {
    for (const [target, options, status, body, headers] of responses(origin)) {
      const response = await get(target, options);
      const row = `${target} ${JSON.stringify(options)}: ${response.status} ${response.body.slice(0, 99)}`;
      assert.equal(response.status, status, row);
      assert.ok(body instanceof RegExp ? body.test(response.body) : response.body.includes(body), row);
      for (const [name, value] of Object.entries(headers))
        assert.ok(
          value instanceof RegExp ? value.test(response.headers[name]) : response.headers[name] === value,
          `${row}: ${name}: ${response.headers[name]}`
        );
    }
  });

  await t.test('a file is sent again only when it has changed', async () => {
    const { headers } = await get('/0123.txt');
    const same = { 'if-none-match': headers.etag };
    const since = { 'if-modified-since': headers['last-modified'] };
    for (const state of [same, since]) assert.equal((await get('/0123.txt', state)).status, 304);
    // Within the same second, as build tools do.
    const file = path.join(site, '0123.txt');
    const { mtimeMs } = statSync(file);
    writeFileSync(file, '9876543210');
    utimesSync(file, new Date(), new Date(mtimeMs + 1));
    assert.equal((await get('/0123.txt', { ...same, ...since })).status, 200);
  });

  await t.test('nothing outside of the folder, and nothing to whoever has another name for it', async () => {
    for (const [target, headers, statuses] of trespasses(origin)) {
      const { status, body } = await get(target, headers);
      assert.ok(statuses.includes(status), `${target} ${JSON.stringify(headers)}: ${status} ${body}`);
      assert.doesNotMatch(body, /SECRET|root:|keep|0123/, target);
    }
    await until(() => /leak\.txt is missing\. It is a link to a file outside/.test(tv.text), tv);
  });
});

test('pages have what pages on a server have', async (t) => {
  const { tv } = await startSite(t);
  const values = await tv.evaluate(`(localStorage.a = 'kept', document.cookie = 'b=1',
    [isSecureContext, 'serviceWorker' in navigator, localStorage.a, document.cookie, typeof example])`);
  assert.deepEqual(values, [true, true, 'kept', 'b=1', 'object']);
  await tv.evaluate(`fetch('nothing.json').then(function (r) { document.title = r.status; }), 0`);
  await until(async () => (await tv.evaluate('document.title')) === '404', tv);
  await tv.evaluate(`(new Image().src = '../secret.txt')`);
  await until(
    () =>
      /Can't load secret\.txt: status 404 .*\. It is in .*, outside the served folder .*site;/.test(tv.text),
    tv
  );
});

test('--single-page: a path of the application gives its page', async (t) => {
  const { tv, origin } = await startSite(t, ['--single-page']);
  for (const [target, status, body] of [
    ['/watch/12?x=1', 200, 'Home'],
    ['/empty/', 200, 'Home'],
    ['/live/', 200, 'Live'],
    ['/assets/app.js', 404, ''],
    ['/up/x', 200, 'Home'],
  ]) {
    const response = await ask(origin, target);
    assert.deepEqual([response.status, response.body.includes(body)], [status, true], target);
  }
  await tv.evaluate(`[history.pushState(null, '', '/watch/12')]`);
  await tv.call('Reload');
  assert.deepEqual(await tv.evaluate('[location.pathname, typeof example]'), ['/watch/12', 'object']);
});

test("a server's files are loaded once for a page, and again for the next", async (t) => {
  const asked = [];
  let version = 1;
  const scripts = ['/a.js', '/b.js', '/c.js'];
  const origin = await serve(t, (request, response) => {
    asked.push(request.url);
    // Without any statement about caching, an old file counts as fresh for long.
    response.setHeader('Last-Modified', 'Mon, 01 Jan 2001 00:00:00 GMT');
    response.setHeader('Content-Type', request.url.endsWith('.js') ? 'text/javascript' : 'text/html');
    const tags = scripts.map((script) => `<script src="${script}"></script>`).join('');
    response.end(request.url.endsWith('.js') ? `var version = ${version};` : `<!doctype html>${tags}`);
  });
  const tv = new Tv(t, await startBus(t), `${origin}/`);
  await tv.loaded();
  assert.deepEqual(asked.filter((url) => scripts.includes(url)).sort(), scripts);
  version = 2;
  await tv.call('Load', `${origin}/`);
  assert.equal(await tv.evaluate('version'), 2);
});
