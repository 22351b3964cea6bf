// Every page of the site in build/site, in Chromium: the README's number, pictures, all inputs and results, widths, and what
// axe finds. Run from the root of the sources.
import assert from 'node:assert/strict';
import { existsSync, readdirSync, readFileSync } from 'node:fs';
import { axeScript, runInBrowsers } from './browsers.mjs';
import { native } from './formulas.mjs';
import { addressOf, drawn, shown, until } from './site_page.mjs';

const command = 'build/linux/bin/kestran';
const examples = [...readFileSync('README.md', 'utf8').matchAll(/^\| (`.*?`) \| .* \| `=\w+(\(.*\))` \| (\S+) \|$/gm)]
  .flatMap(([, names, call, value]) => names.match(/\w+/g).map((name) => ({ name, formula: `=${name}${call}`, value })));
const others = readdirSync('build/site').filter((file) => file.endsWith('.html') && !examples.some(({ name }) => file === `${name}.html`));

// What a function's page says of itself against what the catalogue in it says of the function.
const audit = () => kestranReady.then((kestran) => {
  const about = kestran.catalogue.functions.find((one) => one.name === document.getElementById('main').dataset.function);
  const wanted = about.results.filter((result) => result.unit !== 'none');
  const labels = [...document.querySelectorAll('#results button')].map((button) => button.textContent);
  const painted = (canvas) => new Uint32Array(canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data.buffer).some((pixel) => pixel !== 0);
  const titles = [...document.querySelectorAll('#chart-numbers thead th')].map((title) => title.textContent);
  const rows = [...document.querySelectorAll('#chart-numbers tbody tr')].map((row) => [...row.children].map((cell) => cell.textContent));
  return {
    inputs: about.arguments.filter((argument, i) => i !== about.resultArgument && !document.querySelector(`[id="in-${argument.name}"], [id^="in-${argument.name}."]`)).map(({ name }) => name),
    results: wanted.filter(({ name }) => !labels.some((label) => label === name || label === `${name} 1`)).map(({ name }) => name),
    blank: [...document.querySelectorAll('.plots canvas, #heat')].filter((canvas) => !painted(canvas)).length,
    charts: document.querySelectorAll('.plots canvas').length,
    empty: titles.filter((title, i) => rows.every((row) => row[i] === '–')),
    months: document.querySelectorAll('#months figure').length > 0 || !about.results.some((result) => result.each !== 'one'),
  };
});

// On a wide screen and two narrow ones nothing sticks out.
async function expectToFit(page, file) {
  for (const width of [1280, 390, 320]) {
    await page.setViewportSize({ width, height: 800 });
    assert.equal(await page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth), 0, `${file} at ${width}`);
  }
  await page.setViewportSize({ width: 1280, height: 900 });
}

const tests = {
  async 'every function has its page, with its number, all inputs and results, and pictures'(open) {
    assert.equal(examples.length, 81);
    const exact = native(command, examples.map(({ formula }) => formula));
    const page = await open(addressOf('index.html'));
    for (const [i, { name, formula, value }] of examples.entries()) {
      await page.goto(addressOf(`${name}.html`));
      await drawn(page);
      const { number, formula: written, remarks } = await shown(page);
      assert.equal(Number(number).toFixed(value.split('.')[1].length), value, name);
      assert.equal(number, exact[i], name);
      assert.equal(written, formula, name);
      assert.deepEqual(remarks, [], name);
      const { charts, ...gaps } = await page.evaluate(audit);
      assert.ok(charts > 0, name);
      assert.deepEqual(gaps, { inputs: [], results: [], blank: 0, empty: [], months: true }, name);
      await expectToFit(page, name);
    }
  },

  async 'the other pages fit their screen, too'(open) {
    const page = await open(addressOf('index.html'));
    for (const file of others) {
      await page.goto(addressOf(file));
      await expectToFit(page, file);
    }
  },

  async 'links lead to pages and places that are there'() {
    const pages = new Map(readdirSync('build/site').filter((file) => file.endsWith('.html')).map((file) => [file, readFileSync(`build/site/${file}`, 'utf8')]));
    for (const [file, html] of pages)
      for (const [, link] of html.matchAll(/<a [^>]*?href="([^"]*)"/g)) {
        if (/^https?:/.test(link)) continue;
        const [path, anchor] = link.split('#');
        assert.ok(existsSync(`build/site/${path || file}`), `${file}: ${link}`);
        if (anchor && !anchor.includes('=')) assert.ok(pages.get(path || file).includes(`id="${anchor}"`), `${file}: ${link}`);
      }
  },

  async 'axe finds nothing, in light, dark and on a phone'(open) {
    for (const look of [{}, { dark: true }, { width: 390, height: 844, phone: true }])
      for (const file of ['index.html', 'EURO.html', 'BRRR.html#OptType=7', 'ASTRIP.html', 'BASCORR.html', 'conventions.html']) {
        const page = await open(addressOf(...file.split(/(?=#)/)), look);
        if (/^[A-Z]/.test(file)) await drawn(page);
        await page.evaluate(() => { for (const details of document.querySelectorAll('details')) details.open = true; });
        await page.addScriptTag({ path: axeScript });
        const { violations } = await page.evaluate(() => axe.run({ preload: false }));
        assert.deepEqual(violations.map(({ id, nodes }) => `${id}: ${nodes.map(({ html }) => html).slice(0, 3).join(' ')}`), [], `${file} ${JSON.stringify(look)}`);
      }
  },

  async 'the page to print has every function, and nothing that is cut off'(open) {
    const page = await open(addressOf('reference.html'), { width: 700 });
    const entries = await until(page, () => [...document.querySelectorAll('.entry h3:first-child')].map((title) => title.textContent.split(', ')).flat());
    assert.deepEqual([...entries].sort(), examples.map(({ name }) => name).sort());
    assert.ok(await page.evaluate(() => [...document.querySelectorAll('.entry')].every((entry) => entry.querySelector('svg path.line') && entry.querySelectorAll('table').length >= 2)));
  },
};

await runInBrowsers(tests, { seconds: 180, browsers: ['chromium'] });
