// The documents against the product: the guides' commands print what the guides say, links lead somewhere, and what the
// code has (API, statements, options, events, log lines) stands in the document that promises to list it.
import assert from 'node:assert/strict';
import { existsSync, readFileSync, readdirSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { apiReference } from '../../tools/api-reference.mjs';
import { root, run, scratchFolder } from '../../testing/corvis.mjs';
import { blocksOf, runGuide } from './guide.mjs';

const read = (file) => readFileSync(path.join(root, file), 'utf8');
const filesIn = (folder, ending) =>
  readdirSync(path.join(root, folder), { recursive: true })
    .filter((name) => name.endsWith(ending))
    .map((name) => path.join(folder, name));
const documents = ['README.md', 'CONTRIBUTING.md', ...filesIn('docs', '.md')];

// All texts that a regular expression's only group finds.
const found = (text, expression) => [...text.matchAll(expression)].map((match) => match[1]);

// Times, and sizes that depend on the fonts, differ from machine to machine.
function normalised(output) {
  return output
    .replace(/ *\b\d+\.\d+ ms/g, ' # ms')
    .replace(/ (\(?)[\d.]+ m?s(\)?)$/gm, ' $1#$2')
    .replace(/("(?:answer_)?ms":)[\d.]+/g, '$1#')
    .replace(/ time="[\d.]+"/g, ' time="#"')
    .replace(/^( +\d+)(?: +\d+){4} {2}/gm, '$1 # # # #  ')
    .replace(/\b\d+ bytes/g, '# bytes')
    .replace(/[ \t]+$/gm, '');
}

// The one that tests/npm runs, with the package.
const elsewhere = ['docs/in-the-browser.md'];
const guides = documents.filter((file) => read(file).includes('\n```console\n') && !elsewhere.includes(file));

for (const guide of guides) {
  test(`the commands of ${guide} print what it says`, (t) => {
    for (const { line, command, expected, printed } of runGuide(read(guide), scratchFolder(t))) {
      assert.equal(normalised(printed), normalised(expected), `${guide}:${line}: ${command}`);
    }
  });
}

test('docs/api.md is what tools/api-reference.mjs makes of the declarations', () => {
  assert.equal(read('docs/api.md'), apiReference(), 'run node tools/api-reference.mjs');
});

// The document's lines that are no code.
function proseOf(markdown) {
  const lines = markdown.split('\n');
  for (const block of blocksOf(markdown)) lines.fill('', block.line - 1, block.line + block.lines.length + 1);
  return lines.join('\n');
}

// The anchors that a viewer of Markdown makes of the headings.
function anchorsOf(markdown) {
  const seen = new Map();
  return new Set(
    [...proseOf(markdown).matchAll(/^#+ (.+)$/gm)].map(([, heading]) => {
      const anchor = heading
        .replace(/\[([^\]]*)\]\([^)]*\)/g, '$1')
        .toLowerCase()
        .replace(/[^\p{L}\p{N}_\- ]/gu, '')
        .replaceAll(' ', '-');
      const times = seen.get(anchor) ?? 0;
      seen.set(anchor, times + 1);
      return times === 0 ? anchor : `${anchor}-${times}`;
    })
  );
}

test('every link to a place in the project leads somewhere', () => {
  const broken = [];
  for (const document of documents) {
    const links = proseOf(read(document))
      .replace(/`[^`]*`/g, '`')
      .matchAll(/\]\(([^)\s]+)\)/g);
    for (const [, link] of links) {
      if (/^\w+:/.test(link)) continue;
      const [target, anchor] = link.split('#');
      const file = target === '' ? document : path.join(path.dirname(document), target);
      const isThere = existsSync(path.join(root, file));
      const isAnchored = anchor === undefined || (isThere && anchorsOf(read(file)).has(anchor));
      if (!isThere || !isAnchored) broken.push(`${document}: ${link}`);
    }
  }
  assert.deepEqual(broken, []);
});

