// The folders of the code as a house: a storey includes those below it.
import { escaped } from './shell.mjs';

// left, right and storey of each room, from the ground; bindings are as high as the two rooms beside them.
const rooms = [
  { folder: 'numerics', left: 0, right: 8, low: 0, high: 1, says: ['exponential, normal distributions, arrays: the same bits everywhere'] },
  { folder: 'models', left: 0, right: 8, low: 1, high: 2, says: ['black_scholes, exotics, asian, strips, baskets, rates, trees'] },
  { folder: 'functions', left: 0, right: 8, low: 2, high: 3, says: ['what each of the functions takes, refuses and answers; the catalogue'] },
  { folder: 'addin', left: 0, right: 4, low: 3, high: 4, says: ['KESTRAN.xll, KESTRAN12.xll'] },
  { folder: 'host', left: 0, right: 4, low: 4, high: 5, says: ['the command, a stand-in for Excel'] },
  { folder: 'bindings', left: 4, right: 8, low: 3, high: 5, says: ['C, Python, PostgreSQL, DuckDB,', 'Gnumeric, LibreOffice, web pages'] },
];
const width = 720, unit = 80, storey = 64, roof = 70, edge = 40;
const height = roof + 5 * storey + 20;

const isBelow = (one, other) => one.high <= other.low && one.left < other.right && other.left < one.right;

/** The house, if it stands as the test of the includes has it. */
export function house(directions) {
  for (const room of rooms) {
    const [, allowed] = directions.match(new RegExp(`^check ${room.folder}(.*)$`, 'm'));
    const below = rooms.filter((other) => isBelow(other, room)).map(({ folder }) => folder).sort().join(' ');
    if (allowed.trim().split(' ').sort().join(' ') !== below) throw new Error(`${room.folder} includes ${allowed}, and stands on ${below}`);
  }
  const bottom = height - 10, gap = 4;
  const x = (column) => edge + column * unit, y = (level) => bottom - level * storey;
  const drawn = rooms.map(({ folder, left, right, low, high, says }) => {
    const middle = (x(left) + x(right)) / 2, centre = (y(low) + y(high)) / 2 - 9 * (says.length - 1);
    const lines = says.map((line, i) => `<text x="${middle}" y="${centre + 17 + 18 * i}">${escaped(line)}</text>`).join('');
    return `<rect class="room" x="${x(left) + gap}" y="${y(high) + gap}" width="${x(right) - x(left) - 2 * gap}" height="${y(low) - y(high) - 2 * gap}" rx="4"/><text class="title storey" x="${middle}" y="${centre - 3}">${folder}/</text>${lines}`;
  });
  const arrows = [[1, 0.5], [2, 0.5], [3, 0.5], [4, 0.5], [3, 7.5]].map(([level, column]) => {
    const at = x(column), from = y(level) - 16, to = y(level) + 16;
    return `<path class="arrow" d="M${at} ${from}V${to - 6}"/><path class="head" d="M${at - 5} ${to - 8}h10l-5 9z"/>`;
  });
  const top = y(5);
  const tests = `<path class="room" d="M${edge - 16} ${top}L${width / 2} ${top - roof + 6}L${width - edge + 16} ${top}z"/><text class="title storey" x="${width / 2}" y="${top - 28}">tests/</text><text x="${width / 2}" y="${top - 10}">may look into every room</text>`;
  return { width, height, label: 'The folders as a house: numerics, above it models, functions, then addin and host beside bindings, tests as the roof; arrows point the way includes go, down', content: `<g text-anchor="middle">${tests}${drawn.join('\n')}</g>${arrows.join('')}` };
}
