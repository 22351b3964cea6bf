// The extension in DuckDB.
//   node duckdb.mjs PRESET   from the root of the sources; the build whose extension and command are tested
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdirSync, readFileSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join, resolve } from 'node:path';

const { DuckDBInstance } = createRequire(resolve('build/sql/package.json'))('@duckdb/node-api');
const build = resolve('build', process.argv[2]);
const folder = resolve('build/sql/run');
const clear = () => rmSync(folder, { recursive: true, force: true });
clear();
mkdirSync(folder);
process.on('exit', clear);

const database = await DuckDBInstance.create(':memory:', { allow_unsigned_extensions: 'true', threads: '2' });
const connection = await database.connect();
const run = (statement) => connection.run(statement);
const rows = async (query) => (await connection.runAndReadAll(query)).getRowsJS();
const row = async (query) => (await rows(query))[0];
const command = (file, ...options) => execFileSync(join(build, 'bin/kestran'), options, { input: file, encoding: 'utf8', maxBuffer: 1e8 });
const values = (formulas) => command(formulas.join('\n') + '\n').trimEnd().split('\n').map((text) =>
  ({ inf: Infinity, '-inf': -Infinity, nan: NaN })[text] ?? (text.startsWith('#') ? null : Number(text)));

const tests = {
  async 'installed and loaded'() {
    await run(`set extension_directory = '${folder}'`);
    await run(`install '${build}/duckdb/kestran.duckdb_extension'`);
    await run('load kestran');
    const functions = command('', '--list').trim().split('\n').map((line) => line.split('\t')[0].toLowerCase());
    const known = new Set((await rows('select lower(function_name) from duckdb_functions()')).flat());
    for (const name of functions) assert.ok(known.has(name) && known.has(`${name}_refusal`), name);
  },

  async 'the examples of all functions have the bits of the command'() {
    const calls = execFileSync(join(build, 'bin/example_calls'), { encoding: 'utf8' }).trimEnd().split('\n').map((line) => line.split('\t'));
    const expected = values(calls.map(([formula]) => formula));
    assert.ok(calls.length > 81 && expected.every((value) => value !== null));
    // By a table, so that the calls are not worked out while the query is planned.
    for (let i = 0; i < calls.length; ++i) {
      const [value, refusal] = await row(`select ${calls[i][2]}, ${calls[i][2].replace('(', '_refusal(')}`);
      assert.ok(Object.is(value, expected[i]) && refusal === null, `${calls[i][2]}: ${value}, not ${expected[i]}`);
    }
  },

  async 'the main result without RetType'() {
    assert.deepEqual(await row('select euro(100, 95, 0.05, 0.02, 0.25, 90, 1), euro_refusal(100, 95, 0.05, 0.02, 0.25, 90, 1)'), [8.14303821049409, null]);
  },

  async 'refused calls are NULL and have a reason'() {
    const basket = (prices, correlations) => `(${prices}, [0.3, 0.4], [0.02, -0.01], [0.6, 0.4], ${correlations}, 0.75)`;
    const square = '[[1, 0.5], [0.5, 1]]';
    for (const [name, call, reason] of [
      ['EURO', '(100, 95, 0.05, 0.02, 0.25, 90, 1, 9)', 'RetType 9 is outside 0 to 8'],
      ['EURO', '(100, 95, 0.05, 0.02, NULL, 90, 1, 0)', 'Vol is missing'],
      ['EURO', "(100, 95, 0.05, 0.02, 'nan'::double, 90, 1)", 'Vol is missing'],
      ['BASVOL', basket('[100, NULL]', square), 'Forward_Price has a cell that holds no number'],
      ['BASVOL', basket('[]', square), 'Forward_Price has a cell that holds no number'],
      ['BASVOL', basket('NULL', square), 'Forward_Price is missing'],
      ['BASVOL', basket('range(1000)', square), 'Forward_Price has more cells than are taken'],
      ['BASVOL', basket('[100, 90]', '[[1, 0.5], [0.5]]'), 'Correl_Matrix has a cell that holds no number'],
      ['BASVOL', basket('[100, 90]', '[[1, 0.5], NULL]'), 'Correl_Matrix has a cell that holds no number'],
      ['BASVOL', basket('[100, 90]', '[[1, 0.5]]'), 'Correl_Matrix must have a row and a column for each cell of the ranges before it'],
      ['BASVOL', basket('[100, 90]', '[range(1000000), range(1000000)]'), 'Correl_Matrix refers to cells that cannot be read'],
    ]) assert.deepEqual(await row(`select ${name}${call}, ${name}_refusal${call}`), [null, reason], call);
    await assert.rejects(rows("select euro(100, 95, 0.05, 0.02, [0.25], 90, 1)"), /No function matches|Could not|Binder/);
    assert.equal((await row("select euro('Infinity'::double, 95, 0.05, 0.02, 0.25, 90, 1)"))[0], Infinity);
  },

  async 'lists of rows that were filtered, joined and grouped'() {
    await run(`create table baskets as select i id, [100 + i % 7, 90.0] prices, [[1, r], [r, 1]] correlations, i % 5 kind
      from (select i, (i % 19 - 9) / 10.0 r from range(5000) t(i))`);
    await run('create table kinds as select i kind, [0.2 + i / 10, 0.4] vols from range(4) t(i)');
    const found = await rows(`select id, BASVOL(prices, any_value(vols), [0.02, -0.01], list(weight order by weight), correlations, 0.75)
      from baskets join kinds using (kind), (values (0.4), (0.6)) w(weight) where id % 3 > 0 group by id, prices, correlations order by id`);
    const ids = [...Array(5000).keys()].filter((i) => i % 3 > 0 && i % 5 < 4);
    const expected = values(ids.map((i) => {
      const correlation = (i % 19 - 9) / 10;
      return `BASVOL({${100 + i % 7},90},{${0.2 + (i % 5) / 10},0.4},{0.02,-0.01},{0.4,0.6},{1,${correlation};${correlation},1},0.75)`;
    }));
    assert.deepEqual(found.map(([id, value]) => [Number(id), value]), ids.map((id, i) => [id, expected[i]]));
  },

  async 'a CSV book has the bits and the reasons of the command'() {
    await run(`copy (select i id, 100 * exp(random() - 0.5) Price, 100 Strike, 0.1 * random() IntRt, 0.1 * random() Yield, random() Vol,
      floor(500 * random()) ExpDays, i % 2 OptType, i % 10 RetType from range(20000) t(i)) to '${folder}/book.csv'`);
    command('', 'price', '--function', 'EURO', '--input', `${folder}/book.csv`, '--output', `${folder}/priced.csv`);
    const terms = 'Price, Strike, IntRt, Yield, Vol, ExpDays, OptType, RetType';
    assert.deepEqual(await row(`select count(*), count(Error), count(*) filter (where result is distinct from euro(${terms})
        or Error is distinct from euro_refusal(${terms})) from read_csv('${folder}/priced.csv')`), [20000n, 2000n, 0n]);
  },

  async 'ten million rows from Parquet to Parquet, in little memory'() {
    const deals = 10_000_000;
    const multiples = (of) => Math.floor((deals - 1) / of) + 1;
    const refused = BigInt(multiples(1000) + multiples(1001) - multiples(1001000));
    await run("set memory_limit = '300MB'");
    await run(`copy (select i id, 80 + i % 41 price, case when i % 1000 > 0 then 95.0 end strike, (i % 500)::double expdays, i % 2 opttype,
      case when i % 1001 = 0 then 9 else i % 9 end rettype from range(${deals}) t(i)) to '${folder}/deals.parquet'`);
    const before = process.resourceUsage().maxRSS;
    await run(`copy (select id, euro(price, strike, 0.05, 0.02, 0.25, expdays, opttype, rettype) as value from '${folder}/deals.parquet')
      to '${folder}/priced.parquet'`);
    const grown = process.resourceUsage().maxRSS - before;
    assert.deepEqual(await row(`select count(*), count(*) - count(value) from '${folder}/priced.parquet'`), [BigInt(deals), refused]);
    assert.ok(grown < 100_000, `${grown} kB`);
    assert.deepEqual(await rows(`select euro_refusal(price, strike, 0.05, 0.02, 0.25, expdays, opttype, rettype) why, count(*)
      from '${folder}/deals.parquet' where id < 1001000 group by why order by why`),
      [['RetType 9 is outside 0 to 8', 999n], ['Strike is missing', 1001n], [null, 999000n]]);
  },

  async 'the same bits on any number of threads'() {
    const found = [];
    for (const threads of [1, 4]) {
      await run(`set threads = ${threads}`);
      found.push(await row(`select bit_xor(hash(id, value)), count(value) from (select id, amerb(price, strike, 0.05, 0.02, 0.25, expdays,
        opttype, 20, 0) as value from '${folder}/deals.parquet' where id < 1000000)`));
    }
    assert.deepEqual(found[0], found[1]);
    assert.equal(found[0][1], 999000n);
  },

  async 'docs/duckdb.md and docs/scale.md'() {
    const pages = readFileSync('docs/duckdb.md', 'utf8').replaceAll('```sql', '```duckdb') + readFileSync('docs/scale.md', 'utf8');
    process.chdir(folder);
    let examples = 0;
    for (const [, query, output] of pages.matchAll(/```duckdb\n(.*?)```\n```\n(.*?)```/gs)) {
      let shown = '';
      for (const statement of query.split(/;\n/).filter((text) => text.trim()))
        shown = (await rows(statement)).map((cells) => cells.map((cell) => cell ?? 'NULL').join(' | ') + '\n').join('');
      assert.equal(shown, output, query);
      ++examples;
    }
    assert.ok(examples > 4);
  },
};

for (const [name, test] of Object.entries(tests))
  await Promise.resolve().then(test).catch((error) => {
    console.log(`${name}\n${error.stack}\n`);
    process.exitCode = 1;
  });
process.exit();
