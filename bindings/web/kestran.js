// The functions of the WebAssembly module for JavaScript. It names none of them: what there is, the module's catalogue says.
// The build makes an ES module and a classic script of this file.

/** A call that is refused, as the worksheet refuses it. */
class Refusal extends Error {
  constructor(code, argument, text) {
    super(text);
    this.name = 'Refusal';
    this.code = code;
    this.argument = argument;
  }
}

const isList = (given) => Array.isArray(given) || ArrayBuffer.isView(given);
const isOptions = (given) => typeof given === 'object' && given !== null && !isList(given);
const depth = (given) => (isList(given) ? 1 + (given.length ? depth(given[0]) : 0) : 0);
const depths = { number: 0, range: 1, block: 2 };

// What an argument gives one deal: its cells, row after row, with its rows and columns.
function takeCells(about, given) {
  if (depth(given) === 0) return { cells: [given], rows: 0, columns: 0 };
  if (depth(given) === 1) return { cells: given, rows: given.length, columns: 1 };
  const rows = Array.from(given);
  const columns = rows[0].length;
  if (rows.some((row) => !isList(row) || row.length !== columns)) throw new RangeError(`${about.name} has rows of different lengths`);
  return { cells: rows.flatMap((row) => Array.from(row)), rows: rows.length, columns };
}

// The same with the deals it has cells of: `deals` is -1 where all deals have the same.
function take(about, given) {
  const levels = depth(given) - depths[about.shape];
  if (levels > 1) throw new TypeError(`${about.name} has more dimensions than a ${about.shape} for each deal`);
  if (levels < 1) return { ...takeCells(about, given), stride: 0, deals: -1 };
  if (about.shape === 'number') return { cells: given, rows: 0, columns: 0, stride: 1, deals: given.length };
  const each = Array.from(given, (one) => takeCells(about, one));
  const { rows, columns } = each[0];
  if (each.some((one) => one.rows !== rows || one.columns !== columns)) throw new RangeError(`${about.name} has deals of different sizes`);
  return { cells: each.flatMap((one) => Array.from(one.cells)), rows, columns, stride: Math.max(rows * columns, 1), deals: each.length };
}

