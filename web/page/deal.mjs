// A deal: the texts typed for each argument of a function, and what they say. A number has a text, a range a list of them,
// a matrix a list of rows.
import { readNumber } from './numbers.mjs';

const insideBraces = (text) => text.replace(/^\{|\}$/g, '');

/** The function's example as typed texts, by argument. */
export function exampleTexts(entry) {
  const inside = entry.example.slice(entry.example.indexOf('(') + 1, -1);
  const parts = inside.match(/\{[^}]*\}|[^,{}]+|(?<=,|^)(?=,|$)/g) ?? [];
  const texts = {};
  entry.arguments.forEach((argument, i) => { texts[argument.name] = fromText(argument, parts[i] ?? ''); });
  return texts;
}

/** The texts of one argument from {1,2;3,4}, or from 1;2 and 1;2|3;4 as they stand in an address. */
export function fromText(argument, text) {
  if (argument.shape === 'number') return text.trim();
  const braces = text.startsWith('{');
  const rows = insideBraces(text).split(braces ? ';' : '|').map((row) => row.split(braces ? ',' : ';').map((cell) => cell.trim()));
  return argument.kind === 'square' ? rows : rows.flat();
}

export function addressText(argument, text) {
  if (argument.shape === 'number') return text;
  return argument.kind === 'square' ? text.map((row) => row.join(';')).join('|') : filled(text).join(';');
}

/** Cells up to the last that holds something. */
export function filled(cells) {
  let count = cells.length;
  while (count > 0 && cells[count - 1].trim() === '') --count;
  return cells.slice(0, count);
}

/**
 * What the texts say: `values` in worksheet order as the module takes them, `faults` as { argument, cell, text }; cell is
 * the place in the range, row after row.
 */
export function readDeal(entry, texts, evaluate) {
  const faults = [];
  const read = (argument, text, cell) => {
    const { number, fault } = readNumber(text, evaluate);
    if (fault) faults.push({ argument: argument.name, cell, text: fault });
    return number;
  };
  const values = entry.arguments.map((argument) => {
    const text = texts[argument.name];
    if (argument.shape === 'number') return read(argument, text, null);
    if (argument.kind === 'square') return text.map((row, i) => row.map((cell, j) => read(argument, cell, i * row.length + j)));
    const cells = filled(text).map((cell, i) => read(argument, cell, i));
    if (cells.length === 0) faults.push({ argument: argument.name, cell: 0, text: 'a number is wanted' });
    return cells.length === 1 ? cells[0] : argument.shape === 'block' ? [cells] : cells;
  });
  return { values, faults };
}

/** The formula, with plain numbers as they were typed; a sheet's braces hold nothing else. */
export function formulaOf(entry, texts, values) {
  const constant = (text, number) => (/^[+-]?[\d.]+(e[+-]?\d+)?$/i.test(text.trim()) ? text.trim() : String(number));
  const parts = entry.arguments.map((argument, i) => {
    const text = texts[argument.name], value = values[i];
    if (argument.shape === 'number') return text.trim().replace(/^=/, '');
    if (typeof value === 'number') return constant(text.flat()[0], value);
    const rows = argument.kind === 'square' ? text : [filled(text)];
    const numbers = argument.shape === 'block' ? value : [value];
    return '{' + rows.map((row, r) => row.map((cell, c) => constant(cell, numbers[r][c])).join(',')).join(';') + '}';
  });
  return `=${entry.name}(${parts.join(',')})`;
}

/** How many components the ranges of prices have together: the size of a matrix between them. */
export const components = (entry, texts) => entry.arguments
  .filter((argument) => argument.shape !== 'number' && argument.unit === 'price')
  .reduce((sum, argument) => sum + filled(texts[argument.name]).length, 0);

/** Brings matrices and triangles of correlations to the size of the ranges beside them. */
export function fitMatrices(entry, texts) {
  const size = components(entry, texts);
  for (const argument of entry.arguments) {
    const old = texts[argument.name];
    if (argument.kind === 'square' && old.length !== size)
      texts[argument.name] = Array.from({ length: size }, (_, i) => Array.from({ length: size }, (_, j) => old[i]?.[j] ?? (i === j ? '1' : '0')));
    // One component has no correlation; some number is wanted all the same.
    const pairs = Math.max(1, size * (size - 1) / 2);
    if (argument.kind === 'triangle' && old.length !== pairs)
      texts[argument.name] = Array.from({ length: pairs }, (_, k) => old[k] ?? '0');
  }
}
