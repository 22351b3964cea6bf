// Tables of a function's arguments and results as they stand on paper.
import { exampleTexts, readDeal } from '../page/deal.mjs';
import { shown } from '../page/numbers.mjs';
import { priced } from '../page/pictures.mjs';
import { escaped } from './shell.mjs';

const choicesText = ({ choices, otherChoices }) => {
  if (choices.length === 0) return '';
  const known = choices.map(({ value, meaning }) => `${value} ${meaning}`).join('; ');
  return `: ${known}; ${otherChoices === null ? 'others are refused' : `any other number: ${otherChoices}`}`;
};

export const argumentRows = (entry) => entry.arguments.map((argument) => `<tr><td><code>${argument.name}</code></td><td>${argument.shape === 'number' ? '' : 'range: '}${escaped(argument.meaning + choicesText(argument))}</td><td>${escaped(argument.unitName)}</td></tr>`).join('');

export function resultRows(api, entry) {
  const { values } = readDeal(entry, exampleTexts(entry), api.evaluate);
  const columns = priced(api, entry, values, new Map(), entry.results.map((result) => result.selector));
  const others = { month: ' (of one month)', period: ' (of the first period; the next number is the next period)', one: '' };
  return entry.results.map((result, k) => `<tr><td>${entry.resultArgument === null ? '' : result.selector}</td><td><code>${result.name}</code></td><td>${escaped(result.meaning + others[result.each])}</td><td>${escaped(result.unit)}</td><td class="number">${shown(columns[k][0])}</td></tr>`).join('');
}

/** What the example is worth, until the page works it out. */
export const answersText = (entry) => `<span class="what">${escaped(entry.results[0].name)}</span><output></output>`;
