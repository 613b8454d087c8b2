// Runs corvis-tv with the test's extension on a private bus, and calls its control interface.
import { execFile, execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import { createServer } from 'node:http';
import path from 'node:path';
import { createInterface } from 'node:readline';
import { promisify } from 'node:util';
import { build, until } from './corvis.mjs';

export const echo = path.join(build, 'lib/libecho_extension.so');

// Starts a private bus that ends with the test. Returns its address.
export async function startBus(t) {
  const bus = spawn('dbus-daemon', ['--session', '--print-address', '--nofork', '--nopidfile']);
  t.after(() => bus.kill());
  let address = '';
  bus.stdout.on('data', (data) => (address += data));
  await until(() => address.includes('\n'), { output: () => address });
  return address.trim();
}

// Serves HTTP requests at a new origin until the test ends.
export async function serve(t, answer) {
  const server = createServer(answer);
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  t.after(() => server.close());
  return `http://127.0.0.1:${server.address().port}`;
}

// Serves pages, given as a map of paths to texts.
export function servePages(t, pages) {
  return serve(t, (request, response) => {
    const page = pages[request.url];
    response.writeHead(page === undefined ? 404 : 200, { 'content-type': 'text/html' });
    response.end(page);
  });
}

// Records the traffic on a bus in order. `records` holds signals of the control interface as [name, ...values] and
// replies as [method, ...values], with an error's message as { error }.
export async function watchBus(t, address) {
  const monitor = spawn('busctl', ['--address', address, '--json=short', 'monitor']);
  t.after(() => monitor.kill());
  const calls = new Map();
  const records = [];
  const take = ({ type, sender, destination, member, interface: name, cookie, reply_cookie, payload }) => {
    if (type === 'method_call' && name === 'corvis.tv.Control') calls.set(`${sender} ${cookie}`, member);
    if (type === 'signal' && name === 'corvis.tv.Control') records.push([member, ...payload.data]);
    const method = calls.get(`${destination} ${reply_cookie}`);
    if (!method) return;
    if (type === 'method_return') records.push([method, ...payload.data]);
    if (type === 'error') records.push([method, { error: payload.data[0] }]);
  };
  createInterface({ input: monitor.stdout }).on('line', (line) => line && take(JSON.parse(line)));
  await once(monitor.stderr, 'data');
  return { calls, records, output: () => records.map((record) => JSON.stringify(record)).join('\n') };
}

// `page` is a URL, file or folder. `loaded()` waits for the first load.
export class Tv {
  constructor(t, bus, page, { extension = echo, options = [], env = {} } = {}) {
    this.env = { ...process.env, DISPLAY: '', NO_AT_BRIDGE: '1', ...env, DBUS_SESSION_BUS_ADDRESS: bus };
    const args = ['--headless', '--size', '640x360', '--extension', extension, ...options, page];
    this.child = spawn(path.join(build, 'bin/corvis-tv'), args, { env: this.env });
    this.text = '';
    this.child.stdout.on('data', (data) => (this.text += data));
    this.child.stderr.on('data', (data) => (this.text += data));
    this.exited = new Promise((resolve) => this.child.on('close', (code, signal) => resolve(code ?? signal)));
    // Print the output of a runtime that was ended by a signal.
    this.exited.then((end) => typeof end === 'string' && end !== 'SIGKILL' && console.error(end, this.text));
    t.after(() => (this.child.kill(), this.exited));
  }

  output() {
    return this.text;
  }

  // Calls a method of the control interface. Resolves with the tuple that `gdbus` prints; rejects with the error's
  // text.
  async call(method, ...values) {
    const target = ['--dest', 'com.example.app.runtime', '--object-path', '/corvis/tv'];
    const texts = values.map((value) => JSON.stringify(value));
    const args = ['call', '--session', ...target, '--method', `corvis.tv.Control.${method}`, '--', ...texts];
    const limits = { env: this.env, maxBuffer: 1 << 28 };
    return (await promisify(execFile)('gdbus', args, limits)).stdout.trim();
  }

  // Evaluates an expression. Its value is passed URI-encoded, which needs no quoting in any layer.
  async evaluate(expression) {
    const tuple = await this.call('Evaluate', `encodeURIComponent(JSON.stringify(${expression}))`);
    return JSON.parse(decodeURIComponent(tuple.slice(3, -4)));
  }

  async status() {
    const [, url, , pid, crashes] = (await this.call('GetStatus')).match(
      /^\('(.*)', (\w+), uint32 (\d+), (?:uint32 )?(\d+)\)$/
    );
    return { url, pid: Number(pid), crashes: Number(crashes) };
  }

  // The descendants of the runtime as [id, name]; the system truncates names.
  children() {
    const listed = execFileSync('ps', ['-o', 'pid=,comm=', '--ppid', this.child.pid], { encoding: 'utf8' });
    return listed
      .trim()
      .split('\n')
      .map((line) => line.trim().split(/\s+/));
  }

  async loaded() {
    const isThere = () =>
      this.evaluate('location.href !== "about:blank" && document.readyState').catch(() => '');
    const deadline = Date.now() + 20000;
    while ((await isThere()) !== 'complete') {
      if (Date.now() > deadline || this.child.exitCode !== null) throw new Error(`no page:\n${this.text}`);
    }
  }
}
