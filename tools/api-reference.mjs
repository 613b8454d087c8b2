// Generates docs/api.md, the API reference, from npm/index.d.ts: `node tools/api-reference.mjs`. The text comes from
// the comments of the declarations; this file adds only the order and the headings.
import { writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import ts from 'typescript';

const declarations = fileURLToPath(new URL('../npm/index.d.ts', import.meta.url));
const reference = fileURLToPath(new URL('../docs/api.md', import.meta.url));

const heading = `<!-- Made from npm/index.d.ts by \`node tools/api-reference.mjs\`. Change the declarations, not this file. -->

# API reference

The object \`corvis.voiceinteraction\` in a page of a TV application. The same text stands in the TypeScript
declarations, \`npm/index.d.ts\`, where an editor shows it next to the code.
[Voice control in ten minutes](ten-minutes.md) is the way in.
`;

// The sections in order: the kind of declarations in each, and its introduction.
const sections = [
  { title: 'Methods', kind: 'methods', entries: methodEntries },
  { title: 'Callbacks', kind: 'callbacks', entries: callbackEntries },
  { title: 'Answers', kind: 'shapes', entries: aliasEntries },
  { title: 'Objects', kind: 'objects', entries: objectEntries },
  { title: 'Values', kind: 'values', entries: valueEntries },
  { title: 'Errors', kind: 'errors', entries: objectEntries },
];

// Two interfaces have a section each.
const sectionOf = { VoiceInteraction: 'methods', VoiceCallbacks: 'callbacks' };

function isStringUnion(type) {
  return type.isUnion() && type.types.every((part) => part.isStringLiteral());
}

// The section of a declaration.
function kindOf(node, checker) {
  if (node.name.text in sectionOf) return sectionOf[node.name.text];
  if (ts.isInterfaceDeclaration(node)) return node.heritageClauses ? 'errors' : 'objects';
  if (ts.isTypeLiteralNode(node.type)) return 'objects';
  return isStringUnion(checker.getTypeAtLocation(node.name)) ? 'values' : 'shapes';
}

const anchorOf = (title) => title.toLowerCase();
const linkTo = (name) => `[${name}](#${anchorOf(name)})`;

// The text of a comment, with links to other declarations converted to links in this document.
function textOf(comment) {
  const text = (ts.getTextOfJSDocComment(comment) ?? '').replace(
    /\{@link (?:\w+\.)?(\w+)\}/g,
    (_, name) => `[\`${name}\`](#${sectionOf[name] ?? anchorOf(name)})`
  );
  return text.replace(/^- /, '');
}

function commentOf(node) {
  return textOf(ts.getJSDocCommentsAndTags(node).findLast(ts.isJSDoc)?.comment);
}

const inCell = (text) => text.replaceAll('\n', ' ').replaceAll('|', '\\|');

// A readable type: all values of a union, and a link if the type is documented.
function typeText(type, node, checker, known) {
  const name = type.aliasSymbol?.name ?? type.symbol?.name;
  if (known.has(name)) return linkTo(name);
  if (isStringUnion(type)) return type.types.map((part) => `\`"${part.value}"\``).join(', ');
  return `\`${checker.typeToString(type, node, ts.TypeFormatFlags.NoTruncation)}\``;
}

function methodEntries([node], { checker, known }) {
  return node.members.map((member) => {
    const signature = checker.getSignatureFromDeclaration(member);
    const lines = [commentOf(member), '```ts\n' + member.getText().replaceAll(/^ {2}/gm, '') + '\n```'];
    const rows = ts
      .getJSDocTags(member)
      .filter(ts.isJSDocParameterTag)
      .map((tag) => `- \`${tag.name.getText()}\`: ${textOf(tag.comment).replaceAll('\n', ' ')}`);
    const returned = ts.getJSDocReturnTag(member);
    const type = typeText(signature.getReturnType(), member, checker, known);
    if (type !== '`void`') rows.push(`- Returns ${type}${returned ? `: ${textOf(returned.comment)}` : ''}`);
    for (const tag of ts.getJSDocTags(member).filter(ts.isJSDocThrowsTag)) {
      rows.push(`- Throws ${linkTo(tag.typeExpression.type.getText())}: ${inCell(textOf(tag.comment))}`);
    }
    return { title: member.name.text, text: [...lines, rows.join('\n')].join('\n\n') };
  });
}

function callbackEntries([node], { checker, known }) {
  return node.members.map((member) => {
    const type = checker.getNonNullableType(checker.getTypeAtLocation(member.name));
    const [signature] = type.getCallSignatures();
    const [parameter] = signature.parameters;
    const parameterType = checker.getNonNullableType(checker.getTypeOfSymbol(parameter));
    // A text may be missing; a converted parameter never is.
    const isOptional = parameter.valueDeclaration.questionToken !== undefined;
    const returned = typeText(signature.getReturnType(), member, checker, known);
    const received = `${typeText(parameterType, member, checker, known)}${isOptional ? ' or nothing' : ''}`;
    const signatureText = `Receives ${received}; returns ${returned}.`;
    return { title: member.name.text, text: `${commentOf(member)}\n\n${signatureText}` };
  });
}

function aliasEntries(nodes) {
  return nodes.map((node) => ({
    title: node.name.text,
    text: `${commentOf(node)}\n\n\`\`\`ts\n${node.getText().replace(/^export /, '')}\n\`\`\``,
  }));
}

function objectEntries(nodes, { checker, known }) {
  return nodes.map((node) => {
    const members = node.members ?? node.type.members;
    const hasComments = members.some((member) => commentOf(member) !== '');
    const rows = members.map((member) => {
      const type = typeText(checker.getTypeAtLocation(member.type), member, checker, known);
      const cells = [`\`${member.name.getText()}${member.questionToken ? '?' : ''}\``, inCell(type)];
      return [...cells, ...(hasComments ? [inCell(commentOf(member))] : [])];
    });
    const head = ['member', 'type', ...(hasComments ? ['meaning'] : [])];
    const table = [head, head.map(() => '---'), ...rows].map((cells) => `| ${cells.join(' | ')} |`);
    return { title: node.name.text, text: `${commentOf(node)}\n\n${table.join('\n')}` };
  });
}

function valueEntries(nodes, { checker }) {
  return nodes.map((node) => ({
    title: node.name.text,
    text: `${commentOf(node)}\n\n${checker
      .getTypeAtLocation(node.name)
      .types.map((part) => `- \`"${part.value}"\``)
      .join('\n')}`,
  }));
}

/** The contents of docs/api.md. */
export function apiReference() {
  const program = ts.createProgram([declarations], { strict: true, types: [] });
  const [problem] = ts.getPreEmitDiagnostics(program);
  if (problem) throw new Error(ts.flattenDiagnosticMessageText(problem.messageText, '\n'));
  const checker = program.getTypeChecker();
  const nodes = program
    .getSourceFile(declarations)
    .statements.filter((node) => ts.isInterfaceDeclaration(node) || ts.isTypeAliasDeclaration(node));
  const known = new Set(nodes.map((node) => node.name.text));
  const made = sections.map(({ title, kind, entries }) => {
    const own = nodes.filter((node) => kindOf(node, checker) === kind);
    const opening = kind === 'methods' || kind === 'callbacks' ? commentOf(own[0]) : '';
    return { title, opening, entries: entries(own, { checker, known }) };
  });
  const contents = made.map(
    ({ title, entries }) =>
      `- [${title}](#${anchorOf(title)}): ${entries.map((entry) => linkTo(entry.title)).join(', ')}`
  );
  const bodies = made.map(({ title, opening, entries }) =>
    [`## ${title}`, opening, ...entries.map((entry) => `### ${entry.title}\n\n${entry.text}`)]
      .filter((part) => part !== '')
      .join('\n\n')
  );
  return `${[heading, contents.join('\n'), ...bodies].map((part) => part.trim()).join('\n\n')}\n`;
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  writeFileSync(reference, apiReference());
  console.log('docs/api.md is up to date.');
}
