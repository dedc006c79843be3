#!/usr/bin/env python3
"""tests/fuzz/make_seeds.py — writes the seed corpus of the fuzz targets.

Every statement the program ships becomes one seed file: the texts assembled
in the statement units (transfer/*_sql.cpp, mapping/grid_sql.cpp,
preview/preview_sql.cpp, session/valido_sql.cpp), with each piece computed at
run time (a path, an id) replaced by a plain value, and every statement of the
shipped formats' statement files (formats/**/*.sql). Usage:
    make_seeds.py <source dir> <output dir>
"""
import glob
import hashlib
import os
import re
import sys

STRING = re.compile(r'"((?:[^"\\]|\\.)*)"')
UNITS = ["transfer/*_sql.cpp", "mapping/grid_sql.cpp", "preview/preview_sql.cpp",
         "session/valido_sql.cpp"]
STARTS = ("select", "insert", "update", "delete", "drop")


def unit_statements(text):
    """The statements a unit returns: literal pieces of each return/assignment
    expression joined, with a value where a computed piece stood."""
    text = re.sub(r"//[^\n]*", "", text)
    for expression in re.findall(r"(?:return|=|\+=)\s*(.+?);", text, re.S):
        pieces, last = [], 0
        for m in STRING.finditer(expression):
            between = expression[last:m.start()].strip().strip("+").strip()
            if pieces and between and not between.startswith("std::string("):
                pieces.append("1")
            elif pieces and between:
                pieces.append("/tmp/Pasaje.mdb")
            pieces.append(bytes(m.group(1), "utf-8").decode("unicode_escape").encode("latin-1").decode("utf-8", "replace"))
            last = m.end()
        statement = "".join(pieces).strip()
        if statement.lower().startswith(STARTS):
            yield statement


def file_statements(text):
    text = re.sub(r"--[^\n]*", "", text)
    for statement in text.split(";"):
        statement = statement.strip()
        if statement.lower().startswith(STARTS):
            yield statement.replace("[BDOrigen]", "/tmp/origen.mdb").replace(
                "[BDDestino]", "/tmp/Pasaje.mdb")


def main():
    source, out = sys.argv[1], sys.argv[2]
    os.makedirs(out, exist_ok=True)
    statements = []
    for pattern in UNITS:
        for path in sorted(glob.glob(os.path.join(source, pattern))):
            statements += unit_statements(open(path, encoding="utf-8").read())
    for path in sorted(glob.glob(os.path.join(source, "formats", "**", "*.sql"), recursive=True)):
        statements += file_statements(open(path, encoding="utf-8", errors="replace").read())
    for statement in statements:
        data = statement.encode("utf-8")
        name = hashlib.sha1(data).hexdigest()
        with open(os.path.join(out, name), "wb") as f:
            f.write(data)
    print(f"{len(set(statements))} semillas en {out}")


if __name__ == "__main__":
    main()
