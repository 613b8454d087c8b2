// `--serve`: the application's own server is started, waited for, and ended with the run, however that ends.
import assert from 'node:assert/strict';
import { existsSync, readFileSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import path from 'node:path';
import { test } from 'node:test';
import { run, scratchFolder, start, until } from '../../testing/corvis.mjs';

// A server that starts slowly, writes the ids of itself and of a child to a file, and ignores SIGTERM.
const server = `import { spawn } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
process.on('SIGTERM', () => {});
const child = spawn('sleep', ['1000']);
writeFileSync('pids', process.pid + ' ' + child.pid);
console.log('the server is starting');
const page = '<!doctype html><p id="state">served</p>';
const listener = createServer((request, response) =>
  response.writeHead(200, { 'Content-Type': 'text/html' }).end(page));
setTimeout(() => listener.listen(Number(process.argv[2]), 'localhost'), 400);
`;

// A port that nobody listens on, below those that the system gives to others.
async function freePort() {
  for (;;) {
    const port = 20000 + Math.floor(Math.random() * 10000);
    const listener = createServer();
    const isFree = await new Promise((resolve) => {
      listener.on('error', () => resolve(false)).listen(port, 'localhost', () => resolve(true));
    });
    await new Promise((resolve) => listener.close(resolve));
    if (isFree) return port;
  }
}

async function project(t) {
  const folder = scratchFolder(t);
  const port = await freePort();
  const files = { 'server.mjs': server, 'a.voice': 'show "#state" is "served"\n' };
  for (const [name, text] of Object.entries(files)) writeFileSync(path.join(folder, name), text);
  const url = `http://localhost:${port}`;
  return {
    folder,
    url,
    port,
    serve: ['--serve', `'${process.execPath}' server.mjs ${port}; true`, '--url', url],
  };
}

const isAlive = (pid) => {
  try {
    return !/^State:\s+Z/m.test(readFileSync(`/proc/${pid}/status`, 'utf8'));
  } catch {
    return false;
  }
};
const pidsOf = (folder) => readFileSync(path.join(folder, 'pids'), 'utf8').split(' ');
const isGone = (folder) => !pidsOf(folder).some(isAlive);

test('commands wait for the server, and end it', async (t) => {
  const { folder, url, port, serve } = await project(t);
  const rows = [
    [['test-app', ...serve, 'a.voice'], /^ok 1 - a\.voice:1/m],
    [['test-app', serve[0], serve[1], url, 'a.voice'], /^ok 1 - a\.voice:1/m],
    [
      ['run', ...serve, '--console', 'all'],
      /\[server\] the server is starting\n[^]*served/,
      'show "#state"\n',
    ],
  ];
  for (const [args, printed, input = ''] of rows) {
    const result = await run(args, { cwd: folder, input });
    assert.equal(result.code, 0, result.text);
    assert.match(result.text, printed);
    assert.ok(isGone(folder));
  }
  const configuration = { serve: `'${process.execPath}' server.mjs ${port}`, url, scripts: 'a.voice' };
  writeFileSync(path.join(folder, 'corvis.json'), JSON.stringify(configuration));
  const configured = await run(['test-app', '--config', path.join(folder, 'corvis.json')]);
  assert.equal(configured.code, 0, configured.text);
  assert.ok(isGone(folder));
});

test('a server that ends, never answers or can be mistaken is an error with its output', async (t) => {
  const { folder, url, port, serve } = await project(t);
  const refused = createServer();
  const rows = [
    [
      ['--serve', 'echo no such port >&2; exit 7', '--url', url],
      3,
      /\(echo .*\) ended with status 7\. Its last output:\n {2}no such port\n/,
    ],
    [['--serve', 'exit 1', '--url', url], 3, /ended with status 1\. It printed nothing\.\n/],
    [
      ['--serve', 'echo up; sleep 60', '--serve-timeout', '1', '--url', url],
      3,
      /has not answered at http:.* within 1 s\. Its last output:\n {2}up\n/,
    ],
    [['--serve', 'sleep 60', folder], 2, /--serve needs the URL of the server/],
    [['--serve', 'sleep 60', '--serve-in', '/nowhere', '--url', url], 3, /\/nowhere: No such file/],
  ];
  for (const [args, code, printed] of rows) {
    const result = await run(['items', ...args], { cwd: folder });
    assert.equal(result.code, code, result.text);
    assert.match(result.text, printed);
  }
  refused.on('connection', (socket) => socket.on('error', () => {}).end('HTTP/1.1 200 OK\r\n\r\n'));
  await new Promise((resolve) => refused.listen(port, 'localhost', resolve));
  const result = await run(['lint', ...serve], { cwd: folder });
  refused.close();
  assert.deepEqual([result.code, /answers at .* already/.test(result.text)], [2, true], result.text);
});

for (const signal of ['SIGINT', 'SIGKILL']) {
  test(`the server and its children end after ${signal}`, async (t) => {
    const { folder, serve } = await project(t);
    const command = start(['run', '--timeout', '20000', ...serve], { cwd: folder });
    t.after(() => command.child.kill('SIGKILL'));
    await until(() => existsSync(path.join(folder, 'pids')) && pidsOf(folder).length === 2, command);
    command.child.kill(signal);
    await command.exited;
    await until(() => isGone(folder), command);
  });
}
