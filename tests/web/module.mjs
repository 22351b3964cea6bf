// The module in browsers, from a folder and from a server. Run from the root of the sources.
import assert from 'node:assert/strict';
import { cpSync, mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import { runInBrowsers, serve } from './browsers.mjs';
import { formulaOf, native } from './formulas.mjs';

const folder = mkdtempSync(join(tmpdir(), 'kestran-pages-'));
process.on('exit', () => rmSync(folder, { recursive: true, force: true }));
cpSync('build/wasm/npm', join(folder, 'npm'), { recursive: true });
writeFileSync(join(folder, 'classic.html'), '<!doctype html><meta charset="utf-8"><script src="npm/classic.js"></script>');
writeFileSync(join(folder, 'package.html'), `<!doctype html><meta charset="utf-8"><link rel="icon" href="data:,">
<script type="importmap">{ "imports": { "kestran": "./npm/index.js" } }</script>
<script type="module" src="page.js"></script>`);
writeFileSync(join(folder, 'page.js'), "import { kestran } from 'kestran';\nglobalThis.kestran = kestran;\n");
writeFileSync(join(folder, 'worker.js'), `import { kestran } from './npm/index.js';
onmessage = ({ data }) => postMessage(kestran.EURO(...data));
postMessage('ready');\n`);

const { kestran } = await import(resolve('build/wasm/npm/node.js'));
const command = 'build/linux/bin/kestran';
const cases = readdirSync('tests/data').filter((name) => name.endsWith('.cases'))
  .flatMap((name) => readFileSync(`tests/data/${name}`, 'utf8').split('\n')).filter((line) => line && line[0] !== '#')
  .map((line) => line.split('\t')[0]);
for (const { name, arguments: given, results, resultArgument } of kestran.catalogue.functions)
  for (const { selector } of results) cases.push(formulaOf(name, given.map(({ example }, i) => (i === resultArgument ? selector : example))));
const expected = native(command, cases);
const euro = [100, 95, 0.05, 0.02, 0.25, 90, 1, 0];

const server = await serve(folder, { 'content-security-policy': "default-src 'self'; img-src data:; script-src 'self' 'unsafe-inline' 'wasm-unsafe-eval'" });

const tests = {
  async 'the formulas of the case files, and every result of every example, have the digits of the command, from a folder'(open) {
    const page = await open(`file://${folder}/classic.html`);
    const texts = await page.evaluate(async (formulas) => {
      const kestran = await kestranReady;
      return formulas.map(kestran.evaluate);
    }, cases);
    assert.ok(cases.length > 1200);
    texts.forEach((text, i) => assert.equal(text, expected[i], cases[i]));
  },

  async 'the package, from a server and under a content security policy'(open) {
    const page = await open(`${server.url}/package.html`);
    const value = await page.evaluate(async (terms) => {
      while (!globalThis.kestran) await new Promise((done) => setTimeout(done, 5));
      return kestran.EURO(...terms);
    }, euro);
    assert.equal(value, 8.14303821049409);
    assert.equal(await page.evaluate(async (terms) => {
      const worker = new Worker('worker.js', { type: 'module' });
      const message = () => new Promise((done, fail) => { worker.onmessage = ({ data }) => done(data); worker.onerror = fail; });
      await message();
      worker.postMessage(terms);
      return message();
    }, euro), value);
  },
};

await runInBrowsers(tests);
