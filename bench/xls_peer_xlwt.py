# Peer: xlwt, the usual writer of .xls from Python.
#
#   python3 xls_peer_xlwt.py FILE.csv FILE.xls
import sys
import time

import xlwt


def write(lines, path):
    workbook = xlwt.Workbook()
    sheet = workbook.add_sheet("Sheet1")
    bold = xlwt.easyxf("font: bold on")
    plain = xlwt.XFStyle()
    cells = 0
    for row, line in enumerate(lines):
        fields = line.split(",")
        for column, field in enumerate(fields):
            sheet.write(row, column, field, plain if row else bold)
        cells += len(fields)
    for column in (5, 6):
        sheet.col(column).width = 30 * 256
    for column, values in ((249, ("Van Sales", "Ready Stock", "Order Booking")), (250, ("YES", "NO"))):
        for row, value in enumerate(("DSType",) + values):
            sheet.write(row, column, value)
        sheet.col(column).hidden = True
    workbook.save(path)
    return cells


def peak():
    with open("/proc/self/status") as status:
        return next(line.split()[1] for line in status if line.startswith("VmHWM:"))


with open(sys.argv[1], encoding="latin-1") as file:
    lines = file.read().splitlines()
start, processor = time.perf_counter(), time.process_time()
cells = write(lines, sys.argv[2])
passed, processor = time.perf_counter() - start, time.process_time() - processor
print(passed * 1000, processor * 1000, peak(), cells)
