// kestran._core: for each function of the catalogue a NumPy ufunc, or a generalised one where it takes
// ranges, and what the package kestran says of it. Values and refusals are those of functions/catalogue.h.
#define PY_SSIZE_T_CLEAN
#define NPY_NO_DEPRECATED_API NPY_1_7_API_VERSION
#include <Python.h>
#include <numpy/ndarraytypes.h>
#include <numpy/ufuncobject.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "bindings/python/loops.h"
#include "functions/describe.h"
#include "functions/example.h"
#include "functions/explain.h"
#include "functions/refused_number.h"

namespace kestran {
namespace {

struct Release {
  void operator()(PyObject* object) const { Py_XDECREF(object); }
};
using Owned = std::unique_ptr<PyObject, Release>;

// What NumPy keeps pointers at: it lives as long as the process.
struct UfuncParts {
  PyUFuncGenericFunction loop[1];
  void* data[1];
  char types[most_arguments + 1];
  std::string dimensions;
  std::string text;
};

// "(a),(b),(),(c,d)->()": every range has a length of its own.
std::string core_signature(const Function& function) {
  std::string text;
  char dimension = 'a';
  for (int i = 0; i < function.argument_count; ++i) {
    text += i > 0 ? ",(" : "(";
    for (int k = core_dimensions(function.arguments[i]); k > 0; --k) {
      text += dimension++;
      if (k > 1) text += ',';
    }
    text += ')';
  }
  return text + "->()";
}

PyObject* make_ufunc(const Function& function) {
  static std::vector<std::unique_ptr<UfuncParts>> parts_of_all;
  parts_of_all.push_back(std::make_unique<UfuncParts>());
  UfuncParts& parts = *parts_of_all.back();
  parts.loop[0] = function.takes_ranges ? range_loop : number_loop;
  parts.data[0] = const_cast<Function*>(&function);
  for (char& type : parts.types) type = NPY_DOUBLE;
  parts.text = text_of(function).headline;
  if (!function.takes_ranges)
    return PyUFunc_FromFuncAndData(parts.loop, parts.data, parts.types, 1, function.argument_count, 1,
                                   PyUFunc_None, function.name, parts.text.c_str(), 0);
  parts.dimensions = core_signature(function);
  return PyUFunc_FromFuncAndDataAndSignature(parts.loop, parts.data, parts.types, 1, function.argument_count,
                                             1, PyUFunc_None, function.name, parts.text.c_str(), 0,
                                             parts.dimensions.c_str());
}

// Appends to a list what `item` is, and gives it up.
bool append(const Owned& list, PyObject* item) {
  const Owned owned(item);
  return list != nullptr && item != nullptr && PyList_Append(list.get(), item) == 0;
}

// A number, or a list of numbers for a range, or of rows for a square block.
PyObject* example_value(const Argument& argument, const GivenArgument& given) {
  if (given.rows == 0) return PyFloat_FromDouble(given.values[0]);
  const bool square = core_dimensions(argument) == 2;
  Owned list(PyList_New(0));
  Owned row;
  for (std::size_t k = 0; k < given.values.size(); ++k) {
    const bool begins = square && k % static_cast<std::size_t>(given.columns) == 0;
    if (begins) {
      row.reset(PyList_New(0));
      if (row == nullptr || list == nullptr || PyList_Append(list.get(), row.get()) != 0) return nullptr;
    }
    if (!append(square ? row : list, PyFloat_FromDouble(given.values[k]))) return nullptr;
  }
  return list.release();
}

PyObject* about(const Function& function) {
  const FunctionText& text = text_of(function);
  const Owned names(PyList_New(0)), dimensions(PyList_New(0)), results(PyList_New(0)), example(PyList_New(0));
  const std::vector<GivenArgument> given = example_arguments(text);
  for (int i = 0; i < function.argument_count; ++i)
    if (!append(names, PyUnicode_FromString(function.arguments[i].name)) ||
        !append(dimensions, PyLong_FromLong(core_dimensions(function.arguments[i]))) ||
        !append(example, example_value(function.arguments[i], given[static_cast<std::size_t>(i)])))
      return nullptr;
  for (const ResultText& result : text.results)
    if (answers(function, result) && !append(results, Py_BuildValue("(si)", result.name, result.selector)))
      return nullptr;
  Owned ufunc(make_ufunc(function));
  if (ufunc == nullptr) return nullptr;
  return Py_BuildValue("{s:s,s:s,s:s,s:O,s:O,s:i,s:O,s:O,s:O}", "name", function.name, "headline",
                       text.headline, "description", description(function).c_str(), "arguments", names.get(),
                       "dimensions", dimensions.get(), "result_argument", result_argument(function),
                       "results", results.get(), "example", example.get(), "ufunc", ufunc.get());
}

// refusal(name, arguments): why the call of numpy arrays, each of its core dimensions, is refused.
PyObject* refusal(PyObject*, PyObject* arguments) {
  const char* name = nullptr;
  PyObject* list = nullptr;
  if (PyArg_ParseTuple(arguments, "sO!", &name, &PyTuple_Type, &list) == 0) return nullptr;
  const Function* function = find_in_catalogue(name);
  if (function == nullptr || PyTuple_GET_SIZE(list) != function->argument_count) {
    PyErr_SetString(PyExc_ValueError, "no such function, or not its arguments");
    return nullptr;
  }
  Owned arrays[most_arguments];
  char* data[most_arguments];
  std::vector<std::ptrdiff_t> sizes, strides;
  for (int i = 0; i < function->argument_count; ++i) {
    const int dimensions = core_dimensions(function->arguments[i]);
    arrays[i].reset(
        PyArray_FROMANY(PyTuple_GET_ITEM(list, i), NPY_DOUBLE, dimensions, dimensions, NPY_ARRAY_CARRAY_RO));
    if (arrays[i] == nullptr) return nullptr;
    auto* array = reinterpret_cast<PyArrayObject*>(arrays[i].get());
    data[i] = PyArray_BYTES(array);
    sizes.insert(sizes.end(), PyArray_DIMS(array), PyArray_DIMS(array) + dimensions);
    strides.insert(strides.end(), PyArray_STRIDES(array), PyArray_STRIDES(array) + dimensions);
  }
  std::vector<double> room(call_room(*function, sizes.data()));
  Operand given[most_arguments];
  take_call(*function, data, sizes.data(), strides.data(), room.data(), given);
  return PyUnicode_FromString(refusal_text(*function, given, price(*function, given)).c_str());
}

PyObject* set_threads(PyObject*, PyObject* argument) {
  const long threads = PyLong_AsLong(argument);
  if (threads == -1 && PyErr_Occurred() != nullptr) return nullptr;
  if (threads < 1 || threads > 1024) {
    PyErr_SetString(PyExc_ValueError, "threads are 1 to 1024");
    return nullptr;
  }
  set_loop_threads(static_cast<int>(threads));
  Py_RETURN_NONE;
}

PyObject* threads_now(PyObject*, PyObject*) { return PyLong_FromLong(loop_threads()); }

PyObject* error_number(PyObject*, PyObject* argument) {
  const long code = PyLong_AsLong(argument);
  if (code == -1 && PyErr_Occurred() != nullptr) return nullptr;
  if (code < 0 || code > missing_code) {
    PyErr_SetString(PyExc_ValueError, "codes are 0 to 65535");
    return nullptr;
  }
  return PyFloat_FromDouble(refused_number(static_cast<int>(code)));
}

// No exception of C++ leaves a call.
template <PyObject* (*function)(PyObject*, PyObject*)>
PyObject* guarded(PyObject* self, PyObject* arguments) {
  try {
    return function(self, arguments);
  } catch (const std::bad_alloc&) {
    return PyErr_NoMemory();
  }
}

PyMethodDef methods[] = {
    {"refusal", guarded<refusal>, METH_VARARGS, "Why a call is refused; empty when it is not."},
    {"set_threads", guarded<set_threads>, METH_O, "set_threads(n): n threads share the rows of a call."},
    {"threads", guarded<threads_now>, METH_NOARGS, "threads(): how many threads share the rows of a call."},
    {"error_number", guarded<error_number>, METH_O, "error_number(code): the NaN that carries the code."},
    {nullptr, nullptr, 0, nullptr}};

PyModuleDef definition = {
    PyModuleDef_HEAD_INIT, "_core", nullptr, -1, methods, nullptr, nullptr, nullptr, nullptr};

PyObject* make_code_ufunc() {
  static PyUFuncGenericFunction loop[] = {code_loop};
  static const char types[] = {NPY_DOUBLE, NPY_INT};
  static void* data[] = {nullptr};
  return PyUFunc_FromFuncAndData(
      loop, data, const_cast<char*>(types), 1, 1, 1, PyUFunc_None, "error_code",
      "The code of a refused result: 15 for #VALUE!, 65535 for a missing number or "
      "a selector out of range; -1 for a number.",
      0);
}

PyObject* make_module(PyObject*, PyObject*) {
  Owned module(PyModule_Create(&definition));
  const Owned functions(PyList_New(0));
  if (module == nullptr || functions == nullptr) return nullptr;
  for (int i = 0; i < catalogue_size; ++i) {
    PyObject* one = about(catalogue[i]);
    if (!append(functions, one)) return nullptr;
    // Pickle, and with it Dask, finds a ufunc by its name in the module.
    if (PyObject_SetAttrString(module.get(), catalogue[i].name, PyDict_GetItemString(one, "ufunc")) != 0)
      return nullptr;
  }
  const Owned codes(make_code_ufunc());
  if (codes == nullptr || PyObject_SetAttrString(module.get(), "functions", functions.get()) != 0 ||
      PyObject_SetAttrString(module.get(), "error_code", codes.get()) != 0 ||
      PyModule_AddObject(module.get(), "no_number", PyFloat_FromDouble(refused_number(no_number_code))) !=
          0 ||
      PyModule_AddStringConstant(module.get(), "version", KESTRAN_VERSION) != 0)
    return nullptr;
  return module.release();
}

}  // namespace
}  // namespace kestran

PyMODINIT_FUNC PyInit__core() {
  import_array();
  import_umath();
  return kestran::guarded<kestran::make_module>(nullptr, nullptr);
}
