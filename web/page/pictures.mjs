// The numbers of the pictures: what can be moved and how far, curves, tables over two arguments, results month by month.
import { brief } from './numbers.mjs';

const inMoney = ['price', 'amount', 'ratio', 'quantity', 'weight', 'price_volatility'];
const inTime = ['days', 'whole_days', 'trading_days', 'years'];
const wholeUnits = ['count', 'whole_days'];
const isVolatility = (argument) => argument.unit === 'volatility' || argument.unit === 'price_volatility';
const runsDown = (argument) => ['clock', 'expiry', 'start', 'setting'].includes(argument.role);

const flat = (value) => (Array.isArray(value) ? value.flat() : [value]);
const mean = (list) => list.reduce((sum, number) => sum + number, 0) / list.length;
/** The value with f in the place of each number; what lies on the diagonal of a matrix stays. */
const mapped = (argument, value, f) => (typeof value === 'number' ? f(value)
  : value.map((row, i) => (typeof row === 'number' ? f(row) : row.map((cell, j) => (argument.kind === 'square' && i === j ? cell : f(cell))))));
const centreOf = (argument, value) => mean(argument.kind === 'square'
  ? value.flatMap((row, i) => row.filter((_, j) => i !== j)) : flat(value));

/**
 * Whatever a picture can have on an axis: numbers, whole ranges (their mean, the cells in proportion or in parallel) and
 * single cells. `at(x)` is the argument's value there.
 */
export function axesOf(entry, values) {
  const axes = [];
  entry.arguments.forEach((argument, place) => {
    if (argument.unit === 'selector' || argument.role === 'month') return;
    const value = values[place];
    const whole = axisOf(argument, place, argument.name, argument.shape === 'number' ? value : centreOf(argument, value), value);
    if (typeof value === 'number') whole.at = (x) => x;
    else {
      whole.label = `${argument.name}, all cells`;
      const inProportion = inMoney.includes(argument.unit) || isVolatility(argument) || argument.unit === 'correlation';
      const factor = inProportion && whole.centre !== 0;
      whole.at = (x) => mapped(argument, value, (cell) => (factor ? cell * x / whole.centre : cell + x - whole.centre));
    }
    if (Number.isFinite(whole.centre)) axes.push(whole);
    if (argument.shape !== 'range' || typeof value === 'number') return;
    value.forEach((cell, k) => {
      const one = axisOf(argument, place, `${argument.name}.${k + 1}`, cell);
      one.label = `${argument.name}, cell ${k + 1}`;
      one.at = (x) => value.map((other, j) => (j === k ? x : other));
      axes.push(one);
    });
  });
  return axes;
}

function axisOf(argument, place, key, centre, value) {
  return { key, label: argument.name, argument, place, centre, isWhole: wholeUnits.includes(argument.unit), ...rangeAround(argument, centre, value) };
}

/** The range of the texts where it says something about this value; else one around the value. */
function rangeAround(argument, centre, value) {
  let { low, high } = argument;
  if (argument.shape === 'block' && argument.unit === 'correlation' && Array.isArray(value)) return correlationsAround(argument, centre, value);
  if (low === null || high === null) return { low: centre - 1, high: centre + 1 };
  if (inTime.includes(argument.unit)) {
    if (centre > 0) high = Math.max(centre * 1.5, Math.min(high, centre * 4));
    if (centre < low) low = centre;
  } else if (inMoney.includes(argument.unit) && low >= 0 && centre > 0) {
    const scale = centre < low * 1.15 || centre > high * 0.87 ? 2 * centre / (low + high) : 1;
    low *= scale;
    high *= scale;
  }
  const reach = (high - low) / 10;
  return { low: Math.min(low, centre < low ? centre - reach : low), high: Math.max(high, centre > high ? centre + reach : high) };
}

// Between correlations that are possible: none above 1, and not all of many strongly negative.
function correlationsAround(argument, centre, value) {
  const cells = argument.kind === 'square' ? value.flatMap((row, i) => row.filter((_, j) => i !== j)) : value.flat();
  const size = argument.kind === 'square' ? value.length : (1 + Math.sqrt(1 + 8 * cells.length)) / 2;
  const most = Math.max(...cells);
  return { low: Math.min(centre, -0.99 / (size - 1)), high: centre > 0 && most > 0 ? Math.max(centre, centre / Math.max(most, centre)) : 1 };
}

