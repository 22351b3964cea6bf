// What npm has installed for making the site: web/build does so.
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';

const require = createRequire(new URL('../../build/web/site/package.json', import.meta.url));
export const { Marked } = require('marked');
export const temml = require('temml');
/** A file of a library, such as 'uplot/dist/uPlot.min.css'. */
export const fileOf = (path) => readFileSync(require.resolve(path), 'utf8');
