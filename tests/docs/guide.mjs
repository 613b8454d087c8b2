// A guide's files and commands, read from its Markdown, and run in one shell from an empty folder.
//
// A block under `<!-- file: NAME -->` is written to that file. In a block marked ```console a line that begins with
// "$ " is a command, one with "> " goes to its standard input, all others are what it prints on both streams.
import { spawnSync } from 'node:child_process';
import path from 'node:path';
import { root } from '../../testing/corvis.mjs';

// The blocks of a Markdown text: { line, language, file, lines }; `file` is undefined for those that are no file.
export function blocksOf(markdown) {
  const blocks = [];
  let block;
  let file;
  markdown.split('\n').forEach((text, index) => {
    const fence = text.match(/^```(\w*)/);
    if (block && text === '```') {
      blocks.push(block);
      block = undefined;
    } else if (block) {
      block.lines.push(text);
    } else if (fence) {
      block = { line: index + 1, language: fence[1], file, lines: [] };
    }
    if (text.trim() !== '') file = text.match(/^<!-- file: (\S+) -->$/)?.[1];
  });
  return blocks;
}

// The commands of a console block: { line, command, input, output }.
function commandsOf(block) {
  const commands = [];
  block.lines.forEach((text, index) => {
    if (text.startsWith('$ ')) {
      commands.push({ line: block.line + 1 + index, command: text.slice(2), input: [], output: [] });
    } else {
      commands.at(-1)[text.startsWith('> ') ? 'input' : 'output'].push(text.replace(/^> /, ''));
    }
  });
  return commands;
}

const mark = '--- the next command of the guide ---';

// One shell script for the whole guide, so that folders, variables and exit statuses go on from block to block.
function scriptOf(blocks) {
  const here = (lines) => `<<'END_OF_BLOCK'\n${lines.map((line) => `${line}\n`).join('')}END_OF_BLOCK\n`;
  return blocks
    .map((block) => {
      if (block.file) return `cat >'${block.file}' ${here(block.lines)}`;
      return commandsOf(block)
        .map(({ command, input }) => {
          const fed = input.length > 0 ? `${command} ${here(input)}` : `${command}\n`;
          return `${fed}status=$?; echo '${mark}'; (exit $status)\n`;
        })
        .join('');
    })
    .join('');
}

// Tools take a build server for a terminal with colors (CI, FORCE_COLOR): a guide shows what they print to a pipe.
function environment() {
  const tools = path.join(root, 'node_modules/.bin');
  const of = { ...process.env, PATH: `${root}:${tools}:${process.env.PATH}`, CORVIS: root, DISPLAY: '' };
  delete of.CI;
  delete of.FORCE_COLOR;
  delete of.NODE_TEST_CONTEXT;
  return of;
}

// Runs a guide in `folder`. Gives { line, command, expected, printed } for each command, as texts.
export function runGuide(markdown, folder) {
  const blocks = blocksOf(markdown).filter((block) => block.file || block.language === 'console');
  const { stdout } = spawnSync('bash', ['-c', `exec 2>&1 </dev/null\n${scriptOf(blocks)}`], {
    cwd: folder,
    encoding: 'utf8',
    timeout: 240_000,
    env: environment(),
  });
  const printed = stdout.split(`${mark}\n`);
  const commands = blocks.filter((block) => !block.file).flatMap(commandsOf);
  return commands.map(({ line, command, output }, index) => ({
    line,
    command,
    expected: output.map((text) => `${text}\n`).join(''),
    printed: printed[index] ?? '(it never ran)',
  }));
}
