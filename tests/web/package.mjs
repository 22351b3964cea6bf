// The npm package as its user has it: node package.mjs ROOT PAGE..., in a folder in which it is installed. ROOT is that of the
// sources, whose native command has the expected answers; every example of the pages is executed.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { inspect } from 'node:util';
import { pathToFileURL } from 'node:url';
import { codeOf, dealsAround, formulaOf, native, numberOf } from './formulas.mjs';

const [root, ...pages] = process.argv.slice(2);
const command = join(root, 'build/linux/bin/kestran');
const require = createRequire(`${process.cwd()}/`);
const { kestran, openKestran, Refusal } = await import(pathToFileURL(require.resolve('kestran')));
const functions = kestran.catalogue.functions;
const refused = (code, argument, text) => (error) =>
  error instanceof Refusal && error.code === code && error.argument === argument && error.message === text;
const euro = [100, 95, 0.05, 0.02, 0.25, 90, 1];
const withVol = (vol) => euro.map((term, i) => (i === 4 ? vol : term));

const tests = {
  'the catalogue has the functions of the command'() {
    const listed = execFileSync(command, ['--list'], { encoding: 'utf8' }).trim().split('\n').map((line) => line.split('\t'));
    assert.deepEqual(functions.map((about) => about.name).sort(), listed.map(([name]) => name).sort());
    assert.equal(functions.length, 81);
    assert.deepEqual(kestran.catalogue.families.flatMap((family) => family.functions), functions.map((about) => about.name));
    for (const about of functions) {
      const [, names, description] = listed.find(([name]) => name === about.name);
      assert.equal(about.description, description);
      assert.equal(names.split(',').length >= about.arguments.length, true, about.name);
      for (const name of [about.twin, ...about.related].filter(Boolean)) assert.ok(name in kestran, `${about.name}: ${name}`);
    }
    assert.equal(kestran.EURO.about.arguments[7].refused, 'outside 0 to 8');
  },

  'random deals of every function: arrays, single calls and the command have the same bits'() {
    const each = 12;
    let compared = 0;
    let refusals = 0;
    for (const about of functions) {
      const asks = about.resultArgument;
      const deals = dealsAround(about, each);
      if (about.arguments[1].shape === 'number') deals[each - 1][1] = undefined;
      const columns = about.arguments.map((_, i) => deals.map((deal) => deal[i]));
      const selectors = about.results.map((result) => result.selector);
      const prices = kestran.price(about.name, columns, { results: selectors });
      const calls = deals.flatMap((deal) => selectors.map((selector) => deal.map((value, i) => (i === asks ? selector : value))));
      const answers = native(command, calls.map((call) => formulaOf(about.name, call)));
      calls.forEach((call, n) => {
        const [k, j] = [Math.floor(n / selectors.length), n % selectors.length];
        const place = `${formulaOf(about.name, call)} is ${answers[n]}`;
        const value = prices.values[selectors[j]][k];
        const expected = numberOf(answers[n]);
        if (expected === null) {
          assert.throws(() => kestran[about.name](...call), (error) => error instanceof Refusal && error.code === codeOf(answers[n]), place);
          assert.ok(Number.isNaN(value) && prices.refusal(k, selectors[j])?.code === codeOf(answers[n]), place);
          ++refusals;
        } else {
          assert.ok(Object.is(value, expected), `${place}, not ${value}`);
          assert.ok(Object.is(kestran[about.name](...call), expected), place);
        }
        ++compared;
      });
      assert.equal(prices.deals, each);
    }
    assert.ok(compared > 4000 && refusals > 100 && refusals < compared / 3, `${compared} compared, ${refusals} refused`);
  },

  'a long curve through the kernel of several deals at once'() {
    const prices = Float64Array.from({ length: 3000 }, (_, k) => 50 + k / 30);
    const [of, ...others] = [prices, ...euro.slice(1)];
    const vegas = kestran.EURO(of, ...others, { result: 'vega' });
    const answers = native(command, Array.from(prices, (price) => formulaOf('EURO', [price, ...others, 3])));
    assert.ok(vegas instanceof Float64Array && answers.every((text, k) => Object.is(Number(text), vegas[k])));
  },

  'results by number, by name, several and all'() {
    const delta = numberOf(native(command, ['EURO(100,95,0.05,0.02,0.25,90,1,1)'])[0]);
    assert.equal(kestran.EURO(...euro, 1), delta);
    assert.equal(kestran.EURO(...euro, 'delta'), delta);
    assert.equal(kestran.EURO(...euro, { result: 'delta' }), delta);
    assert.equal(kestran.EURO(...euro, [0, 1])[1], delta);
    assert.deepEqual(Object.keys(kestran.EURO(...euro, { results: 'all' })), kestran.EURO.about.results.map((result) => result.name));
    assert.deepEqual(kestran.EURO({ OptType: 1, vol: 0.25, Price: 100, Strike: 95, IntRt: 0.05, Yield: 0.02, ExpDays: 90 }, { results: ['delta', 0] }),
      { delta, 0: kestran.EURO(...euro) });
    assert.throws(() => kestran.EURO(...euro, { result: 'gamna' }), /no result gamna; it has premium, delta/);
  },

  'refusals have the codes and the words of the worksheet'() {
    const basket = (prices, correlations) => [prices, [0.3, 0.4], [0.02, -0.01], [0.6, 0.4], correlations, 0.75];
    const square = [[1, 0.5], [0.5, 1]];
    for (const [name, args, code, argument, text] of [
      ['EURO', [...euro, 9], 65535, 'RetType', 'RetType 9 is outside 0 to 8'],
      ['EURO', withVol(undefined), 65535, 'Vol', 'Vol is missing'],
      ['EURO', withVol(NaN), 65535, 'Vol', 'Vol is missing'],
      ['EURO', euro.slice(0, 5), 65535, 'ExpDays', 'ExpDays is missing'],
      ['EURO', withVol('abc'), 15, 'Vol', 'Vol is text or a logical value where a number is wanted'],
      ['EURO', withVol(true), 15, 'Vol', 'Vol is text or a logical value where a number is wanted'],
      ['BASVOL', basket([100, null], square), 15, 'Forward_Price', 'Forward_Price has a cell that holds no number'],
      ['BASVOL', basket([100, 90], [[1, 0.5]]), 15, 'Correl_Matrix',
        'Correl_Matrix must have a row and a column for each cell of the ranges before it'],
      ['ASTRIP', [[20, 21], [0.4, 0.35, 0.3], [0.08, 0.17, 0.25], [0.16, 0.24, 0.32], [21, 20, 22], 0, 21, 0.05, 0.9, 0, 0.34, 1, 0, 1], 15,
        'Price_rng', 'Price_rng has another length than the other ranges'],
    ]) assert.throws(() => kestran[name](...args), refused(code, argument, text), `${name}: ${text}`);
    const prices = kestran.price('EURO', [[90, undefined, 110], ...euro.slice(1)]);
    assert.equal(prices.refused, 1);
    assert.deepEqual([0, 1, 2].map((k) => prices.refusal(k)?.message), [undefined, 'Price is missing', undefined]);
    assert.equal(kestran.EURO(Infinity, ...euro.slice(1)), Infinity);
  },

  'wrong calls say what is wrong'() {
    for (const [call, text] of [
      [() => kestran.price('EURA', euro), 'there is no function EURA'],
      [() => kestran.EURO({ Prize: 100 }), 'EURO has no argument Prize'],
      [() => kestran.EURO(...euro, 0, 0), 'EURO takes 8 arguments'],
      [() => kestran.EURO([[100]], ...euro.slice(1)), 'Price has more dimensions than a number for each deal'],
      [() => kestran.EURO([90, 100], [95, 96, 97], ...euro.slice(2)), 'Price has 2 deals, others 3'],
      [() => kestran.BASVOL([100, 90], [0.3, 0.4], [0, 0], [0.6, 0.4], [[1, 0.5], [1]], 1), 'Correl_Matrix has rows of different lengths'],
      [() => kestran.BASVOL([[100, 90], [1]], [0.3, 0.4], [0, 0], [0.6, 0.4], [[1, 0.5], [0.5, 1]], 1), 'Forward_Price has deals of different sizes'],
    ]) assert.throws(call, (error) => error.message === text, text);
    assert.equal(kestran.EURO([], ...euro.slice(1)).length, 0);
  },

  'explanations are those of the command, checks have their lines'() {
    const formulas = [...functions.map((about) => about.example), 'EURO(100,95,5,2%,25,90,1,12)', 'EURO("a",95,,2%)+ASN(1)', 'EURA(1)', '1+'];
    for (const formula of formulas) {
      // Exit status 2 is that of a line that cannot be read.
      let text;
      try {
        text = execFileSync(command, ['--explain', formula], { encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] });
      } catch (error) {
        text = error.stdout;
      }
      assert.equal(kestran.explain(formula), text, formula);
    }
    const found = kestran.check('EURO', { Price: 100, Strike: 95, IntRt: 5, Yield: 0.02, Vol: 25, ExpDays: 90, OptType: 1, RetType: 12 });
    assert.deepEqual(found.refusals, [{ argument: 'RetType', text: 'RetType 12 is outside 0 to 8' }]);
    assert.deepEqual(found.warnings.map((one) => one.argument), ['IntRt', 'Vol']);
    assert.equal(found.understood[5], '90 days = 0.2464 years');
  },

  async 'the classic script and other ways to the module'() {
    const folder = require.resolve('kestran/package.json').replace('package.json', '');
    const bytes = readFileSync(`${folder}kestran.wasm`);
    for (const source of [bytes, new WebAssembly.Module(bytes), Promise.resolve(new Response(bytes))])
      assert.equal((await openKestran(source)).EURO(...euro), kestran.EURO(...euro));
    assert.deepEqual(WebAssembly.Module.imports(new WebAssembly.Module(bytes)), []);
    const before = Object.keys(globalThis);
    (0, eval)(readFileSync(`${folder}classic.js`, 'utf8'));
    assert.deepEqual(Object.keys(globalThis).filter((name) => !before.includes(name)).sort(), ['kestranReady', 'openKestran']);
    assert.equal((await globalThis.kestranReady).EURO(...euro), kestran.EURO(...euro));
  },

  async 'the examples of the pages'() {
    for (const page of pages) {
      let examples = 0;
      for (const [, code, output] of readFileSync(join(root, page), 'utf8').matchAll(/```sh\n(.*?)```\n```\n(.*?)```/gs)) {
        assert.equal(execFileSync('bash', ['-c', code], { cwd: root, encoding: 'utf8' }), output, `${page}: ${code}`);
        ++examples;
      }
      for (const [, code] of readFileSync(join(root, page), 'utf8').matchAll(/```js\n(.*?)```/gs)) {
        const shown = [];
        const body = code.replace(/^import .*$/gm, '').replace(/^(.*?);? *\/\/ (.*)$/gm, (_, expression, expected) => {
          shown.push(expected);
          const name = expression.match(/^const (\w+) = /)?.[1];
          return name ? `${expression}; show(${name});` : `show(${expression});`;
        });
        const values = [];
        await new (async () => {}).constructor('kestran', 'show', body)(kestran, (value) => values.push(value));
        shown.forEach((expected, i) => {
          const text = inspect(values[i], { breakLength: Infinity }).replace(/^Refusal: (.*?)\n.*$/s, '$1');
          const wanted = expected.replaceAll(/[.*+?^${}()|[\]\\]/g, '\\$&').replaceAll('\\.\\.\\.', '\\d*');
          assert.match(text, new RegExp(`^${wanted}$`), `${page}: ${code}`);
          ++examples;
        });
      }
      assert.ok(examples > 2, page);
    }
  },
};

for (const [name, test] of Object.entries(tests))
  await Promise.resolve().then(test).catch((error) => {
    console.log(`${name}\n${error.stack}\n`);
    process.exitCode = 1;
  });
process.exit();
