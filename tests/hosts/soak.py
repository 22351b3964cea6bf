"""All functions in one process for hours, through the sheets of both add-ins, files of deals, C, Python and DuckDB.

soak.py HOURS CALLS, from the root of the sources, with what the suite `hosts` builds; prints what flat.py reads. The examples
of the functions have the same bits in each, with all of their results; and so has a column of deals of every function.
"""
import csv
import ctypes
import glob
import hashlib
import os
import resource
import sys
import tempfile
import time

import numpy as np

import kestran

BUILD = os.path.abspath("build/linux")
THREADS = 2
ALIKE = (("KESTRAN", "KESTRAN12", "files", "alone"), ("C", "Python", "DuckDB"))
size, pointer = ctypes.c_size_t, ctypes.c_void_p


def library(path, mode=ctypes.RTLD_LOCAL, **results):
    loaded = ctypes.CDLL(os.path.abspath(path), mode)
    for name, result in results.items():
        getattr(loaded, name).restype = result
    return loaded


def structure(**fields):
    return type("Structure", (ctypes.Structure,), {"_fields_": list(fields.items())})


Operand = structure(values=pointer, rows=ctypes.c_int, columns=ctypes.c_int, stride=ctypes.c_ssize_t)
Result = structure(columns=size, rows=size, changed=size, deprecated=pointer, error=pointer, internal=pointer)
Memory = structure(**{name: size for name in "arena ordblks smblks hblks hblkhd usmblks fsmblks uordblks fordblks keepcost".split()})


def at(array):
    return pointer(array.ctypes.data)


def written(value, separators, number=repr):
    """A number, or cells between separators; the last is that between the cells of a row."""
    if not isinstance(value, list):
        return number(value)
    return (separators[0] if isinstance(value[0], list) else separators[-1]).join(written(one, separators, number) for one in value)


def formula(name, arguments):
    cells = [written(value, ";,") for value in arguments]
    return f"{name}({','.join('{' + text + '}' if ',' in text else text for text in cells)})"


class Deals:
    """The example of a function, its calls for all results, and a column of deals in which a number of it is moved."""

    def __init__(self, function):
        self.function, self.name = function, function.__name__
        self.arguments = [np.array(value, dtype=float) for value in function.example]
        moved = next(i for i, value in enumerate(self.arguments) if value.ndim == 0 and value != 0)
        begin = time.process_time()
        function(*self.arguments)
        self.count = max(2, min(1024, int(0.002 / (time.process_time() - begin))))  # fewer of dear ones
        self.arguments[moved] = self.arguments[moved] * (1 + np.arange(self.count) % 64 / 1024)
        sizes = [[*value.shape, 1][:2] if dimensions else (0, 0) for value, dimensions in zip(self.arguments, function.dimensions)]
        self.operands = (Operand * len(sizes))(*(Operand(at(value), *sizes[i], int(i == moved)) for i, value in enumerate(self.arguments)))
        self.handle = pointer(c_api.kestran_find(self.name.encode()))

        place = c_api.kestran_result_argument(self.handle)
        wanted = list(function.results.values()) if place >= 0 else [0]
        self.calls = [[selector if i == place else value for i, value in enumerate(function.example)] for selector in wanted]
        self.terms = {name: value for i, (name, value) in enumerate(zip(function.arguments, function.example)) if i != place}
        self.refused = {**self.terms, function.arguments[moved]: None}
        self.selectors = (ctypes.c_int * len(wanted))(*wanted) if place >= 0 else None
        self.some = self.count // 8 + 1
        self.results, self.all_results = np.empty(self.count), np.empty(self.some * len(wanted))

        self.array = formula(self.name, [self.arguments[i].tolist()[:64] if i == moved else value for i, value in enumerate(function.example)])
        # A number without an exponent would be a decimal to DuckDB, and rounded twice.
        cells = [written(value, ("],[", ","), "{:.16e}".format) for value in function.example]
        cells = [["{}", "[{}]", "[[{}]]"][np.ndim(value)].format(text) for value, text in zip(function.example, cells)]
        cells[moved] += " * (1 + (i % 64) / 1024::double)"
        self.query = f"select {self.name}({', '.join(cells)}) from range({self.count}) t(i)".encode()

    def in_c(self, every=False):
        """The first ones with all of their results, or each with one."""
        count, selectors, results = (self.some, self.selectors, self.all_results) if every else (self.count, None, self.results)
        assert c_api.kestran_price_many(self.handle, self.operands, size(count), selectors, len(selectors or "1"), at(results),
                                        None, THREADS) == 0, self.name
        return results

    def in_python(self):
        return np.ascontiguousarray(self.function(*self.arguments))

    def alone(self):
        return np.array(list(self.function(**self.terms, results="all").values()))

    def refusal(self):
        try:
            self.function(**self.refused)
        except ValueError as error:
            return str(error).encode()

    def in_duckdb(self):
        answer, filled = Result(), 0
        assert duckdb.duckdb_query(connection, self.query, ctypes.byref(answer)) == 0, self.query
        while chunk := pointer(duckdb.duckdb_fetch_chunk(answer)):
            values = duckdb.duckdb_vector_get_data(pointer(duckdb.duckdb_data_chunk_get_vector(chunk, size(0))))
            rows = duckdb.duckdb_data_chunk_get_size(chunk)
            ctypes.memmove(self.results.ctypes.data + 8 * filled, values, 8 * rows)
            filled += rows
            duckdb.duckdb_destroy_data_chunk(ctypes.byref(chunk))
        duckdb.duckdb_destroy_result(ctypes.byref(answer))
        assert filled == self.count
        return self.results


