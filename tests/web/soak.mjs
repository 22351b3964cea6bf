// All functions through the npm package, in one process for hours.
//   node --expose-gc soak.mjs HOURS CALLS   from the root of the sources, once the package is built; prints what tests/hosts/flat.py reads
import { createHash } from 'node:crypto';
import { resolve } from 'node:path';
import { setTimeout } from 'node:timers/promises';
import { dealsAround, formulaOf } from './formulas.mjs';

const [hours, wanted] = process.argv.slice(2).map(Number);
const { kestran } = await import(resolve('build/wasm/npm/node.js'));
const books = kestran.catalogue.functions.map((about) => {
  const deals = dealsAround(about, 32);
  return { about, deal: deals[0], columns: about.arguments.map((_, i) => deals.map((one) => one[i])) };
});

const round = () => {
  const hash = createHash('sha256');
  let calls = 0;
  for (const { about, deal, columns } of books) {
    const prices = kestran.price(about.name, columns, { results: 'all' });
    for (const column of Object.values(prices.values)) hash.update(column);
    const formula = formulaOf(about.name, deal);
    hash.update(JSON.stringify([kestran.evaluate(formula), kestran.explain(formula), kestran.check(about.name, deal), kestran.calls(about.name, deal),
      kestran.price(about.name, deal.map(() => undefined)).refusal().message]));
    calls += prices.deals * about.results.length + 3;
  }
  return { calls, digest: hash.digest('hex') };
};

const start = Date.now();
for (let [i, rounds] = [0, 1]; i < rounds; ++i) {
  const begin = process.cpuUsage();
  const { calls, digest } = round();
  const { user, system } = process.cpuUsage(begin);
  global.gc();
  const { heapUsed, external, rss } = process.memoryUsage();
  console.log(calls, (user + system) / 1e6, (heapUsed + external) >> 10, rss >> 10, digest);
  rounds = Math.max(20, Math.ceil(wanted / calls));
  await setTimeout(Math.max(0, start + (hours * 3600000 * (i + 1)) / rounds - Date.now()));
}
