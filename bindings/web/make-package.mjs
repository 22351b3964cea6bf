// Makes the npm package: node make-package.mjs MODULE OUT VERSION
// The functions in the types are those of the module's catalogue.
import { cpSync, mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';

const [module, out, version] = process.argv.slice(2);
const here = dirname(fileURLToPath(import.meta.url));
const source = (name) => readFileSync(join(here, name), 'utf8');
const write = (name, text) => writeFileSync(join(out, name), text);
rmSync(out, { recursive: true, force: true });
mkdirSync(out, { recursive: true });

const binding = source('kestran.js');
const base64 = readFileSync(module).toString('base64');
write('kestran.js', `${binding}\nexport { Refusal, openKestran };\n`);
write('classic.js', `(() => {\n${binding}\nglobalThis.openKestran = openKestran;
globalThis.kestranReady = openKestran(Uint8Array.from(atob('${base64}'), (c) => c.charCodeAt(0)));\n})();\n`);
const entry = (first, bytes) => `${first}import { Refusal, openKestran } from './kestran.js';

const kestran = await openKestran(${bytes});
export { Refusal, kestran, openKestran };
`;
write('index.js', entry('', "fetch(new URL('./kestran.wasm', import.meta.url))"));
write('node.js', entry("import { readFile } from 'node:fs/promises';\n", "readFile(new URL('./kestran.wasm', import.meta.url))"));
cpSync(module, join(out, 'kestran.wasm'));
cpSync(join(here, 'README.md'), join(out, 'README.md'));
cpSync(join(here, '../../THIRD-PARTY-NOTICES'), join(out, 'THIRD-PARTY-NOTICES'));

write('package.json', source('package.json.in').replace('@VERSION@', version));

const { kestran } = await import(pathToFileURL(join(out, 'node.js')));
const types = { number: 'N', range: 'R', block: 'B' };
const quote = (text) => `'${text.replaceAll("'", "\\'")}'`;
const comment = (indent, lines) => `${indent}/**\n${lines.map((line) => `${indent} * ${line}\n`).join('')}${indent} */\n`;
let functions = '';
let members = '';
for (const about of kestran.catalogue.functions) {
  const asks = (i) => i === about.resultArgument;
  const type = (argument, i) => types[argument.shape] + (asks(i) ? ` | ${about.name}Result` : '');
  const named = about.arguments.map((argument, i) => `${argument.name}${asks(i) ? '?' : ''}: ${type(argument, i)}`);
  const inOrder = about.arguments.map((argument, i) => `${argument.name}: ${type(argument, i)}`);
  const short = asks(about.arguments.length - 1) ? inOrder.slice(0, -1) : inOrder;
  functions += `export type ${about.name}Result = ${about.results.map((result) => quote(result.name)).join(' | ')};
type ${about.name}Short<N, R, B> = [${short.join(', ')}];
type ${about.name}Full<N, R, B> = [${inOrder.join(', ')}];
export interface ${about.name}Named<N = NumberArgument, R = RangeArgument, B = BlockArgument> {
${about.arguments.map((argument, i) => `  /** ${argument.meaning}${argument.unitName && ` (${argument.unitName})`} */\n  ${named[i]};\n`).join('')}}
`;
  const of = (name) => `${about.name}${name}<Cell, OneRange, OneBlock>, ${about.name}${name}<NumberArgument, RangeArgument, BlockArgument>`;
  members += comment('  ', [about.prices, '', `\`${about.example}\` is ${kestran.evaluate(about.example)}`]);
  members += `  readonly ${about.name}: PriceFunction<${of('Short')}, ${of('Full')}, ${of('Named')}, ${about.name}Result>;\n`;
}
write('index.d.ts', source('index.d.ts.in') + functions + `\nexport interface Kestran extends KestranBase {\n${members}}\n`);
