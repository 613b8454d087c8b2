// Who can reach what a run opens: its display takes nobody without the run's authority file.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync, statSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { writePage } from '../../testing/corvis.mjs';
import { Tv, startBus } from '../../testing/tv.mjs';

// Asks an X server for a connection without showing an authority; prints "refused" or "taken".
const client = `use IO::Socket::UNIX;
  my $server = IO::Socket::UNIX->new(Peer => $ARGV[0]) or do { print "refused"; exit };
  syswrite $server, pack("a1xvvvvxx", "l", 11, 0, 0, 0);
  sysread $server, my $reply, 1;
  print $reply eq "\\1" ? "taken" : "refused";`;

test('the display is closed to other users', async (t) => {
  const tv = new Tv(t, await startBus(t), writePage(t, '<p>Here'));
  await tv.loaded();
  const { pid } = await tv.status();
  const environment = readFileSync(`/proc/${pid}/environ`, 'utf8').split('\0');
  const [display, authority] = ['DISPLAY', 'XAUTHORITY'].map((name) =>
    environment.find((entry) => entry.startsWith(`${name}=`)).slice(name.length + 1)
  );
  const socket = `/tmp/.X11-unix/X${display.slice(1)}`;
  assert.equal(execFileSync('perl', ['-e', client, socket], { encoding: 'utf8' }), 'refused');
  assert.equal(statSync(path.dirname(authority)).mode & 0o77, 0, 'a folder of its own');
  assert.doesNotMatch(
    readFileSync('/proc/net/unix', 'utf8'),
    new RegExp(`@${socket}$`, 'm'),
    'no abstract socket'
  );

  await t.test('tried as another user', { skip: process.getuid() === 0 ? false : 'needs root' }, () => {
    const other = ['--reuid=65534', '--regid=65534', '--clear-groups', 'perl', '-e', client, socket];
    assert.equal(execFileSync('setpriv', other, { encoding: 'utf8', cwd: '/' }), 'refused');
  });
});