/** What a picture moves first: the first driver, or else the first axis. */
export const firstAxis = (axes) => axes.find((axis) => axis.argument.role === 'driver') ?? axes[0];
/** And second: another driver, a volatility, or whatever else there is. */
export const secondAxis = (axes, first) => axes.find((axis) => axis.place !== first.place && axis.argument.role === 'driver' && axis.argument.shape === 'number')
  ?? axes.find((axis) => axis.place !== first.place && isVolatility(axis.argument))
  ?? axes.find((axis) => axis.place !== first.place) ?? first;

/** So many points from low to high, or as many as there are whole numbers; the deal's own value is one of them. */
export function pointsOf(axis, low, high, count) {
  if (axis.isWhole) {
    const step = Math.max(1, Math.ceil((high - low) / (count - 1)));
    return Array.from({ length: Math.floor((Math.floor(high) - Math.ceil(low)) / step) + 1 }, (_, i) => Math.ceil(low) + i * step);
  }
  const step = (high - low) / (count - 1);
  const own = Math.round((axis.centre - low) / step);
  return Array.from({ length: count }, (_, i) => (i === own ? Math.min(high, Math.max(low, axis.centre)) : i === count - 1 ? high : low + i * step));
}

// A number that a picture can show.
const drawn = (entry, selector, value) => (Number.isFinite(value) && value !== entry.results.find((result) => result.selector === selector)?.noAnswer ? value : null);

/** Prices deals that differ from `values` as `changes` say, place → list of values: one call for all of them. */
export function priced(api, entry, values, changes, selectors) {
  const given = values.slice();
  for (const [place, list] of changes) given[place] = list.map((value) => asGiven(entry.arguments[place], value));
  if (entry.resultArgument === null) return [api.price(entry.name, given).value];
  const prices = api.price(entry.name, given, { results: selectors });
  return selectors.map((selector) => prices.values[selector]);
}

// For one deal of many, a range of a single cell is written as such: a list of numbers would be one range for all deals.
function asGiven(argument, value) {
  if (argument.shape === 'number' || Array.isArray(value)) return value;
  return argument.shape === 'block' ? [[value]] : [value];
}

// Sensitivities reprice with the price moved by a thousandth; within two of the barrier they would cross it.
const nearBarrier = 0.002;

/** Where a barrier leaves the deal what it is: null without one, else whether changes keep it on its side. */
export function sideOf(entry, values) {
  const barrier = entry.arguments.findIndex((argument) => argument.role === 'barrier');
  if (barrier < 0) return null;
  const driver = entry.arguments.findIndex((argument) => argument.role === 'driver');
  const isBelow = values[barrier] <= values[driver];
  return {
    keeps(changes) {
      const level = changes.get(barrier) ?? values[barrier], price = changes.get(driver) ?? values[driver];
      return isBelow ? price >= level * (1 + nearBarrier) : price <= level * (1 - nearBarrier);
    },
    /** The part of an axis on this side; the whole of another one. */
    within(axis, low, high) {
      if (axis.place !== driver && axis.place !== barrier) return [low, high];
      const above = (axis.place === driver) === isBelow;
      const edge = axis.place === driver ? values[barrier] * (1 + (above ? nearBarrier : -nearBarrier)) : values[driver] / (1 + (above ? -nearBarrier : nearBarrier));
      return above ? [Math.max(low, edge), high] : [low, Math.min(high, edge)];
    },
    note: `Where ${entry.arguments[barrier].name} is touched it is another deal: the curves end there.`,
  };
}

/** What of an axis can be drawn, and why not all of it. */
export function drawable(entry, values, axis, low, high) {
  const side = sideOf(entry, values);
  const limits = side === null ? [low, high] : side.within(axis, low, high);
  return { limits, note: limits[0] === low && limits[1] === high ? '' : side.note };
}

/** The times at which a deal is drawn: now, half way and at the end, each with the values of all that runs down. */
export function momentsOf(entry, values) {
  const now = { label: 'now', changes: new Map() };
  const yearOf = (argument) => ({ days: 365.25, whole_days: 365.25, years: 1, trading_days: tradingDays(entry, values) })[argument.unit];
  const ends = [];
  let begun = false;
  entry.arguments.forEach((argument, place) => {
    const years = Math.min(...flat(values[place])) / yearOf(argument);
    if (argument.role === 'expiry' || argument.role === 'start') ends.push({ argument, years });
    if (argument.role === 'setting' && years > 0) ends.push({ argument, years });
    begun = begun || (argument.role === 'start' && years <= 0);
  });
  ends.sort((a, b) => a.years - b.years);
  if (begun || ends.length === 0 || !(ends[0].years > 0)) return [now];
  const [end] = ends;
  const moment = (share) => {
    const changes = new Map();
    entry.arguments.forEach((argument, place) => {
      if (!runsDown(argument)) return;
      const passed = end.years * share * yearOf(argument);
      const rounded = argument.unit === 'whole_days' || argument.unit === 'trading_days' ? Math.round(passed) : passed;
      changes.set(place, mapped(argument, values[place], (time) => time - rounded));
    });
    return changes;
  };
  const days = brief(end.years * 365.25, 4), half = brief(end.years * 182.625, 4);
  // At the very end some models have no number, and a strike that was to be set is another one.
  const justBefore = 1 - (end.argument.role === 'setting' ? 1e-3 : 1e-9);
  const last = end.argument.role === 'expiry' ? `at expiry, in ${days} days` : `in ${days} days, ${end.argument.name} 0`;
  return [now, { label: `in ${half} days`, changes: moment(0.5) }, { label: last, changes: moment(justBefore) }];
}

