// Pictures made with the pages: lines as inline SVG, in the colours of the page.
import { axesOf, curveOf, drawable, firstAxis, pointsOf } from '../page/pictures.mjs';
import { readDeal, exampleTexts } from '../page/deal.mjs';
import { brief, ticksOf } from '../page/numbers.mjs';
import { escaped } from './shell.mjs';

/** The main result of the function's example against what a picture moves first. */
export function exampleCurve(api, entry, count) {
  const { values } = readDeal(entry, exampleTexts(entry), api.evaluate);
  const axis = firstAxis(axesOf(entry, values));
  const points = pointsOf(axis, ...drawable(entry, values, axis, axis.low, axis.high).limits, count);
  const selector = entry.results[0].selector;
  return { axis, points, ...curveOf(api, entry, values, axis, points, selector) };
}

const extremes = (lines) => {
  const all = lines.flatMap((line) => line.values).filter((value) => value !== null);
  const low = Math.min(...all), high = Math.max(...all);
  return high > low ? [low, high] : [low - 1, high + 1];
};

const pathOf = (values, x, y) => {
  let down = false;
  return values.map((value, i) => {
    if (value === null) { down = false; return ''; }
    const step = `${down ? 'L' : 'M'}${x(i).toFixed(1)} ${y(value).toFixed(1)}`;
    down = true;
    return step;
  }).join('');
};

/** A small picture without axes: the value now, and dashed how it ends. */
export function sparkline({ lines }, width = 132, height = 60) {
  const shown = lines.length > 1 ? [lines.at(-1), lines[0]] : lines;
  const [low, high] = extremes(shown), room = 4;
  const y = (value) => height - room - (value - low) / (high - low) * (height - 2 * room);
  const paths = shown.map((line) => `<path class="${line === lines[0] ? 'now' : 'end'}" d="${pathOf(line.values, (i) => i * width / (line.values.length - 1), y)}"/>`);
  return `<svg class="spark" viewBox="0 0 ${width} ${height}" preserveAspectRatio="none" aria-hidden="true" focusable="false">${paths.join('')}</svg>`;
}

/** A picture with axes, and a key where there are several lines. */
export function picture(curve, title, width = 640, height = 260) {
  const { axis, points, lines } = curve;
  const margin = { left: 56, right: 12, top: 12, bottom: 40 };
  const [low, high] = extremes(lines), xLow = points[0], xHigh = points.at(-1);
  const x = (value) => margin.left + (value - xLow) / (xHigh - xLow) * (width - margin.left - margin.right);
  const y = (value) => height - margin.bottom - (value - low) / (high - low) * (height - margin.top - margin.bottom);
  const grid = [];
  for (const tick of ticksOf(low, high, 5)) grid.push(`<path class="grid" d="M${margin.left} ${y(tick).toFixed(1)}H${width - margin.right}"/><text x="${margin.left - 7}" y="${(y(tick) + 4).toFixed(1)}" text-anchor="end">${brief(tick)}</text>`);
  for (const tick of ticksOf(xLow, xHigh, 7)) grid.push(`<path class="grid" d="M${x(tick).toFixed(1)} ${margin.top}V${height - margin.bottom}"/><text x="${x(tick).toFixed(1)}" y="${height - margin.bottom + 17}" text-anchor="middle">${brief(tick)}</text>`);
  const drawn = lines.map((line, k) => `<path class="line line${k + 1}" d="${pathOf(line.values, (i) => x(points[i]), y)}"/>`);
  const key = lines.length < 2 ? '' : lines.map((line, k) => `<path class="line line${k + 1}" d="M${margin.left + 12} ${margin.top + 14 + 18 * k}h26"/><text x="${margin.left + 44}" y="${margin.top + 18 + 18 * k}">${escaped(line.label)}</text>`).join('');
  return `<svg class="picture" viewBox="0 0 ${width} ${height}" role="img" aria-label="${escaped(title)}">${grid.join('')}${drawn.join('')}${key}<text x="${(margin.left + width - margin.right) / 2}" y="${height - 5}" text-anchor="middle">${escaped(axis.label)}</text></svg>`;
}
