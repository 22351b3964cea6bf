// The charts of a function: the chosen result at several times, every result along one argument, months, and the numbers
// behind them.
import { byId, element } from './elements.mjs';
import { choicesOf } from './answers.mjs';
import { drawLines, drawMonths } from './draw.mjs';
import { showNumbers } from './table.mjs';
import { brief } from './numbers.mjs';
import { axesOf, byMonth, curveOf, drawable, firstAxis, pointsOf, resultsAlong } from './pictures.mjs';

const mostPoints = 121, fewestPoints = 25, timeForCharts = 200;  // milliseconds

const curves = ['price', 'volatility', 'rate', 'semiannual', 'quantity'];

/** Fills a list of axes; an axis that is gone gives way to `fallback`. Returns the axis chosen. */
export function chooseAxis(select, axes, key, fallback) {
  const option = (axis) => element('option', { value: axis.key, textContent: axis.label });
  const groups = axes.filter((axis) => !axis.key.includes('.')).map(option);
  const cells = axes.filter((axis) => axis.key.includes('.')).map(option);
  select.replaceChildren(...groups, ...(cells.length > 0 ? [element('optgroup', { label: 'single cells' }, ...cells)] : []));
  const axis = axes.find((one) => one.key === key) ?? fallback;
  select.value = axis.key;
  return axis;
}

/** The limits of an axis: as typed where they can be read, else its own. */
export function limitsOf(page, axis, from, to) {
  const read = (text, otherwise) => (text.trim() === '' || !Number.isFinite(page.number(text)) ? otherwise : page.number(text));
  return [read(from, axis.low), read(to, axis.high)];
}

export function drawCharts(page) {
  for (const chart of page.charts ?? []) chart.destroy();
  page.charts = [];
  for (const id of ['plots', 'months']) byId(id).replaceChildren();
  byId('chart-note').textContent = '';
  if (page.wrong) { byId('chart-note').textContent = 'There is a chart as soon as the inputs have a price.'; return; }

  const { api, entry, values } = page;
  const axes = axesOf(entry, values);
  const axis = chooseAxis(byId('x'), axes, page.view.x, firstAxis(axes));
  const { limits: [low, high], note } = drawable(entry, values, axis, ...limitsOf(page, axis, page.view.from, page.view.to));
  for (const id of ['from', 'to']) byId(id).setAttribute('aria-invalid', String(page.view[id].trim() !== '' && !Number.isFinite(page.number(page.view[id]))));
  byId('from').placeholder = brief(axis.low);
  byId('to').placeholder = brief(axis.high);
  if (!(low < high)) { byId('chart-note').textContent = 'These limits leave nothing to draw.'; return; }

  const choices = choicesOf(entry, values).filter((choice) => choice.each !== 'period' || choice.selector === page.selector);
  const chosen = choices.find((choice) => choice.selector === page.selector) ?? choices[0];
  const selectors = choices.map((choice) => choice.selector);
  const points = pointsOf(axis, low, high, countFor(page, selectors.length + 2));
  const main = curveOf(api, entry, values, axis, points, chosen.selector);
  const columns = resultsAlong(api, entry, values, axis, points, selectors);

  const readout = (i) => {
    byId('readout').textContent = i === null || points[i] === undefined ? '' :
      `${axis.label} ${brief(points[i], 6)}:  ` + main.lines.map((line) => `${line.label} ${brief(line.values[i] ?? NaN)}`).join(',  ');
  };
  page.charts.push(drawLines(byId('plots'), { title: chosen.label, unit: chosen.unit, axis, points, lines: main.lines, big: true, onHover: readout }));
  choices.forEach((choice, k) => {
    if (choice === chosen || columns[k].every((value) => value === null)) return;
    page.charts.push(drawLines(byId('plots'), { title: choice.label, unit: choice.unit, axis, points, lines: [{ label: 'now', values: columns[k] }] }));
  });
  byId('chart-note').textContent = note;
  drawCurves(page);
  const later = main.lines.slice(1).map((line) => ({ title: `${chosen.label}, ${line.label}`, values: line.values }));
  const all = [...choices.map((choice, k) => ({ title: choice.label, values: columns[k] })), ...later];
  showNumbers('chart', { name: `${entry.name}-${axis.key}`, caption: `Results against ${axis.label}`, titles: [axis.label, ...all.map(({ title }) => title)],
    rows: points.map((x, i) => [x, ...all.map((column) => column.values[i])]), about: 20 });
}

// Curves and what one month of them is worth.
function drawCurves(page) {
  const { api, entry, values } = page;
  const results = byMonth(api, entry, values).map(({ result, values: numbers }) => ({ title: result.name, unit: result.unit, values: numbers }));
  byId('months-section').hidden = results.length === 0;
  if (results.length === 0) return;
  const given = entry.arguments.flatMap((argument, i) => (curves.includes(argument.unit) && argument.shape === 'range' && Array.isArray(values[i])
    ? [{ title: argument.name, unit: argument.unitName, values: values[i], curve: true }] : []));
  const all = [...results, ...given];
  for (const chart of all) page.charts.push(drawMonths(byId('months'), chart));
  const months = results[0].values.map((_, k) => k + 1);
  showNumbers('month', { name: `${entry.name}-months`, caption: 'Month by month', titles: ['month', ...all.map(({ title }) => title)],
    rows: months.map((month, k) => [month, ...all.map((chart) => chart.values[k] ?? null)]) });
}

// As many points as a quarter of a second has prices for.
function countFor(page, results) {
  const begun = performance.now();
  resultsAlong(page.api, page.entry, page.values, { place: 0, at: () => page.values[0] }, [0, 1, 2], page.entry.results.map((result) => result.selector));
  const each = (performance.now() - begun) / (3 * page.entry.results.length);
  page.cost = Math.max(each, 1e-4);
  return Math.max(fewestPoints, Math.min(mostPoints, Math.floor(timeForCharts / (page.cost * results))));
}
