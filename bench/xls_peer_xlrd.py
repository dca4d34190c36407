# Peer: xlrd, the usual reader of .xls from Python.
#
#   python3 xls_peer_xlrd.py FILE.xls
import sys
import time

import xlrd


def read(path):
    sheet = xlrd.open_workbook(path).sheet_by_index(0)
    cells = (value for row in range(sheet.nrows) for value in sheet.row_values(row, 0, 7))
    return sum(len(value.encode()) for value in cells if isinstance(value, str))


def peak():
    with open("/proc/self/status") as status:
        return next(line.split()[1] for line in status if line.startswith("VmHWM:"))


start, processor = time.perf_counter(), time.process_time()
items = read(sys.argv[1])
passed, processor = time.perf_counter() - start, time.process_time() - processor
print(passed * 1000, processor * 1000, peak(), items)
