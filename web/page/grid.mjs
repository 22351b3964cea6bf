// Ranges as columns of a grid and correlations as matrices: cells that take what is pasted from a sheet.
import { element } from './elements.mjs';
import { pastedCells } from './numbers.mjs';

/**
 * One grid for all ranges. `page` has texts, cellInput(argument, place, label), changed() and rebuilt(), which makes the
 * form anew after rows came or went.
 */
export function rangeGrid(page) {
  const ranges = page.entry.arguments.filter((argument) => argument.shape !== 'number' && argument.kind !== 'square' && argument.kind !== 'triangle');
  if (ranges.length === 0) return null;
  const rows = Math.max(...ranges.map((argument) => page.texts[argument.name].length));
  const head = element('tr', {}, element('td'), ...ranges.map((argument) => element('th', { scope: 'col', title: argument.meaning },
    argument.name.replace(/_/g, '_\u200b'), element('small', { textContent: argument.unitName }))));
  const body = Array.from({ length: rows }, (_, row) => element('tr', {}, element('th', { scope: 'row', textContent: row + 1 }),
    ...ranges.map((argument, column) => {
      const cells = page.texts[argument.name];
      const input = page.cellInput(argument, row, `${argument.name}, cell ${row + 1}`, cells[row] ?? '', (text) => {
        while (cells.length < row) cells.push('');
        cells[row] = text;
      });
      input.onpaste = (event) => paste(event, page, (r, c, text) => {
        const target = ranges[column + c];
        if (!target) return;
        const list = page.texts[target.name];
        while (list.length < row + r) list.push('');
        list[row + r] = text;
      });
      return element('td', {}, input);
    })));
  const resize = (change) => () => {
    for (const { name } of ranges) change(page.texts[name]);
    page.rebuilt();
  };
  const more = element('button', { type: 'button', textContent: 'Add a row', onclick: resize((cells) => cells.push(cells.at(-1) ?? '')) });
  const less = element('button', { type: 'button', textContent: 'Remove the last', disabled: rows < 2, onclick: resize((cells) => cells.splice(rows - 1)) });
  return element('div', { className: 'wide' },
    element('div', { className: 'scroll', tabIndex: 0, role: 'group', 'aria-label': 'Ranges' }, element('table', { className: 'grid' },
      element('caption', { textContent: 'Ranges. Cells of a sheet can be pasted into any field.' }),
      element('thead', {}, head), element('tbody', {}, ...body))),
    element('p', { className: 'buttons' }, more, less),
    element('dl', { className: 'meanings' },
      ...ranges.flatMap(({ name, meaning }) => [element('dt', { textContent: name }), element('dd', { textContent: meaning })])));
}

/** A square of correlations, mirrored as it is typed; or the triangle below its diagonal. */
export function matrixGrid(page, argument) {
  const square = argument.kind === 'square';
  const cells = page.texts[argument.name];
  const size = square ? cells.length : Math.round((1 + Math.sqrt(1 + 8 * cells.length)) / 2);
  const place = (i, j) => (square ? i * size + j : i * (i - 1) / 2 + j);
  const inputs = new Map();
  const write = (i, j, text) => {
    if (!square) { cells[place(i, j)] = text; return; }
    cells[i][j] = cells[j][i] = text;
    const mirror = inputs.get(place(j, i));
    if (mirror && i !== j) mirror.value = text;
  };
  const rows = [];
  for (let i = square ? 0 : 1; i < size; ++i) {
    const row = element('tr', {}, element('th', { scope: 'row', textContent: i + 1 }));
    for (let j = 0; j < (square ? size : i); ++j) {
      const label = `${argument.name}, row ${i + 1}, column ${j + 1}`;
      const input = page.cellInput(argument, place(i, j), label, square ? cells[i][j] : cells[place(i, j)], (text) => write(i, j, text));
      inputs.set(place(i, j), input);
      input.onpaste = (event) => paste(event, page, (r, c, text) => {
        const [to, from] = [i + r, j + c];
        if (to < size && from < (square ? size : to)) write(to, from, text);
      });
      row.append(element('td', {}, input));
    }
    rows.push(row);
  }
  const head = element('tr', {}, element('td'), ...Array.from({ length: square ? size : size - 1 }, (_, j) => element('th', { scope: 'col', textContent: j + 1 })));
  return element('div', { className: 'wide' },
    element('div', { className: 'scroll', tabIndex: 0, role: 'group', 'aria-label': argument.name }, element('table', { className: 'grid' },
      element('caption', { textContent: argument.name }), element('thead', {}, head), element('tbody', {}, ...rows))),
    element('p', { className: 'meaning', textContent: `${argument.meaning} (${argument.unitName})` }));
}

// Several cells go to the fields right of and below this one; one cell is left to the browser.
function paste(event, page, write) {
  const rows = pastedCells(event.clipboardData.getData('text'));
  if (rows.length < 2 && rows[0].length < 2) return;
  event.preventDefault();
  rows.forEach((row, r) => row.forEach((text, c) => write(r, c, text)));
  page.rebuilt();
}
