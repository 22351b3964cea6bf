// node web/price.mjs FORMULA...: what `kestran FORMULA...` prints, through the WebAssembly module. Without formulas those of the
// input are answered, one a line. Exit status: 0, or 2 when one could not be read.
import { execFileSync } from 'node:child_process';
import { readFileSync, writeSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

const root = new URL('..', import.meta.url);
execFileSync(fileURLToPath(new URL('bindings/web/build', root)), { stdio: ['ignore', 'ignore', 'inherit'] });
const { kestran } = await import(new URL('build/wasm/npm/node.js', root));

function answer(formula) {
  const { text, readable, note } = kestran.cell(formula);
  if (note) console.error(`kestran: ${note}`);
  if (!readable) process.exitCode = 2;
  return text;
}

// A pipe may take part of a text, or be full.
function print(text) {
  for (let rest = Buffer.from(text); rest.length > 0; ) {
    try {
      rest = rest.subarray(writeSync(1, rest));
    } catch (error) {
      if (error.code !== 'EAGAIN') throw error;
    }
  }
}

const given = process.argv.slice(2).filter((argument, i) => i > 0 || argument !== '--');
if (given.length > 0) {
  for (const formula of given) print(`${answer(formula)}\n`);
} else {
  const lines = readFileSync(0, 'utf8').replace(/^\uFEFF/, '').split('\n');
  if (lines.at(-1) === '') lines.pop();
  print(lines.map((line) => line.replace(/\r$/, '')).map((line) => `${/^#|^[ \t]*$/.test(line) ? '' : answer(line)}\n`).join(''));
}
