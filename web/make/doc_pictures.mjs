// Writes the pictures of the repository's pages.
//   node doc_pictures.mjs OUT PACKAGE    PACKAGE is the folder of the package for Node and pages
// What they show is said in docs/pictures/pictures.json and docs/accuracy; their colours are the site's.
import { mkdirSync, readFileSync, readdirSync, writeFileSync } from 'node:fs';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { byMonth } from '../page/pictures.mjs';
import { panelIn, roundRange, svg } from './figure.mjs';
import { house } from './house.mjs';
import { exampleCurve } from './svg.mjs';

const [out, module] = process.argv.slice(2).map((path) => resolve(path));
const web = dirname(dirname(fileURLToPath(import.meta.url))), docs = join(dirname(web), 'docs');
const { kestran: api } = await import(pathToFileURL(join(module, 'node.js')));
const entries = new Map(api.catalogue.functions.map((entry) => [entry.name, entry]));

const styleSheet = (name) => readFileSync(join(web, 'style', name), 'utf8');
const coloursIn = (block) => new Map([...block.matchAll(/--(\w+): (#\w+);/g)].map(([, name, colour]) => [name, colour]));
const [light, dark] = styleSheet('1-colours.css').split('@media').map(coloursIn);

// The site's rules for what the picture holds. Colours are those of a page around it, else the site's own, light or dark;
// programs that know no variables get the light ones.
function styleFor(content) {
  const held = new Set([...content.matchAll(/class="([^"]*)"/g)].flatMap(([, names]) => names.split(' ').map((name) => `.${name}`)));
  const rules = [...styleSheet('6-pictures.css').matchAll(/^\.picture (\S+) \{ (.*); \}$/gm)].filter(([, what]) => what === 'text' || held.has(what));
  const used = [...light.keys()].filter((name) => rules.some(([, , declarations]) => declarations.includes(`(--${name})`)));
  const colours = (set) => `.picture{${used.map((name) => `--k-${name}:var(--${name},${set.get(name)})`).join(';')}}`;
  const declared = (declaration) => {
    const [property, value] = declaration.split(': ');
    const [, name] = value.match(/^var\(--(\w+)\)$/) ?? [];
    return name === undefined ? `${property}:${value}` : `${property}:${light.get(name)};${property}:var(--k-${name})`;
  };
  return `${colours(light)}@media screen and (prefers-color-scheme:dark){${colours(dark)}}${
    rules.map(([, what, declarations]) => `.picture ${what}{${declarations.split('; ').map(declared).join(';')}}`).join('')}`;
}

const alone = (width, height, label, content) => svg(width, height, label, content, styleFor(content));

const entryOf = (formula) => entries.get(formula.match(/^=(\w+)\(/)[1]);
const curveFor = (panel, formula) => exampleCurve(api, entryOf(formula), 281, { ...panel, formula });

function dealsOf(name) {
  const rows = readFileSync(join(docs, 'accuracy', `${name}.csv`), 'utf8').trim().split('\n').map((line) => line.split(','));
  return rows.slice(1).map((row) => Object.fromEntries(row.map((cell, k) => [rows[0][k], Number(cell)])));
}

// By what errors are drawn, and which groups have a colour each.
const groupsBy = {
  strike: { x: (deal) => deal.strike, ends: [-3, 3], of: (deal) => deal.V, bands: [['V to 0.2', 0.2], ['0.2 to 0.4', 0.4], ['above', Infinity]] },
  V: { x: (deal) => deal.V, ends: null, of: (deal) => deal.strike, bands: [['strike below', -0.5], ['near', 0.5], ['above', Infinity]] },
};

/** Errors of stored deals, in groups; those beyond the axis are left out. */
function errorsOf(name, by, title, x) {
  const { x: place, of, bands } = groupsBy[by], all = dealsOf(name);
  const ends = groupsBy[by].ends ?? roundRange(all.map(place), 8);
  const deals = all.filter((deal) => place(deal) >= ends[0] && place(deal) <= ends[1]);
  const groups = bands.map(([label, high], k) => ({
    label, points: deals.filter((deal) => of(deal) <= high && of(deal) > (bands[k - 1]?.[1] ?? -Infinity)).map((deal) => [place(deal), deal.error]),
  }));
  return { title, x, ends, groups };
}

/** What the table says of a panel, in numbers. */
function panelOf(panel) {
  const { title, x } = panel, ends = [panel.from, panel.to];
  if (panel.accuracy) return errorsOf(panel.accuracy, panel.over, title, x);
  if (panel.curves) {
    const curves = panel.curves.map(({ label, formula }) => ({ label: panel.curves.length > 1 && label, curve: curveFor(panel, formula) }));
    return { title, x, ends, points: curves[0].curve.points, lines: curves.map(({ label, curve }) => ({ label, values: curve.lines[0].values })) };
  }
  const entry = entryOf(panel.formula);
  if (panel.bars) return { title, x, bars: byMonth(api, entry, exampleCurve(api, entry, 2, panel).values).find(({ result }) => result.name === panel.bars).values };
  if (panel.range) {
    const values = exampleCurve(api, entry, 2, panel).values[entry.arguments.findIndex(({ name }) => name === panel.range)];
    return { title, x, points: values.map((_, k) => k + 1), lines: [{ values }] };
  }
  const { points: along, lines } = curveFor(panel, panel.formula);
  if (lines.length > 1 && lines.length !== panel.labels?.length) throw new Error(`${title}: lines ${lines.map((line) => line.label).join(' | ')}`);
  return { title, x, ends, points: along, lines: lines.map((line, k) => ({ label: panel.labels?.[k], values: line.values })) };
}

function sheet({ columns, panel: [width, height], panels, label }) {
  const gap = 20, rows = Math.ceil(panels.length / columns);
  const content = panels.map((panel, k) => panelIn(panelOf(panel), { x: 6 + (k % columns) * (width + gap), y: 4 + Math.floor(k / columns) * (height + gap), width, height }));
  return alone(columns * (width + gap) - gap + 12, rows * (height + gap) - gap + 8, label, content.join('\n'));
}

// Errors by size: of the functions one after another, the most exact first.
function spansOf(names) {
  const sizes = names.map((name) => [name, dealsOf(name).map(({ error }) => Math.abs(error)).sort((a, b) => a - b)]);
  const share = (list, part) => list[Math.ceil(part * list.length) - 1];
  return sizes.map(([label, list]) => ({ label, low: share(list, 0.5), high: share(list, 0.95), farthest: list.at(-1) })).sort((a, b) => a.high - b.high);
}

mkdirSync(out, { recursive: true });
const write = (name, picture) => writeFileSync(join(out, `${name}.svg`), `${picture}\n`);
for (const [name, about] of Object.entries(JSON.parse(readFileSync(join(docs, 'pictures/pictures.json'), 'utf8')))) write(name, sheet(about));
const kept = readdirSync(join(docs, 'accuracy')).sort().map((file) => file.replace(/\.csv$/, ''));
for (const name of kept) write(`accuracy-${name}`, sheet({
  columns: 2, panel: [336, 290], label: `Errors of ${name} against exact premiums, over the strike and over V`,
  panels: [
    { title: `${name}: error, % of premium at the money`, accuracy: name, over: 'strike', x: 'Strike, deviations from the forward' },
    { title: 'The same deals over V', accuracy: name, over: 'V', x: 'V = Vol × √T' },
  ],
}));
write('accuracy', alone(732, 418, 'Size of the errors of the functions that approximate', panelIn({
  title: 'Error of the premium', spans: spansOf(kept), unit: ' %', x: 'Share of the premium at the money: bars from half of the deals to 19 in 20, dots the largest',
}, { x: 6, y: 4, width: 720, height: 410 })));
const drawn = house(readFileSync(join(dirname(web), 'tests/include_direction.sh'), 'utf8'));
write('house', alone(drawn.width, drawn.height, drawn.label, drawn.content));
