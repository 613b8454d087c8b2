// The packages, taken apart into an empty root: the kit works there without the source tree.
import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { readdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { build, scratchFolder, writePage } from '../../testing/corvis.mjs';

test('the packages run an application from an empty root', (t) => {
  const folder = scratchFolder(t);
  execFileSync('cpack', ['-G', 'DEB', '-B', folder, '--config', path.join(build, 'CPackConfig.cmake')]);
  const root = path.join(folder, 'root');
  const packages = readdirSync(folder).filter((name) => name.endsWith('.deb'));
  for (const name of packages) execFileSync('dpkg', ['-x', path.join(folder, name), root]);
  assert.equal(packages.length, 2, packages.join());
  const page = writePage(
    t,
    `<script>corvis.voiceinteraction.setCallback({ onpause: function () { return 'paused here'; } });
     corvis.voiceinteraction.listen();</script>`
  );
  const script = path.join(page, 'a.voice');
  writeFileSync(script, 'say pause\nexpect "paused here"\n');
  const env = { ...process.env, DISPLAY: '' };
  const options = { input: 'pause\n', encoding: 'utf8', cwd: '/', env, timeout: 60000 };
  for (const [args, status, part] of [
    [['run', page], 0, 'ACTION_PAUSE  ->  paused here'],
    [['test-app', page, script], 0, 'ok 2'],
    [['demo'], 0, 'ACTION_PLAY'],
    [['test'], 2, ''], // needs the source tree
  ]) {
    const result = spawnSync(path.join(root, 'usr/bin/corvis'), args, options);
    assert.equal(result.status, status, result.stdout + result.stderr);
    assert.ok(result.stdout.includes(part), result.stdout);
  }

  const source = '#include <nurvo/runtime.h>\nint main() { return kExtensionEntryPointName[0] == 0; }';
  const compile = 'eval g++ -x c++ -fsyntax-only "$(pkg-config --cflags corvis_voiceinteraction)" -';
  const withPath = { ...env, PKG_CONFIG_PATH: path.join(root, 'usr/lib/pkgconfig') };
  execFileSync('sh', ['-c', compile], { env: withPath, input: source });
});
