// What the search looks through.
import { leading } from './index_page.mjs';

/** A script that sets SITE: functions with their words, and pages. */
export function searchData(entries, wordsOf, documents) {
  const functions = [...entries.values()].filter(leading).map((entry) => ({
    name: entry.name, twin: entry.twin ?? '', headline: entry.headline, family: entry.family, words: wordsOf(entry),
    arguments: entry.arguments.map((argument) => [argument.name, argument.meaning]),
    results: entry.results.map((result) => result.name),
  }));
  const pages = [...documents].map(([file, html]) => ({ file, title: html.match(/<title>(.*?) – KESTRAN/)[1] }));
  return `var SITE = ${JSON.stringify({ functions, pages }).replace(/</g, '\\u003c')};\n`;
}
