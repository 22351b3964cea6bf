// Pages in Debian's Chromium and Firefox, headless, without a display or a profile. Playwright drives the one, Puppeteer over
// WebDriver BiDi the other; of their pages tests use what both have: evaluate, $, $$, click, keyboard, screenshot, addScriptTag.
import { createReadStream, existsSync, mkdtempSync, rmSync } from 'node:fs';
import { createServer } from 'node:http';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { extname, join, normalize } from 'node:path';

const require = createRequire(new URL('../../build/web/package.json', import.meta.url));
export const axeScript = require.resolve('axe-core/axe.min.js');
const home = mkdtempSync(join(tmpdir(), 'kestran-web-'));
process.on('exit', () => rmSync(home, { recursive: true, force: true }));
const env = { ...process.env, HOME: home, XDG_CONFIG_HOME: join(home, 'config'), XDG_CACHE_HOME: join(home, 'cache') };

// Nothing but the page: no sandbox, which root cannot have, no graphics, no request of the browser's own.
const chromiumFlags = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
  '--disable-component-update', '--disable-sync'];

// What went wrong on a page: errors, and requests to anywhere but the folder or the server it came from.
function watched(page, url) {
  page.wrong = [];
  const own = new URL(url);
  const belongs = (address) => address.startsWith(own.protocol === 'file:' ? 'file:' : own.origin) || /^(data|blob|about):/.test(address);
  page.on('pageerror', (error) => page.wrong.push(String(error)));
  page.on('console', (message) => message.type() === 'error' && page.wrong.push(message.text()));
  page.on('request', (request) => belongs(request.url()) || page.wrong.push(`request to ${request.url()}`));
  return page;
}

const launch = {
  async chromium() {
    const browser = await require('playwright-core').chromium.launch({ executablePath: '/usr/bin/chromium', args: chromiumFlags, env, timeout: 60000 });
    const open = async (url, { width = 1280, height = 900, dark = false, phone = false } = {}) => {
      const context = await browser.newContext({ viewport: { width, height }, colorScheme: dark ? 'dark' : 'light', hasTouch: phone, isMobile: phone });
      const page = watched(await context.newPage(), url);
      await page.goto(url, { timeout: 60000 });
      return page;
    };
    return { open, close: () => browser.close() };
  },

  async firefox() {
    const puppeteer = require('puppeteer-core');
    const start = (dark) => puppeteer.launch({ browser: 'firefox', executablePath: '/usr/bin/firefox-esr', headless: true, env, timeout: 60000,
      protocolTimeout: 120000, extraPrefsFirefox: { 'ui.systemUsesDarkTheme': dark ? 1 : 0 } });
    const browsers = new Map();
    const open = async (url, { width = 1280, height = 900, dark = false } = {}) => {
      if (!browsers.has(dark)) browsers.set(dark, await start(dark));
      const page = watched(await browsers.get(dark).newPage(), url);
      await page.setViewport({ width, height });
      await page.goto(url, { timeout: 60000 });
      return page;
    };
    return { open, close: async () => { for (const browser of browsers.values()) await browser.close(); } };
  },
};

/** Serves a folder on loopback: { url, close }. Headers go with every file. */
export async function serve(folder, headers = {}) {
  const types = { '.html': 'text/html', '.js': 'text/javascript', '.mjs': 'text/javascript', '.css': 'text/css', '.wasm': 'application/wasm' };
  const server = createServer((request, response) => {
    const file = join(folder, normalize(decodeURIComponent(new URL(request.url, 'http://page').pathname)));
    if (!existsSync(file)) return response.writeHead(404).end();
    response.writeHead(200, { 'content-type': types[extname(file)] ?? 'application/octet-stream', ...headers });
    createReadStream(file).pipe(response);
  });
  await new Promise((done) => server.listen(0, '127.0.0.1', done));
  return { url: `http://127.0.0.1:${server.address().port}`, close: () => server.close() };
}

/** Does the tests, each in every browser: name(open, browserName), where open(url, options) gives a page. Ends the program, with 1
 * when one failed or took longer than `seconds`. */
export async function runInBrowsers(tests, { seconds = 60, browsers = Object.keys(launch) } = {}) {
  let failed = 0;
  for (const name of browsers) {
    const browser = await launch[name]();
    for (const [title, test] of Object.entries(tests)) {
      let timer;
      const late = new Promise((_, fail) => { timer = setTimeout(() => fail(new Error(`not done after ${seconds} s`)), 1000 * seconds); });
      const pages = [];
      const open = async (...given) => {
        pages.push(await browser.open(...given));
        return pages.at(-1);
      };
      try {
        await Promise.race([test(open, name), late]);
        for (const page of pages) if (page.wrong.length > 0) throw new Error(page.wrong.join('\n'));
      } catch (error) {
        ++failed;
        console.log(`${name}: ${title}\n${error.stack}\n`);
      }
      clearTimeout(timer);
      for (const page of pages) await page.close();
    }
    await browser.close();
  }
  process.exit(failed ? 1 : 0);
}
