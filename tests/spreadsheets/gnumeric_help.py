"""Holds what Gnumeric knows of the functions to what the command says of them.

  gnumeric_help.py LIBSPREADSHEET KESTRAN
"""

import ctypes
import re
import subprocess
import sys

library, kestran = sys.argv[1:]


def command(*options):
    return subprocess.run([kestran, *options], capture_output=True, text=True, check=True).stdout


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


def words(text):
    return " ".join(text.split())


def look_at(name, own_name, about, names):
    func = ctypes.c_void_p(gnumeric.gnm_func_lookup(name.encode(), None))
    if not func.value:
        return wrong.append(f"{name}: unknown")
    least, most = ctypes.c_int(), ctypes.c_int()
    gnumeric.gnm_func_count_args(func, ctypes.byref(least), ctypes.byref(most))
    same(f"{name}: arguments", (0, len(names)), (least.value, most.value))
    same(f"{name}: in lists", name == own_name, not gnumeric.gnm_func_get_flags(func) & HIDDEN)
    texts = {kind: [] for kind in range(10)}
    help = gnumeric.gnm_func_get_help(func, None)
    for line in iter(lambda: help[sum(map(len, texts.values()))], None):
        if line.type == END:
            break
        texts[line.type].append(line.text.decode())
    title, arguments = about.split("\n\nArguments\n")
    arguments, results = re.split(r"\n\nResults?\n", arguments)
    same(f"{name}: name", [name], [text.split(":")[0] for text in texts[NAME]])
    same(f"{name}: names", names, [text.split(":", 1)[0] for text in texts[ARGUMENT]])
    # The command adds a default or a recommended value.
    rows = [words(row) for row in re.split(r"\n  (?! )", "\n" + arguments)[1:]]
    shown = [text.replace(":", " ", 1) for text in texts[ARGUMENT]]
    same(f"{name}: help", [], [(row, text) for row, text in zip(rows, shown) if not re.fullmatch(re.escape(text) + "([,;] .*)?", row)])
    same(f"{name}: number of rows", len(names), len(rows))
    same(f"{name}: prices", words(title.split("\n\n", 1)[1]), texts[DESCRIPTION][0])
    results, example = results.split("\n\nExample\n")
    results = [words(row) for row in re.split(r"\n  (?! )", "\n" + results)[1:]]
    shown = [words(re.sub(r":", "", line, count=1)) for line in texts[DESCRIPTION][1].split("\n")[1:]]
    same(f"{name}: results", [row.replace(" and on ", " ") for row in results], shown)
    same(f"{name}: example", [example.split("\n")[0].strip()], texts[EXAMPLE])
    same(f"{name}: accuracy", [words(about.split("How far to trust it\n")[1].split("\n\nSee also")[0])], texts[NOTE])
    related = re.findall(r"\n\nSee also (.*)", about)
    same(f"{name}: related", [text.replace(" ", "") for text in related], texts[SEE_ALSO])
    for text in ",".join(texts[SEE_ALSO]).split(","):
        if text and not gnumeric.gnm_func_lookup(text.encode(), None):
            wrong.append(f"{name}: related {text} is unknown")
    return gnumeric.gnm_func_get_function_group(func)[0].name[0].decode()


families = {}
for family, rows in re.findall(r"^\*\*(.*)\*\*\n\n\| functions \|.*\n\|.*\n((?:\|.*\n)+)", open("README.md").read(), re.M):
    for name in re.findall(r"`(\w+)`", "\n".join(row.split("|")[1] for row in rows.splitlines())):
        families[name] = f"KESTRAN: {family}"

listed = [line.split("\t") for line in command("--list").splitlines()]
told = 0
for row in listed:
    own_name = row[0]
    about = command("--describe", own_name)
    names = re.search(r"\(([^)]*)\)", about)[1].replace("\n", " ").split(",")
    names = [name.strip() for name in names]
    for name in (own_name, f"_xll.{own_name}"):
        same(f"{name}: category", families.get(own_name), look_at(name, own_name, about, names))
    told += len(names)
print("\n".join(wrong[:20]))
print(f"{len(listed)} functions, {told} arguments, {len(wrong)} wrong")
sys.exit(bool(wrong) or not listed)
