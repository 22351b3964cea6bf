// What a deal is worth: the chosen result, all results, and the call to copy for each host.
import { byId, copy, element } from './elements.mjs';
import { formulaOf } from './deal.mjs';
import { shown } from './numbers.mjs';
import { monthsOf, priced } from './pictures.mjs';

/** The results that can be chosen: those of periods once for each period. */
export function choicesOf(entry, values) {
  return entry.results.filter((result) => result.unit !== 'none').flatMap((result) => {
    if (result.each !== 'period') return [{ ...result, label: result.name }];
    return Array.from({ length: monthsOf(entry, values) }, (_, k) => ({ ...result, selector: result.selector + k, label: `${result.name} ${k + 1}` }));
  });
}

export function showAnswers(page) {
  const { entry, values } = page;
  const box = byId('answer');
  const choices = choicesOf(entry, values);
  const chosen = choices.find((choice) => choice.selector === page.selector) ?? choices[0];
  const numbers = page.wrong ? choices.map(() => [NaN]) : priced(page.api, entry, values, new Map(), choices.map((choice) => choice.selector));
  const number = numbers[choices.indexOf(chosen)][0];
  const month = chosen.each === 'month' ? `, ${page.monthName} ${page.texts[page.monthName]}` : '';
  box.classList.toggle('wrong', page.wrong || !Number.isFinite(number));
  box.replaceChildren(element('span', { className: 'what', textContent: chosen.label + month }),
    element('output', { textContent: page.wrong ? '–' : String(number) }),
    element('span', { className: 'unit', textContent: page.wrong ? page.reason : chosen.unit }));
  showTable(page, choices, chosen, numbers);
}

function showTable(page, choices, chosen, numbers) {
  const rows = choices.map((choice, i) => {
    const button = element('button', { type: 'button', className: 'plain', textContent: choice.label, 'aria-pressed': String(choice === chosen) });
    button.id = `result-${choice.selector}`;
    button.onclick = () => page.choose(choice.selector);
    return element('tr', { className: choice === chosen ? 'on' : '' },
      element('td', { className: 'selector', textContent: page.entry.resultArgument === null ? '' : choice.selector }),
      element('th', { scope: 'row' }, button, element('small', { textContent: choice.meaning })),
      element('td', { className: 'number', textContent: shown(numbers[i][0]), title: String(numbers[i][0]) }),
      element('td', { className: 'unit', textContent: choice.unit }));
  });
  const focused = document.activeElement?.id;
  byId('results').tBodies[0].replaceChildren(...rows);
  if (focused?.startsWith('result-')) byId(focused)?.focus();
}

/** The texts to copy, by host. */
export function callsOf(page) {
  const formula = formulaOf(page.entry, page.texts, page.values);
  const written = page.api.calls(page.entry.name, page.values);
  return {
    Excel: formula,
    Command: `kestran '${formula}'`,
    Python: written.python,
    PostgreSQL: `select ${written.postgres};`,
    DuckDB: `select ${written.duckdb};`,
  };
}

export function showCalls(page) {
  const calls = page.wrong ? null : callsOf(page);
  for (const [host, row] of page.callRows) {
    row.code.textContent = calls ? calls[host] : '–';
    row.button.disabled = !calls;
  }
}

/** The rows of the calls, made once. */
export function buildCalls(page, hosts = ['Excel', 'Command', 'Python', 'PostgreSQL', 'DuckDB']) {
  page.callRows = new Map(hosts.map((host) => {
    const code = element('code', { id: `call-${host}`, tabIndex: 0, role: 'group', 'aria-label': `The call for ${host}` });
    const button = element('button', { type: 'button', id: `copy-${host}`, textContent: 'Copy', 'aria-label': `Copy for ${host}` });
    button.onclick = () => copy(code.textContent, button, code);
    byId('calls').append(element('div', { className: 'call' }, element('span', { className: 'host', textContent: host }), code, button));
    return [host, { code, button }];
  }));
}

/** What is odd about the whole call, or wrong with a cell of a range. */
export function showRemarks(list) {
  byId('remarks').replaceChildren(...list.map(({ kind, text }) => element('li', { className: kind, textContent: text })));
}
