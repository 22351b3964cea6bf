// What every page of the site has around its content.

export const escaped = (text) => String(text).replace(/&/g, '&amp;').replace(/</g, '&lt;').replace(/>/g, '&gt;').replace(/"/g, '&quot;');

/** The pages that every page leads to. */
export const places = [
  ['index.html', 'Functions'],
  ['from-a-deal-to-arguments.html', 'From a deal to arguments'],
  ['negative-prices.html', 'Negative prices'],
  ['conventions.html', 'Conventions'],
  ['scale.html', 'Scale'],
  ['install.html', 'Install'],
];

/** A whole page. `data` are attributes of <main>, `scripts` files that follow the search's. */
export function shell({ file, title, body, data = {}, scripts = [], description = '' }) {
  const attributes = Object.entries(data).map(([key, value]) => ` data-${key}="${escaped(value)}"`).join('');
  const links = places.map(([href, text]) => `<a href="${href}"${href === file ? ' aria-current="page"' : ''}>${text}</a>`).join('');
  return `<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
${description === '' ? '' : `<meta name="description" content="${escaped(description)}">\n`}<title>${escaped(title)}</title>
<link rel="icon" href="data:,">
<link rel="stylesheet" href="style.css">
<script>try { document.documentElement.dataset.theme = localStorage.getItem('kestran-theme') ?? ''; } catch { /* no storage */ }</script>
</head>
<body>
<a class="skip" href="#main">Skip to the content</a>
<header class="top">
<a class="brand" href="index.html">KESTRAN</a>
<nav aria-label="Pages">${links}</nav>
<div class="search" role="search"><label class="sr" for="search">Search functions, arguments and market words</label><input id="search" type="search" placeholder="Search: collar, crack spread, Correl …" autocomplete="off" spellcheck="false" aria-controls="found"><ul id="found" hidden></ul></div>
<button id="theme" type="button" aria-label="Light or dark">◐</button>
</header>
<main id="main" tabindex="-1"${attributes}>
${body}
</main>
<footer><p>Everything on these pages is computed in the browser by the code of the Excel add-in, to the bit. Nothing is sent anywhere. <a href="reference.html">All functions on one page, to print</a>. <a href="notices.txt">Licences</a>.</p></footer>
<script src="search.js"></script>
${scripts.map((script) => `<script src="${script}"></script>`).join('\n')}
</body>
</html>
`;
}
