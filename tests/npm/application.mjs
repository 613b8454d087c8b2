// The package, a browser for it, and the tools of this workspace.
import { spawnSync } from 'node:child_process';
import path from 'node:path';
import { after, before } from 'node:test';
import { chromium as engine } from 'playwright-core';
import { build, root } from '../../testing/corvis.mjs';

export const packageFolder = path.join(build, 'npm/package');
export const chromium = process.env.CORVIS_CHROMIUM ?? '/usr/bin/chromium';

/** Gives pages of a browser that lives as long as the tests of a file. */
export function useBrowser() {
  let browser;
  before(async () => {
    browser = await engine.launch({ executablePath: chromium, args: ['--no-sandbox', '--disable-gpu'] });
  });
  after(() => browser.close());
  return { newPage: (options) => browser.newPage(options) };
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