test('every file and folder of the tree that README and docs name is there', () => {
  const folders = 'src|platform|runtime|kit|npm|examples|tools|tests|testing|bench|fuzz|cmake|docs';
  const places = new RegExp(`\`((?:${folders})/[^\`\\s*]*)\``, 'g');
  const missing = ['README.md', ...filesIn('docs', '.md')].flatMap((document) =>
    found(proseOf(read(document)), places)
      .filter((place) => !['', '.cc', '.h'].some((ending) => existsSync(path.join(root, place + ending))))
      .map((place) => `${document}: ${place}`)
  );
  assert.deepEqual(missing, []);
});

// Fails when one of `names` is not in the document as it should be written there.
function assertAllIn(document, names, written = (name) => name) {
  const text = read(document);
  assert.ok(names.length > 0, `nothing was found that ${document} should have`);
  assert.deepEqual(
    [...new Set(names)].filter((name) => !text.includes(written(name))),
    [],
    `missing in ${document}`
  );
}

test('every statement of voice scripts, every event, command and status is described', () => {
  const scripts = 'docs/voice-scripts.md';
  const statements = found(read('kit/script/statements.cc'), /\{"(\w+)", Read/g);
  assertAllIn(scripts, statements, (word) => `### ${word}\n`);
  const events = read('kit/report/json_forms.cc');
  assertAllIn(scripts, found(events, /\{"([\w-]+)", \w+\{\}\}/g), (name) => `"event":"${name}"`);
  assertAllIn(scripts, found(events, /(?:Required|Optional)\("(\w+)"/g), (field) => `\`${field}\``);
  const driving = 'docs/driving-the-kit.md';
  const session = read('kit/cli/json_session.cc') + read('kit/cli/json_commands.cc');
  assertAllIn(driving, found(session, /\{"event", "(\w+)"/g), (name) => `"event":"${name}"`);
  assertAllIn(driving, found(session, /\{"(\w+)", Read\w+\}/g), (command) => `| \`${command}\` |`);
  const statuses = found(filesIn('kit/cli', '.h').map(read).join('\n'), /kExit\w+ = (\d+)/g);
  const listed = found(read(scripts), /^\| ([\d, ]+) \|/gm).flatMap((cell) => cell.split(', '));
  assert.deepEqual(
    statuses.filter((status) => !listed.includes(status)),
    [],
    'statuses'
  );
});

test('every option of the commands for applications is described', async () => {
  const all = documents.map(read).join('\n');
  for (const command of ['demo', 'run', 'test-app', 'merge-reports', 'items', 'lint']) {
    const { text } = await run([command, '--help']);
    const missing = found(text, /(--[a-z-]+)/g).filter((option) => !all.includes(`\`${option}`));
    assert.deepEqual(missing, [], `options of corvis ${command}`);
    assert.match(text, new RegExp(`^Usage: corvis ${command} .*^Exit status$.*^  130 `, 'ms'));
  }
});

test("every line that the library logs is in the integrator's guide", () => {
  const literal = /"((?:[^"\\]|\\.)*)"/g;
  const lines = filesIn('src', '.cc').flatMap((file) => {
    const text = read(file);
    const calls = found(
      text,
      /(?:MODULE_\w+|CORVIS_LOG_ERROR_OF|log_print_to|logic_error|SizeExceedException|ReadText)\(((?:[^;"]|"(?:[^"\\]|\\.)*")*)\);/g
    );
    // Literals that follow each other are one; of several arguments the longest is the line.
    return calls.map((call) =>
      found(call.replace(/"\s+"/g, ''), literal).reduce((a, b) => (b.length > a.length ? b : a), '')
    );
  });
  const said = lines
    .map((line) => line.replace(/%[a-z]+/g, '…').trim())
    .filter((line) => /[a-z]/i.test(line));
  assertAllIn('docs/integrator.md', said, (line) => `\`${line}\``);
});
