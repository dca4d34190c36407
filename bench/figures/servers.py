"""Imports into servers of the run's own, and of several runners at once.

Nothing but the loopback address is between us and them, or a proxy that delays each way.
"""
import os
import re
import subprocess
import time
from contextlib import contextmanager
from pathlib import Path

from figures.measure import DATA, LOG, RUNNER, Failed, Group, beginning, program, run, sample, skip
from figures.rows import Compare

SERVERS = DATA.resolve() / "servers"
NAMES = {"postgresql": "PostgreSQL", "mariadb": "MariaDB", "galera": "Galera, three nodes"}
DELAYS = (0, 200, 1000, 5000)  # microseconds
RECORDS = {0: 2000}  # with nothing between
FAR_RECORDS = 300
RUNNERS = (1, 2, 4)
RUNNER_RECORDS, RUNNER_CUSTOMERS = 2000, 100


def hosts(engine):
    return (SERVERS / f"{engine}.odbc").read_text().split("\n")[:-1]


def setting(connection, name):
    return re.search(rf"{name}=([^;]*)", connection).group(1)


def with_database(connection):
    return re.sub("Database=[^;]*", "Database=company", connection)


def client(engine, script, database=""):
    """What the engine's own shell prints for a script."""
    connection = hosts(engine)[0]
    port, password = setting(connection, "Port"), setting(connection, "PWD")
    if engine == "postgresql":
        command = ["psql", "-qAt", "-h", "127.0.0.1", "-p", port, "-U", "postgres", "-v", "ON_ERROR_STOP=1",
                   "-d", database or "postgres"]
        return run(command, input=script, env={**os.environ, "PGPASSWORD": password, "PGCLIENTENCODING": "UTF8"})
    return run(["mariadb", "--no-defaults", "-N", "--default-character-set=utf8mb4", "-h", "127.0.0.1", "-P", port,
                "-u", "admin", f"--password={password}", *([database] if database else [])], input=script)


def make_company(engine):
    """The sample company with the customers of the input files, and those of the runners."""
    scripts = Path("samples/company") / engine.replace("galera", "mariadb")
    client(engine, "CREATE DATABASE company")
    for part in (scripts / "1_tables", "samples/company/data", scripts / "2_procedures", scripts / "3_account"):
        client(engine, Path(f"{part}.sql").read_text(), "company")
    codes = [f"K{n:05}" for n in range(1, 2001)]
    codes += [f"N{runner}{n:03}" for runner in range(1, max(RUNNERS) + 1) for n in range(RUNNER_CUSTOMERS)]
    values = ", ".join(f"('{code}', 'Customer {code}')" for code in codes)
    client(engine, f"INSERT INTO Customer (CustomerID, CustomerName) VALUES {values}", "company")


@contextmanager
def company(engine, synced=False):
    """A server with the sample company. Synced: each commit waits for the disk, as a company has it."""
    run(["scripts/test-servers", "start", SERVERS, engine])
    try:
        if not (SERVERS / f"{engine}.odbc").exists():
            skip(f"{NAMES[engine]} is not installed")
            yield False
            return
        make_company(engine)
        if synced:
            run(["scripts/test-servers", "halt", SERVERS, engine])
            run(["scripts/test-servers", "run", SERVERS, engine])
        yield True
    finally:
        run(["scripts/test-servers", "stop", SERVERS])


def near(engine, file, how):
    return lambda: sample(program("import", "customer-opening", with_database(hosts(engine)[0]), file, LOG, how))


def far(engine, file, delay, *how):
    """Ours with look-ups ahead if `how` says so, else the bare loop; a round trip takes `delay` longer."""
    def measured():
        connection = with_database(hosts(engine)[0])
        through = program("delayed", delay, connection) if delay else []
        what = program("import", "customer-opening") if how else program("odbc_server")
        return sample([*through, *what, "@" if delay else connection, file, LOG, *how])
    return measured


def journal_row(engine, how, goal):
    return Compare(f"Import into {NAMES[engine]}{how}, journaled", "not journaled", "journaled", "traced", goal)


