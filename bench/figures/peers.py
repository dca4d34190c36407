"""The programs and libraries that we are measured against: whether each is there, and in which version."""
import json
import shutil
import subprocess

from figures.measure import DATA, Failed, run, skip

NODE_MODULES = DATA / "npm/node_modules"
PYTHON = "/usr/bin/python3"  # the interpreter that Debian's packages are for
JAVA_PATH = "/usr/share/java/"
POI_CLASSES = ":".join(JAVA_PATH + name + ".jar"
                       for name in ("poi", "commons-codec", "commons-collections4", "commons-math3"))


def _debian(package):
    """The version of a package that is installed, else nothing."""
    done = subprocess.run(["dpkg-query", "-W", "-f", "${db:Status-Status} ${Version}", package],
                          capture_output=True, text=True)
    status, _, version = done.stdout.partition(" ")
    return version if status == "installed" else ""


def _npm(module):
    manifest = NODE_MODULES / module / "package.json"
    return json.loads(manifest.read_text())["version"] if manifest.exists() else ""


def _tool(call):
    command = call.split()
    if not shutil.which(command[0]):
        return ""
    done = subprocess.run(command, capture_output=True, text=True)
    return (done.stdout + done.stderr).strip().split("\n")[0]


# How each is asked for its version, and as what: Debian's package, npm's module or a command.
PEERS = {
    "libcsv": (_debian, "libcsv3"),
    "nodejs-polars": (_npm, "nodejs-polars"),
    "SheetJS": (_npm, "xlsx"),
    "Node.js": (_tool, "node --version"),
    "sqlite3": (_debian, "sqlite3"),
    "Apache POI": (_debian, "libapache-poi-java"),
    "Java": (_tool, "java --version"),
    "xlwt": (_debian, "python3-xlwt"),
    "xlrd": (_debian, "python3-xlrd"),
    "freexl": (_debian, "libfreexl1"),
    "LibreOffice": (_debian, "libreoffice-calc"),
    "glibc's iconv": (_debian, "libc6"),
    "libstdc++": (_debian, "libstdc++6"),
    "unixODBC": (_debian, "libodbc2"),
    "SQLite's ODBC driver": (_debian, "libsqliteodbc"),
    "PostgreSQL": (_debian, "postgresql-15"),
    "psqlODBC": (_debian, "odbc-postgresql"),
    "MariaDB": (_debian, "mariadb-server-core"),
    "MariaDB's ODBC driver": (_debian, "odbc-mariadb"),
    "Galera": (_debian, "galera-4"),
    "Wine": (_debian, "wine"),
}


def versions():
    return {name: version for name, (find, what) in PEERS.items() if (version := find(what))}


def install_modules():
    """What comes from the npm registry that npm is set up for."""
    folder = DATA / "npm"
    folder.mkdir(parents=True, exist_ok=True)
    for name in ("package.json", "polars.mjs", "sheetjs.mjs"):
        shutil.copy(f"bench/{name}", folder)
    wanted = json.loads((folder / "package.json").read_text())["dependencies"]
    if all(_npm(module) == version for module, version in wanted.items()):
        return
    try:
        run(["npm", "install", "--prefix", folder, "--no-package-lock", "--no-audit", "--no-fund", "--loglevel=error"])
    except (Failed, OSError) as error:
        skip(f"npm could not install nodejs-polars and SheetJS: {error}")


def those_there(group):
    """The group's sides without those whose peer is missing, which is said."""
    missing = []
    for side, peer in group.needs.items():
        find, what = PEERS[peer]
        if not find(what):
            skip(f"{peer} ({what}) is not installed: no {side}")
            missing.append(side)
    return {name: side for name, side in group.sides.items() if name not in missing}
