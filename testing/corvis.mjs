// Runs commands of ./corvis as a user would, from another folder, and collects their output.
import { spawn } from 'node:child_process';
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

export const root = path.resolve(path.dirname(fileURLToPath(import.meta.url)), '..');
export const build = process.env.CORVIS_BUILD ?? path.join(root, 'build');

// The URI of a privilege, with the host that the build is configured for.
export const privilegeUri = (name) =>
  `http://${readFileSync(path.join(build, 'privilege-host'), 'utf8')}/privilege/${name}`;

// Creates a folder that is removed after the test. Runs create their private folders in it, so that leftovers are
// found. Its name contains characters that are valid in paths but often mishandled.
export function scratchFolder(t) {
  const folder = mkdtempSync(path.join(tmpdir(), 'corvis test & ü '));
  t.after(() => rmSync(folder, { recursive: true, force: true }));
  return folder;
}

// Writes a page into a new folder and returns the folder.
export function writePage(t, html) {
  const folder = scratchFolder(t);
  writeFileSync(path.join(folder, 'index.html'), `<!doctype html><meta charset="utf-8">${html}`);
  return folder;
}

// Starts a command. `output()` returns everything that it has printed so far, on both streams. It remembers nothing
// in the developer's state folder.
export function start(args, { input, env = {}, cwd = tmpdir() } = {}) {
  const own = { ...process.env, DISPLAY: '', XDG_STATE_HOME: '/dev/null', ...env };
  const child = spawn(path.join(root, 'corvis'), args, { cwd, env: own });
  let text = '';
  for (const stream of [child.stdout, child.stderr]) {
    stream.setEncoding('utf8').on('data', (data) => (text += data));
  }
  child.stdin.on('error', () => {});
  if (input !== undefined) child.stdin.end(input);
  const exited = new Promise((resolve) =>
    child.on('close', (code, signal) => resolve({ code, signal, text }))
  );
  return { child, exited, output: () => text };
}

// Runs a command until it exits, at most `seconds`.
export async function run(args, options = {}) {
  const command = start(args, { input: '', ...options });
  const timer = setTimeout(() => command.child.kill('SIGTERM'), (options.seconds ?? 60) * 1000);
  const result = await command.exited;
  clearTimeout(timer);
  return result;
}

// The rows of a table, the two sides of each parted by an arrow; ¶ is the end of a line.
export const rowsOf = (table) => table.match(/\S.*/g).map((row) => row.replaceAll('¶', '\n').split(' → '));

// The lines of an output that are JSON objects.
export const jsonLines = (text) => (text.match(/^\{.*\}$/gm) ?? []).map((line) => JSON.parse(line));

// Runs voice scripts, of which `script` is a.voice, against an application: its files by their names, or its page.
export async function testApp(t, app, script, options = [], scripts = ['a.voice']) {
  const isPage = typeof app === 'string';
  const folder = isPage ? writePage(t, app) : scratchFolder(t);
  for (const [name, text] of Object.entries({ ...(isPage ? {} : app), 'a.voice': script }))
    writeFileSync(path.join(folder, name), text);
  return { folder, ...(await run(['test-app', ...options, folder, ...scripts], { cwd: folder })) };
}

// Waits until `holds` returns a truthy value and returns it. After `seconds`, kills the command, for which the test
// runner would otherwise wait, and fails with its output.
export async function until(holds, command, seconds = 20) {
  const deadline = Date.now() + seconds * 1000;
  for (;;) {
    const value = await holds();
    if (value) return value;
    if (Date.now() > deadline) {
      command.child?.kill();
      throw new Error(`The condition did not hold within ${seconds} s; output so far:\n${command.output()}`);
    }
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
}

// The environments, among those of all running processes, that contain `text`.
export function processesWith(text) {
  return readdirSync('/proc')
    .filter((name) => /^\d+$/.test(name))
    .map((pid) => {
      try {
        return readFileSync(`/proc/${pid}/environ`, 'utf8');
      } catch {
        return '';
      }
    })
    .filter((environment) => environment.includes(text));
}
