// The web runtime with an extension that it knows nothing of: the control interface, pages and their instances, who
// gets the API, and every way for a run to end.
import assert from 'node:assert/strict';
import { readdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { build, processesWith, scratchFolder, until, writePage } from '../../testing/corvis.mjs';
import { Tv, servePages, startBus } from '../../testing/tv.mjs';

test('the control interface and the extension serve one page after another', async (t) => {
  const bus = await startBus(t);
  const tv = new Tv(t, bus, writePage(t, '<body style="height:300px;background:linear-gradient(red,blue)">'));
  await tv.loaded();

  await t.test('expressions', async () => {
    assert.equal(await tv.evaluate('"é 🎬 \\"q\\" \\u2028".length'), 10);
    assert.equal(await tv.evaluate('"x".repeat(1 << 20).length'), 1 << 20);
    assert.equal(await tv.call('Evaluate', 'undefined'), "('null',)");
    assert.equal(await tv.call('Evaluate', 'var o = {}; o.o = o; o'), "('null',)");
    await assert.rejects(tv.call('Evaluate', 'nowhere.at.all'), /ScriptError.*nowhere/s);
  });

  await t.test('a picture of the page', async () => {
    const bytes = await tv.call('Screenshot');
    assert.match(bytes, /0x89, 0x50, 0x4e, 0x47/);
    assert.match(bytes, /0x00, 0x00, 0x02, 0x80, 0x00, 0x00, 0x01, 0x68/, '640x360');
    assert.ok(new Set(bytes.split(', ')).size > 100, 'more than one colour');
  });

  await t.test('calls and posted messages, whatever they hold', async () => {
    assert.equal(await tv.evaluate('example.echo.call("a \\ud83c\\udfac b")'), 'a 🎬 b');
    assert.equal(await tv.evaluate('example.echo.call("x".repeat(1 << 24)).length'), 1 << 24);
    assert.equal(await tv.evaluate('example.echo.call("broken")'), 'a\ufffd\ufffd\ufffdz');
    await tv.evaluate('[1, 2, 3].map(function (i) { example.echo.call("post:" + i); })');
    await until(async () => (await tv.evaluate('example.echo.heard')).length >= 4, tv);
    assert.deepEqual(await tv.evaluate('example.echo.heard'), ['early', '1', '2', '3']);
  });

  await t.test('each page has its instance, after the last page has lost its own', async () => {
    const foreign = await servePages(t, { '/': '<p>foreign' });
    const home = (await tv.status()).url;
    await tv.call('Reload');
    await tv.call('Load', 'about:blank');
    assert.equal(await tv.evaluate('typeof example'), 'undefined');
    await tv.call('Load', home);
    await tv.call('Load', `${foreign}/`);
    assert.equal(await tv.evaluate('typeof example'), 'undefined');
    await tv.call('Load', home);
    assert.equal(await tv.evaluate('typeof example'), 'object');
    await until(() => tv.text.match(/created/g).length === 4, tv);
    const alive = new Set();
    for (const [, event, instance] of tv.text.matchAll(/^(created|destroyed) (\d+ in \d+)$/gm)) {
      if (event === 'created') assert.equal(alive.size, 0, tv.text);
      event === 'created' ? alive.add(instance) : assert.ok(alive.delete(instance), tv.text);
    }
  });

  await t.test('a load that fails is an error, and the runtime goes on', async () => {
    const home = (await tv.status()).url;
    const foreign = await servePages(t, {});
    for (const url of [
      'http://127.0.0.1:1/',
      `${foreign}/missing`,
      'nonsense',
      home.replace(/[^/]*$/, 'missing.html'),
    ]) {
      await assert.rejects(tv.call('Load', url), /LoadFailed.*can't be loaded/s, url);
    }
    await tv.call('Load', home);
    assert.equal(await tv.evaluate('typeof example'), 'object');
  });

  await t.test('a second runtime of the same application is refused', async () => {
    const second = new Tv(t, bus, writePage(t, ''));
    assert.equal(await second.exited, 5, second.text);
    assert.match(second.text, /is running on this bus already/);
  });

  await tv.call('Quit');
  assert.equal(await tv.exited, 0, tv.text);
});

test("only the main frame of the application's own origin gets the API", async (t) => {
  const probe = `<script>
    parent.postMessage({ own: typeof example, parents: (function () {
      try { return typeof parent.example; } catch (error) { return error.name; } })() }, '*');
  </script>`;
  const foreign = await servePages(t, { '/': probe });
  const own = await servePages(t, {
    '/frame': probe,
    '/': `<script>var said = {}; onmessage = function (event) { said[event.origin === origin] = event.data; };</script>
      <iframe src="/frame"></iframe><iframe src="${foreign}/"></iframe><iframe srcdoc="<p>"></iframe>`,
  });
  const tv = new Tv(t, await startBus(t), `${own}/`);
  await tv.loaded();
  await until(async () => Object.keys(await tv.evaluate('said')).length === 2, tv);
  assert.deepEqual(await tv.evaluate('said'), {
    true: { own: 'undefined', parents: 'object' },
    false: { own: 'undefined', parents: 'SecurityError' },
  });
  assert.equal(await tv.evaluate('typeof frames[2].example'), 'undefined');
});

test('pages see the language of the option, or of the environment', async (t) => {
  const bus = await startBus(t);
  const rows = [
    [['--language', 'de-AT'], { LC_ALL: 'fr_FR.UTF-8' }, 'de-AT'],
    [[], { LC_ALL: '', LC_MESSAGES: 'pt_BR.UTF-8@euro', LANG: 'fr_FR' }, 'pt-BR'],
    [[], { LC_ALL: 'C.UTF-8', LANG: 'fr_FR' }, 'en-US'],
    [[], { LC_ALL: 'POSIX' }, 'en-US'],
  ];
  for (const [options, env, language] of rows) {
    const tv = new Tv(t, bus, writePage(t, ''), { options, env });
    await tv.loaded();
    assert.equal(
      await tv.evaluate('String([navigator.language, navigator.languages])'),
      `${language},${language}`
    );
    await tv.call('Quit');
    await tv.exited;
  }
});

test('a crash of the page is told and healed; the console goes to the terminal', async (t) => {
  const page = writePage(
    t,
    `<script>console.warn('hello', { a: 1 }); setTimeout(function () { nowhere(); }, 0);
     Promise.reject(new Error('nobody cares'));</script>`
  );
  const tv = new Tv(t, await startBus(t), page);
  await tv.loaded();
  await until(() => /hello \{"a":1\}[^]*nowhere[^]*nobody cares|nobody cares[^]*nowhere/.test(tv.text), tv);
  const pid = Number(tv.text.match(/^created 1 in (\d+)$/m)[1]);
  process.kill(pid, 'SIGKILL');
  await until(() => tv.text.includes("The page's process crashed; the page is reloaded."), tv);
  await until(() => tv.text.match(/created/g).length === 2, tv);
  await tv.loaded();
  assert.equal(await tv.evaluate('typeof example'), 'object');
  assert.equal((await tv.status()).crashes, 1);
});

test('every way for a run to end has its status and leaves nothing', async (t) => {
  const bus = await startBus(t);
  const folder = scratchFolder(t);
  const page = writePage(t, '<p>Here');
  writeFileSync(path.join(folder, 'no-extension.so'), 'nothing');
  const rows = [
    [['/nowhere/at/all'], {}, 3, 'does not exist'],
    [['http://127.0.0.1:1/'], {}, 3, "can't be loaded"],
    [[page], { extension: path.join(folder, 'missing.so') }, 2, 'no extension library'],
    [[page], { options: ['--size', 'big'] }, 2, 'big'],
    [[page], { options: ['--language', 'de_AT'] }, 2, 'de_AT'],
    [[page], { options: ['--colour'] }, 2, '--colour'],
    [
      [page],
      { env: { DBUS_SESSION_BUS_ADDRESS: '' }, bus: 'unix:path=/nowhere' },
      6,
      "session bus can't be reached",
    ],
  ];
  for (const [[target], options, status, sentence] of rows) {
    const tv = new Tv(t, options.bus ?? bus, target, { ...options, env: { ...options.env, TMPDIR: folder } });
    assert.equal(await tv.exited, status, tv.text);
    assert.ok(tv.text.includes(sentence), tv.text);
  }
  for (const [signal, frozen] of [
    ['SIGTERM'],
    ['SIGINT'],
    ['SIGHUP'],
    ['SIGQUIT'],
    ['SIGTERM', 'WebKitWebProcess'],
    ['SIGTERM', 'WebKitNetworkProcess'],
    ['SIGTERM', 'Xvfb'],
  ]) {
    const tv = new Tv(t, bus, page, { env: { TMPDIR: folder } });
    await tv.loaded();
    for (const [pid, name] of tv.children()) {
      if (frozen?.startsWith(name)) process.kill(pid, 'SIGSTOP');
    }
    const start = Date.now();
    tv.child.kill(signal);
    assert.equal(await tv.exited, 0, tv.text);
    assert.ok(Date.now() - start < 5000, `${signal} with a frozen ${frozen}`);
    await until(() => processesWith(`TMPDIR=${folder}`).length === 0, tv);
    assert.deepEqual(readdirSync(folder), ['no-extension.so']);
  }
  for (const [extension, sentence] of [
    [path.join(folder, 'no-extension.so'), "can't be loaded"],
    [path.join(build, 'lib/libnurvo_common.so'), 'has no XW_Initialize'],
  ]) {
    const tv = new Tv(t, bus, page, { extension });
    await until(() => tv.text.includes(sentence), tv);
    tv.child.kill('SIGTERM');
    await tv.exited;
  }
});
