// The header of every page: light or dark, and the search.
import { byId, element } from './elements.mjs';

const root = document.documentElement;
const isDark = () => (root.dataset.theme ? root.dataset.theme === 'dark' : matchMedia('(prefers-color-scheme: dark)').matches);
const changed = () => dispatchEvent(new Event('themechange'));

byId('theme').onclick = () => {
  root.dataset.theme = isDark() ? 'light' : 'dark';
  try { localStorage.setItem('kestran-theme', root.dataset.theme); } catch { /* not remembered */ }
  changed();
};
matchMedia('(prefers-color-scheme: dark)').addEventListener('change', changed);

// How well a word fits a text: at its beginning, at the beginning of a word, within.
const fit = (text, word) => {
  const at = text.toLowerCase().indexOf(word);
  return at < 0 ? 0 : at === 0 ? 3 : /\W/.test(text[at - 1]) ? 2 : 1;
};

/** The functions and pages in which every word of the query occurs, best first: { href, title, why, name }. */
function searched(query) {
  const words = query.toLowerCase().split(/\s+/).filter(Boolean);
  if (words.length === 0) return [];
  const hits = [];
  for (const one of SITE.functions) {
    let score = 0, why = one.headline;
    for (const word of words) {
      const named = Math.max(fit(one.name, word), fit(one.twin, word));
      const market = Math.max(0, ...one.words.map((text) => fit(text, word)));
      const headline = fit(one.headline, word) || fit(one.family, word);
      const argument = one.arguments.find(([name, meaning]) => fit(name, word) > 0 || fit(meaning, word) > 1);
      const result = one.results.find((name) => fit(name, word) > 0);
      const found = 20 * named || 6 * market || 4 * headline || (argument ? 2 + fit(argument[0], word) : 0) || (result ? 1 : 0);
      if (found === 0) { score = 0; break; }
      if (!named && !headline && !market) why = argument ? `${argument[0]}: ${argument[1]}` : `result ${result}`;
      score += found;
    }
    if (score > 0) hits.push({ href: `${one.name}.html`, title: one.twin ? `${one.name}, ${one.twin}` : one.name, why, name: one.name, score });
  }
  for (const page of SITE.pages) {
    const score = Math.min(...words.map((word) => fit(page.title, word)));
    if (score > 0) hits.push({ href: page.file, title: page.title, why: 'page', name: '', score: 3 * score });
  }
  return hits.sort((a, b) => b.score - a.score);
}

const box = byId('search'), list = byId('found');
const cards = document.querySelectorAll('[data-name]');
let first = null;

function show() {
  const hits = searched(box.value);
  first = hits[0]?.href ?? null;
  // On the index the cards tell which functions were found.
  const listed = cards.length > 0 ? hits.filter((hit) => hit.name === '') : hits;
  const linkTo = (hit) => element('a', { href: hit.href }, element('b', { textContent: hit.title }), ' ', element('span', { textContent: hit.why }));
  list.replaceChildren(...listed.slice(0, 12).map((hit) => element('li', {}, linkTo(hit))));
  if (hits.length === 0) list.append(element('li', { className: 'none', textContent: 'Nothing found.' }));
  list.hidden = box.value.trim() === '' || (listed.length === 0 && hits.length > 0);
  filterCards(hits);
}

// On the index, cards that were not found go.
function filterCards(hits) {
  if (cards.length === 0) return;
  const all = box.value.trim() === '', names = new Set(hits.map((hit) => hit.name));
  for (const card of cards) card.hidden = !all && !names.has(card.dataset.name);
  for (const family of document.querySelectorAll('.family')) family.hidden = [...family.querySelectorAll('[data-name]')].every((card) => card.hidden);
  byId('search-note').textContent = all ? '' : `${names.size - (names.has('') ? 1 : 0)} of ${cards.length} functions`;
}

box.oninput = show;
box.onfocus = show;
box.onkeydown = (event) => {
  if (event.key === 'Enter' && first !== null) location.href = first;
  if (event.key === 'Escape') { list.hidden = true; }
  if (event.key === 'ArrowDown') { event.preventDefault(); list.querySelector('a')?.focus(); }
};
list.onkeydown = (event) => {
  const links = [...list.querySelectorAll('a')], at = links.indexOf(document.activeElement);
  if (event.key === 'Escape') { box.focus(); list.hidden = true; }
  if (event.key === 'ArrowDown') { event.preventDefault(); links[at + 1]?.focus(); }
  if (event.key === 'ArrowUp') { event.preventDefault(); (links[at - 1] ?? box).focus(); }
};
addEventListener('pointerdown', (event) => { if (!event.target.closest('.search')) list.hidden = true; });
addEventListener('keydown', (event) => {
  if (event.key !== '/' || /^(INPUT|SELECT|TEXTAREA)$/.test(document.activeElement.tagName)) return;
  event.preventDefault();
  box.focus();
});