/** An instance of the module: from its bytes, from a compiled module, or from a response that brings it. */
async function openKestran(module) {
  const source = await module;
  const compiled =
    source instanceof WebAssembly.Module ? source
    : typeof Response !== 'undefined' && source instanceof Response ? await WebAssembly.compile(await source.arrayBuffer())
    : await WebAssembly.compile(source);
  const { exports: wasm } = await WebAssembly.instantiate(compiled, {});
  wasm._initialize();

  const utf8 = new TextDecoder();
  const read = (at) => {
    const bytes = new Uint8Array(wasm.memory.buffer, at >>> 0);
    return utf8.decode(bytes.subarray(0, bytes.indexOf(0)));
  };
  const takeText = (at) => {
    const text = read(at);
    wasm.free(at);
    return text;
  };
  const withMemory = (bytes, use) => {
    const at = bytes < 2 ** 32 ? wasm.malloc(bytes) >>> 0 : 0;
    if (at === 0) throw new RangeError('not enough memory');
    try {
      return use(at);
    } finally {
      wasm.free(at);
    }
  };
  const withText = (text, use) => {
    const bytes = new TextEncoder().encode(text);
    return withMemory(bytes.length + 1, (at) => {
      new Uint8Array(wasm.memory.buffer, at).set(bytes);
      new Uint8Array(wasm.memory.buffer)[at + bytes.length] = 0;
      return use(at, bytes.length);
    });
  };

  const catalogue = JSON.parse(takeText(wasm.kestran_catalogue()));
  const entries = new Map();
  for (const about of catalogue.functions) {
    const handle = withText(about.name, (at) => wasm.kestran_find(at));
    const places = new Map(about.arguments.map((argument, i) => [argument.name.toLowerCase(), i]));
    entries.set(about.name.toLowerCase(), { about, handle, places });
  }

  const find = (name) => {
    const entry = entries.get(String(name).toLowerCase());
    if (!entry) throw new TypeError(`there is no function ${name}`);
    return entry;
  };

  const inOrder = ({ about, places }, args) => {
    const list = isList(args) ? Array.from(args) : [];
    if (!isList(args))
      for (const [name, given] of Object.entries(args)) {
        const place = places.get(name.toLowerCase());
        if (place === undefined) throw new TypeError(`${about.name} has no argument ${name}`);
        list[place] = given;
      }
    if (list.length > about.arguments.length) throw new TypeError(`${about.name} takes ${about.arguments.length} arguments`);
    return about.arguments.map((_, i) => list[i]);
  };

  const selectorOf = ({ about }, result) => {
    if (typeof result === 'number') return result;
    const found = about.results.find((one) => one.name === result);
    if (!found) throw new TypeError(`${about.name} has no result ${result}; it has ${about.results.map((one) => one.name).join(', ')}`);
    return found.selector;
  };

  // Lays the arguments out in the module's memory, as kestran_operand of kestran.h, and behind them room for more.
  const withOperands = (entry, list, moreBytes, use) => {
    const taken = entry.about.arguments.map((argument, i) => take(argument, list[i]));
    const deals = taken.reduce((most, one) => (one.deals < 0 ? most : Math.max(most, one.deals)), -1);
    for (const [i, one] of taken.entries())
      if (one.deals >= 0 && one.deals !== deals) throw new RangeError(`${entry.about.arguments[i].name} has ${one.deals} deals, others ${deals}`);
    const numbers = taken.reduce((sum, one) => sum + Math.max(one.cells.length, 1), 0);
    return withMemory(8 * numbers + 16 * taken.length + moreBytes(Math.abs(deals)), (at) => {
      const memory = wasm.memory.buffer;
      const operands = at + 8 * numbers;
      let place = at;
      for (const [i, one] of taken.entries()) {
        const cells = new Float64Array(memory, place, Math.max(one.cells.length, 1)).fill(NaN);
        if (ArrayBuffer.isView(one.cells)) cells.set(one.cells);
        else
          for (let k = 0; k < one.cells.length; ++k) {
            const given = one.cells[k];
            if (typeof given === 'number') cells[k] = given;
            else if (given !== undefined && given !== null) wasm.kestran_put_text(place + 8 * k);
          }
        new Int32Array(memory, operands + 16 * i, 4).set([place, one.rows, one.columns, one.stride]);
        place += 8 * cells.length;
      }
      return use({ operands, deals: Math.abs(deals), single: deals < 0, end: operands + 16 * taken.length });
    });
  };

  // The one deal `k` of a call, its result asked for by `selector` unless that is undefined.
  const dealOf = ({ about }, list, k, selector) =>
    list.map((given, i) =>
      i === about.resultArgument && selector !== undefined ? selector
      : depth(given) > depths[about.arguments[i].shape] ? given[k]
      : given);

  const refusalOf = (entry, list) =>
    withOperands(entry, list, () => 264, ({ operands, end }) => {
      const code = wasm.kestran_price(entry.handle, operands, end);
      if (code === 0) return null;
      wasm.kestran_refusal(entry.handle, operands, end + 8, 256);
      return new Refusal(code, entry.about.arguments[wasm.kestran_refused_argument(entry.handle, operands)]?.name ?? null, read(end + 8));
    });

  const price = (name, args, { result, results } = {}) => {
    const entry = find(name);
    const { about } = entry;
    const list = inOrder(entry, args);
    const asks = about.resultArgument;
    let names = results === 'all' ? about.results.map((one) => one.name) : results ?? (result === undefined ? undefined : [result]);
    if (asks !== null && names === undefined && (list[asks] === undefined || list[asks] === null)) list[asks] = 0;
    if (asks !== null && typeof list[asks] === 'string') names ??= [list[asks]];
    const selectors = names?.map((one) => selectorOf(entry, one));
    if (selectors && asks !== null) list[asks] = 0;
    names ??= [about.results.find((one) => asks === null || one.selector === Math.trunc(list[asks]))?.name ?? 'value'];
    const count = names.length;
    return withOperands(entry, list, (deals) => (8 + 4) * deals * count + 4 * count + 8, ({ operands, deals, single, end }) => {
      const codes = end + 8 * deals * count;
      const wanted = codes + 4 * deals * count;
      if (selectors) new Int32Array(wasm.memory.buffer, wanted, count).set(selectors);
      const refused = wasm.kestran_price_many(entry.handle, operands, deals, selectors ? wanted : 0, count, end, codes, 1);
      const all = new Float64Array(wasm.memory.buffer, end, deals * count);
      const values = {};
      names.forEach((one, j) => {
        values[one] = new Float64Array(deals);
        for (let k = 0; k < deals; ++k) values[one][k] = all[k * count + j];
      });
      return {
        deals, single, values, value: values[names[0]], refused,
        refusal: (deal = 0, of = names[0]) => refusalOf(entry, dealOf(entry, list, deal, selectors && selectorOf(entry, of))),
      };
    });
  };

  const check = (name, args) => {
    const entry = find(name);
    const list = inOrder(entry, args);
    const remark = (text) => ({ argument: entry.about.arguments.find((one) => text.startsWith(`${one.name} `))?.name ?? null, text });
    if (entry.about.resultArgument !== null) list[entry.about.resultArgument] ??= 0;
    const found = withOperands(entry, list, () => 0, ({ operands }) => JSON.parse(takeText(wasm.kestran_check(entry.handle, operands))));
    return { understood: found.understood, refusals: found.refusals.map(remark), warnings: found.warnings.map(remark) };
  };

  const calls = (name, args) => {
    const entry = find(name);
    const list = inOrder(entry, args);
    if (entry.about.resultArgument !== null) list[entry.about.resultArgument] ??= 0;
    return withOperands(entry, list, () => 0, ({ operands }) => JSON.parse(takeText(wasm.kestran_written(entry.handle, operands))));
  };

  // The add-in is loaded for the first formula.
  let opened = false;
  const show = (formula, work) => {
    if (!opened) {
      const failure = takeText(wasm.kestran_open());
      if (failure) throw new Error(failure);
      opened = true;
    }
    return withText(formula, (at, size) => withMemory(8, (shown) => {
      const state = work(at, size, shown);
      const [text, note] = Array.from(new Uint32Array(wasm.memory.buffer, shown, 2), takeText);
      const kind = { 2: 'number', 3: 'text', 4: 'boolean' }[state & 7] ?? 'error';
      return { text, kind, readable: (state & 8) === 0, note };
    }));
  };
  const cell = (formula) => show(formula, wasm.kestran_cell);

  const kestran = {
    version: catalogue.version,
    catalogue,
    price,
    check,
    calls,
    cell,
    evaluate: (formula) => cell(formula).text,
    explain: (formula) => show(formula, wasm.kestran_explain).text,
  };
  for (const { about } of entries.values()) {
    const method = (...given) => {
      const options = given.length > 0 && isOptions(given[given.length - 1]) && (given.length > 1 || 'result' in given[0] || 'results' in given[0]) ? given.pop() : {};
      const prices = price(about.name, isOptions(given[0]) ? given[0] : given, options);
      const valueOf = (of) => {
        if (!prices.single) return prices.values[of];
        if (Number.isNaN(prices.values[of][0])) {
          const refusal = prices.refusal(0, of);
          if (refusal) throw refusal;
        }
        return prices.values[of][0];
      };
      const names = Object.keys(prices.values);
      return options.results === undefined ? valueOf(names[0]) : Object.fromEntries(names.map((of) => [of, valueOf(of)]));
    };
    kestran[about.name] = Object.assign(method, { about });
  }
  return kestran;
}
