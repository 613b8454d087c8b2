// The inspector: its address is printed, a callback can be stopped in it from an ordinary browser, and no time limit ends
// what is being debugged.
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import path from 'node:path';
import { test } from 'node:test';
import { chromium } from 'playwright-core';
import { run, start, until, writePage } from '../../testing/corvis.mjs';

const html = `<script>
  corvis.voiceinteraction.setCallback({ onplay: function () { debugger; return 'played'; } });
  corvis.voiceinteraction.listen();
</script>`;

// Speaks the inspector's protocol with its first target as the inspector's own page does. Runs in a browser.
function attach(host) {
  const socket = new WebSocket(`ws://${host}/socket/1/1/WebPage`);
  window.events = [];
  let target;
  let count = 0;
  window.send = (method, params) => {
    const message = JSON.stringify({ id: ++count, method, params });
    const wrapped = { targetId: target, message };
    socket.send(JSON.stringify({ id: count, method: 'Target.sendMessageToTarget', params: wrapped }));
  };
  socket.onmessage = ({ data }) => {
    const { method, params } = JSON.parse(data);
    if (method === 'Target.targetCreated') target = params.targetInfo.targetId;
    window.events.push(
      method === 'Target.dispatchMessageFromTarget' ? JSON.parse(params.message).method : method
    );
  };
}

test('a callback that stops in the debugger is waited for', async (t) => {
  const folder = writePage(t, html);
  const script = 'timeout 30 s\nvalue "window.isReady" is true\ntimeout 500 ms\nsay play\nexpect "played"\n';
  writeFileSync(path.join(folder, 'a.voice'), script);
  const running = start(['test-app', '--inspect', folder, 'a.voice'], {
    cwd: folder,
    input: '',
  });
  const printed = await until(
    () => /Inspector: open (http:\/\/127\.0\.0\.1:\d+\/) in a browser/.exec(running.output()),
    running
  );
  const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
  t.after(() => browser.close());
  const list = await browser.newPage();
  await list.goto(printed[1]);
  await list.getByRole('button', { name: 'Inspect' }).waitFor();
  const has = (event) => list.waitForFunction((name) => window.events.includes(name), event);
  await list.evaluate(attach, new URL(printed[1]).host);
  await has('Target.targetCreated');
  await list.evaluate(() => {
    window.send('Debugger.enable', {});
    window.send('Debugger.setBreakpointsActive', { active: true });
    window.send('Debugger.setPauseOnDebuggerStatements', { enabled: true });
    window.send('Runtime.evaluate', { expression: 'window.isReady = true' });
  });
  await has('Debugger.paused');
  // Longer than the answer may take.
  await new Promise((resolve) => setTimeout(resolve, 1500));
  assert.doesNotMatch(running.output(), /^(not )?ok 4/m);
  await list.evaluate(() => window.send('Debugger.resume', {}));
  const { code, text } = await running.exited;
  assert.equal(code, 0, text);
});

test('a port that can not be had is refused', async (t) => {
  const taken = createServer().listen(0, '127.0.0.1');
  t.after(() => taken.close());
  await new Promise((resolve) => taken.once('listening', resolve));
  const folder = writePage(t, html);
  for (const [port, status, sentence] of [
    [taken.address().port, 6, 'is in use'],
    [70000, 2, 'from 0 (any) to 65535'],
    ['x', 2, 'from 0 (any) to 65535'],
  ]) {
    const { code, text } = await run(['run', `--inspect=${port}`, folder]);
    assert.equal(code, status, text);
    assert.ok(text.includes(sentence), text);
  }
});
