// All that a reader has set, in the address behind the #.
import { addressText, exampleTexts, fromText } from './deal.mjs';

const views = ['x', 'from', 'to', 'hx', 'hy', 'hr'];

/** { texts, selector, view } of an address; what it leaves out is the example. */
export function readAddress(entry, hash) {
  const given = new URLSearchParams(hash.replace(/^#/, ''));
  const texts = exampleTexts(entry);
  for (const argument of entry.arguments)
    if (given.has(argument.name)) texts[argument.name] = fromText(argument, given.get(argument.name));
  const view = Object.fromEntries(views.map((key) => [key, given.get(`view-${key}`) ?? '']));
  return { texts, view };
}

export function writeAddress(entry, { texts, view }) {
  const example = exampleTexts(entry);
  const set = new URLSearchParams();
  for (const argument of entry.arguments) {
    const text = addressText(argument, texts[argument.name]);
    if (text !== addressText(argument, example[argument.name])) set.set(argument.name, text);
  }
  for (const key of views) if (view[key] !== '') set.set(`view-${key}`, view[key]);
  // ; and | may stand in a fragment as they are, and make it readable.
  const text = String(set).replace(/%3B/g, ';').replace(/%7C/g, '|');
  return text === '' ? '' : `#${text}`;
}
