// ES modules as one classic script, which a page opened from a folder may load.
import { readFileSync } from 'node:fs';
import { dirname, resolve } from 'node:path';

/** The module and all that it imports by relative paths, each once, in one function's scope. */
export function classicScript(entry) {
  const seen = new Set(), parts = [];
  const add = (file) => {
    if (seen.has(file)) return;
    seen.add(file);
    const source = readFileSync(file, 'utf8');
    for (const [, path] of source.matchAll(/^import .* from '(\..*)';$/gm)) add(resolve(dirname(file), path));
    parts.push(source.replace(/^import .*;\n/gm, '').replace(/^export /gm, ''));
  };
  add(resolve(entry));
  return `(() => {\n'use strict';\n${parts.join('\n')}})();\n`;
}
