// What the types of the package accept, and what they refuse.
import { kestran, openKestran, Refusal } from 'kestran';

const one: number = kestran.EURO(100, 95, 0.05, 0.02, 0.25, 90, 1, 0);
const short: number = kestran.EURO(100, 95, 0.05, 0.02, 0.25, 90, 1);
const many: number | Float64Array = kestran.EURO([90, 100], 95, 0.05, 0.02, 0.25, 90, 1, 'delta');
const named: number = kestran.EURO({ Price: 100, Strike: 95, IntRt: 0.05, Yield: 0.02, Vol: 0.25, ExpDays: 90, OptType: 1 });
const two: { premium: number; delta: number } = kestran.EURO(100, 95, 0.05, 0.02, 0.25, 90, 1, { results: ['premium', 'delta'] });
const all: { vega: number | Float64Array } = kestran.EURO([90, 100], 95, 0.05, 0.02, 0.25, 90, 1, { results: 'all' });
const basket: number = kestran.BASVOL([100, 90], [0.3, 0.4], [0.02, -0.01], [0.6, 0.4], [[1, 0.5], [0.5, 1]], 0.75);
const curve: Float64Array = kestran.price('EURO', [new Float64Array(3), 95, 0.05], { results: ['premium'] }).values.premium;
const why: Refusal | null = kestran.price('EURO', { Price: 100 }).refusal();
const warning: string = kestran.check('EURO', [100]).warnings[0].text;
const cell: 'number' | 'text' | 'boolean' | 'error' = kestran.cell('=1').kind;
const name: string = kestran.catalogue.functions[0].arguments[0].name + kestran.EURO.about.name;
const other: Promise<typeof kestran> = openKestran(fetch('kestran.wasm'));

// @ts-expect-error: too few arguments
kestran.EURO(100, 95);
// @ts-expect-error: an argument that is not there
kestran.EURO({ Prize: 100, Strike: 95, IntRt: 0.05, Yield: 0.02, Vol: 0.25, ExpDays: 90, OptType: 1 });
// @ts-expect-error: a result that is not there
kestran.EURO(100, 95, 0.05, 0.02, 0.25, 90, 1, { result: 'gamna' });
// @ts-expect-error: a number where a matrix is one dimension too deep
kestran.EURO([[100]], 95, 0.05, 0.02, 0.25, 90, 1);
// @ts-expect-error: a function that is not there
kestran.EURA(100);

export { one, short, many, named, two, all, basket, curve, why, warning, cell, name, other };
