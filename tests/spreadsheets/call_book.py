"""Calls of the functions as text, and workbooks of them as Excel saves them."""
import re

import xlsxwriter
from xlsxwriter.utility import xl_rowcol_to_cell


def split(text, separator=","):
    """Parts of a text between separators outside brackets and quotes."""
    parts, depth, quoted = [""], 0, False
    for character in text:
        quoted ^= character == '"'
        depth += not quoted and (character in "({") - (character in ")}")
        if character == separator and depth == 0 and not quoted:
            parts.append("")
        else:
            parts[-1] += character
    return parts


def xll(formula):
    """With the names that functions of add-ins have in files."""
    parts = re.split(r'("(?:[^"]|"")*")', formula)
    parts[::2] = [re.sub(r"(?<![\w.])([A-Za-z_]\w*)\(", r"_xll.\1(", part) for part in parts[::2]]
    return "".join(parts)


class Call:
    def __init__(self, name, arguments):
        self.name, self.arguments = name, [argument.strip() for argument in split(arguments)]

    def formula(self, arguments=None):
        return f"={self.name}({','.join(arguments or self.arguments)})"

    def blocks(self):
        """Each argument as its rows of cells, None where it is no block."""
        for argument in self.arguments:
            yield [split(row) for row in split(argument[1:-1], ";")] if argument[0:1] == "{" else None


def write_cell(sheet, row, column, text):
    """A cell with what the text would be in a formula."""
    text = text.strip()
    if text[0:1] == '"' and text != '""':
        sheet.write_string(row, column, text[1:-1])
    elif text in ("TRUE", "FALSE"):
        sheet.write_boolean(row, column, text == "TRUE")
    elif text and re.fullmatch(r"-?[0-9.]+(E[-+]?[0-9]+)?", text, re.I) and float(f"{float(text):.16G}") == float(text):
        sheet.write_number(row, column, float(text))
    elif text:
        sheet.write_formula(row, column, "=" + xll(text), None, 12345)


def write_book(path, rows, stays):
    """A row for each call: the sheet Inline has the formula that stands first, unless that is None, the sheet Cells the
    call with cells of the sheet Data for arguments, but for those that stay. Nobody has computed the values."""
    workbook = xlsxwriter.Workbook(path)
    inline, by_cell, data = (workbook.add_worksheet(name) for name in ("Inline", "Cells", "Data"))
    top = 0
    for i, (formula, call) in enumerate(rows):
        references, left, height = [], 0, 1
        for argument, block in zip(call.arguments, call.blocks()):
            if argument == "" or (block is None and stays(argument)):
                references.append(argument)
                continue
            cells = block or [[argument]]
            width = max(map(len, cells))
            for k, texts in enumerate(cells):
                for m, text in enumerate(texts):
                    write_cell(data, top + k, left + m, text)
            first, last = xl_rowcol_to_cell(top, left), xl_rowcol_to_cell(top + len(cells) - 1, left + width - 1)
            references.append(f"Data!{first}" + ("" if first == last else f":{last}"))
            left += width
            height = max(height, len(cells))
        top += height
        by_cell.write_formula(i, 0, xll(call.formula(references)), None, 12345)
        if formula is not None:
            inline.write_formula(i, 0, xll(formula), None, 12345)
    workbook.close()
