#!/usr/bin/env python3
"""Do tables with tabs and JSON Lines say the same as the database of the same run?

usage: check_texts.py RESULTS.sqlite RESULTS.tsv[.gz] RESULTS.jsonl[.gz] RUN

Every value is compared, numbers as the very same ones. The tables may have only those columns that
the module of the run fills. Ends with an error at the first difference.
"""
import csv
import gzip
import json
import os
import sqlite3
import sys

database_name, tsv_name, jsonl_name, run = sys.argv[1:]
csv.field_size_limit(10_000_000)
database = sqlite3.connect(f"file:{database_name}?mode=ro", uri=True)
database.row_factory = sqlite3.Row
module, first = database.execute("SELECT module, first_structure FROM runs WHERE id = ?",
                                 (run,)).fetchone()
structures = database.execute("SELECT * FROM structures WHERE run = ? ORDER BY input, model",
                              (run,)).fetchall()
values = 0


def text_of(name):
    opener = gzip.open if name.endswith(".gz") else open
    return opener(name, "rt", encoding="utf-8", errors="surrogateescape", newline="")


def as_text(value):
    return os.fsdecode(value) if isinstance(value, bytes) else value


def expect(what, found, wanted):
    global values
    values += 1
    wanted = as_text(wanted)
    if found != wanted or isinstance(found, str) != isinstance(wanted, str):
        sys.exit(f"{what}: {found!r} instead of {wanted!r}")


def field(text, wanted):
    """The text of a field as a value of the kind that the database has."""
    if wanted is None:
        return None if text == "" else text
    return type(wanted)(text) if isinstance(wanted, (int, float)) else text


def rows(table, structure):
    place = table[:-1]
    return database.execute(f"SELECT * FROM {table} WHERE structure = ? ORDER BY {place}",
                            (structure["id"],)).fetchall()


def relative(identity):
    return identity - first + 1


def check_table(name, table, view=None):
    lines = text_of(name)
    comments = []
    position = lines.tell() if not name.endswith(".gz") else 0
    body = []
    for line in lines:
        (comments if line.startswith("#") else body).append(line)
    assert position == 0 and any(line.startswith("# table radii_filename") for line in comments)
    reader = csv.reader(body, delimiter="\t")
    header = next(reader)
    for structure in structures:
        if structure["status"] == "failed":
            if table == "residues":
                assert any(line.startswith("# failed: ") for line in comments), structure["path"]
            continue
        pairs = {} if view is None else {
            row["contact"]: row for row in database.execute(
                f"SELECT * FROM {view} WHERE structure = ?", (structure["id"],))}
        for row in rows(table, structure):
            for column, text in zip(header, next(reader), strict=True):
                what = f"{name} {structure['path']!r} {column}"
                if column in ("path", "entry", "model"):
                    wanted = structure[column]
                    wanted = "" if wanted is None else wanted
                elif column == "structure":
                    wanted = relative(row[column])
                elif column == "types":
                    wanted = pairs[row["contact"]][column] or ""
                    text = ",".join(sorted(text.split(",")))
                    wanted = ",".join(sorted(wanted.split(",")))
                elif column in row.keys():
                    wanted = row[column]
                else:
                    wanted = pairs[row["contact"]][column]
                expect(what, field(text, wanted), wanted)
    if next(reader, None) is not None:
        sys.exit(f"{name}: more rows than in the database")
    return header


def check_columns(what, found, stored, header_less=("structure",)):
    for column, list_of_values in found.items():
        if column == "types":
            continue
        if len(list_of_values) != len(stored):
            sys.exit(f"{what} {column}: {len(list_of_values)} values for {len(stored)} rows")
        for value, row in zip(list_of_values, stored):
            expect(f"{what} {column}", value, row[column])


def check_json():
    with text_of(jsonl_name) as lines:
        for structure, line in zip(structures, lines, strict=True):
            found = json.loads(line)
            what = f"{jsonl_name} {structure['path']!r}"
            settings = dict(database.execute("SELECT key, value FROM settings WHERE run = ?",
                                             (run,)).fetchall())
            assert found["run"]["settings"] == settings and found["run"]["module"] == module
            for column in structure.keys():
                key = column if column not in ("chains", "residues", "contacts") \
                    else "number_of_" + column
                if column == "run" or key not in found:
                    continue
                wanted = relative(structure[column]) if column == "id" else structure[column]
                expect(f"{what} {column}", found[key], wanted)
            if structure["status"] == "failed":
                assert "residues" not in found
                continue
            check_columns(what, found["chains"], rows("chains", structure))
            check_columns(what, found["residues"], rows("residues", structure))
            if module == "vor":
                check_columns(what, found["contacts"], rows("contacts", structure))
                for place, types in enumerate(found["contacts"]["types"], 1):
                    stored = [row[0] for row in database.execute(
                        "SELECT type FROM contact_types WHERE structure = ? AND contact = ?",
                        (structure["id"], place))]
                    expect(f"{what} types", sorted(types) == sorted(stored), True)


header = check_table(tsv_name, "residues")
if ("is_binding" in header) != (module == "vor") or ("asa_total_bound" in header) != (module == "kev"):
    sys.exit(f"{tsv_name}: columns of the other module")
if module == "vor":
    check_table(tsv_name.replace(".tsv", ".contacts.tsv"), "contacts", "contact_pairs")
check_json()
print(values, "values are the same")
