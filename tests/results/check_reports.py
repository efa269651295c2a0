#!/usr/bin/env python3
"""Is every number of XML reports in a database of results, and equal to it after rounding?

usage: check_reports.py RESULTS.sqlite DIRECTORY

Looks at all XML reports in the directory, whose names are those of kelmo-batch, and finds their
structures in the database by file name and module; of several runs of a module, the stamp of the
reports is 20070314153 and the id of the run. Ends with an error and the first differences.
"""
import collections
import glob
import os
import re
import sqlite3
import sys
import xml.etree.ElementTree as tree

NAMESPACE = re.compile(r"\{.*?\}")
PARTS = {"total": "total", "backbone": "backbone", "side_chain": "side_chain",
         "non_polar": "non_polar", "polar": "polar"}
STATISTICS = {"average": "average", "average_deviation": "deviation",
              "average_side_chain": "side_chain_average",
              "average_side_chain_deviation": "side_chain_deviation",
              "maximum": "maximum", "minimum": "minimum"}
GROUPS = {"asa": ("asa", PARTS), "relative_asa": ("rasa", PARTS),
          "depth_index": ("dpx", STATISTICS), "protrusion_index": ("cx", STATISTICS)}

differences = []
counts = collections.Counter()


def compare(what, text, value):
    counts["values"] += 1
    if isinstance(value, float):
        value = "%.6g" % value
    elif value is None:
        value = "nan"
    if text.lstrip("-") == "nan":
        text = "nan"
    if text != str(value):
        differences.append(f"{what}: {text} in the report, {value} in the database")


def name(element):
    return NAMESPACE.sub("", element.tag)


def child(element, wanted):
    return next((one for one in element if name(one) == wanted), None)


def text(element, wanted):
    return child(element, wanted).text or ""


def compare_groups(what, element, row, state):
    """All groups of values that stand in the element."""
    for group, (prefix, members) in GROUPS.items():
        values = child(element, group)
        if values is None:
            continue
        if len(values) != len(members):
            differences.append(f"{what}: {group} has {len(values)} members")
        for value in values:
            column = f"{prefix}_{members[name(value)]}_{state}"
            compare(f"{what} {column}", value.text, row[column])
            counts["numbers"] += 1
    value = child(element, "hydrophobicity")
    if value is not None:
        compare(f"{what} hydrophobicity", value.text, row[f"hydrophobicity_{state}"])
        counts["numbers"] += 1


def rows(database, sql, *values):
    return database.execute(sql, values).fetchall()


def check_attributes(database, what, root, structure):
    state = text(root, "analysis_type")
    compare(what, text(root, "pdb_id"), structure["entry"] or "")
    compare_groups(what, root, structure, state)
    chains = list(child(root, "chains"))
    stored = rows(database, "SELECT * FROM chains WHERE structure = ? ORDER BY chain",
                  structure["id"])
    compare(f"{what} chains", str(len(chains)), len(stored))
    residues = iter(rows(database, "SELECT * FROM residues WHERE structure = ? ORDER BY residue",
                         structure["id"]))
    for element, chain in zip(chains, stored):
        where = f"{what} chain {chain['chain']}"
        compare(where, text(element, "serial_id"), chain["chain_id"])
        compare_groups(where, element, chain, state)
        members = list(child(element, "residues"))
        compare(f"{where} residues", str(len(members)), chain["residues"])
        for member in members:
            residue = next(residues)
            which = f"{where} residue {residue['residue']}"
            compare(which, text(member, "serial_id"), residue["number"])
            compare(which, text(member, "name"), residue["name"])
            compare(which, text(element, "serial_id"), residue["chain_id"])
            compare_groups(which, member, residue, state)
    compare(f"{what} residues behind the last", "0", len(list(residues)))


def check_contacts(database, what, root, structure):
    contacts = list(child(root, "contacts"))
    stored = rows(database, "SELECT * FROM contact_pairs WHERE structure = ? ORDER BY contact",
                  structure["id"])
    compare(f"{what} contacts", str(len(contacts)), len(stored))
    compare(f"{what} contacts", str(len(contacts)), structure["contacts"])
    for element, contact in zip(contacts, stored):
        which = f"{what} contact {contact['contact']}"
        for column, member in (("chain_id", "chain_id"), ("number", "residue_id"),
                               ("name", "residue_name")):
            for side in ("_1", "_2"):
                compare(which, text(element, member + side), contact[column + side])
        types = child(element, "contact_types")
        found = sorted(one.text for one in types) if types is not None else []
        compare(which, ",".join(found), ",".join(sorted((contact["types"] or "").split(",")))
                if contact["types"] else "")
        counts["contacts"] += 1


def check_residues(database, what, elements, stored):
    compare(f"{what} residues", str(len(elements)), len(stored))
    for element, residue in zip(elements, stored):
        which = f"{what} residue {residue['residue']}"
        for column, member in (("chain_id", "chain_id"), ("number", "residue_id"),
                               ("name", "residue_name")):
            compare(which, text(element, member), residue[column])
        status = child(element, "binding_status")
        if status is not None:
            compare(which, status.text, residue["is_binding"])
        counts["residues"] += 1


def check(database, path):
    file, run, kind = re.fullmatch(r"(.+)_20070314153(\d)_(.+)\.xml",
                                   os.path.basename(path)).groups()
    root = tree.parse(path).getroot()
    found = rows(database, "SELECT * FROM structures WHERE run = ? AND path LIKE ?", int(run),
                 f"%/{file}.pdb")
    if len(found) != 1:
        differences.append(f"{path}: {len(found)} structures in the database")
        return
    structure = found[0]
    what = os.path.basename(path)
    counts["reports"] += 1
    if kind in ("bound", "unbound"):
        check_attributes(database, what, root, structure)
    elif kind == "contacts":
        check_contacts(database, what, root, structure)
    elif kind == "binding_residues":
        check_residues(database, what, list(child(root, "binding_residues")),
                       rows(database, "SELECT * FROM binding_residues WHERE structure = ? "
                            "ORDER BY residue", structure["id"]))
    else:
        check_residues(database, what, list(child(root, "residues")),
                       rows(database, "SELECT * FROM residues WHERE structure = ? "
                            "ORDER BY residue", structure["id"]))


def main():
    database = sqlite3.connect(f"file:{sys.argv[1]}?mode=ro", uri=True)
    database.row_factory = sqlite3.Row
    for path in sorted(glob.glob(os.path.join(sys.argv[2], "*.xml"))):
        check(database, path)
    print(dict(counts))
    if differences:
        print("\n".join(differences[:20]))
        sys.exit(f"{len(differences)} differences")


main()
