"""Every group of measurements: which programs take turns, and what is told of them.

A goal is an upper bound of the ratio that this project has set itself, an aim a better one.
"""
import shutil
import zipfile
from contextlib import contextmanager

from figures import servers, windows
from figures.measure import DATA, LOG, RUNNER, Group, beginning, program, run, sample, skip, whole
from figures.peers import NODE_MODULES, POI_CLASSES, PYTHON
from figures.rows import MEMORY, Compare, Growth

SMALL = DATA / "documents-32766x7.csv"
LARGE = DATA / "documents-1000000x10.csv"
DOCUMENTS = DATA / "documents-10000x7.csv"
FOREIGN = DATA / "foreign-1000000x6.csv"
SALESMEN = DATA / "salesmen-60000.csv"
FEW_SALESMEN = DATA / "salesmen-1000.csv"
COMPANY = DATA / "company.db"
XLSX = DATA / "sheets/salesmen-60000.xlsx"


def polars(threads, *arguments):
    script = NODE_MODULES.parent / "polars.mjs"
    return ["env", f"POLARS_MAX_THREADS={threads}", "node", script, *arguments]


def sheetjs(*arguments):
    return ["node", NODE_MODULES.parent / "sheetjs.mjs", *arguments]


def python(script, *arguments):
    return [PYTHON, f"bench/{script}", *arguments]


def memory(bytes_of):
    """A bound that is no program: so many bytes of memory."""
    return lambda: [0, 0, bytes_of() / 1024, None]


def size_of(path):
    return lambda: path.stat().st_size


def at_100_megabytes_a_second(path):
    return lambda: [path.stat().st_size / 1e5, 0, 0, None]


# Views.

def sqlite_shell(database, file, items):
    return whole("sqlite3", database, ".mode csv", f".import {file} imported", f"SELECT {items} FROM imported")


VIEW = Group(
    "view", "A click on View", 15,
    {
        "view": program("view", SMALL, LOG),
        "libcsv": program("libcsv", SMALL),
        "getline": program("getline", SMALL),
        "sqlite": sqlite_shell(":memory:", SMALL, "count(*) * 7"),
    },
    [
        Compare("View 32,766 x 7", "libcsv", "view", "libcsv", 0.333, 0.167),
        Compare("View 32,766 x 7", "getline", "view", "getline"),
        Compare("View 32,766 x 7", "sqlite3's .import, in memory, the shell's start included", "view", "sqlite"),
    ],
    needs={"sqlite": "sqlite3"})

VIEW_LARGE = Group(
    "view-large", "A click on View: a file of a million records", 7,
    {
        "view": program("view", LARGE, LOG),
        "polars_1": polars(1, LARGE),
        "polars_2": polars(2, LARGE),
        "libcsv": program("libcsv", LARGE),
        "size": memory(size_of(LARGE)),
    },
    [
        Compare("View 1,000,000 x 10", "polars, 1 thread", "view", "polars_1", 1.0, 0.333),
        Compare("View 1,000,000 x 10", "polars, 2 threads", "view", "polars_2"),
        Compare("View 1,000,000 x 10", "libcsv", "view", "libcsv"),
        Compare("View 1,000,000 x 10, memory", "the file's size", "view", "size", 2.0, column=MEMORY),
    ],
    needs={"polars_1": "nodejs-polars", "polars_2": "nodejs-polars"})

# Workbooks.

def write_workbooks():
    run(program("xls_write", SALESMEN, DATA / "salesmen-60000.xls"))
    run(program("xls_write", FEW_SALESMEN, DATA / "salesmen-1000.xls"))


XLS_WRITE = Group(
    "xls-write", "Writing .xls", 7,
    {
        "large": program("xls_write", SALESMEN, DATA / "written.xls"),
        "poi": ["java", "-cp", POI_CLASSES, "bench/xls_peer_poi.java", SALESMEN, DATA / "poi.xls"],
        "sheetjs": sheetjs("write", SALESMEN, DATA / "sheetjs.xls"),
        "megabytes": memory(lambda: 60 << 20),
        "small": program("xls_write", FEW_SALESMEN, DATA / "written-1000.xls"),
        "xlwt": python("xls_peer_xlwt.py", FEW_SALESMEN, DATA / "xlwt.xls"),
    },
    [
        Compare("Write .xls 60,000 x 7", "POI", "large", "poi", 0.083),
        Compare("Write .xls 60,000 x 7", "SheetJS, texts alone", "large", "sheetjs"),
        Compare("Write .xls 60,000 x 7, memory", "60 MB", "large", "megabytes", 1.0, column=MEMORY),
        Compare("Write .xls 1,000 x 7", "xlwt", "small", "xlwt", 0.2),
    ],
    needs={"poi": "Apache POI", "sheetjs": "SheetJS", "xlwt": "xlwt"})


