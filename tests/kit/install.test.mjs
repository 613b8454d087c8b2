// The packages, taken apart into an empty root: the kit works there without the source tree.
import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { readdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { build, scratchFolder, writePage } from '../../testing/corvis.mjs';

function unpackedRoot(t) {
  const folder = scratchFolder(t);
  execFileSync('cpack', ['-G', 'DEB', '-B', folder, '--config', path.join(build, 'CPackConfig.cmake')]);
  const root = path.join(folder, 'root');
  const packages = readdirSync(folder).filter((name) => name.endsWith('.deb'));
  for (const name of packages) execFileSync('dpkg', ['-x', path.join(folder, name), root]);
  return { root, packages };
}

test('the packages run an application from an empty root', (t) => {
  const { root, packages } = unpackedRoot(t);
  assert.equal(packages.length, 2, packages.join());
  const page = writePage(
    t,
    `<script>corvis.voiceinteraction.setCallback({ onpause: function () { return 'paused here'; } });
     corvis.voiceinteraction.listen();</script>`
  );
  const corvis = path.join(root, 'usr/bin/corvis');
  const env = { ...process.env, DISPLAY: '' };
  const run = spawnSync(corvis, ['run', page], {
    input: 'pause\n',
    encoding: 'utf8',
    cwd: '/',
    env,
    timeout: 30000,
  });
  assert.equal(run.status, 0, run.stderr);
  assert.match(run.stdout, /ACTION_PAUSE {2}-> {2}paused here/);
  writeFileSync(path.join(page, 'a.voice'), 'say pause\nexpect "paused here"\n');
  const script = spawnSync(corvis, ['test-app', page, path.join(page, 'a.voice')], { encoding: 'utf8', env });
  assert.equal(script.status, 0, script.stdout + script.stderr);
  const demo = spawnSync(corvis, ['demo'], { encoding: 'utf8', cwd: '/', env, timeout: 60000 });
  assert.equal(demo.status, 0, demo.stdout + demo.stderr);
  assert.equal(spawnSync(corvis, ['test']).status, 2, 'what needs the source tree is refused');

  const source = '#include <nurvo/runtime.h>\nint main() { return kExtensionEntryPointName[0] == 0; }';
  const compile = 'eval g++ -x c++ -fsyntax-only "$(pkg-config --cflags corvis_voiceinteraction)" -';
  const withPath = { ...env, PKG_CONFIG_PATH: path.join(root, 'usr/lib/pkgconfig') };
  execFileSync('sh', ['-c', compile], { env: withPath, input: source });
});
