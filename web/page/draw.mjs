// Charts of lines and bars with uPlot, which the page loads before this script.
import { colour, element } from './elements.mjs';
import { brief } from './numbers.mjs';

const strokes = ['--line1', '--line2', '--line3'];
const dashes = [[], [7, 4], [2, 3]];
const font = '12px system-ui, sans-serif';

const axisStyle = () => {
  const grid = { stroke: colour('--grid'), width: 1 };
  return { stroke: colour('--dim'), grid, ticks: grid, font };
};
const ticks = (_, list) => list.map((value) => (value === null ? '' : brief(value, 6)));

/** A figure with a caption, a key where there are several lines, and a canvas for the chart. */
function figure(title, unit, labels, summary, big) {
  const canvas = element('div', { className: 'canvas', role: 'img', 'aria-label': summary });
  const key = labels.length > 1 ? labels.map((label, k) => element('span', { className: `key key${k + 1}`, textContent: label })) : [];
  const made = element('figure', { className: big ? 'big' : '' },
    element('figcaption', {}, element('b', { textContent: title }), ' ', element('span', { className: 'unit', textContent: unit }), ...key), canvas);
  return { made, canvas };
}

function summaryOf(title, lines, axis, points) {
  const values = lines[0].values.filter((value) => value !== null);
  const range = values.length === 0 ? 'no numbers' : `from ${brief(Math.min(...values))} to ${brief(Math.max(...values))}`;
  return `${title} against ${axis.label} from ${brief(points[0])} to ${brief(points.at(-1))}: ${range}. The numbers are in the table below.`;
}

/**
 * Appends a chart of lines to `box`. `options`: title, unit, axis, points, lines [{ label, values }], big, onHover(index).
 * Returns the chart, for destroy().
 */
export function drawLines(box, options) {
  const { title, unit, axis, points, lines, big, onHover } = options;
  const { made, canvas } = figure(title, unit, lines.map((line) => line.label), summaryOf(title, lines, axis, points), big);
  box.append(made);
  const chart = new uPlot({
    width: canvas.clientWidth, height: big ? 320 : 170, legend: { show: false },
    cursor: { sync: { key: 'x', setSeries: false }, drag: { x: false, y: false }, y: false, points: { size: 7 } },
    scales: { x: { time: false, range: [points[0], points.at(-1)] }, y: { range: (_, low, high) => spread(low, high) } },
    series: [{}, ...lines.map((line, k) => ({
      label: line.label, stroke: colour(strokes[k]), width: k === 0 ? 2.25 : 1.75, dash: dashes[k], points: { show: false }, gaps: wideGaps,
    }))],
    axes: [
      { ...axisStyle(), size: 30, values: ticks, ...(big ? { label: axis.label, labelSize: 20, labelFont: font } : {}) },
      { ...axisStyle(), size: 62, values: ticks },
    ],
    hooks: {
      draw: [(u) => mark(u, axis.centre)],
      setCursor: [(u) => onHover?.(u.cursor.idx ?? null)],
    },
  }, [points, ...lines.map((line) => line.values)], canvas);
  return chart;
}

// A single point without a number, such as one at the very strike, does not part a line.
const wideGaps = (u, series, first, last, gaps) => gaps.filter(([from, to]) => to - from > 2.5 * u.bbox.width / u.data[0].length);

// A constant gets some room; a line that runs along an edge, too.
function spread(low, high) {
  if (low === null || !Number.isFinite(low)) return [0, 1];
  const size = Math.max(Math.abs(low), Math.abs(high));
  const room = high - low > 1e-9 * size ? 0.06 * (high - low) : 0.1 * (size || 1);
  return [low - room, high + room];
}

// A line at the argument's own value.
function mark(u, centre) {
  const x = u.valToPos(centre, 'x', true);
  if (!(x >= u.bbox.left && x <= u.bbox.left + u.bbox.width)) return;
  u.ctx.save();
  u.ctx.strokeStyle = colour('--mark');
  u.ctx.lineWidth = devicePixelRatio;
  u.ctx.setLineDash([4 * devicePixelRatio, 4 * devicePixelRatio]);
  u.ctx.beginPath();
  u.ctx.moveTo(x, u.bbox.top);
  u.ctx.lineTo(x, u.bbox.top + u.bbox.height);
  u.ctx.stroke();
  u.ctx.restore();
}

/** Appends a chart of bars, or of points joined by lines where they are a curve: a value for each of 1, 2, ... */
export function drawMonths(box, { title, unit, values, curve }) {
  const months = values.map((_, k) => k + 1);
  const numbers = values.map((value) => (Number.isFinite(value) ? value : null));
  const { made, canvas } = figure(title, unit, [], `${title} by month: ${numbers.map((value) => brief(value ?? NaN)).join(', ')}.`, false);
  box.append(made);
  const every = Math.ceil(months.length / 14);
  const series = curve ? { stroke: colour('--line2'), width: 2, points: { show: true, size: 6, fill: colour('--line2') } }
    : { stroke: colour('--line1'), fill: colour('--bar'), width: 1, points: { show: false }, paths: uPlot.paths.bars({ size: [0.6, 60] }) };
  return new uPlot({
    width: canvas.clientWidth, height: 170, legend: { show: false }, cursor: { show: false },
    scales: {
      x: { time: false, range: [0.4, months.length + 0.6] },
      y: { range: (_, low, high) => (curve ? spread(low, high) : spread(Math.min(0, low), Math.max(0, high))) },
    },
    series: [{}, series],
    axes: [{ ...axisStyle(), size: 30, splits: () => months.filter((month) => month % every === 0) }, { ...axisStyle(), size: 62, values: ticks }],
  }, [months, numbers], canvas);
}
