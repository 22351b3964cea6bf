// A function's page: what a reader changes goes through here to answers, charts and the address.
import { readAddress, writeAddress } from './address.mjs';
import { buildCalls, showAnswers, showCalls, showRemarks } from './answers.mjs';
import { drawCharts } from './charts.mjs';
import { fitMatrices, readDeal } from './deal.mjs';
import { byId, copy } from './elements.mjs';
import { buildForm, markFields } from './form.mjs';
import { drawHeat, listenToHeat } from './heat.mjs';
import { readNumber } from './numbers.mjs';

const homes = { x: 'x', from: 'from', to: 'to', hx: 'heat-x', hy: 'heat-y', hr: 'heat-result' };

function start(api) {
  const name = byId('main').dataset.function;
  const entry = api.catalogue.functions.find((one) => one.name === name);
  const page = { api, entry, evaluate: api.evaluate, number: (text) => readNumber(text, api.evaluate).number };
  page.monthName = entry.arguments.find((argument) => argument.role === 'month')?.name;
  page.changed = () => update(page);
  page.rebuilt = () => { fitMatrices(entry, page.texts); buildForm(page); update(page); };
  page.choose = (selector) => {
    if (entry.resultArgument !== null) page.texts[entry.arguments[entry.resultArgument].name] = String(selector);
    page.view.hr = '';
    update(page);
  };
  const restore = () => { Object.assign(page, readAddress(entry, location.hash)); showView(page); page.rebuilt(); };
  buildCalls(page);
  listen(page, restore);
  listenToHeat(page);
  printOnPaper(page);
  restore();
}

function showView(page) {
  for (const key of ['from', 'to']) byId(homes[key]).value = page.view[key];
}

function listen(page, restore) {
  for (const [key, id] of Object.entries(homes)) {
    const control = byId(id);
    control[control.tagName === 'SELECT' ? 'onchange' : 'oninput'] = () => {
      page.view[key] = control.value;
      if (key === 'x') { page.view.from = page.view.to = ''; showView(page); }
      update(page);
    };
  }
  byId('reset').onclick = () => { history.replaceState(null, '', location.pathname + location.search); restore(); };
  byId('link').onclick = () => copy(location.href, byId('link'));
  addEventListener('hashchange', () => { if (location.hash !== page.address) restore(); });
  let width = innerWidth;
  addEventListener('resize', () => { if (innerWidth !== width) { width = innerWidth; later(page); } });
  addEventListener('themechange', () => later(page));
}

function update(page) {
  const { api, entry } = page;
  const { values, faults } = readDeal(entry, page.texts, page.evaluate);
  page.values = values;
  const check = api.check(entry.name, values);
  // What could not be read is missing to the module; that is said already.
  const refusals = check.refusals.filter(({ argument }) => !faults.some((fault) => fault.argument === argument));
  const wrong = [...faults, ...refusals.map((refusal) => ({ ...refusal, cell: null }))];
  const odd = check.warnings.filter(({ argument }) => !wrong.some((one) => one.argument === argument)).map((warning) => ({ ...warning, cell: null }));
  page.wrong = wrong.length > 0;
  page.selector = entry.resultArgument === null ? entry.results[0].selector : Math.trunc(values[entry.resultArgument]);
  page.reason = page.wrong ? `${wrong[0].argument ?? ''} ${wrong[0].text.replace(`${wrong[0].argument} `, '')}`.trim() : '';
  showRemarks(markFields(page, wrong, page.wrong ? odd.filter(({ argument }) => argument !== null) : odd, check.understood));
  showAnswers(page);
  showCalls(page);
  const address = writeAddress(entry, page);
  if (address !== (page.address ?? location.hash)) history.replaceState(null, '', address || location.pathname + location.search);
  page.address = address;
  later(page);
}

// Charts follow when the browser has shown the numbers.
function later(page) {
  clearTimeout(page.waiting);
  page.waiting = setTimeout(() => draw(page), 0);
}

function draw(page) {
  const begun = performance.now();
  drawCharts(page);
  drawHeat(page);
  const { dataset } = document.body;
  dataset.drawn = String(Math.round(performance.now() - begun));
  dataset.drawings = String(Number(dataset.drawings ?? 0) + 1);
}

// Paper is light, and as wide as a column of charts.
function printOnPaper(page) {
  const root = document.documentElement;
  let theme;
  addEventListener('beforeprint', () => {
    theme = root.dataset.theme ?? '';
    root.dataset.theme = 'light';
    root.classList.add('paper');
    draw(page);
  });
  addEventListener('afterprint', () => {
    root.dataset.theme = theme;
    root.classList.remove('paper');
    draw(page);
  });
}

kestranReady.then((api) => {
  start(api);
  document.body.dataset.ready = 'yes';
}, (error) => { byId('answer').textContent = `This browser cannot price: ${error.message}`; });
