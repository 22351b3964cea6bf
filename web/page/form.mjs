// The inputs of a function: a field for each number, a list for each selector, grids for ranges.
import { byId, element } from './elements.mjs';
import { matrixGrid, rangeGrid } from './grid.mjs';
import { stepped } from './numbers.mjs';

/** Makes the form anew from page.texts and keeps the focus on the field that has it. */
export function buildForm(page) {
  const box = byId('inputs');
  const focused = document.activeElement?.id;
  page.fields = new Map();
  page.cellInput = (argument, cell, label, text, write) => input(page, argument, cell, `${argument.name}.${cell}`, text, write, { 'aria-label': label });
  const wanted = page.entry.arguments.filter((argument, i) => i !== page.entry.resultArgument);
  const numbers = wanted.filter((argument) => argument.shape === 'number').map((argument) => fieldOf(page, argument));
  const matrices = wanted.filter((argument) => argument.kind === 'square' || argument.kind === 'triangle').map((argument) => matrixGrid(page, argument));
  box.replaceChildren(...[rangeGrid(page), ...matrices].filter(Boolean), element('div', { className: 'fields' }, ...numbers));
  box.classList.toggle('many', numbers.length > 12 || box.querySelectorAll('.grid thead th').length > 6);
  if (focused) byId(focused)?.focus();
}

// A name that may break before its capitals.
const breakable = (name) => name.split(/(?=[A-Z])/).flatMap((part, i) => (i === 0 ? [part] : [document.createElement('wbr'), part]));

function fieldOf(page, argument) {
  const { name } = argument;
  const write = (text) => { page.texts[name] = text; };
  const control = argument.choices.length > 0 ? list(page, argument, write) : input(page, argument, null, name, page.texts[name], write);
  const remark = element('span', { className: 'remark', id: `remark-${name}` });
  control.setAttribute('aria-describedby', `meaning-${name} remark-${name}`);
  page.fields.set(name, { control, remark });
  return element('div', { className: 'field' },
    element('label', { htmlFor: control.id }, ...breakable(name)), control,
    element('span', { className: 'unit', textContent: argument.choices.length > 0 ? '' : argument.unitName }),
    element('span', { className: 'meaning', id: `meaning-${name}`, textContent: argument.meaning }), remark);
}

function input(page, argument, cell, id, text, write, attributes = {}) {
  const made = element('input', { id: `in-${id}`, value: text, inputMode: 'text', spellcheck: false, autocomplete: 'off', ...attributes });
  made.oninput = () => { write(made.value); page.changed(); };
  made.onkeydown = (event) => {
    if (event.key === 'Enter') { event.preventDefault(); moveDown(made); return; }
    if ((event.key !== 'ArrowUp' && event.key !== 'ArrowDown') || event.altKey || event.ctrlKey || event.metaKey) return;
    event.preventDefault();
    made.value = stepped(made.value, (event.key === 'ArrowUp' ? 1 : -1) * (event.shiftKey ? 10 : 1), argument);
    made.oninput();
  };
  if (cell !== null) page.fields.set(`${argument.name}.${cell}`, { control: made });
  return made;
}

// The same column of the next row of a grid, or the next field.
function moveDown(from) {
  const row = from.closest('tr');
  const next = row ? row.nextElementSibling?.children[[...row.children].indexOf(from.closest('td'))]?.firstElementChild
    : from.closest('.field').nextElementSibling?.querySelector('input, select');
  next?.focus();
  next?.select?.();
}

function list(page, argument, write) {
  const { choices, otherChoices, name } = argument;
  const chosen = page.texts[name];
  const options = choices.map(({ value, meaning }) => element('option', { value: String(value), textContent: `${value}  ${meaning}` }));
  if (!choices.some(({ value }) => String(value) === chosen))
    options.push(element('option', { value: chosen, textContent: otherChoices === null ? chosen : `${chosen}  ${otherChoices}` }));
  const made = element('select', { id: `in-${name}` }, ...options);
  made.value = chosen;
  made.onchange = () => { write(made.value); page.changed(); };
  return made;
}

// The fields of one cell of a range, or of all of them.
const cellsOf = (page, argument, cell) => [...page.fields]
  .filter(([key]) => key === `${argument}.${cell}` || (cell === null && key.startsWith(`${argument}.`))).map(([, field]) => field);

/**
 * Puts what is wrong or odd beside the fields it is about: `wrong` and `odd` are lists of { argument, cell, text }. Returns
 * what belongs to no field.
 */
export function markFields(page, wrong, odd, understood) {
  const homeless = [];
  for (const { control, remark } of page.fields.values()) {
    control.setAttribute('aria-invalid', 'false');
    control.classList.remove('odd');
    if (remark) { remark.textContent = ''; remark.className = 'remark'; }
  }
  page.entry.arguments.forEach((argument, i) => {
    const field = page.fields.get(argument.name);
    const equation = understood[i]?.match(/= .*/)?.[0].replace(` ${argument.unitName}`, '') ?? '';
    if (field?.remark && argument.choices.length === 0 && !page.texts[argument.name].endsWith('%')) field.remark.textContent = equation;
  });
  for (const [list, kind] of [[odd, 'odd'], [wrong, 'wrong']])
    for (const { argument, cell, text } of list) {
      const field = page.fields.get(argument);
      for (const { control } of field ? [field] : cellsOf(page, argument, cell)) {
        if (kind === 'wrong') control.setAttribute('aria-invalid', 'true');
        else control.classList.add('odd');
      }
      if (field?.remark) {
        field.remark.className = `remark ${kind}`;
        field.remark.textContent = text.startsWith(argument + ' ') ? text.slice(argument.length + 1) : text;
      } else if (argument === null || text.startsWith(argument)) homeless.push({ kind, text });
      else homeless.push({ kind, text: `${argument}${cell === null ? '' : `, cell ${cell + 1}`}: ${text}` });
    }
  return homeless;
}
