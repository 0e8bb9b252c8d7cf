"""Compares what the views show with the rows of the command, for all example files.

    views_test.py COMMAND VIEW-ROWS EXAMPLES

The statements and their rows are the same, in the same order, and every column of the command that a
view has says the same. Columns that neither the file nor a view has are empty in both.
"""

import csv
import json
import pathlib
import subprocess
import sys

# What the command shows of a row, but is not about the row: where it comes from.
OF_THE_FILE = {"file", "kind", "account"}
# The kinds of sections that have a view.
STATEMENTS = {"bank-statement", "card-statement", "investment-statement"}
# What the transaction says that brings a statement.
OF_THE_TRANSACTION = {"transaction_id", "client_cookie", "status_code", "severity", "message"}


def printed(command, table, path):
    """The rows of the command, without what is empty."""
    run = subprocess.run([command, "print", "--csv", "--table", table, path], text=True,
                         capture_output=True, check=False, timeout=60)
    rows = []
    for row in csv.DictReader(run.stdout.splitlines(keepends=True)):
        if "statement" in row["kind"]:
            rows.append({k: v for k, v in row.items() if v and k not in OF_THE_FILE})
    return rows


def statements(command, path):
    """What the command says of each statement beside its rows and the transaction that brought it."""
    run = subprocess.run([command, "print", "--json", path], text=True, capture_output=True,
                         check=False, timeout=60)
    sections = [section for file in json.loads(run.stdout)["files"]
                for section in file.get("sections", ()) if section["kind"] in STATEMENTS]
    rows = [{k: v for k, v in section["fields"].items() if k not in OF_THE_TRANSACTION}
            for section in sections]
    return [row for row in rows if row]  # A refused one has nothing.


def shown(program, table, path):
    """The rows of the views."""
    run = subprocess.run([program, table, path], text=True, capture_output=True, check=True,
                         timeout=60)
    return [dict(column.split("=", 1) for column in row.split("\x1f")[:-1])
            for row in run.stdout.split("\x1e")[:-1]]


def hide(row):
    """The command shows the last four characters of a card's number."""
    if "account_type" not in row and "broker_id" not in row and "account_id" in row:
        row["account_id"] = row["account_id"][-4:]


def main():
    command, program, examples = sys.argv[1:]
    mistakes = []
    count = 0
    for path in sorted(pathlib.Path(examples).iterdir()):
        if not path.is_file() or path.suffix not in (".ofx", ".mime"):
            continue
        for table in ("statements", "transactions", "positions"):
            expected = (statements(command, path) if table == "statements" else
                        printed(command, table, path))
            got = shown(program, table, path)
            for row in expected + got:
                hide(row)
                if "to_account" in row:
                    row["to_account"] = row["to_account"][-4:]
            count += len(got)
            if expected != got:
                mistakes.append(f"{path.name}, {table}:")
                mistakes += [f"  command {e}\n  views   {g}"
                             for e, g in zip(expected, got) if e != g]
                mistakes.append(f"  {len(expected)} rows of the command, {len(got)} of the views")
    if count < 50:
        mistakes.append(f"only {count} rows were compared")
    sys.exit("\n".join(mistakes) or 0)


main()
