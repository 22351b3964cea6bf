// Pictures made with the pages: lines as inline SVG, in the colours of the page.
import { axesOf, curveOf, drawable, firstAxis, pointsOf } from '../page/pictures.mjs';
import { readDeal, exampleTexts } from '../page/deal.mjs';
import { extremes, panelIn, pathOf, svg } from './figure.mjs';

/**
 * The main result of the function's example, or of another of its calls, against what a picture moves first. `wanted` may
 * have another formula, the `axis` by name, and its ends.
 */
export function exampleCurve(api, entry, count, wanted = {}) {
  const { values } = readDeal(entry, exampleTexts({ ...entry, example: wanted.formula ?? entry.example }), api.evaluate);
  const axes = axesOf(entry, values);
  const axis = wanted.axis ? axes.find(({ key }) => key === wanted.axis) : firstAxis(axes);
  if (!axis) throw new Error(`${entry.name} has ${axes.map(({ key }) => key).join(', ')}, and no ${wanted.axis}`);
  const points = pointsOf(axis, ...drawable(entry, values, axis, wanted.from ?? axis.low, wanted.to ?? axis.high).limits, count);
  const selector = entry.results[0].selector;
  return { axis, values, ...curveOf(api, entry, values, axis, points, wanted.result ?? selector) };
}

/** A small picture without axes: the value now, and dashed how it ends. */
export function sparkline({ lines }, width = 132, height = 60) {
  const shown = lines.length > 1 ? [lines.at(-1), lines[0]] : lines;
  const [low, high] = extremes(shown.flatMap((line) => line.values)), room = 4;
  const y = (value) => (value === null ? null : height - room - (value - low) / (high - low) * (height - 2 * room));
  const paths = shown.map((line) => `<path class="${line === lines[0] ? 'now' : 'end'}" d="${pathOf(line.values.map((value, i) => [i * width / (line.values.length - 1), y(value)]))}"/>`);
  return `<svg class="spark" viewBox="0 0 ${width} ${height}" preserveAspectRatio="none" aria-hidden="true" focusable="false">${paths.join('')}</svg>`;
}

/** A picture with axes, and a key where there are several lines. */
export function picture({ axis, points, lines }, title, width = 640, height = 280) {
  const shown = lines.length > 1 ? lines : lines.map(({ values }) => ({ values }));
  return svg(width, height, title, panelIn({ x: axis.label, points, lines: shown }, { x: 4, y: 4, width: width - 8, height: height - 8 }));
}
