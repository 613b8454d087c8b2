// A folder of an application's that uses the package as its authors would, with the tools of this workspace.
import { spawnSync } from 'node:child_process';
import { cpSync, mkdirSync, symlinkSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { build, root, scratchFolder } from '../../testing/corvis.mjs';

export const packageFolder = path.join(build, 'npm/package');
export const chromium = process.env.CORVIS_CHROMIUM ?? '/usr/bin/chromium';

/** Makes the folder: `files` by their names, the package installed, and `tools` of this workspace beside it. */
export function makeApplication(t, files, tools = []) {
  const folder = scratchFolder(t);
  const modules = path.join(folder, 'node_modules');
  cpSync(packageFolder, path.join(modules, 'corvis-voiceinteraction'), { recursive: true });
  for (const tool of tools) {
    mkdirSync(path.dirname(path.join(modules, tool)), { recursive: true });
    symlinkSync(path.join(root, 'node_modules', tool), path.join(modules, tool));
  }
  for (const [name, text] of Object.entries(files)) writeFileSync(path.join(folder, name), text);
  return folder;
}

/** Runs a tool of this workspace in a folder; gives its exit status and all that it printed. */
export function runTool(folder, tool, ...args) {
  const { status, stdout, stderr } = spawnSync(path.join(root, 'node_modules/.bin', tool), args, {
    cwd: folder,
    encoding: 'utf8',
    timeout: 120_000,
    env: { ...process.env, NO_COLOR: '1', FORCE_COLOR: '', NODE_TEST_CONTEXT: '' },
  });
  return { status, text: stdout + stderr };
}
