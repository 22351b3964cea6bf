// The index: a card for each function, by family.
import { escaped, shell } from './shell.mjs';
import { exampleCurve, sparkline } from './svg.mjs';

/** Of twins the one without the x stands for both. */
export const leading = (entry) => entry.twin === null || !entry.name.startsWith('x');

export function indexPage(api, families, entries) {
  const card = (name) => {
    const entry = entries.get(name);
    return `<li data-name="${name}"><a href="${name}.html">${sparkline(exampleCurve(api, entry, 81))}<span class="name">${name}${entry.twin === null ? '' : ` <span class="twin">${entry.twin}</span>`}</span><span class="headline">${escaped(entry.headline)}</span></a></li>`;
  };
  const sections = families.map((family) => `<section class="family" aria-labelledby="${family.id}"><h2 id="${family.id}">${escaped(family.title)}</h2><ul class="cards">${family.functions.map(card).join('\n')}</ul></section>`);
  const count = api.catalogue.functions.length;
  return shell({
    file: 'index.html', title: 'KESTRAN – functions', body: `<h1>Functions</h1>
<p class="lead">${count} worksheet functions for commodity, energy, currency and interest-rate options. Every page prices as you type, with the code of the Excel add-in. The pictures show each example now, and dashed how it ends.</p>
<p id="search-note" class="note" role="status"></p>
${sections.join('\n')}`,
  });
}
