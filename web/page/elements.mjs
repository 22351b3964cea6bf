// Small things that the parts of a page share.

export const byId = (id) => document.getElementById(id);

/** An element with properties, attributes (names with a hyphen, or role) and children; null children are left out. */
export function element(tag, properties = {}, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (/-|^role$|^for$/.test(name)) made.setAttribute(name, value);
    else made[name] = value;
  }
  made.append(...children.filter((child) => child !== null && child !== undefined));
  return made;
}

/** Shows a word on the button for a moment. */
export function flash(button, word) {
  button.dataset.text ??= button.textContent;
  button.textContent = word;
  clearTimeout(button.timer);
  button.timer = setTimeout(() => { button.textContent = button.dataset.text; }, 1500);
}

/** Copies the text; where the browser forbids it, selects `source` so that a key does it. */
export async function copy(text, button, source) {
  try {
    await navigator.clipboard.writeText(text);
    flash(button, 'Copied');
  } catch {
    if (source) getSelection().selectAllChildren(source);
    flash(button, source ? 'Press Ctrl+C' : 'Not copied');
  }
}

/** Offers the text as a file. */
export function download(name, text) {
  const link = element('a', { href: URL.createObjectURL(new Blob([text], { type: 'text/csv' })), download: name });
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 1000);
}

/** A colour of the style sheet. */
export const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();
