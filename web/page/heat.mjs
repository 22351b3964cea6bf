// A heat map: one result over two arguments, with a cursor that the mouse and the arrow keys move.
import { byId, colour, element } from './elements.mjs';
import { choicesOf } from './answers.mjs';
import { chooseAxis, limitsOf } from './charts.mjs';
import { brief, shown, ticksOf } from './numbers.mjs';
import { showNumbers } from './table.mjs';
import { axesOf, firstAxis, pointsOf, secondAxis, tableOver } from './pictures.mjs';

const sizes = [[49, 33], [37, 25], [25, 17], [17, 13], [13, 9], [9, 7]];
const timeForMap = 160;  // milliseconds
const margin = { left: 58, right: 10, top: 10, bottom: 40 };

export function drawHeat(page) {
  const box = byId('heat');
  page.heat = null;
  byId('heat-note').textContent = '';
  if (page.wrong) { byId('heat-figure').hidden = true; return; }
  byId('heat-figure').hidden = false;
  const { api, entry, values, view } = page;
  const axes = axesOf(entry, values);
  const across = chooseAxis(byId('heat-x'), axes, view.hx, firstAxis(axes));
  const up = chooseAxis(byId('heat-y'), axes, view.hy, secondAxis(axes, across));
  const choices = choicesOf(entry, values);
  const select = byId('heat-result');
  select.replaceChildren(...choices.map((choice) => element('option', { value: String(choice.selector), textContent: choice.label })));
  const chosen = choices.find((choice) => String(choice.selector) === view.hr) ?? choices.find((choice) => choice.selector === page.selector) ?? choices[0];
  select.value = String(chosen.selector);
  if (across.place === up.place) { byId('heat-note').textContent = 'Two different arguments are wanted.'; byId('heat-figure').hidden = true; return; }

  const [columns, rows] = sizes.find(([x, y]) => x * y * page.cost < timeForMap) ?? sizes.at(-1);
  // The limits that were set for the charts hold here, too, where the axis is the same.
  const shared = view.x === across.key || (view.x === '' && across === firstAxis(axes));
  const [low, high] = shared ? limitsOf(page, across, view.from, view.to) : [across.low, across.high];
  const xs = pointsOf(across, low < high ? low : across.low, low < high ? high : across.high, columns), ys = pointsOf(up, up.low, up.high, rows);
  const table = tableOver(api, entry, values, across, up, xs, ys, chosen.selector);
  const numbers = table.flat().filter((value) => value !== null);
  if (numbers.length === 0) { byId('heat-note').textContent = 'There is no number here.'; byId('heat-figure').hidden = true; return; }
  page.heat = { across, up, xs, ys, table, chosen, low: Math.min(...numbers), high: Math.max(...numbers), at: nearest(xs, ys, across, up) };
  const reach = (axis, list) => `${axis.label} from ${brief(list[0])} to ${brief(list.at(-1))}`;
  box.setAttribute('aria-label', `${chosen.label} over ${reach(across, xs)} and ${reach(up, ys)}, between ${brief(page.heat.low)} and `
    + `${brief(page.heat.high)}. Arrow keys read single numbers; the table below has them.`);
  const tiny = 1e-6 * Math.max(Math.abs(page.heat.low), Math.abs(page.heat.high));
  byId('heat-low').textContent = brief(Math.abs(page.heat.low) < tiny ? 0 : page.heat.low, 4);
  byId('heat-high').textContent = brief(page.heat.high, 4);
  paint(page.heat, box);
  readOut(page.heat);
  showMapNumbers(page);
}

const nearestIndex = (list, value) => list.reduce((best, x, i) => (Math.abs(x - value) < Math.abs(list[best] - value) ? i : best), 0);
const nearest = (xs, ys, across, up) => [nearestIndex(xs, across.centre), nearestIndex(ys, up.centre)];

/** From 0 to 1 through the colours of the scale. */
function scaleOf() {
  const stops = [0, 1, 2, 3, 4].map((k) => colour(`--heat${k}`).match(/\w\w/g).map((part) => parseInt(part, 16)));
  return (share) => {
    const at = Math.max(0, Math.min(3.9999, share * 4)), k = Math.floor(at), part = at - k;
    return `rgb(${stops[k].map((value, i) => Math.round(value + (stops[k + 1][i] - value) * part)).join(',')})`;
  };
}

