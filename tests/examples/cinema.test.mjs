// The example application by its own voice scripts, as its author would test it.
import assert from 'node:assert/strict';
import { readdirSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { root, run } from '../../testing/corvis.mjs';

const cinema = path.join(root, 'examples/cinema');

test('the example application does what it is told, with every action that it registers', async () => {
  const scripts = readdirSync(path.join(cinema, 'tests')).map((name) => path.join(cinema, 'tests', name));
  const { code, text } = await run(['test-app', cinema, ...scripts, '--coverage-min', '100']);
  assert.equal(code, 0, text);
});

for (const example of ['cinema', 'minimal']) {
  test(`the lint finds nothing in ${example}`, async () => {
    const { code, text } = await run(['lint', '--call', path.join(root, 'examples', example)]);
    assert.equal(code, 0, text);
  });
}
