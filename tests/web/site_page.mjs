// What the tests of the site do with a page of it, in any browser.
import { pathToFileURL } from 'node:url';

/** The address of a page of the site in build/site. */
export const addressOf = (file, hash = '') => `${pathToFileURL(`build/site/${file}`)}${hash}`;

/** Waits until a function of the page, given as such or as text, is true; what it says last is in the error. */
export async function until(page, condition, argument) {
  const end = Date.now() + 20000;
  for (;;) {
    const found = await page.evaluate(condition, argument);
    if (found) return found;
    if (Date.now() > end) throw new Error(`still not: ${condition}`);
    await new Promise((done) => setTimeout(done, 20));
  }
}

/** Waits for the charts that follow what `change` does. */
export async function redrawn(page, change) {
  const before = await page.evaluate(() => Number(document.body.dataset.drawings));
  await change();
  await until(page, (drawings) => Number(document.body.dataset.drawings) > drawings, before);
}

export const drawn = (page) => until(page, () => document.body.dataset.drawn !== undefined);

/** Types over what stands in the field of that id. */
export const type = (page, id, text) => redrawn(page, async () => {
  await page.evaluate((field) => { document.getElementById(field).focus(); document.getElementById(field).select(); }, id);
  await page.keyboard.type(text);
});

export const choose = (page, id, value) => redrawn(page, () => page.evaluate(([list, chosen]) => {
  const select = document.getElementById(list);
  select.value = chosen;
  select.dispatchEvent(new Event('change', { bubbles: true }));
}, [id, value]));

/** What the page shows: number, formula, address, remarks and what is wrong beside fields. */
export const shown = (page) => page.evaluate(() => ({
  number: document.querySelector('#answer output').textContent,
  formula: document.getElementById('call-Excel').textContent,
  hash: location.hash,
  remarks: [...document.querySelectorAll('#remarks li, .remark.wrong, .remark.odd')].map((remark) => remark.textContent).filter(Boolean),
  invalid: [...document.querySelectorAll('[aria-invalid=true]')].map((field) => field.id),
  results: [...document.querySelectorAll('#results tbody tr')].map((row) => [...row.children].map((cell) => cell.querySelector('button')?.textContent ?? cell.textContent)),
}));

/** The cells of a table, row after row. */
export const cells = (page, id) => page.evaluate((table) => [...document.querySelectorAll(`#${table} tr`)].map((row) => [...row.children].map((cell) => cell.textContent)), id);

/** Pastes into the field of that id. */
export const paste = (page, id, text) => redrawn(page, () => page.evaluate(([field, pasted]) => {
  const clipboardData = new DataTransfer();
  clipboardData.setData('text/plain', pasted);
  const event = new ClipboardEvent('paste', { clipboardData, dataType: 'text/plain', data: pasted, bubbles: true, cancelable: true });
  document.getElementById(field).dispatchEvent(event);
}, [id, text]));

/** What the button of that id copies; the browser's own clipboard belongs to the desktop. */
export const copied = (page, button) => page.evaluate(async (id) => {
  let text = null;
  Object.defineProperty(navigator, 'clipboard', { configurable: true, value: { writeText: async (given) => { text = given; } } });
  document.getElementById(id).click();
  await null;
  return text;
}, button);
