// Writes the site.
//   node site.mjs OUT PACKAGE    PACKAGE is the folder of the package for Node and pages
import { copyFileSync, existsSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { classicScript } from './bundle.mjs';
import { documents, functionSections, linksOf } from './documents.mjs';
import { functionPage, referenceEntry } from './function_page.mjs';
import { fileOf } from './libraries.mjs';
import { indexPage, leading } from './index_page.mjs';
import { markdown, slug } from './markdown.mjs';
import { readReference, referenceHtml } from './reference.mjs';
import { searchData } from './search_data.mjs';
import { escaped, shell } from './shell.mjs';

const [out, module] = process.argv.slice(2).map((path) => resolve(path));
const web = dirname(dirname(fileURLToPath(import.meta.url))), root = dirname(web);
const { kestran: api } = await import(pathToFileURL(join(module, 'node.js')));

const entries = new Map(api.catalogue.functions.map((entry) => [entry.name, entry]));
const families = api.catalogue.families.map(({ title, functions }) => ({ title, id: slug(title), functions: functions.filter((name) => leading(entries.get(name))) }));
const { general, sections, familyAnchors } = functionSections(root, entries);
const links = linksOf(sections, familyAnchors);

// What web/reference says of a function; twins have one file.
const reference = readReference(join(web, 'reference'));
const missing = [];
function fragmentOf(entry) {
  const said = reference.get(entry.name) ?? reference.get(entry.twin);
  if (!said) { missing.push(entry.name); return { html: `<p>${escaped(entry.prices)}</p>`, words: [], related: [] }; }
  const html = referenceHtml(said.text, (text) => markdown(text, (href) => links(href, 'functions.md'), entries));
  return { html, words: said.words, related: said.related };
}
const about = new Map([...entries.values()].map((entry) => {
  const { html, words, related } = fragmentOf(entry);
  const section = sections.get(entry.name);
  const notes = section ? markdown(section.text, (href) => links(href, 'functions.md'), entries) : '';
  const stored = [entry.name, entry.twin].map((name) => join(root, 'docs/pictures', `accuracy-${name}.svg`)).find(existsSync);
  return [entry.name, { fragment: html, words, related, notes, accuracyPicture: stored ? `<figure class="accuracy"><div class="scroll" tabindex="0" role="region" aria-label="Errors">${readFileSync(stored, 'utf8')}</div></figure>` : '' }];
}));
if (missing.length > 0 && !process.env.KESTRAN_SITE_DRAFT) throw new Error(`web/reference says nothing of ${missing.join(', ')}`);

// Of an earlier site everything goes; a folder with anything else is left alone.
mkdirSync(out, { recursive: true });
const earlier = readdirSync(out);
const ours = /\.(html|js|css|pdf|txt)$/;
if (earlier.length > 0 && (!earlier.includes('kestran.js') || !earlier.every((file) => ours.test(file)))) throw new Error(`${out} holds something else than a site`);
for (const file of earlier) rmSync(join(out, file));
const write = (name, text) => writeFileSync(join(out, name), text);

const texts = documents(root, entries, general, links);
for (const [file, html] of texts) write(file, html);
for (const entry of entries.values()) {
  const family = families.find(({ functions }) => functions.includes(entry.name) || functions.includes(entry.twin));
  write(`${entry.name}.html`, functionPage(entry, family, about.get(entry.name)));
}
write('index.html', indexPage(api, families, entries));
write('reference.html', shell({
  file: 'reference.html', title: 'KESTRAN – reference', body: `<h1>KESTRAN reference</h1><p class="lead">All ${entries.size} functions, version ${escaped(api.version)}.</p>
<nav class="contents" aria-label="Contents">${families.map((family) => `<p><b>${escaped(family.title)}</b> ${family.functions.map((name) => `<a href="#${name}">${name}</a>`).join(', ')}</p>`).join('')}</nav>
${families.map((family) => `<h2 class="family-title">${escaped(family.title)}</h2>${family.functions.map((name) => referenceEntry(api, entries.get(name), about.get(name))).join('\n')}`).join('\n')}`,
}));
write('search.js', searchData(entries, (entry) => about.get(entry.name).words, texts) + classicScript(join(web, 'page/search.mjs')));
write('page.js', fileOf('uplot/dist/uPlot.iife.min.js') + '\n' + classicScript(join(web, 'page/main.mjs')));
write('style.css', [fileOf('uplot/dist/uPlot.min.css'), ...readdirSync(join(web, 'style')).sort().map((file) => readFileSync(join(web, 'style', file), 'utf8'))].join('\n'));
copyFileSync(join(module, 'classic.js'), join(out, 'kestran.js'));
copyFileSync(join(root, 'THIRD-PARTY-NOTICES'), join(out, 'notices.txt'));
console.log(`${out}/index.html: ${entries.size} functions, ${texts.size} more pages`);
