"""The installed Python module driven through a real book.

Run with the install prefix's module folder on PYTHONPATH:
    python3 drive_book.py PREFIX FOLDER
It makes a book in FOLDER, adds a person and an e-mail address with the
installed `zelvo sql`, lists the book through Navigate, and checks the
errors a script meets. Exits 0 when everything behaved.
"""
import os
import subprocess
import sys

import zelvo

prefix, folder = sys.argv[1], sys.argv[2]
failures = []


def check(what, ok):
    if not ok:
        failures.append(what)
        print("FAILED:", what, file=sys.stderr)


def expect_error(what, number, call, kind=None):
    try:
        call()
    except zelvo.Error as e:
        check(f"{what}: number {e.number}", e.number == number)
        check(f"{what}: has description and source", bool(e.description) and bool(e.source))
        return
    except Exception as e:  # noqa: BLE001 - reported below
        if kind is not None and isinstance(e, kind):
            check(f"{what}: message names the class and member: {e}", "cAddressbook" in str(e))
            return
        check(f"{what}: raised {type(e).__name__}: {e}", False)
        return
    check(f"{what}: raised nothing", False)


# The module came from the prefix, not the build tree.
check("module from the prefix", os.path.realpath(zelvo.__file__).startswith(os.path.realpath(prefix)))
check("every class creatable", all(zelvo.create(name).class_name == name for name in zelvo.classes()))

# The installed library finds its catalogues beside itself: a language
# added there is the one the lists speak.
with open(os.path.join(prefix, "share", "zelvo", "lang", "xx.lng"), "w", encoding="utf-8") as f:
    f.write("[Module1.LvwAddPersons2]\nman=Mensch\n")
os.environ.pop("ZELVO_LANG_DIR", None)
os.environ["ZELVO_LANG"] = "xx"

ab = zelvo.create("cAddressbook")
ab.AppPath = folder
result, path = ab.CorrectDB("")
check("CorrectDB gives the book's path back", result is None and path == ab.GetDatabasename())
check("the book exists", os.path.isfile(path))

sql = os.path.join(prefix, "bin", "zelvo")
for statement in (
    'Insert Into PersonalData (FirstName, MiddleName, FullName) Values ("Иванов", "Иван", "Иванов Иван")',
    'Insert Into Resources (ResourceString, ResourceType) Values ("ivan@example.org", 2)',
    "Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (1, 1, 0)",
):
    subprocess.run([sql, "sql", "--db", path, statement], check=True, stdout=subprocess.DEVNULL)

ab.Flags = 1  # the persons of no project
check("a property reads back as its type", ab.Flags == 1 and ab.flags2 == 31)
rows = zelvo.ListView(["Name", "Type", "E-mail"])
check("Navigate with Nothing for a data control gives no tuple", ab.Navigate(rows, None) is None)
check("one row", len(rows) == 1)
if rows.rows:
    row = rows.rows[0]
    check("the row's name", row["text"] == "Иванов Иван")
    check("the row's e-mail", row["sub_items"][-1] == "ivan@example.org")
    check("the row's type from the installed catalogue", row["sub_items"][0] == " Mensch")
    check("the row's tag is the person", row["tag"] == 1 and row["icon"] == "User")

data = zelvo.DataControl()
data.DatabaseName = path
data.RecordSource = "Select FullName From PersonalData"
data.refresh()
check("a data control's records", data.records == [{"FullName": "Иванов Иван"}])

# Errors: the library's numbers, and Python's own for what Python can tell.
expect_error("unknown class", 429, lambda: zelvo.create("NoSuchClass"))
expect_error("missing argument", 449, lambda: ab.Navigate(rows))
expect_error("not a number", 13, lambda: setattr(ab, "Flags", "many"))
expect_error("too large", 6, lambda: setattr(ab, "Flags", 2**40))
expect_error("too many arguments", 0, lambda: ab.CorrectDB("", ""), TypeError)
expect_error("a list for a text", 0, lambda: ab.CorrectDB([]), TypeError)
expect_error("a number for a list", 0, lambda: ab.Navigate(5, None), TypeError)
expect_error("a text for a list", 0, lambda: ab.Navigate("rows", None), TypeError)
expect_error("unknown keyword", 0, lambda: ab.CorrectDB(Paths=""), TypeError)
expect_error("unknown member", 0, lambda: ab.NoSuchMember, AttributeError)
check("keyword arguments by the parameter's name", ab.CorrectDB(path="")[1] == path)

sys.exit(1 if failures else 0)
