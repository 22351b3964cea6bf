// Pictures as SVG, the same bytes each time: panels with axes, in the colours of the page they stand in. What is drawn says
// the caller.
import { brief, ticksOf } from '../page/numbers.mjs';
import { escaped } from './shell.mjs';

const letter = 6.8;  // of the text's 12 pixels, somewhat wide
const widthOf = (text) => letter * text.length;
const at = (number) => String(Number(number.toFixed(1)));
const tickText = (number) => {
  const size = Math.abs(number);
  return (size >= 1e-7 && size < 1e-4 ? number.toFixed(8).replace(/0+$/, '') : brief(number)).replaceAll('-', '−');
};
// Rounding must not lose the first one, nor make them fewer.
const ticksIn = ([low, high], count) => ticksOf(low - 1e-9 * (high - low), high, count + 1e-6);
const text = (x, y, words, attributes = '') => `<text x="${at(x)}" y="${at(y)}"${attributes}>${escaped(words)}</text>`;

/** Of the points of a line those without which it would be more than 0.15 pixels elsewhere. */
function needed(points) {
  if (points.length < 3) return points;
  const [x0, y0] = points[0], [x1, y1] = points.at(-1);
  const length = Math.sqrt((x1 - x0) ** 2 + (y1 - y0) ** 2) || 1;
  let farthest = 0, distance = 0.15;
  points.forEach(([x, y], i) => {
    const off = Math.abs((x1 - x0) * (y0 - y) - (x0 - x) * (y1 - y0)) / length;
    if (off > distance) [farthest, distance] = [i, off];
  });
  if (farthest === 0) return [points[0], points.at(-1)];
  return [...needed(points.slice(0, farthest + 1)).slice(0, -1), ...needed(points.slice(farthest))];
}

/** A line through the points; one whose second coordinate is null parts it. */
export function pathOf(points) {
  const parts = [[]];
  for (const point of points) {
    if (point[1] !== null) parts.at(-1).push(point);
    else if (parts.at(-1).length > 0) parts.push([]);
  }
  return parts.filter((part) => part.length > 0).map((part) => steps(needed(part), 10, 'l')).join('');
}

// From the first point on each from the one before, which is shorter; `fine` parts of a pixel.
function steps(points, fine, step, behind = '') {
  let x = 0, y = 0;
  return points.map((point, i) => {
    const [nextX, nextY] = point.map((number) => Math.round(number * fine));
    const moved = `${i === 0 ? 'M' : step}${(nextX - x) / fine} ${(nextY - y) / fine}${behind}`;
    [x, y] = [nextX, nextY];
    return moved;
  }).join('').replace(/ -/g, '-');
}

export function extremes(values) {
  const all = values.filter((value) => value !== null);
  const low = Math.min(...all), high = Math.max(...all);
  return high > low ? [low, high] : [low - 1, high + 1];
}

/** From the lowest to the highest value, ending at round numbers; from 0 where that is near. */
export function roundRange(values, count) {
  let range = extremes(values);
  if (range[0] > 0 && range[0] < 0.4 * range[1]) range[0] = 0;
  // The wider range may have wider steps.
  for (let i = 0; i < 2; ++i) {
    const [first, second] = ticksIn(range, count), step = second - first;
    range = [Math.floor(range[0] / step + 1e-9), Math.ceil(range[1] / step - 1e-9)].map((steps) => Number((steps * step).toPrecision(12)));
  }
  return range;
}

// The key above a panel: a sample of each line, so wide, with its label, in as many rows as that takes.
function keyOf(lines, { sample, wide }, box) {
  let x = box.x, y = box.y + 12;
  const parts = lines.map((line, k) => {
    const width = wide + 8 + widthOf(line.label) + 18;
    if (x > box.x && x + width - 18 > box.x + box.width) [x, y] = [box.x, y + 18];
    const part = sample(x, y - 4, k) + text(x + wide + 8, y, line.label);
    x += width;
    return part;
  });
  return { drawn: parts.join(''), height: lines.length > 0 ? y - box.y + 10 : 0 };
}

// Title, key, grid and numbers of a panel, and where its values lie.
function framed(panel, box, xRange, yRange, xTicks, samples) {
  const heading = panel.title ? text(box.x, box.y + 14, panel.title, ' class="title"') : '';
  const above = panel.title ? 26 : 0;
  const key = keyOf((panel.lines ?? []).filter((line) => line.label), samples, { x: box.x, y: box.y + above, width: box.width });
  const yTicks = ticksIn(yRange, 5);
  const left = box.x + Math.max(...yTicks.map((tick) => widthOf(tickText(tick)))) + 10, right = box.x + box.width - 12;
  const top = box.y + above + key.height + 8, bottom = box.y + box.height - (panel.x ? 40 : 24);
  const x = (value) => left + (value - xRange[0]) / (xRange[1] - xRange[0]) * (right - left);
  const y = (value) => bottom - (value - yRange[0]) / (yRange[1] - yRange[0]) * (bottom - top);
  const across = yTicks.map((tick) => `M${at(left)} ${at(y(tick))}H${at(right)}`).join('');
  const up = xTicks.map((tick) => `M${at(x(tick))} ${at(top)}V${at(bottom)}`).join('');
  const zero = yRange[0] < 0 && yRange[1] > 0 ? `<path class="axis" d="M${at(left)} ${at(y(0))}H${at(right)}"/>` : '';
  const numbers = `<g text-anchor="end">${yTicks.map((tick) => text(left - 7, y(tick) + 4, tickText(tick))).join('')}</g><g text-anchor="middle">${
    xTicks.map((tick) => text(x(tick), bottom + 17, tickText(tick))).join('')}${panel.x ? text((left + right) / 2, bottom + 36, panel.x) : ''}</g>`;
  return { x, y, frame: `${heading}<path class="grid" d="${panel.bars ? across : across + up}"/>${zero}${numbers}`, key: key.drawn };
}

