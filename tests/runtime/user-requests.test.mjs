// What a page asks of its user is answered at once, and the console says so.
import assert from 'node:assert/strict';
import { readdirSync } from 'node:fs';
import { test } from 'node:test';
import { scratchFolder, until, writePage } from '../../testing/corvis.mjs';
import { Tv, serve, servePages, startBus, watchBus } from '../../testing/tv.mjs';

test('nothing waits for a user', async (t) => {
  const home = scratchFolder(t);
  const files = await serve(t, (request, response) => {
    const headers = { 'content-type': request.url === '/bytes' ? 'application/x-unknown' : 'text/html' };
    if (request.url === '/attached') headers['content-disposition'] = 'attachment; filename=attached.html';
    if (request.url === '/secret') headers['www-authenticate'] = 'Basic realm="cinema"';
    response.writeHead(request.url === '/secret' ? 401 : 200, headers).end('<p>Here');
  });
  const env = { HOME: home, XDG_DOWNLOAD_DIR: home };
  const page = writePage(t, '<script>var told = []; function tell(value) { told.push(value); }</script>');
  const tv = new Tv(t, await startBus(t), page, { env });
  await tv.loaded();
  const link = (attributes) =>
    `var link = document.createElement('a'); Object.assign(link, ${JSON.stringify(attributes)}); document.body.append(link); link.click()`;
  for (const [expression, line, told] of [
    ['tell(alert("Hello"))', 'info: Dialog: Hello', [null]],
    ['tell(confirm("Sure?"))', 'info: Dialog: Sure?', [false]],
    ['tell(prompt("Name?", "x"))', 'info: Dialog: Name?', [null]],
    ['print()', 'warn: The page asked to be printed'],
    ['tell(open("/other"))', 'warn: The page asked for a window of its own for', [null]],
    [link({ href: `${files}/bytes`, target: '_blank' }), 'warn: The page asked for a window'],
    [link({ href: 'data:text/plain,x', download: 'x.txt' }), 'would be a download'],
    [link({ href: `${files}/bytes` }), `warn: ${files}/bytes would be a download`],
    [link({ href: `${files}/attached` }), `warn: ${files}/attached would be a download`],
    [`location.href = '${files}/bytes'`, `warn: ${files}/bytes would be a download`],
    [
      'navigator.geolocation.getCurrentPosition(tell, (error) => tell(error.code))',
      'warn: The page asked for a permission (geolocation), which was denied',
      [1],
    ],
    ['navigator.permissions.query({ name: "geolocation" }).then((s) => tell(s.state))', '', ['denied']],
  ]) {
    tv.text = '';
    await tv.call('Evaluate', `told = []; ${expression}; 0`);
    await until(() => tv.text.includes(line), tv);
    if (told) await until(async () => (await tv.evaluate('told')).length > 0, tv);
    if (told) assert.deepEqual(await tv.evaluate('told'), told, expression);
  }
  await assert.rejects(tv.call('Load', `${files}/secret`), /LoadFailed.*wants a password/s);
  assert.match(tv.text, /warn: The server 127\.0\.0\.1 wants a password \(cinema\)/);
  await assert.rejects(tv.call('Load', `${files}/attached`), /LoadFailed.*would be a download/s);
  assert.deepEqual(readdirSync(home), []);
});

test('what is granted is given', async (t) => {
  const options = ['--grant', 'geolocation', '--grant', 'notifications'];
  const tv = new Tv(t, await startBus(t), writePage(t, '<p>Here'), { options });
  await tv.loaded();
  const query =
    'navigator.permissions.query({ name: "geolocation" }).then(({ state }) => (window.state = state))';
  await tv.evaluate(`(${query}, 0)`);
  await until(async () => (await tv.evaluate('window.state || ""')) === 'granted', tv);
});

test('a page that closes itself has ended the application', async (t) => {
  const origin = await servePages(t, { '/': '<p>1', '/2': '<p>2' });
  const address = await startBus(t);
  const rows = [
    ['while it loads', writePage(t, '<script>window.close()</script>')],
    ['when it has loaded', writePage(t, '<p>Here'), ''],
    ['when it has gone elsewhere', `${origin}/`, `${origin}/2`],
  ];
  for (const [when, page, next] of rows) {
    const bus = await watchBus(t, address);
    const tv = new Tv(t, address, page);
    if (next !== undefined) await tv.loaded();
    if (next) await tv.call('Load', next);
    if (next !== undefined) assert.equal(await tv.evaluate('(window.close(), 1)'), 1);
    await until(() => tv.child.exitCode !== null, tv);
    assert.equal(tv.child.exitCode, 0, when);
    await until(() => bus.records.some(([name]) => name === 'Closed'), bus);
  }
});