function tradingDays(entry, values) {
  const place = entry.arguments.findIndex((argument) => argument.unit === 'trading_days' && !runsDown(argument));
  return place < 0 ? 252 : values[place];
}

/** One result along an axis, a line for each moment: { points, lines: [{ label, values }] }. All lines are one call. */
export function curveOf(api, entry, values, axis, points, selector) {
  const [main] = entry.results;
  const decays = main.name === 'premium' && main.unit === 'price' && !runsDown(axis.argument);
  // At the end sensitivities jump; there only the premium says something.
  const moments = momentsOf(entry, values).slice(0, !decays ? 1 : selector === main.selector ? 3 : 2);
  const changes = new Map([[axis.place, moments.flatMap(() => points.map(axis.at))]]);
  for (const place of new Set(moments.flatMap((moment) => [...moment.changes.keys()])))
    changes.set(place, moments.flatMap((moment) => points.map(() => moment.changes.get(place) ?? values[place])));
  const [all] = priced(api, entry, values, changes, [selector]);
  const lines = moments.map(({ label }, k) => ({
    label, values: points.map((_, i) => drawn(entry, selector, all[k * points.length + i])),
  })).filter((line, k) => k === 0 || line.values.some((value) => value !== null));
  return { points, lines };
}

/** All results along an axis, now: a list of numbers for each selector, null where there is none. */
export function resultsAlong(api, entry, values, axis, points, selectors) {
  const columns = priced(api, entry, values, new Map([[axis.place, points.map(axis.at)]]), selectors);
  return columns.map((column, k) => Array.from(column, (value) => drawn(entry, selectors[k], value)));
}

/** One result over two axes: rows from the lowest y, null where there is no number. */
export function tableOver(api, entry, values, across, up, xs, ys, selector) {
  const side = sideOf(entry, values);
  const pairs = ys.flatMap((y) => xs.map((x) => [x, y]));
  const changes = new Map([[across.place, pairs.map(([x]) => across.at(x))], [up.place, pairs.map(([, y]) => up.at(y))]]);
  const [all] = priced(api, entry, values, changes, [selector]);
  return ys.map((y, row) => xs.map((x, column) => {
    const keeps = side === null || side.keeps(new Map([[across.place, across.at(x)], [up.place, up.at(y)]]));
    return keeps ? drawn(entry, selector, all[row * xs.length + column]) : null;
  }));
}

/** How many months, contracts or periods the results of one have. */
export function monthsOf(entry, values) {
  const range = values.find((value, i) => entry.arguments[i].shape === 'range' && Array.isArray(value));
  if (range) return range.length;
  const month = entry.arguments.find((argument) => argument.role === 'month');
  return month && !entry.arguments.some((argument) => argument.shape !== 'number') ? month.high : 1;
}

/** Results of one month or period for each of them: { result, values }. */
export function byMonth(api, entry, values) {
  const months = Array.from({ length: monthsOf(entry, values) }, (_, k) => k + 1);
  const month = entry.arguments.findIndex((argument) => argument.role === 'month');
  const ofMonth = entry.results.filter((result) => result.each === 'month' && result.unit !== 'none');
  const ofPeriod = entry.results.filter((result) => result.each === 'period');
  const list = [];
  if (ofMonth.length > 0) {
    const columns = priced(api, entry, values, new Map([[month, months]]), ofMonth.map((result) => result.selector));
    ofMonth.forEach((result, k) => list.push({ result, values: [...columns[k]] }));
  }
  for (const result of ofPeriod)
    list.push({ result, values: priced(api, entry, values, new Map(), months.map((m) => result.selector + m - 1)).map((column) => column[0]) });
  return months.length > 1 ? list : [];
}