function paint(heat, canvas) {
  const width = canvas.parentElement.clientWidth, height = Math.min(400, Math.max(240, width * 0.5)), ratio = devicePixelRatio;
  canvas.width = width * ratio;
  canvas.height = height * ratio;
  canvas.style.height = `${height}px`;
  const c = canvas.getContext('2d');
  c.scale(ratio, ratio);
  const wide = width - margin.left - margin.right, tall = height - margin.top - margin.bottom;
  const { xs, ys, table, low, high } = heat, scale = scaleOf();
  const cellWidth = wide / xs.length, cellHeight = tall / ys.length;
  heat.box = { wide, tall, cellWidth, cellHeight };
  table.forEach((row, j) => row.forEach((value, i) => {
    if (value === null) return;
    c.fillStyle = scale(high > low ? (value - low) / (high - low) : 0.5);
    const left = Math.round(margin.left + i * cellWidth), top = Math.round(margin.top + tall - (j + 1) * cellHeight);
    // A pixel more, under the cells that follow: on paper cells that only touch leave a gap.
    c.fillRect(left, top, Math.round(margin.left + (i + 1) * cellWidth) - left + 1, Math.round(margin.top + tall - j * cellHeight) - top + 1);
  }));
  c.fillStyle = colour('--dim');
  c.font = '12px system-ui, sans-serif';
  c.textAlign = 'center';
  // A value stands in the middle of its cell.
  const along = (list, tick) => 0.5 + (list.length - 1) * (tick - list[0]) / (list.at(-1) - list[0]);
  for (const tick of ticksOf(xs[0], xs.at(-1), width < 500 ? 4 : 8))
    c.fillText(brief(tick), margin.left + along(xs, tick) * cellWidth, height - margin.bottom + 16);
  c.fillText(heat.across.label, margin.left + wide / 2, height - 6);
  c.textAlign = 'right';
  for (const tick of ticksOf(ys[0], ys.at(-1), 6)) c.fillText(brief(tick), margin.left - 6, margin.top + tall - along(ys, tick) * cellHeight + 4);
  c.save();
  c.translate(11, margin.top + tall / 2);
  c.rotate(-Math.PI / 2);
  c.textAlign = 'center';
  c.fillText(heat.up.label, 0, 0);
  c.restore();
  const [i, j] = heat.at;
  for (const [stroke, width] of [['#000000', 4], ['#ffffff', 2]]) {
    c.lineWidth = width;
    c.strokeStyle = stroke;
    c.strokeRect(margin.left + i * cellWidth, margin.top + tall - (j + 1) * cellHeight, cellWidth, cellHeight);
  }
}

function readOut({ across, up, xs, ys, table, chosen, at: [i, j] }) {
  byId('heat-readout').textContent = `${across.label} ${brief(xs[i])}, ${up.label} ${brief(ys[j])}: ${chosen.label} ${shown(table[j][i])}`;
}

/** Mouse and keys move the cursor of the map. */
export function listenToHeat(page) {
  const canvas = byId('heat');
  const move = (i, j) => {
    const { heat } = page;
    heat.at = [Math.max(0, Math.min(heat.xs.length - 1, i)), Math.max(0, Math.min(heat.ys.length - 1, j))];
    paint(heat, canvas);
    readOut(heat);
  };
  canvas.onpointermove = canvas.onpointerdown = (event) => {
    if (!page.heat) return;
    const { wide, tall, cellWidth, cellHeight } = page.heat.box;
    const x = event.offsetX - margin.left, y = event.offsetY - margin.top;
    if (x >= 0 && x < wide && y >= 0 && y < tall) move(Math.floor(x / cellWidth), Math.floor((tall - y) / cellHeight));
  };
  canvas.onkeydown = (event) => {
    const step = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, 1], ArrowDown: [0, -1] }[event.key];
    if (!step || !page.heat) return;
    event.preventDefault();
    move(page.heat.at[0] + step[0], page.heat.at[1] + step[1]);
  };
}

function showMapNumbers(page) {
  const { across, up, xs, ys, table, chosen } = page.heat;
  showNumbers('heat', { name: `${page.entry.name}-${across.key}-${up.key}`, caption: `${chosen.label}: ${across.label} across, ${up.label} down`,
    titles: [`${up.label} / ${across.label}`, ...xs], rows: ys.map((y, j) => [y, ...table[j]]).reverse(), about: 9, columnsAbout: 9 });
}
