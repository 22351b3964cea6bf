// The repository's pages as pages of the site.
import { readFileSync } from 'node:fs';
import { Marked } from './libraries.mjs';
import { addressText, fromText } from '../page/deal.mjs';
import { escaped } from './shell.mjs';

export const slug = (text) => text.toLowerCase().replace(/<[^>]*>/g, '').replace(/[^\p{L}\p{N}\s_-]/gu, '').trim().replace(/\s/g, '-');

/** Markdown to HTML. `links(href)` says where a link goes, null for what is not on the site; `entries` by name are linked from formulas. */
export function markdown(text, links, entries) {
  const plain = text.replace(/^<!-- .* -->\n?/gm, '');
  const renderer = {
    heading: (inner, level, raw) => `<h${level} id="${slug(raw.replace(/[`*]/g, ''))}">${inner}</h${level}>\n`,
    table: (header, body) => `<div class="scroll" tabindex="0" role="group" aria-label="Table"><table><thead>${header.replace(/<th>\s*<\/th>/g, '<td></td>')}</thead><tbody>${body}</tbody></table></div>\n`,
    code: (code) => `<pre tabindex="0" role="group" aria-label="Example"><code>${escaped(code)}\n</code></pre>\n`,
    // Drawings of the functions take the page's colours; those of Excel's windows have their own.
    image: (href, title, text) => {
      const drawing = readFileSync(new URL(`../../docs/${href.replace(/^docs\//, '')}`, import.meta.url), 'utf8');
      if (href.includes('pictures/')) return `<span class="shown">${drawing}</span>`;
      return `<img style="max-width: 100%" src="data:image/svg+xml;base64,${Buffer.from(drawing).toString('base64')}" alt="${escaped(text)}">`;
    },
    link: (href, title, inner) => {
      const target = links(href);
      return target === null ? inner : `<a href="${escaped(target)}">${inner}</a>`;
    },
    codespan: (code) => {
      const formula = code.replace(/&lt;/g, '<').replace(/&gt;/g, '>').replace(/&quot;/g, '"').replace(/&#39;/g, "'").replace(/&amp;/g, '&');
      const target = pageOfFormula(formula, entries);
      return target === null ? `<code>${code}</code>` : `<a class="live" href="${escaped(target)}"><code>${code}</code></a>`;
    },
  };
  return new Marked({ gfm: true, renderer }).parse(plain);
}

/** The page of the call in a formula, with its arguments filled in; of a function's bare name its page. */
function pageOfFormula(formula, entries) {
  if (entries.has(formula)) return `${formula}.html`;
  const call = formula.match(/^[^"]*?\b(\w+)\((.*)\)[^()]*$/);
  const entry = call && formula.startsWith('=') ? entries.get(call[1]) : null;
  if (!entry) return null;
  const parts = call[2].match(/\{[^}]*\}|[^,{}]+/g) ?? [];
  if (parts.length !== entry.arguments.length || parts.some((part) => /[()"#]/.test(part))) return null;
  const set = new URLSearchParams();
  entry.arguments.forEach((argument, i) => set.set(argument.name, addressText(argument, fromText(argument, parts[i].trim()))));
  return `${entry.name}.html#${String(set).replace(/%3B/g, ';').replace(/%7C/g, '|')}`;
}
