// The site in build/site, in Chromium and Firefox: what is typed, pasted, copied and drawn. Run from the root of the sources.
import assert from 'node:assert/strict';
import { native } from './formulas.mjs';
import { runInBrowsers } from './browsers.mjs';
import { addressOf, cells, choose, copied, drawn, paste, redrawn, shown, type, until } from './site_page.mjs';

const command = 'build/linux/bin/kestran';
const priceOf = (formula) => native(command, [formula])[0];
const pricesOf = (formulas) => native(command, formulas).map(Number);
const seven = (number) => String(Number(Number(number).toPrecision(7)));

async function opened(open, file, hash) {
  const page = await open(addressOf(file, hash));
  await drawn(page);
  return page;
}

// Rows of the numbers behind the charts as numbers, by the titles of the columns.
async function columnsOf(page, id = 'chart-numbers') {
  const [head, ...rows] = await cells(page, id);
  return Object.fromEntries(head.map((title, i) => [title, rows.map((row) => Number(row[i]))]));
}

// How many points a curve has depends on the time that they take.
const endsOf = (columns) => Object.entries(columns).map(([title, values]) => [title, values[0], values.at(-1)]);

const tests = {
  async 'what is typed reaches number, formula, charts and address, and the address restores it'(open) {
    const page = await opened(open, 'EURO.html');
    await type(page, 'in-Price', '110');
    await type(page, 'in-ExpDays', '60/2');
    await choose(page, 'in-OptType', '0');
    await choose(page, 'x', 'Vol');
    await type(page, 'from', '10%');
    const formula = '=EURO(110,95,5%,2%,25%,60/2,0,0)';
    const before = await shown(page);
    assert.equal(before.formula, formula);
    assert.equal(before.number, priceOf(formula));
    const { Vol, premium } = await columnsOf(page);
    assert.equal(Vol[0], 0.1);
    assert.deepEqual(premium.map(seven), pricesOf(Vol.map((vol) => `=EURO(110,95,5%,2%,${vol},30,0,0)`)).map(seven));

    const again = await opened(open, 'EURO.html', before.hash);
    assert.deepEqual(await shown(again), before);
    assert.deepEqual(endsOf(await columnsOf(again)), endsOf(await columnsOf(page)));
  },

  async 'curves are the values now, half way and at expiry'(open) {
    const page = await opened(open, 'EURO.html');
    const columns = await columnsOf(page);
    const prices = columns.Price;
    assert.ok(prices.length >= 15 && prices.includes(100));
    const of = (days, result = 0) => pricesOf(prices.map((price) => `=EURO(${price},95,5%,2%,25%,${days},1,${result})`)).map(seven);
    assert.deepEqual(columns.premium.map(seven), of(90));
    assert.deepEqual(columns.vega.map(seven), of(90, 3));
    assert.deepEqual(columns['premium, in 45 days'].map(seven), of(45));
    const end = Object.keys(columns).find((title) => title.includes('at expiry'));
    columns[end].forEach((value, i) => assert.ok(Math.abs(value - Math.max(prices[i] - 95, 0)) < 1e-3, `${prices[i]}: ${value}`));
  },

  async 'arrow keys step a value, and results can be chosen'(open) {
    const page = await opened(open, 'EURO.html');
    await page.evaluate(() => document.getElementById('in-Vol').focus());
    await redrawn(page, () => page.keyboard.press('ArrowUp'));
    await redrawn(page, () => page.evaluate(() => document.getElementById('result-3').click()));
    const { formula, number } = await shown(page);
    assert.equal(formula, '=EURO(100,95,5%,2%,26%,90,1,3)');
    assert.equal(number, priceOf(formula));
  },

  async 'what is wrong stands beside its field, and what looks odd, too'(open) {
    const page = await opened(open, 'EURO.html');
    await type(page, 'in-Strike', '9x');
    let { number, invalid, remarks } = await shown(page);
    assert.deepEqual([number, invalid], ['–', ['in-Strike']]);
    assert.match(remarks.join(), /“9x” is not a number/);
    await type(page, 'in-Strike', '95');
    await type(page, 'in-Vol', '30');
    ({ number, invalid, remarks } = await shown(page));
    assert.equal(number, priceOf('=EURO(100,95,5%,2%,30,90,1,0)'));
    assert.deepEqual(invalid, []);
    assert.match(remarks.join(), /volatility of 3000 %/);
    const refused = await opened(open, 'DIGITAL.html', '#OptType=7');
    ({ number, invalid } = await shown(refused));
    assert.deepEqual([number, invalid], ['–', ['in-OptType']]);
  },

  async 'cells of a sheet are pasted into ranges and matrices'(open) {
    const page = await opened(open, 'ASTRIP.html');
    await paste(page, 'in-Price_rng.0', '$30.00\t45%\n30.50\t44%\n31,000.5\t43%\r\n31.5\t42%\n32\t41%\n');
    await paste(page, 'in-Next_rng.4', '0.42\t0.48\t20');
    await type(page, 'in-ToExp', '0.5');
    let { formula, number } = await shown(page);
    assert.equal(formula, '=ASTRIP({30.00,30.50,31000.5,31.5,32},{0.45,0.44,0.43,0.42,0.41},{0.08,0.17,0.25,0.33,0.42},{0.16,0.24,0.32,0.4,0.48},{21,20,22,19,20},0,21,5%,0.9,0,0.5,1,0,1)');
    assert.equal(number, priceOf(formula));
    // Decimal commas, negative numbers in parentheses.
    await paste(page, 'in-Price_rng.0', '30,5\n29,75\n(1.234,5)');
    ({ formula } = await shown(page));
    assert.match(formula, /^=ASTRIP\(\{30\.5,29\.75,-1234\.5,31\.5,32\},/);

    const basket = await opened(open, 'BASVOL.html');
    await paste(basket, 'in-Forward_Price.0', '100\t0.3\t0\t0.5\n90\t0.4\t0\t0.3\n80\t0.2\t0\t0.2');
    await paste(basket, 'in-Correl_Matrix.0', '1\t0.5\t0.2\n0.5\t1\t0.3\n0.2\t0.3\t1');
    ({ formula, number } = await shown(basket));
    assert.equal(formula, '=BASVOL({100,90,80},{0.3,0.4,0.2},{0,0,0},{0.5,0.3,0.2},{1,0.5,0.2;0.5,1,0.3;0.2,0.3,1},0.75)');
    assert.equal(number, priceOf(formula));
  },

  async 'each call can be copied'(open) {
    const page = await opened(open, 'BASVOL.html');
    assert.deepEqual(await Promise.all(['Excel', 'Command', 'Python', 'PostgreSQL', 'DuckDB'].map((host) => copied(page, `copy-${host}`))), [
      '=BASVOL({100,90},{0.3,0.4},{0.02,-0.01},{0.6,0.4},{1,0.5;0.5,1},0.75)',
      "kestran '=BASVOL({100,90},{0.3,0.4},{0.02,-0.01},{0.6,0.4},{1,0.5;0.5,1},0.75)'",
      'kestran.BASVOL(Forward_Price=[100, 90], Annual_Vol=[0.3, 0.4], Drift=[0.02, -0.01], Weight=[0.6, 0.4], Correl_Matrix=[[1, 0.5], [0.5, 1]], ExpTime=0.75)',
      'select kestran.basvol(forward_price => array[100,90], annual_vol => array[0.3,0.4], drift => array[0.02,-0.01], weight => array[0.6,0.4], correl_matrix => array[[1,0.5],[0.5,1]], exptime => 0.75);',
      'select BASVOL([100,90],[0.3,0.4],[0.02,-0.01],[0.6,0.4],[[1,0.5],[0.5,1]],0.75);',
    ]);
  },

  async 'a barrier stays on its side'(open) {
    const page = await opened(open, 'BRRR.html');
    const { Price } = await columnsOf(page);
    assert.ok(Price[0] > 85 && Price[0] < 86 && Price.at(-1) > 140);
    assert.match(await page.evaluate(() => document.getElementById('chart-note').textContent), /curves end there/);
    await choose(page, 'x', 'BarrPr');
    const { BarrPr } = await columnsOf(page);
    assert.ok(Math.max(...BarrPr) <= 100 && Math.min(...BarrPr) < 60);
    const [, ...rows] = await cells(page, 'heat-numbers');
    assert.ok(rows.every((row) => row[1] === '–' && row.at(-1) !== '–'));
    const above = await opened(open, 'BRRR.html', '#BarrPr=120');
    assert.ok(Math.max(...(await columnsOf(above)).Price) <= 120);
  },

  async 'a heat map shows one result over two inputs, cell by cell'(open) {
    const page = await opened(open, 'SPRDOPT.html');
    await choose(page, 'heat-y', 'Correl');
    await choose(page, 'heat-result', '1');
    const [[, ...prices], ...rows] = await cells(page, 'heat-numbers');
    const correlations = rows.map(([first]) => first);
    const formulas = correlations.flatMap((correlation) => prices.map((price) => `=SPRDOPT(${price},96,2,5%,35%,30%,${correlation},273.9375,1,1)`));
    // The table's prices and correlations are rounded to five digits.
    rows.flatMap((row) => row.slice(1).map(Number)).forEach((value, i) => assert.ok(Math.abs(value - pricesOf(formulas)[i]) < 2e-4, formulas[i]));
    await page.evaluate(() => document.getElementById('heat').focus());
    const readout = () => page.evaluate(() => document.getElementById('heat-readout').textContent);
    assert.match(await readout(), /PriceA 100, Correl 0\.85: delta_a 0\.5603315/);
    await page.keyboard.press('ArrowRight');
    assert.match(await readout(), /PriceA 102\./);
  },

  async 'strips have their results month by month'(open) {
    const page = await opened(open, 'ASTRIP.html');
    const deltas = pricesOf([1, 2, 3, 4].map((month) => `=ASTRIP({20,21,22,21.5},{0.4,0.35,0.3,0.28},{0.08,0.17,0.25,0.33},{0.16,0.24,0.32,0.4},{21,20,22,19},0,21,5%,0.9,0,0.42,1,1,${month})`));
    const columns = await columnsOf(page, 'month-numbers');
    assert.deepEqual(columns.delta.map(seven), deltas.map(seven));
    assert.deepEqual(columns.Price_rng, [20, 21, 22, 21.5]);
    const lines = (await copied(page, 'month-copy')).split('\n');
    assert.deepEqual([lines.length, lines[0].split('\t').slice(0, 2), lines[2].split('\t')[1]], [6, ['month', 'delta'], String(deltas[1])]);
    // Periods have theirs under numbers of their own.
    const periods = await opened(open, 'XCAP.html');
    const [first] = (await shown(periods)).results.filter(([selector]) => selector === '14');
    assert.deepEqual(first.slice(1, 3), ['delta_period 4', seven(priceOf('=XCAP({20,20.5,21,21.5},{0.05,0.051,0.052,0.053},{0.3,0.29,0.28,0.27},{120,150,181,212},{1,2,1.5,3},25%,21,0.8,90,5%,1,14,25)'))]);
  },

  async 'the search finds names, arguments and words of the market'(open) {
    const page = await open(addressOf('scale.html'));
    const found = async (query) => {
      await page.evaluate(() => { document.getElementById('search').focus(); document.getElementById('search').select(); });
      await page.keyboard.type(query);
      return until(page, (text) => document.getElementById('search').value === text && [...document.querySelectorAll('#found a b')].map((name) => name.textContent.split(',')[0]), query);
    };
    assert.equal((await found('eimp'))[0], 'EIMPVOL');
    const correlated = await found('Correl');
    for (const name of ['SPRDOPT', 'BASVOL', 'PPLUS']) assert.ok(correlated.includes(name) || correlated.length === 12, name);
    for (const [words, name] of [['collar', 'XCOL'], ['crack spread', 'SPRDOPT'], ['APO', 'xCrudeAPO'], ['negative prices', 'Negative prices']])
      assert.ok((await found(words)).some((title) => title.startsWith(name)), words);
    assert.equal((await found('nothing of the kind')).length, 0);
    const index = await open(addressOf('index.html'));
    await index.evaluate(() => document.getElementById('search').focus());
    await index.keyboard.type('crack');
    assert.ok(await until(index, () => [...document.querySelectorAll('[data-name]')].filter((card) => !card.hidden).map((card) => card.dataset.name).join() !== '' && !document.querySelector('[data-name=SPRDOPT]').hidden && document.querySelector('[data-name=AMER]').hidden));
  },

  async 'light and dark follow the button'(open) {
    const page = await opened(open, 'WSPRD.html');
    const look = () => page.evaluate(() => [getComputedStyle(document.body).backgroundColor, document.querySelector('.plots canvas').toDataURL()]);
    const before = await look();
    await redrawn(page, () => page.evaluate(() => document.getElementById('theme').click()));
    const after = await look();
    assert.notEqual(before[0], after[0]);
    assert.notEqual(before[1], after[1]);
  },
};

await runInBrowsers(tests, { seconds: 60 });
