// The numbers behind a picture: a table, a file, and the clipboard.
import { byId, copy, download, element } from './elements.mjs';
import { shown } from './numbers.mjs';

const titleOf = (title) => (typeof title === 'number' ? shown(title) : title);
const everyOf = (count, about) => (about === undefined ? 1 : Math.max(1, Math.round(count / about)));

/**
 * Fills the table `${id}-numbers` and its buttons: `titles` over the columns, `rows` of numbers, null where there is none. The
 * file has all of them, the table about `about` rows and, with `columnsAbout`, columns.
 */
export function showNumbers(id, { name, caption, titles, rows, about, columnsAbout }) {
  const kept = rows.filter((_, i) => i % everyOf(rows.length, about) === 0);
  const columns = titles.map((_, i) => i).filter((i) => i === 0 || (i - 1) % everyOf(titles.length - 1, columnsAbout) === 0);
  byId(`${id}-numbers`).replaceChildren(
    element('caption', { textContent: caption }),
    element('thead', {}, element('tr', {}, ...columns.map((i) => element('th', { scope: 'col', textContent: titleOf(titles[i]) })))),
    element('tbody', {}, ...kept.map((row) => element('tr', {}, ...columns.map((i) => (i === 0
      ? element('th', { scope: 'row', textContent: shown(row[0]) }) : element('td', { className: 'number', textContent: shown(row[i]) })))))));
  byId(`${id}-csv`).onclick = () => download(`${name}.csv`, separated([titles, ...rows], ',', '\r\n'));
  byId(`${id}-copy`).onclick = () => copy(separated([titles, ...rows], '\t', '\n'), byId(`${id}-copy`), byId(`${id}-numbers`));
}

function separated(rows, comma, end) {
  const field = (cell) => (cell === null ? '' : /[",\n\t]/.test(cell) ? `"${String(cell).replace(/"/g, '""')}"` : String(cell));
  return rows.map((row) => row.map(field).join(comma) + end).join('');
}
