// A command from the voice service to the page, and the page's answer back, through the whole kit.
import path from 'node:path';
import { privilegeUri } from '../../testing/corvis.mjs';
import { ratioAtMost } from '../report/result.mjs';
import { ourLibrary, outputOf, programPath, root, startProgram } from './programs.mjs';

const appId = 'com.example.bench';
const privilege = (name) => ['--privilege', privilegeUri(name)];

export async function measure({ short }) {
  const runtime = startProgram('corvis-tv', [
    ...['--app-id', appId, '--extension', ourLibrary, '--headless', '--console', 'none'],
    ...[...privilege('microphone'), ...privilege('voicecontrol')],
    path.join(root, 'bench/page'),
  ]);
  const echo = startProgram('bench_echo', []);
  let samples;
  try {
    samples = JSON.parse(outputOf(programPath('bench_round_trip'), [appId, short ? '200' : '5000']));
  } finally {
    await Promise.all([runtime.stop(), echo.stop()]);
  }
  const against = 'a bare echo of messages of the same size over the same bus';
  const lines = [
    ratioAtMost(1.5, samples, { what: 'round trip of a command, p50', against }),
    ratioAtMost(1.7, samples, { what: 'round trip of a command, p99', against, share: 0.99 }),
  ];
  const series = { 'command and answer': samples.ours, 'bare echo': samples.against };
  return {
    lines,
    samples,
    plots: [{ kind: 'distribution', title: 'Round trip of a command', unit: 'µs', series }],
  };
}
