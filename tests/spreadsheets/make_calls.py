"""Writes a workbook of calls, and what they must show.

  make_calls.py KESTRAN OUT.xlsx OUT.expected < FORMULAS

Each line, =NAME(...), is a row of the sheet Inline as it stands, and one of the sheet Cells with references to
cells of the sheet Data in place of numbers and blocks. Functions are called _xll.NAME, as Excel saves them.
No cell has a value. The last file has the formulas and, behind a tabulator, the answers of the command KESTRAN.

Left out is what reckons outside of functions, which spreadsheets do in a precision of their own. Numbers are
written with 17 digits: read as numbers wider than a double, and rounded to one, they are still the same.
"""

import re
import subprocess
import sys
import zipfile
from xml.sax.saxutils import escape

TEXT = re.compile(r'("(?:[^"]|"")*")')
NUMBER = re.compile(r"(?<![\w.#])((?:\d+\.?\d*|\.\d+)(?:E[+-]?\d+)?)(%?)(?![\w.!])", re.I)


def outside_text(change, formula):
    parts = TEXT.split(formula)
    parts[::2] = map(change, parts[::2])
    return "".join(parts)


def exact(formula):
    digits = lambda found: f"{float(found[1]) / (100 if found[2] else 1):.17g}"
    return outside_text(lambda part: NUMBER.sub(digits, part), formula)


def named(formula):
    return outside_text(lambda part: re.sub(r"(?<![\w.])([A-Za-z_]\w*)\(", r"_xll.\1(", part), formula)


def reckons(formula):
    return re.search(r"[-+*/^&%]", re.sub(r"(?<=[,({;])-", "", exact(TEXT.sub("", formula)).replace("e-", "e")))


def split(text, separators):
    """At separators that are in no text, braces or parentheses."""
    parts, depth, quoted = [""], 0, False
    for c in text:
        quoted ^= c == '"'
        if not quoted:
            depth += (c in "{(") - (c in "})")
        if c in separators and depth == 0 and not quoted:
            parts.append("")
        else:
            parts[-1] += c
    return parts


def column(n):
    return (column(n // 26 - 1) if n >= 26 else "") + chr(65 + n % 26)


def cell(place, text):
    text = text.strip()
    if re.fullmatch(r"[-+]?[\d.]+(e[-+]?\d+)?", text, re.I):
        return f'<c r="{place}"><v>{text}</v></c>'
    if text in ("TRUE", "FALSE"):
        return f'<c r="{place}" t="b"><v>{int(text == "TRUE")}</v></c>'
    if text.startswith("#"):
        return f'<c r="{place}" t="e"><v>{text}</v></c>'
    if text.startswith('"'):
        return f'<c r="{place}" t="inlineStr"><is><t>{escape(text[1:-1])}</t></is></c>'
    return f'<c r="{place}"><f>{escape(text)}</f></c>' if text else ""


def by_reference(formula, data):
    """The formula with references to cells, which are added to data, a list of rows of texts."""
    call = re.fullmatch(r"([A-Za-z_]\w*)\((.*)\)", formula, re.S)
    if not call:
        return formula
    top, rows, left, arguments = len(data) + 1, [[]], 0, []
    for argument in split(call[2], ","):
        argument = argument.strip()
        block = [split(row, ",") for row in split(argument[1:-1], ";")] if argument.startswith("{") else [[argument]]
        if not argument.startswith("{") and not re.fullmatch(r"[-+\d.e]+", argument, re.I):
            arguments.append(argument)
            continue
        first = f"Data!{column(left)}{top}"
        size = max(len(row) for row in block)
        arguments.append(first if (len(block), size) == (1, 1) else f"{first}:{column(left + size - 1)}{top + len(block) - 1}")
        rows += [[] for _ in range(len(block) - len(rows))]
        for row, texts in zip(rows, block):
            row += [""] * (left - len(row)) + texts
        left += size
    data += rows
    return f"{call[1]}({','.join(arguments)})"


def write(path, sheets):
    """sheets: a name and rows of texts, each."""
    main = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
    package = "http://schemas.openxmlformats.org/package/2006"
    office = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
    content = "application/vnd.openxmlformats-officedocument.spreadsheetml"
    numbers = range(1, len(sheets) + 1)
    files = {
        "[Content_Types].xml": f'<Types xmlns="{package}/content-types"><Default Extension="rels" '
        'ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        f'<Override PartName="/xl/workbook.xml" ContentType="{content}.sheet.main+xml"/>'
        + "".join(f'<Override PartName="/xl/sheet{i}.xml" ContentType="{content}.worksheet+xml"/>' for i in numbers)
        + "</Types>",
        "_rels/.rels": f'<Relationships xmlns="{package}/relationships"><Relationship Id="rId1" '
        f'Type="{office}/officeDocument" Target="xl/workbook.xml"/></Relationships>',
        "xl/workbook.xml": f'<workbook xmlns="{main}" xmlns:r="{office}"><sheets>'
        + "".join(f'<sheet name="{sheets[i - 1][0]}" sheetId="{i}" r:id="rId{i}"/>' for i in numbers)
        + "</sheets></workbook>",
        "xl/_rels/workbook.xml.rels": f'<Relationships xmlns="{package}/relationships">'
        + "".join(f'<Relationship Id="rId{i}" Type="{office}/worksheet" Target="sheet{i}.xml"/>' for i in numbers)
        + "</Relationships>",
    }
    for i in numbers:
        files[f"xl/sheet{i}.xml"] = f'<worksheet xmlns="{main}"><sheetData>' + "".join(
            f'<row r="{r}">' + "".join(cell(f"{column(c)}{r}", text) for c, text in enumerate(row)) + "</row>"
            for r, row in enumerate(sheets[i - 1][1], 1)
        ) + "</sheetData></worksheet>"
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as out:
        for name, text in files.items():
            out.writestr(name, '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>' + text)


def main():
    kestran, out, expected = sys.argv[1:]
    formulas = [line.strip().lstrip("=") for line in sys.stdin if line.strip()]
    formulas = [formula for formula in formulas if not reckons(formula)]
    lines = "".join(f"={formula}\n" for formula in formulas)
    answers = subprocess.run([kestran], input=lines, capture_output=True, text=True).stdout.splitlines()
    data = []
    cells = [[named(by_reference(exact(formula), data))] for formula in formulas]
    write(out, [("Inline", [[named(exact(formula))] for formula in formulas]), ("Cells", cells), ("Data", data)])
    with open(expected, "w") as file:
        file.writelines(f"{formula}\t{answer}\n" for formula, answer in zip(formulas, answers, strict=True))


main()