def read_xls(name, title, path, rounds):
    return Group(
        name, f"Reading .xls {title}", rounds,
        {
            "ours": program("xls_read", path),
            "freexl": program("freexl", path),
            "xlrd": python("xls_peer_xlrd.py", path),
            "sheetjs": sheetjs("read", path),
        },
        [
            Compare(f"Read .xls {title}", "freexl", "ours", "freexl", 1.0, 0.625),
            Compare(f"Read .xls {title}, memory", "freexl", "ours", "freexl", 1.0, column=MEMORY),
            Compare(f"Read .xls {title}", "xlrd", "ours", "xlrd"),
            Compare(f"Read .xls {title}", "SheetJS", "ours", "sheetjs"),
        ],
        needs={"xlrd": "xlrd", "sheetjs": "SheetJS"}, prepare=write_workbooks)


# Other programs' files.

def encoded(encoding):
    return FOREIGN.with_suffix(f".{encoding.lower()}.csv")


def convert(name, encoding="auto", **peers):
    """The goal is 100 MB of the file a second. Peers have a program each, and what it is called."""
    path = encoded(name)
    return Group(
        f"convert-{name.lower()}", f"Converting {name}", 9,
        {"ours": program("convert", path, encoding), "speed": at_100_megabytes_a_second(path)}
        | {peer: command for peer, (_, command) in peers.items()},
        [Compare(f"Convert {name}", "100 MB a second", "ours", "speed", 1.0)]
        + [Compare(f"Convert {name}", what, "ours", peer) for peer, (what, _) in peers.items()],
        needs={peer: "nodejs-polars" for peer in peers if peer == "polars"},
        prepare=lambda: path.write_bytes(FOREIGN.read_bytes().decode().encode(name)))


def iconv(name):
    return "iconv, to UTF-8 only", program("iconv", encoded(name), name, ";")


CONVERSIONS = [
    convert("UTF-8", polars=("polars, 1 thread, reads", polars(1, encoded("UTF-8"), ";"))),
    convert("UTF-16", iconv=iconv("UTF-16")),
    convert("windows-1252", iconv=iconv("windows-1252")),
    convert("ISO-8859-15", "ISO-8859-15"),
]


@contextmanager
def office():
    """It makes the file, so that this is as people have it."""
    there = shutil.which("soffice") is not None
    if there:
        XLSX.parent.mkdir(exist_ok=True)
        run([*OFFICE, "--convert-to", "xlsx", "--outdir", XLSX.parent, SALESMEN])
    else:
        skip("LibreOffice is not installed (scripts/setup --office): nothing converts .xlsx beside ours")
    yield there


def length_of_xml():
    with zipfile.ZipFile(XLSX) as archive:
        return sum(part.file_size for part in archive.infolist())


OFFICE = ["soffice", "--headless", f"-env:UserInstallation=file://{(DATA / 'office').resolve()}"]


def convert_xlsx():
    result = DATA / "sheets/ours.csv"
    result.unlink(missing_ok=True)
    return sample(whole(RUNNER, "convert", "salesman", XLSX, result))


CONVERT_XLSX = Group(
    "convert-xlsx", "Converting .xlsx", 5,
    {
        "ours": convert_xlsx,
        "office": whole(*OFFICE, "--convert-to", "csv", "--outdir", DATA / "sheets", XLSX),
        "sheetjs": whole(*sheetjs("convert", XLSX, DATA / "sheets/sheetjs.csv")),
        "xml": memory(length_of_xml),
    },
    [
        Compare("Convert .xlsx 60,000 x 7", "LibreOffice", "ours", "office", 0.5),
        Compare("Convert .xlsx 60,000 x 7, memory", "LibreOffice", "ours", "office", column=MEMORY),
        Compare("Convert .xlsx 60,000 x 7", "SheetJS", "ours", "sheetjs"),
        Compare("Convert .xlsx 60,000 x 7, memory", "its XML", "ours", "xml", 3.0, column=MEMORY),
    ],
    needs={"sheetjs": "SheetJS"}, around=office)

# The runner as a whole with a file in the format of the screens, which it looks through, or with --raw
# does not.

def runner_import(*options):
    def measured():
        for old in DATA.glob("runner.*"):
            shutil.rmtree(old) if old.is_dir() else old.unlink()
        shutil.copy(COMPANY, DATA / "runner.db")
        return sample(whole(RUNNER, "import", "customer-opening", DOCUMENTS, "--database", DATA / "runner.db", "--again",
                            "--accept", "all", "--journal", DATA / "runner.journal", "--app-folder", LOG, *options))
    return measured


PREVIEW = Group(
    "preview", "Files that are as the screens want them", 15,
    {
        "ours": whole(RUNNER, "preview", "customer-opening", SMALL),
        "raw": whole(RUNNER, "preview", "customer-opening", SMALL, "--raw"),
        "import": runner_import(),
        "import_raw": runner_import("--raw"),
    },
    [
        Compare("Preview 32,766 x 7", "the same --raw", "ours", "raw", 1.03),
        Compare("Import 10,000 by the runner", "the same --raw", "import", "import_raw", 1.03),
    ])

# Imports into the embedded database.

def click(kind, file, *how):
    return program("import", kind, COMPANY, file, LOG, *how)


def documents(*how):
    return click("customer-opening", DOCUMENTS, *how)


def bare(name, *how):
    return program(name, COMPANY, DOCUMENTS, LOG, *how)


