// The page of one function, and its entry on the page of all.
import { answersText, argumentRows, resultRows } from './tables.mjs';
import { escaped, shell } from './shell.mjs';
import { exampleCurve, picture } from './svg.mjs';

const numbers = (id, what) => `<details><summary>The numbers behind the ${what}</summary>
<p class="buttons"><button type="button" id="${id}-csv">Save as CSV</button><button type="button" id="${id}-copy">Copy for a sheet</button></p>
<div class="scroll" tabindex="0" role="group" aria-label="Numbers behind the ${what}"><table id="${id}-numbers" class="numbers"></table></div></details>`;

const chartSections = `<section id="charts" aria-labelledby="charts-title">
<h2 id="charts-title">Pictures</h2>
<div class="controls"><label>Against <select id="x"></select></label><label>from <input id="from" size="7" autocomplete="off"></label><label>to <input id="to" size="7" autocomplete="off"></label></div>
<p class="readout" id="readout" aria-hidden="true"></p>
<div id="plots" class="plots"></div>
<p class="note" id="chart-note" role="status"></p>
${numbers('chart', 'charts')}
</section>
<section id="months-section" aria-labelledby="months-title" hidden>
<h2 id="months-title">Month by month</h2>
<div id="months" class="plots"></div>
${numbers('month', 'months')}
</section>
<section aria-labelledby="heat-title">
<h2 id="heat-title">Two at once</h2>
<div class="controls"><label>Result <select id="heat-result"></select></label><label>across <select id="heat-x"></select></label><label>up <select id="heat-y"></select></label></div>
<p class="note" id="heat-note" role="status"></p>
<div id="heat-figure"><p class="readout" id="heat-readout"></p>
<div class="heat-box"><canvas id="heat" tabindex="0" role="img"></canvas></div>
<p class="scale"><span id="heat-low"></span><span class="ramp" aria-hidden="true"></span><span id="heat-high"></span></p>
${numbers('heat', 'map')}</div>
</section>`;

const relatedList = (related) => (related.length === 0 ? '' : `<h3>Which function when</h3>
<dl class="related">${related.map(({ name, when }) => `<dt><a href="${name}.html">${name}</a></dt><dd>${escaped(when)}</dd>`).join('\n')}</dl>`);

/** `about` has fragment, notes and accuracyPicture as HTML, and related functions with when to take which; `family` the family's entries. */
export function functionPage(entry, family, about) {
  const twin = entry.twin === null ? '' : ` <span class="twin">also <a href="${entry.twin}.html">${entry.twin}</a></span>`;
  const kin = family.functions.map((name) => (name === entry.name ? `<b aria-current="page">${name}</b>` : `<a href="${name}.html">${name}</a>`)).join(' ');
  const body = `<nav class="kin" aria-label="${escaped(family.title)}"><a href="index.html#${family.id}">${escaped(family.title)}</a>: ${kin}</nav>
<h1>${entry.name}${twin}</h1>
<p class="lead">${escaped(entry.headline[0].toUpperCase() + entry.headline.slice(1))}</p>
<noscript><p class="note">The inputs and charts of this page need JavaScript; all texts and formulas stand below.</p></noscript>
<div class="bench">
<section aria-labelledby="inputs-title"><h2 id="inputs-title">Inputs</h2><form id="inputs" autocomplete="off" onsubmit="return false"></form>
<p class="buttons"><button type="button" id="reset">Back to the example</button><button type="button" id="link">Copy a link to this</button></p></section>
<section class="answers" aria-labelledby="results-title"><h2 id="results-title">Results</h2>
<div id="answer" class="answer" role="status" aria-live="polite" aria-atomic="true">${answersText(entry)}</div>
<ul id="remarks" class="remarks"></ul>
<div class="scroll"><table id="results"><thead><tr><th scope="col">${entry.resultArgument === null ? '<span class="sr">Number</span>' : entry.arguments[entry.resultArgument].name}</th><th scope="col">Result</th><th scope="col" class="number">Value</th><th scope="col">Unit</th></tr></thead><tbody></tbody></table></div>
<h3>The call</h3><div id="calls" class="calls"></div></section>
</div>
${chartSections}
<section class="text" aria-labelledby="about-title"><h2 id="about-title">What it prices and how</h2>
${about.fragment}
<h3>How far to trust it</h3><p>${escaped(entry.accuracy)}</p>
${about.accuracyPicture}
${relatedList(about.related)}
${about.notes === '' ? '' : `<h3>In detail</h3>${about.notes}`}
</section>`;
  return shell({
    file: `${entry.name}.html`, title: `${entry.name}: ${entry.headline} – KESTRAN`, description: entry.prices, body,
    data: { function: entry.name }, scripts: ['kestran.js', 'page.js'],
  });
}

const scrolled = (label, table) => `<div class="scroll" tabindex="0" role="group" aria-label="${label}"><table>${table}</table></div>`;

/** The function on the page to print. */
export function referenceEntry(api, entry, about) {
  const names = entry.twin === null ? entry.name : `${entry.name}, ${entry.twin}`;
  const asks = entry.resultArgument === null ? '' : entry.arguments[entry.resultArgument].name;
  const signature = `${entry.name}(${entry.arguments.map((argument) => argument.name).join(', ')})`;
  return `<section class="entry" id="${entry.name}"><h3>${names}</h3><p class="lead">${escaped(entry.headline[0].toUpperCase() + entry.headline.slice(1))}</p>
${about.fragment}
<p class="signature"><code>${signature}</code></p>
${scrolled(`Arguments of ${entry.name}`, `<thead><tr><th>argument</th><th>meaning</th><th>unit</th></tr></thead><tbody>${argumentRows(entry)}</tbody>`)}
${scrolled(`Results of ${entry.name}`, `<thead><tr><${asks ? 'th' : 'td'}>${asks}</${asks ? 'th' : 'td'}><th>result</th><th>meaning</th><th>unit</th><th class="number">example</th></tr></thead><tbody>${resultRows(api, entry)}</tbody>`)}
<p class="example"><code>${escaped(entry.example)}</code></p>
<figure>${picture(exampleCurve(api, entry, 121), `${entry.results[0].name} of the example`)}<figcaption>${entry.results[0].name} of the example</figcaption></figure>
${about.accuracyPicture}
<p><b>How far to trust it.</b> ${escaped(entry.accuracy)}</p>
${about.notes}</section>`;
}
