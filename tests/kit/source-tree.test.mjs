// The script ./corvis in a source tree: what it sets up and builds before it hands a command to the tool. The programs
// that it calls are played, so that nothing is installed or compiled.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { chmodSync, cpSync, existsSync, mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { root, scratchFolder } from '../../testing/corvis.mjs';

// Each writes what it is called with. cmake configures a folder, ninja "builds" a tool that says where it was built.
const programs = {
  'dpkg-query': 'for p in "$@"; do case $p in -*) ;; *) printf "<%s installed>" "$p" ;; esac; done',
  cmake: `folder=$4; echo "CMAKE_HOME_DIRECTORY:INTERNAL=$2" >"$folder/CMakeCache.txt"; touch "$folder/build.ninja"`,
  ninja: `folder=$2
    if [ "$3" = -n ]; then [ -x "$folder/bin/corvis" ] && echo 'ninja: no work to do.'; exit; fi
    mkdir -p "$folder/bin"
    printf '#!/bin/sh\\necho "built in %s, asked to $*"\\n' "$folder" >"$folder/bin/corvis"
    chmod +x "$folder/bin/corvis"`,
};

// A source tree with the script alone, and a way to run it that gives the calls of the programs, too.
function sourceTree(t) {
  const folder = scratchFolder(t);
  const tree = path.join(folder, 'tree');
  const bin = path.join(folder, 'bin');
  const log = path.join(folder, 'calls');
  mkdirSync(bin);
  for (const [name, script] of Object.entries(programs)) {
    writeFileSync(path.join(bin, name), `#!/bin/bash\necho "${name} $*" >>"$CALLS"\n${script}\n`);
    chmodSync(path.join(bin, name), 0o755);
  }
  mkdirSync(tree);
  for (const name of ['corvis', 'tools'])
    cpSync(path.join(root, name), path.join(tree, name), { recursive: true });
  const env = { ...process.env, PATH: `${bin}:${process.env.PATH}`, CALLS: log };
  const run = (where, ...args) => {
    rmSync(log, { force: true });
    const { status, stdout, stderr } = spawnSync(path.join(where, 'corvis'), args, { env, encoding: 'utf8' });
    const calls = existsSync(log) ? readFileSync(log, 'utf8').trim().split('\n') : [];
    return { status, stdout, stderr, calls: calls.map((call) => call.replaceAll(where, '~')) };
  };
  return { tree, run };
}

test('a command is built for once, and handed on as it is', (t) => {
  const { tree, run } = sourceTree(t);
  const built = path.join(tree, 'build');
  const first = run(tree, 'run', '--', 'a b', '-c');
  assert.equal(first.stdout, `built in ${built}, asked to run -- a b -c\n`, first.stderr);
  const questions = first.calls.filter((call) => call.startsWith('dpkg-query'));
  assert.equal(questions.length, 1, 'one question for all packages');
  const second = run(tree, 'items', 'x');
  assert.equal(second.stdout, `built in ${built}, asked to items x\n`);
  assert.equal(second.stderr, '');
  assert.equal(second.calls.length, 1);
  assert.match(second.calls[0], /^ninja -C ~\/build -n/, 'only what is to do is asked');
});

test('a tree that was copied or moved builds its own tool', (t) => {
  const { tree, run } = sourceTree(t);
  run(tree, 'demo');
  const copy = `${tree} copy`;
  cpSync(tree, copy, { recursive: true });
  writeFileSync(path.join(copy, 'build/old'), '');
  assert.doesNotMatch(run(copy, '--help').stdout, /built in/, 'the old tool is not run for its help');
  const { stdout, stderr } = run(copy, 'demo');
  assert.equal(stdout, `built in ${path.join(copy, 'build')}, asked to demo\n`);
  assert.match(stderr, /belongs to another source folder/);
  assert.ok(!existsSync(path.join(copy, 'build/old')), 'nothing of the old build is left');
});

test('a build folder that can not be written is reported as such', (t) => {
  const { tree, run } = sourceTree(t);
  writeFileSync(path.join(tree, 'build'), '');
  const { status, stderr } = run(tree, 'demo');
  assert.equal(status, 1);
  assert.match(stderr, /^corvis: Can't write to the build folder .*build; /m);
});

test('help lists what the source tree has beside the tool, built or not', (t) => {
  const { tree, run } = sourceTree(t);
  assert.match(run(tree, '--help').stdout, /demo, run, test-app.*reliability {2}/s);
  run(tree, 'demo');
  assert.match(run(tree, '--help').stdout, /asked to --help\n.*reliability {2}/s);
  assert.equal(run(tree).status, 2);
});
