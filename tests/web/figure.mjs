// The writer of pictures: axes end at round numbers, lines go where their numbers say.
import assert from 'node:assert/strict';
import { panelIn, pathOf, roundRange } from '../../web/make/figure.mjs';

for (const [values, range] of [
  [[-0.1496, 0.02], [-0.15, 0.05]], [[-7, 39], [-10, 40]], [[0.2885, 0.3102], [0.28, 0.32]], [[3, 39], [0, 40]], [[5, 5], [4, 6]],
]) {
  const found = roundRange(values, 5);
  assert.ok(found[0] <= values[0] && found[1] >= values[1], `${values} in ${found}`);
  assert.deepEqual(found, range);
}

// All places of a path, which tells most of them by what they are away from the one before.
function placesOf(path) {
  let x = 0, y = 0;
  return [...path.matchAll(/([Ml])(-?[\d.]+) ?(-?[\d.]+)/g)].map(([, step, a, b]) => {
    [x, y] = step === 'M' ? [Number(a), Number(b)] : [x + Number(a), y + Number(b)];
    return [x, y];
  });
}

// A payoff and a bell keep their shape without most of their points; where there is no number the line parts.
for (const shape of [(x) => Math.max(x - 50, 0), (x) => 80 * Math.exp(-(((x - 40) / 12) ** 2))]) {
  const places = placesOf(pathOf(Array.from({ length: 401 }, (_, i) => [i / 4, shape(i / 4)])));
  assert.ok(places.length < 60, `${places.length} points`);
  for (let x = 0.5; x < 100; ++x) {
    const k = places.findIndex(([at]) => at > x), [[x0, y0], [x1, y1]] = [places[k - 1], places[k]];
    assert.ok(Math.abs(y0 + (y1 - y0) * (x - x0) / (x1 - x0) - shape(x)) < 0.6, `at ${x}`);
  }
}
assert.equal(pathOf([[0, 1], [1, 1], [2, null], [3, 1], [4, 5]]), 'M0 1l1 0M3 1l1 4');

const drawn = panelIn({ points: [0, 5, 10], lines: [{ values: [-0.15, -0.05, 0.05] }] }, { x: 0, y: 0, width: 200, height: 150 });
const [[left, bottom], [right, top]] = placesOf(drawn.match(/class="line line1" d="([^"]*)"/)[1]);
const placeOf = (number) => drawn.match(new RegExp(`<text x="([\\d.]+)" y="([\\d.]+)">${number}</text>`)).slice(1).map(Number);
const isNear = (one, other) => assert.ok(Math.abs(one - other) < 0.2, `${one} is not near ${other}`);
isNear(placeOf('−0.15')[1], bottom + 4);
isNear(placeOf('0.05')[1], top + 4);
isNear(placeOf('10')[0], right);
assert.ok(left < right && top < bottom);
