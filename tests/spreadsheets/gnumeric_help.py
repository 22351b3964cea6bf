"""Holds what Gnumeric knows of the functions to what the command says of them.

  gnumeric_help.py LIBSPREADSHEET KESTRAN
"""

import ctypes
import sys

from texts import functions, of_argument, of_results, untold

library, kestran = sys.argv[1:]


class Help(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("text", ctypes.c_char_p)]


class Group(ctypes.Structure):
    _fields_ = [("internal_name", ctypes.POINTER(ctypes.c_char_p)), ("name", ctypes.POINTER(ctypes.c_char_p))]


END, NAME, ARGUMENT, DESCRIPTION, NOTE, EXAMPLE, SEE_ALSO = range(7)
HIDDEN = 1 << 6

gnumeric = ctypes.CDLL(library, mode=ctypes.RTLD_GLOBAL)
for name in ("gnm_func_lookup", "gnm_cmd_context_stderr_new", "go_plugins_get_available_plugins"):
    getattr(gnumeric, name).restype = ctypes.c_void_p
gnumeric.gnm_func_get_help.restype = ctypes.POINTER(Help)
gnumeric.gnm_func_get_function_group.restype = ctypes.POINTER(Group)
arguments = (ctypes.c_char_p * 2)(b"help", None)
gnumeric.gnm_pre_parse_init(1, arguments)
gnumeric.gnm_init()
gnumeric.gnm_plugins_init(ctypes.c_void_p(gnumeric.gnm_cmd_context_stderr_new()))
gnumeric.go_plugin_db_activate_plugin_list(
    ctypes.c_void_p(gnumeric.go_plugins_get_available_plugins()), ctypes.byref(ctypes.c_void_p())
)

wrong = []


def same(what, expected, found):
    if expected != found:
        wrong.append(f"{what}\n  expected {expected}\n  found    {found}")


def look_at(name, about):
    func = ctypes.c_void_p(gnumeric.gnm_func_lookup(name.encode(), None))
    if not func.value:
        return wrong.append(f"{name}: unknown")
    least, most = ctypes.c_int(), ctypes.c_int()
    gnumeric.gnm_func_count_args(func, ctypes.byref(least), ctypes.byref(most))
    same(f"{name}: arguments", (0, len(about["arguments"])), (least.value, most.value))
    same(f"{name}: in lists", name == about["name"], not gnumeric.gnm_func_get_flags(func) & HIDDEN)
    texts = {kind: [] for kind in range(10)}
    help = gnumeric.gnm_func_get_help(func, None)
    for line in iter(lambda: help[sum(map(len, texts.values()))], None):
        if line.type == END:
            break
        texts[line.type].append(line.text.decode())
    same(f"{name}: name", [f"{name}:{about['headline']}"], texts[NAME])
    same(f"{name}: names", [argument["name"] for argument in about["arguments"]], [text.split(":")[0] for text in texts[ARGUMENT]])
    for argument, text in zip(about["arguments"], texts[ARGUMENT]):
        same(f"{name}: {argument['name']}", [], untold(text, of_argument(argument)))
    results = [word for result in about["results"] for word in (result["name"], result["meaning"], f"({result['unit']})")]
    same(f"{name}: prices", about["prices"], texts[DESCRIPTION][0])
    same(f"{name}: results", [], untold(texts[DESCRIPTION][1], results) + untold(texts[DESCRIPTION][1], of_results(about)))
    same(f"{name}: example", [about["example"]], texts[EXAMPLE])
    same(f"{name}: accuracy", [about["accuracy"]], texts[NOTE])
    same(f"{name}: related", about["related"], [one for text in texts[SEE_ALSO] for one in text.split(",")])
    for related in about["related"]:
        if not gnumeric.gnm_func_lookup(related.encode(), None):
            wrong.append(f"{name}: related {related} is unknown")
    same(f"{name}: category", f"KESTRAN: {about['family']}", gnumeric.gnm_func_get_function_group(func)[0].name[0].decode())


listed = functions(kestran)
for own_name, about in listed.items():
    for name in (own_name, f"_xll.{own_name}"):
        look_at(name, about)
print("\n".join(wrong[:20]))
print(f"{len(listed)} functions, {len(wrong)} wrong")
sys.exit(bool(wrong) or len(listed) != 81)
