// What a page wrote before a reply comes ahead of that reply, and so does the crash that caused it.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { until, writePage } from '../../testing/corvis.mjs';
import { Tv, serve, startBus, watchBus } from '../../testing/tv.mjs';

const lines = (count) =>
  Array.from({ length: count }, (_, i) => ['Console', 'log', String(i), i % 2 ? 'api' : 'page']);
const write = (count) => `for (let i = 0; i < ${count}; i++) i % 2 ? example.echo.log(i) : console.log(i);`;

test('replies come after what the page wrote before them', async (t) => {
  const address = await startBus(t);
  const tv = new Tv(t, address, writePage(t, '<p>Here'), { options: ['--console', 'none'] });
  await tv.loaded();
  const bus = await watchBus(t, address);
  const next = async (method) => {
    await until(() => bus.records.some(([name]) => name === method), bus);
    return bus.records.splice(0);
  };
  const begun = (method, count = 1) =>
    until(() => [...bus.calls.values()].filter((name) => name === method).length >= count, bus);

  await t.test('those that an expression writes', async () => {
    for (const [expression, reply] of [
      [`${write(99)} "done"`, '"done"'],
      [`${write(98)} nowhere()`, { error: "ReferenceError: Can't find variable: nowhere" }],
    ]) {
      tv.call('Evaluate', expression).catch(() => {});
      const records = await next('Evaluate');
      assert.deepEqual(records.pop()[1], reply);
      assert.deepEqual(records, lines(Number(expression.match(/\d\d/))));
    }
  });

  await t.test('those that it wrote by itself, for whoever waits with Sync', async (t) => {
    // The page's process is busy until the call is under way; then it writes a line of the kind that waits for others.
    const origin = await serve(t, (request, response) => {
      tv.call('Sync');
      begun('Sync', count).then(() => response.writeHead(200, { 'access-control-allow-origin': '*' }).end());
    });
    const script = `open.open('GET', '${origin}', false); open.send(); example.echo.log('late');`;
    let count = 0;
    while (++count <= 10) {
      await tv.evaluate(`setTimeout(function () { var open = new XMLHttpRequest(); ${script} })`);
      const records = (await next('Sync')).filter(([name]) => name !== 'Evaluate');
      assert.deepEqual(records, [['Console', 'log', 'late', 'api'], ['Sync']]);
    }
  });

  await t.test('a crash', async () => {
    const { pid } = await tv.status();
    bus.calls.clear();
    // Each call is a process of its own, so the page is busy before the next two are made.
    for (const [method, ...values] of [['Evaluate', 'for (;;) {}'], ['Sync'], ['Screenshot']]) {
      tv.call(method, ...values).catch(() => {});
      await begun(method);
    }
    bus.records.splice(0);
    process.kill(pid, 'SIGKILL');
    await until(() => bus.records.length >= 4, bus);
    assert.deepEqual(bus.records[0], ['Crashed', 1]);
    for (const [, { error }] of bus.records.slice(1, 4)) assert.match(error, /crashed before it answered/);
  });
});

test("a script API's lines are reported when they are wanted", async (t) => {
  for (const [options, count, unasked] of [
    [[], 10, 0],
    [[], 4096, 4096],
    [['--follow-api'], 10, 10],
  ]) {
    const address = await startBus(t);
    const tv = new Tv(t, address, writePage(t, '<p>Here'), { options: ['--console', 'none', ...options] });
    await tv.loaded();
    const bus = await watchBus(t, address);
    const reported = () => bus.records.filter(([name]) => name === 'Console').length;
    await tv.evaluate(`setTimeout(function () { for (var i = 0; i < ${count}; i++) example.echo.log(i); })`);
    if (unasked) await until(() => reported() === unasked, bus);
    else await new Promise((resolve) => setTimeout(resolve, 300));
    assert.equal(reported(), unasked, options.join());
    await tv.call('Sync');
    await until(() => reported() === count, bus);
  }
});