def sqlite_import():
    target = DATA / "sqlite-import.db"
    shutil.copy(COMPANY, target)
    try:
        return sample(sqlite_shell(target, DOCUMENTS, "count(*)"))
    finally:
        for file in DATA.glob("sqlite-import.db*"):
            file.unlink()


IMPORT = Group(
    "import", "Imports into the embedded database", 9,
    {
        "plain": documents(),
        "recorded": documents("recorded"),
        "prepared": bare("odbc_prepared"),
        "kept": bare("odbc_prepared", "kept"),
        "literals": bare("odbc_literals"),
        "sqlite": sqlite_import,
    },
    [
        Compare("Import 10,000", "bare ODBC, prepared", "plain", "prepared", 1.1, 1.03),
        Compare("Import 10,000", "bare ODBC, prepared and kept", "plain", "kept"),
        Compare("Import 10,000, recorded", "bare ODBC, prepared", "recorded", "prepared", 1.1, 1.03),
        Compare("Import 10,000", "bare ODBC, literals", "plain", "literals", 0.9),
        Compare("Import 10,000, recorded", "bare ODBC, literals", "recorded", "literals", 0.9),
        Compare("Import 10,000", "sqlite3's .import, one transaction, no checks, no procedures", "plain", "sqlite"),
    ],
    needs={"sqlite": "sqlite3"})

JOURNAL = Group(
    "journal", "The journal, with the embedded database", 21,
    {"journaled": documents("journaled"), "traced": documents("traced")},
    [Compare("Import 10,000, journaled", "not journaled", "journaled", "traced", 1.05)])


def masters(kind, many, file):
    def loop(*how):
        return program("odbc_masters", kind, COMPANY, DATA / file, LOG, *how)

    return Group(
        kind, f"Importing {many}", 9,
        {"ours": click(kind, DATA / file), "prepared": loop(), "kept": loop("kept")},
        [
            Compare(f"Import 10,000 {many}", "bare ODBC, prepared", "ours", "prepared", 1.1, 1.03),
            Compare(f"Import 10,000 {many}", "bare ODBC, prepared and kept", "ours", "kept"),
        ])


# One, ten and a hundred times the work.

MILLION = (10_000, 100_000, 1_000_000)
IMPORTS = (300, 3_000, 30_000)
SHEETS = (600, 6_000, 60_000)


def part_of(path, lines):
    return path.with_suffix(f".{lines}{path.suffix}")


def company_of(salesmen):
    return DATA / f"salesmen-{salesmen}.db"


def make_parts():
    for path, sizes in ((LARGE, MILLION), (FOREIGN, MILLION), (SMALL, IMPORTS), (SALESMEN, SHEETS)):
        for size in sizes:
            beginning(path, part_of(path, size), size)
    for size in SHEETS:
        run(program("xls_write", part_of(SALESMEN, size), DATA / f"part-{size}.xls"))
        shutil.copy(COMPANY, company_of(size))
        run(["sqlite3", company_of(size), f"""
            INSERT INTO Salesman (Salesman_name, Address, ResidentialNUmber, MobileNumber)
            WITH RECURSIVE k(n) AS (VALUES (1) UNION ALL SELECT n + 1 FROM k WHERE n < {size})
            SELECT 'Salesman ' || n, n || ' Station Road Pune', '020-24451201', '9822000000' FROM k"""])


def export(size):
    def measured():
        target = DATA / "export.xls"
        target.unlink(missing_ok=True)
        return sample(whole(RUNNER, "export", "salesman", target, "--database", company_of(size), "--app-folder", LOG))
    return measured


GROWTHS = [
    ("View", MILLION, lambda n: program("view", part_of(LARGE, n), LOG)),
    ("Import", IMPORTS, lambda n: click("customer-opening", part_of(SMALL, n))),
    ("Convert", MILLION, lambda n: program("convert", part_of(FOREIGN, n), "auto")),
    ("Read .xls", SHEETS, lambda n: program("xls_read", DATA / f"part-{n}.xls")),
    ("Write .xls", SHEETS, lambda n: program("xls_write", part_of(SALESMEN, n), DATA / "written.xls")),
    ("Export salesmen, the runner's start included", SHEETS, export),
]

GROWTH = Group(
    "growth", "Growth", 7,
    {f"{what} {n}": command(n) for what, sizes, command in GROWTHS for n in sizes},
    [Growth(what, sizes, tuple(f"{what} {n}" for n in sizes)) for what, sizes, _ in GROWTHS],
    prepare=make_parts)

GROUPS = [
    VIEW, VIEW_LARGE, XLS_WRITE,
    read_xls("xls-read", "60,000 x 7", DATA / "salesmen-60000.xls", 7),
    read_xls("xls-read-small", "1,000 x 7", DATA / "salesmen-1000.xls", 15),
    *CONVERSIONS, CONVERT_XLSX, PREVIEW, IMPORT, JOURNAL,
    masters("bank-branch", "branches", "branches-10000x4.csv"),
    masters("vendor", "vendors", "vendors-10000x10.csv"),
    *servers.groups(DOCUMENTS), GROWTH, windows.GROUP,
]
