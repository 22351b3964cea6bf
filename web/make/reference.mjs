// What web/reference says of the functions: Markdown with TeX between dollar signs, which becomes MathML.
//
//   ---
//   words: what people search for, ...
//   related:
//   - NAME: when to take that one
//   ---
//   Two sentences on what it prices.
//   ## Formula, or Algorithm, and ## Conventions
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { temml } from './libraries.mjs';

/** File name without ending → { words, related: [{ name, when }], text }, of all files of the folder. */
export function readReference(folder) {
  const files = readdirSync(folder).filter((file) => file.endsWith('.md')).sort();
  return new Map(files.map((file) => [file.slice(0, -3), parsed(file, readFileSync(join(folder, file), 'utf8'))]));
}

function parsed(file, source) {
  const parts = source.match(/^---\nwords: (.*)\nrelated:\n((?:- \w+: .*\n)*)---\n([^]*)$/);
  if (!parts) throw new Error(`${file}: does not begin with its words and related functions`);
  const related = [...parts[2].matchAll(/^- (\w+): (.*)$/gm)].map(([, name, when]) => ({ name, when }));
  return { words: parts[1].split(/\s*,\s*/), related, text: parts[3] };
}

// A formula that is a list, a = b,\qquad c = d, as its parts: they flow like words where there is no room for all.
function partsOf(tex) {
  const parts = [];
  let depth = 0, start = 0;
  for (const token of tex.matchAll(/\\(?:begin|left)\b|\\(?:end|right)\b|\\q?quad\b|\\.|[{}]/g)) {
    if (/^(\\begin|\\left|\{)$/.test(token[0])) ++depth;
    else if (/^(\\end|\\right|\})$/.test(token[0])) --depth;
    else if (depth === 0 && token[0].endsWith('quad')) {
      parts.push(tex.slice(start, token.index));
      start = token.index + token[0].length;
    }
  }
  return [...parts, tex.slice(start)];
}

/** TeX as MathML; what is not TeX throws. */
export function mathml(tex, display) {
  // Of the names of functions the converter leaves out the space before them.
  const spaced = tex.replace(/([\w})\]])\s*(\\(?:min|max|ln|exp)\b)/g, '$1\\,$2');
  const one = (part) => temml.renderToString(part.trim(), { displayMode: display, throwOnError: true })
    .replace(/ style="display:block math;"/, '').replace(/ class="tml-display"/, '');
  return display ? `<div class="maths" tabindex="0" role="group" aria-label="Formula">${partsOf(spaced).map(one).join('')}</div>` : one(spaced);
}

/** The text as HTML: `toHtml` turns Markdown into it, headings begin at `level`. */
export function referenceHtml(text, toHtml, level = 3) {
  // A word of its own, which Markdown leaves alone, holds the place of each formula.
  const formulas = [];
  const held = (display) => (whole, tex) => {
    formulas.push(mathml(tex.replace(/\s+/g, ' ').trim(), display));
    return `maths${formulas.length - 1}held`;
  };
  const plain = text.replace(/\$\$([^$]+)\$\$/g, held(true)).replace(/\$([^$]+)\$/g, held(false))
    .replace(/^##(?= )/gm, '#'.repeat(level));
  // A formula that stands alone is no paragraph. What defines a symbol and marks of punctuation stay on its line.
  return toHtml(plain).replace(/<p>(maths\d+held)<\/p>/g, '$1')
    .replace(/maths\d+held = (?:<a[^>]*>)?<code>[^<]*<\/code>(?:<\/a>)?[,.;:)]*|maths\d+held[,.;:)]+/g, '<span class="nowrap">$&</span>')
    .replace(/maths(\d+)held/g, (whole, k) => formulas[Number(k)]);
}