def server_group(engine, documents):
    def file(delay):
        return DATA / f"documents-{RECORDS.get(delay, FAR_RECORDS)}x7.csv"

    def make_files():
        for delay in DELAYS:
            beginning(documents, file(delay), RECORDS.get(delay, FAR_RECORDS))

    sides, figures = {}, []
    for delay in DELAYS:
        ours, loop = f"ours_{delay}", f"loop_{delay}"
        sides |= {ours: far(engine, file(delay), delay, "ahead"), loop: far(engine, file(delay), delay)}
        figures.append(Compare(f"Import into {NAMES[engine]}, {delay / 1000:g} ms away", "bare ODBC, prepared", ours, loop,
                               None if delay else 1.0))
    sides |= {how: near(engine, file(0), how) for how in ("journaled", "traced")}
    figures.append(journal_row(engine, ", commits that do not wait", None))
    return Group(engine, f"Imports into {NAMES[engine]}", 7, sides, figures,
                 prepare=make_files, around=lambda: company(engine))


def synced_group(engine, documents):
    file = DATA / "documents-2000x7.csv"
    return Group(f"{engine}-synced", f"The journal with {NAMES[engine]}, whose commits wait for the disk", 15,
                 {how: near(engine, file, how) for how in ("journaled", "traced")},
                 [journal_row(engine, "", 1.02)],
                 prepare=lambda: beginning(documents, file, 2000), around=lambda: company(engine, synced=True))


# Several runners, each with files of different customers and a journal of its own; in a cluster each
# begins with a node of its own.

def runner_file(runner):
    return DATA / f"runner-{runner}.csv"


def make_runner_files():
    for runner in RUNNERS:
        for one in range(1, runner + 1):
            rows = (f"N{one}{i % RUNNER_CUSTOMERS:03},R{one}-{i},01/03/2008,{i + 1},{i + 1}\r\n"
                    for i in range(RUNNER_RECORDS))
            runner_file(one).write_text("Customer ID,Reference,Date,Bill Amount,Balance\r\n" + "".join(rows))


def together(engine, runners):
    """Milliseconds a file: from the first one's start to the last one's end, by their number."""
    def measured():
        client(engine, "TRUNCATE TABLE CustomerDebitNote;\nTRUNCATE TABLE CustomerOpeningBalance;", "company")
        nodes = [re.sub("PWD=.*", "PWD=change-me", re.sub("UID=[^;]*", "UID=opnimp_import", with_database(host)))
                 for host in hosts(engine)]
        state = DATA / "runners" / str(time.monotonic_ns())
        state.mkdir(parents=True)
        began = time.monotonic()
        jobs = [subprocess.Popen([RUNNER, "import", "customer-opening", runner_file(one), "--journal", state / f"{one}",
                                  "--app-folder", state, "--database", nodes[(one - 1) % len(nodes)]],
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                for one in range(1, runners + 1)]
        if any([job.wait() for job in jobs]):
            raise Failed(f"a runner failed: see {state}")
        passed = (time.monotonic() - began) * 1000
        if int(client(engine, "SELECT count(*) FROM CustomerDebitNote", "company")) != runners * RUNNER_RECORDS:
            raise Failed(f"{engine} has not all that was posted, or more")
        return [passed / runners, 0, 0, RUNNER_RECORDS]
    return measured


def runners_group(engine):
    return Group(f"{engine}-runners", f"Several runners with {NAMES[engine]}", 5,
                 {f"runners_{n}": together(engine, n) for n in RUNNERS},
                 [Compare(f"A file of 2,000 into {NAMES[engine]} by one of {n} runners", "one runner", f"runners_{n}",
                          "runners_1") for n in RUNNERS[1:]],
                 prepare=make_runner_files, around=lambda: company(engine))


def groups(documents):
    made = []
    for engine in ("postgresql", "mariadb"):
        made += [server_group(engine, documents), synced_group(engine, documents)]
    return made + [runners_group(engine) for engine in NAMES]