const drawers = [
  // Lines over numbers: { points, lines: [{ label, values }], ends: of the axis }.
  [(panel) => panel.points, (panel, box) => {
    const { points, lines } = panel, xRange = panel.ends ?? [points[0], points.at(-1)];
    const yRange = roundRange(lines.flatMap((line) => line.values), 5);
    const sample = (x, y, k) => `<path class="line line${k + 1}" d="M${at(x)} ${at(y)}h26"/>`;
    const { x, y, frame, key } = framed(panel, box, xRange, yRange, ticksIn(xRange, box.width / 55), { sample, wide: 26 });
    const drawn = lines.map((line, k) => `<path class="line line${k + 1}" d="${pathOf(line.values.map((value, i) => [x(points[i]), value === null ? null : y(value)]))}"/>`);
    return frame + drawn.reverse().join('') + key;
  }],
  // Bars, one for each of 1, 2, ...: { bars: values }.
  [(panel) => panel.bars, (panel, box) => {
    const months = panel.bars.map((_, k) => k + 1), yRange = roundRange([0, ...panel.bars], 5);
    const { x, y, frame } = framed(panel, box, [0.4, months.length + 0.6], yRange, months, {});
    const wide = (x(2) - x(1)) * 0.66;
    return `${frame}<path class="bar" d="${panel.bars.map((value, k) => `M${at(x(k + 1) - wide / 2)} ${at(y(0))}V${at(y(value))}h${at(wide)}V${at(y(0))}z`).join('')}"/>`;
  }],
  // Points in groups: { groups: [{ label, points: [[x, y]] }], ends: of the axis }. Whole pixels: nobody sees more of a dot.
  [(panel) => panel.groups, (panel, box) => {
    const xRange = panel.ends, yRange = roundRange([0, ...panel.groups.flatMap((group) => group.points.map(([, y]) => y))], 5);
    const dots = (points, k) => `<path class="dot dot${k + 1}" d="${steps(points, 1, 'm', 'h0')}"/>`;
    const sample = (x, y, k) => dots([[x + 3, y]], k);
    const { x, y, frame, key } = framed({ ...panel, lines: panel.groups }, box, xRange, yRange, ticksIn(xRange, box.width / 55), { sample, wide: 6 });
    return frame + panel.groups.map((group, k) => dots(group.points.map(([a, b]) => [x(a), y(b)]), k)).reverse().join('') + key;
  }],
  // Bars along powers of ten, with a dot at the farthest: { spans: [{ label, low, high, farthest }], unit }.
  [(panel) => panel.spans, (panel, box) => {
    const { spans, unit } = panel, { log10, floor, ceil } = Math;
    const first = floor(log10(Math.min(...spans.map((span) => span.low)))), last = ceil(log10(Math.max(...spans.map((span) => span.farthest))));
    const left = box.x + Math.max(...spans.map((span) => widthOf(span.label))) + 8, right = box.x + box.width - 30;
    const top = box.y + 30, bottom = box.y + box.height - 40, row = (bottom - top) / spans.length;
    const x = (value) => left + (log10(value) - first) / (last - first) * (right - left);
    const ticks = Array.from({ length: last - first + 1 }, (_, k) => Number(`1e${first + k}`));
    const grid = `<path class="grid" d="${ticks.map((tick) => `M${at(x(tick))} ${top}V${bottom}`).join('')}"/>`;
    const numbers = `<g text-anchor="middle">${ticks.map((tick) => text(x(tick), bottom + 17, tickText(tick) + unit)).join('')}${text((left + right) / 2, bottom + 36, panel.x)}</g>`;
    const middle = (k) => top + (k + 0.5) * row;
    const labels = `<g text-anchor="end">${spans.map((span, k) => text(left - 8, middle(k) + 4, span.label)).join('')}</g>`;
    const bars = `<path class="bar" d="${spans.map((span, k) => `M${at(x(span.low))} ${at(middle(k) - 5)}H${at(x(span.high))}v10H${at(x(span.low))}z`).join('')}"/>`;
    const dots = `<path class="dot dot3" d="${spans.map((span, k) => `M${at(x(span.farthest))} ${at(middle(k))}h0`).join('')}"/>`;
    return text(box.x, box.y + 14, panel.title, ' class="title"') + grid + numbers + labels + bars + dots;
  }],
];

/** A panel's SVG in a box of the picture. */
export function panelIn(panel, box) {
  return drawers.find(([suits]) => suits(panel))[1](panel, box);
}

/** The picture of `content`; `style` is the text of a style sheet for a file that stands alone. */
export function svg(width, height, label, content, style = '') {
  const alone = style === '' ? '' : ` xmlns="http://www.w3.org/2000/svg" width="${width}" height="${height}"`;
  return `<svg${alone} class="picture" viewBox="0 0 ${width} ${height}" role="img" aria-label="${escaped(label)}">${style === '' ? '' : `<style>${style}</style>`}${content}</svg>`;
}
