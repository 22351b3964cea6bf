// Calls as formulas, and what the native command answers them with.
import { execFileSync } from 'node:child_process';

/** The formula of a call with these arguments, in worksheet order: numbers, arrays, arrays of rows. */
export function formulaOf(name, args) {
  const cell = (value) => (value === undefined || Number.isNaN(value) ? '' : String(value));
  const block = (rows) => `{${rows.map((row) => row.map(cell).join(',')).join(';')}}`;
  const shown = (given) => (!Array.isArray(given) ? cell(given) : block(Array.isArray(given[0]) ? given : given.map((one) => [one])));
  return `=${name}(${args.map(shown).join(',')})`;
}

/** What the command prints for each formula. */
export function native(command, formulas, ...options) {
  const run = (input) => execFileSync(command, options, { input, encoding: 'utf8', maxBuffer: 1e9, stdio: ['pipe', 'pipe', 'ignore'] });
  return run(`${formulas.join('\n')}\n`).slice(0, -1).split('\n');
}

/** The number of a printed answer; null for a refusal. */
export const numberOf = (text) => (text.startsWith('#') ? null : ({ inf: Infinity, '-inf': -Infinity, nan: NaN })[text] ?? Number(text));

/** The code of a printed refusal. */
export const codeOf = (text) => (text === '#VALUE!' ? 15 : Number(text.match(/^#ERR\((\d+)\)$/)?.[1]));

/** Deals around a function's example, each with its arguments as a call of one deal takes them; the same each time. */
export function dealsAround(about, count) {
  let state = 12345;
  const random = () => (state = (state * 1103515245 + 12345) % 2147483648) / 2147483648;
  const moved = (argument, value) => {
    if (Array.isArray(value)) return value.map((one) => moved(argument, one));
    if (value === 0 || value === 1 || Number.isInteger(value) && (argument.unit === 'selector' || argument.unit === 'count')) return value;
    return value * (0.8 + 0.4 * random());
  };
  return Array.from({ length: count }, () => about.arguments.map((argument) => moved(argument, argument.example)));
}
