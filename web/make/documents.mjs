// The pages that are not about one function: what the repository's documents say.
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { markdown, slug } from './markdown.mjs';
import { places, shell } from './shell.mjs';

const forDevelopers = ['architecture.md', 'testing.md', 'release.md', 'functions.md'];
const installSections = ['Which file for whom', 'Install in Excel', 'What a cell shows', 'The command'];

const titleOf = (text) => text.match(/^# (.*)$/m)[1];

/** The sections of the page about functions: general ones as a text, and one for each heading that names functions. */
export function functionSections(folder, entries) {
  const text = readFileSync(join(folder, 'docs/functions.md'), 'utf8');
  const [general, ...families] = text.split(/^## (?=European and American options$)/m).flatMap((part, i) => (i === 0 ? [part] : part.split(/^## /m)));
  const sections = new Map();
  for (const family of families)
    for (const section of family.split(/^### /m).slice(1)) {
      const heading = section.slice(0, section.indexOf('\n'));
      // The generated tables are the page's inputs and results; it shows the picture of errors elsewhere.
      const own = section.slice(heading.length).replace(/^<!-- (\w+) -->\n[^]*?^<!-- end of \1 -->\n/gm, '').replace(/^!\[.*\]\(pictures\/accuracy-.*\)\n?/gm, '').trim();
      for (const name of heading.split(', ')) if (entries.has(name)) sections.set(name, { heading, text: own });
    }
  const familyAnchors = families.map((family) => slug(family.slice(0, family.indexOf('\n'))));
  return { general, sections, familyAnchors };
}

/** Where links of a document lead on the site; null for what is not there. */
export function linksOf(sections, familyAnchors) {
  const anchors = new Map([...sections].map(([name, { heading }]) => [slug(heading), `${name}.html`]).reverse());
  return (href, from) => {
    if (/^https?:/.test(href)) return href;
    const [path, anchor = ''] = href.split('#');
    const file = path.split('/').pop();
    const behind = anchor === '' ? '' : `#${anchor}`;
    if (file === 'functions.md' || (file === '' && from === 'functions.md'))
      return anchors.get(anchor) ?? (anchor === '' || familyAnchors.includes(anchor) ? `index.html${behind}` : `conventions.html${behind}`);
    if (file === '') return behind;
    if (file === 'README.md') return anchor === 'functions' ? 'index.html' : `install.html${behind}`;
    return file.endsWith('.md') && !forDevelopers.includes(file) ? file.replace(/\.md$/, '.html') + behind : null;
  };
}

/** The pages of docs/ and of what README says: file name → HTML. */
export function documents(folder, entries, general, links) {
  const pages = new Map();
  const others = [];
  const page = (file, title, text, from) => pages.set(file, shell({
    file, title: `${title} – KESTRAN`, body: `<article class="text">${markdown(text, (href) => links(href, from), entries)}</article>`,
  }));
  for (const file of readdirSync(join(folder, 'docs'))) {
    if (!file.endsWith('.md') || forDevelopers.includes(file)) continue;
    const text = readFileSync(join(folder, 'docs', file), 'utf8');
    page(file.replace(/\.md$/, '.html'), titleOf(text), text, file);
    if (!places.some(([place]) => place === file.replace(/\.md$/, '.html'))) others.push(`[${titleOf(text)}](docs/${file})`);
  }
  page('conventions.html', 'Conventions', '# Conventions\n\nWhat holds for all functions.\n\n## ' + general.split(/^## /m).slice(1).join('## '), 'functions.md');
  page('install.html', 'Install', installText(readFileSync(join(folder, 'README.md'), 'utf8'), others), 'README.md');
  return pages;
}

function installText(readme, others) {
  const sections = readme.split(/^## /m);
  const chosen = installSections.map((title) => {
    const found = sections.find((section) => section.startsWith(`${title}\n`));
    if (!found) throw new Error(`README.md has no section "${title}"`);
    return `## ${found}`;
  });
  return `# Install

Excel takes one file, which is described below, and so is the command. Pages of their own: ${others.join(', ')}.

${chosen.join('\n')}`;
}
