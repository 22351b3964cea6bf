// ES modules as one classic script, which a page opened from a folder may load.
import { readFileSync } from 'node:fs';
import { dirname, resolve } from 'node:path';

/** The module and all that it imports by relative paths, each once, in one function's scope: names at the top differ. */
export function classicScript(entry) {
  const seen = new Set(), parts = [], names = new Set();
  const add = (file) => {
    if (seen.has(file)) return;
    seen.add(file);
    const source = readFileSync(file, 'utf8');
    for (const [, path] of source.matchAll(/^import .* from '(\..*)';$/gm)) add(resolve(dirname(file), path));
    for (const [, name] of source.matchAll(/^(?:export )?(?:async )?(?:function|const|let) (\w+)/gm)) {
      if (names.has(name)) throw new Error(`${file}: another module of the page has a ${name}`);
      names.add(name);
    }
    parts.push(source.replace(/^import .*;\n/gm, '').replace(/^export /gm, ''));
  };
  add(resolve(entry));
  return `(() => {\n'use strict';\n${parts.join('\n')}})();\n`;
}
