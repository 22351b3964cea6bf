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
PYTHONPATH=tests/spreadsheets PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 - "$folder" "$bin/kestran" <<'END_OF_PROGRAM'
import sys
import xml.etree.ElementTree as tree

from texts import functions, of_argument, of_results, untold

folder, kestran = sys.argv[1:]
space = "{http://schemas.excel-dna.net/intellisense/1.0}"


def read(name):
    root = tree.parse(f"{folder}/{name}.intellisense.xml").getroot()
    return {one.get("Name"): ({argument.get("Name"): argument.get("Description") for argument in one}, one.get("HelpTopic"))
            for one in root.iter(f"{space}Function")}


plain, linked, listed = read("KESTRAN12"), read("linked"), functions(kestran)
wrong = sorted(set(listed) ^ set(plain))
for name, (arguments, topic) in plain.items():
    about = listed[name]
    if list(arguments) != [argument["name"] for argument in about["arguments"]]:
        wrong.append(f"{name}: {list(arguments)}")
    for place, (argument, text) in enumerate(zip(about["arguments"], arguments.values())):
        wrong += untold(text, of_argument(argument) + (of_results(about) if place == about["resultArgument"] else []))
    if topic is not None or linked[name] != (arguments, f"https://example.com/kestran/{name}.html"):
        wrong.append(f"{name}: {topic}, {linked[name]}")
print("\n".join(wrong[:10]))
sys.exit(bool(wrong) or len(listed) != 81)
END_OF_PROGRAM
