// The formulas of web/reference: all of them TeX that becomes MathML Core, which browsers show by themselves.
import assert from 'node:assert/strict';
import { mathml, readReference, referenceHtml } from '../../web/make/reference.mjs';

const core = /^(math|mrow|mi|mn|mo|ms|mtext|mspace|mfrac|msqrt|mroot|mstyle|mpadded|mphantom|msub|msup|msubsup|munder|mover|munderover|mtable|mtr|mtd)$/;
const elementsOf = (html) => [...html.matchAll(/<(m\w+)/g)].map(([, name]) => name).filter((name) => name !== 'main');

let formulas = 0;
for (const [name, { text }] of readReference(new URL('../../web/reference', import.meta.url).pathname)) {
  const html = referenceHtml(text, (markdown) => markdown);
  const elements = elementsOf(html);
  formulas += elements.filter((element) => element === 'math').length;
  assert.deepEqual(elements.filter((element) => !core.test(element)), [], `${name}: more than MathML Core`);
  assert.doesNotMatch(html, /\$|maths\d|\\[a-z]/, `${name}: a formula without its second dollar sign`);
}
assert.ok(formulas > 1000, `only ${formulas} formulas`);

const count = (tex) => elementsOf(mathml(tex, true)).filter((element) => element === 'math').length;
assert.equal(count('a=b,\\qquad c=d,\\quad e'), 3, 'a list of formulas flows');
assert.equal(count('\\begin{cases}a&\\quad b\\end{cases}'), 1, 'an environment stays whole');
assert.equal(count('\\left(a\\quad\\text{if}\\right)_{x\\quad y}'), 1, 'brackets stay whole');
assert.throws(() => mathml('\\frac{1}{', false));
assert.throws(() => mathml('\\nosuch', false));
console.log(`${formulas} formulas`);
