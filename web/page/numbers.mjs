// Numbers as people type and read them.

const plain = /^[+-]?(\d+\.?\d*|\.\d+)(e[+-]?\d+)?$/i;

/** The number of a text such as 100, 5%, 40/365.25 or another formula without references. */
export function readNumber(text, evaluate) {
  const typed = text.trim();
  if (typed === '') return { number: NaN, fault: 'a number is wanted' };
  if (plain.test(typed)) return { number: Number(typed) };
  const answer = evaluate('=' + typed.replace(/^=/, ''));
  const number = Number(answer);
  if (answer !== '' && Number.isFinite(number)) return { number };
  if (/^[+-]?\d+,\d+%?$/.test(typed)) return { number: NaN, fault: `write ${typed.replace(',', '.')}: decimals have a point` };
  return { number: NaN, fault: `“${typed}” is not a number` };
}

/** For a table: seven digits. */
export function shown(number) {
  if (number === null || number === undefined || Number.isNaN(number)) return '–';
  return String(Number(number.toPrecision(7)));
}

/** For an axis or a sentence. */
export const brief = (number, digits = 5) => {
  const rounded = Number(Number(number).toPrecision(digits));
  return Math.abs(rounded) >= 1e6 || (rounded !== 0 && Math.abs(rounded) < 1e-4) ? rounded.toExponential() : String(rounded);
};

/** The text one step up or down: of a fraction its numerator, of a share of 100 a whole point. */
export function stepped(text, direction, argument) {
  const [, begin, tail] = text.trim().match(/^([+-]?[\d.]+(?:e[+-]?\d+)?)((?:%|\s*\/.*)?)$/i) ?? [];
  if (begin === undefined) return text;
  const number = Number(begin);
  const next = number + direction * stepOf(number, tail, argument);
  return String(Number(next.toPrecision(12))) + tail;
}

function stepOf(number, tail, argument) {
  if (tail.startsWith('%')) return argument.unit === 'rate' || argument.unit === 'semiannual' ? 0.25 : 1;
  if (tail !== '' || ['days', 'whole_days', 'trading_days', 'count', 'selector'].includes(argument.unit)) return 1;
  if (['rate', 'semiannual', 'volatility', 'correlation', 'years', 'weight'].includes(argument.unit)) return 0.01;
  return number === 0 ? 1 : 10 ** (Math.round(Math.log10(Math.abs(number))) - 2);
}

/** Cells copied from a sheet, as a formula writes them: currency signs, thousands and decimal commas go. */
export function pastedCells(text) {
  const rows = text.replace(/\r/g, '').replace(/\n+$/, '').split('\n').map((line) => line.split('\t').map((cell) => cell.trim()));
  const decimalComma = rows.flat().some((cell) => /\d,\d+\D*$/.test(cell) && !/,\d{3}\D*$/.test(cell) && !/\..*,.*\.|,.*\./.test(cell));
  return rows.map((row) => row.map((cell) => cleaned(cell, decimalComma)));
}

function cleaned(cell, decimalComma) {
  let text = cell.replace(/[\s\u00a0\u202f'’$€£]/g, '').replace('−', '-');
  if (/^\(.*\)$/.test(text)) text = '-' + text.slice(1, -1);
  if (/^[+-]?[\d.,]+%?$/.test(text)) text = decimalComma ? text.replace(/\./g, '').replace(',', '.') : text.replace(/,/g, '');
  return text;
}

/** Round numbers from low to high, about so many. */
export function ticksOf(low, high, count) {
  const raw = (high - low) / count, power = 10 ** Math.floor(Math.log10(raw));
  const step = power * [1, 2, 5, 10].find((factor) => factor * power >= raw);
  const ticks = [];
  for (let k = Math.ceil(low / step); k * step <= high + step * 1e-9; ++k) ticks.push(Number((k * step).toPrecision(12)));
  return ticks;
}