# Each way gives answers, some after another.

def of_sheet(addin, formulas):
    assert sheet.sheet_open(f"{BUILD}/bin/{addin}".encode()) == 1, addin
    made = sheet.sheet_answers("\n".join(formulas).encode(), at(room), size(len(room)))
    assert sheet.sheet_close() == 0 and made <= len(room), addin
    yield room[:made]


def of_file():
    assert sheet.price_file(f"{folder}/deals.csv".encode(), f"{folder}/prices.csv".encode(), THREADS) == 0
    with open(f"{folder}/prices.csv", encoding="utf-8", newline="") as file:
        yield np.array([float(row["result"]) for row in csv.DictReader(file)])


def counted(answers):
    digest, calls = hashlib.blake2b(digest_size=8), 0
    for some in answers:
        digest.update(some)
        calls += len(some) if isinstance(some, np.ndarray) else 1
    return calls, digest.hexdigest()


hours, wanted = map(float, sys.argv[1:])
libc = library("/lib/x86_64-linux-gnu/libc.so.6", mallinfo2=Memory)
sheet = library(f"{BUILD}/bin/libkestran_sheet.so", ctypes.RTLD_GLOBAL, sheet_answers=ctypes.c_int64)
c_api = library(f"{BUILD}/lib/libkestran.so", kestran_find=pointer, kestran_price_many=size)
duckdb = library("build/sql/node_modules/@duckdb/node-bindings-linux-x64/libduckdb.so", duckdb_fetch_chunk=pointer,
                 duckdb_data_chunk_get_vector=pointer, duckdb_vector_get_data=pointer, duckdb_data_chunk_get_size=size)
config, database, connection = pointer(), pointer(), pointer()
duckdb.duckdb_create_config(ctypes.byref(config))
for option, value in ((b"allow_unsigned_extensions", b"true"), (b"threads", str(THREADS).encode())):
    duckdb.duckdb_set_config(config, option, value)
assert duckdb.duckdb_open_ext(None, ctypes.byref(database), config, None) == 0
assert duckdb.duckdb_connect(database, ctypes.byref(connection)) == 0
assert duckdb.duckdb_query(connection, f"load '{BUILD}/duckdb/kestran.duckdb_extension'".encode(), None) == 0
kestran.set_threads(THREADS)
deals = [Deals(getattr(kestran, name)) for name in kestran.functions()]
assert len(deals) == 81
room = np.empty(100_000)
cases = {}
for path in glob.glob("tests/data/*.cases"):
    with open(path, encoding="utf-8") as file:
        cases[os.path.basename(path)] = [line.split("\t")[0].strip() for line in file if line[0] not in "#\n"]
worst = cases.pop("worst.cases")
examples = [formula(one.name, call) for one in deals for call in one.calls]
some, arrays = 4 * sum(cases.values(), []), [one.array for one in deals]
ways = {
    "KESTRAN": lambda: of_sheet("libkestran_addin.so", examples),
    "KESTRAN12": lambda: of_sheet("libkestran12.so", examples),
    "files": of_file,
    "alone": lambda: map(Deals.alone, deals),
    "C": lambda: map(Deals.in_c, deals),
    "Python": lambda: map(Deals.in_python, deals),
    "DuckDB": lambda: map(Deals.in_duckdb, deals),
    "results": lambda: (one.in_c(every=True) for one in deals),
    "cases": lambda: of_sheet("libkestran_addin.so", some),
    "cases12": lambda: of_sheet("libkestran12.so", some),
    "arrays": lambda: of_sheet("libkestran12.so", arrays),
    "refusals": lambda: map(Deals.refusal, deals),
}
with tempfile.TemporaryDirectory() as folder:
    with open(f"{folder}/deals.csv", "w", encoding="utf-8", newline="") as file:
        table = csv.DictWriter(file, ["Function", *sorted({name.lower() for one in deals for name in one.function.arguments})])
        table.writeheader()
        table.writerows({"Function": one.name} | {name.lower(): written(value, "|;") for name, value in zip(one.function.arguments, call)}
                        for one in deals for call in one.calls)
    start, i, rounds = time.monotonic(), 0, 1
    while i < rounds:
        begin = time.process_time()
        found = {name: counted(way()) for name, way in ways.items()}
        seconds = time.process_time() - begin
        calls = sum(made for made, _ in found.values())
        rounds = max(20, round(wanted / calls + 0.5))
        for same in ALIKE:
            assert len({found[name] for name in same}) == 1, found
        if i % max(10, rounds // 100) == 0:
            dear = counted(of_sheet("libkestran12.so", worst))
            dearest = dear if i == 0 else dearest
            assert dear == dearest, "the dearest calls"
            calls += dear[0]
        memory = libc.mallinfo2()
        with open("/proc/self/statm", encoding="ascii") as file:
            resident = int(file.read().split()[1]) * resource.getpagesize() >> 10
        print(calls, seconds, memory.uordblks + memory.hblkhd >> 10, resident, f"files:{len(os.listdir('/proc/self/fd'))}",
              f"threads:{len(os.listdir('/proc/self/task'))}", *(f"{name}:{made}:{digest}" for name, (made, digest) in found.items()),
              flush=True)
        i += 1
        time.sleep(max(0.0, start + hours * 3600 * i / rounds - time.monotonic()))
