#!/bin/bash
# The help for Excel-DNA's IntelliSense: valid, with and without links, and of all functions and arguments.
set -u
cd "$(dirname "$(readlink -f "$0")")/../.." || exit
bin=build/linux/bin
folder=$(mktemp -d /tmp/kestran_intellisense.XXXXXX) || exit
trap 'rm -rf "$folder"' EXIT
"$bin/make_intellisense" "$folder/KESTRAN12.intellisense.xml" || exit
"$bin/make_intellisense" "$folder/linked.intellisense.xml" https://example.com/kestran || exit
xmllint --noout --nonet --schema tests/spreadsheets/intellisense.xsd "$folder"/*.xml 2>"$folder/said" ||
  { cat "$folder/said"; exit 1; }
tests/page_test.sh docs/excel-help.md "$bin/kestran" || exit
/usr/bin/python3 - "$folder" "$bin/kestran" <<'END_OF_PROGRAM'
import re, subprocess, sys
import xml.etree.ElementTree as tree

folder, kestran = sys.argv[1:]
space = "{http://schemas.excel-dna.net/intellisense/1.0}"


def functions(name):
    found = {}
    for function in tree.parse(f"{folder}/{name}.intellisense.xml").getroot().iter(f"{space}Function"):
        arguments = {argument.get("Name"): argument.get("Description") for argument in function}
        found[function.get("Name")] = (arguments, function.get("HelpTopic"))
    return found


# What the command tells of each argument, which adds a default or a good choice.
def told(name):
    about = subprocess.run([kestran, "--describe", name], capture_output=True, text=True, check=True).stdout
    rows = re.search(r"\n\nArguments\n(.*?)\n\nResult", about, re.S)[1]
    results = re.findall(r"^  (\d+ \S+)", re.search(r"\n\nResults?\n(.*?)\n\n", about, re.S)[1].replace("and on ", ""), re.M)
    return [" ".join(row.split()) for row in re.split(r"^  (?! )", rows, flags=re.M)[1:]], ", ".join(results)


plain, linked = functions("KESTRAN12"), functions("linked")
names = [line.split("\t")[0] for line in subprocess.run([kestran, "--list"], capture_output=True, text=True).stdout.splitlines()]
wrong = sorted(set(names) ^ set(plain))
for name, (arguments, topic) in plain.items():
    rows, results = told(name)
    shown = [f"{argument} {meaning}".removesuffix(f": {results}") for argument, meaning in arguments.items()]
    if len(rows) != len(shown) or not all(re.fullmatch(re.escape(text) + "([,;] .*)?", row) for text, row in zip(shown, rows)):
        wrong.append(f"{name}: {list(zip(rows, shown))}")
    if topic is not None or linked[name] != (arguments, f"https://example.com/kestran/{name}.html"):
        wrong.append(f"{name}: {topic}, {linked[name]}")
print("\n".join(wrong[:10]))
sys.exit(bool(wrong) or not names)
END_OF_PROGRAM
