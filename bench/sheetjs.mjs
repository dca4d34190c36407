// Peer: SheetJS, the usual reader and writer of workbooks from JavaScript.
//
//   node sheetjs.mjs read FILE.xls             the text of each cell
//   node sheetjs.mjs write FILE.csv FILE.xls   texts alone: it writes neither fonts nor pick lists
//   node sheetjs.mjs convert FILE FILE.csv     the whole way from file to file

import { readFileSync } from "node:fs";
import XLSX from "xlsx";

function read(path) {
  const book = XLSX.readFile(path, { dense: true });
  const rows = book.Sheets[book.SheetNames[0]];
  let bytes = 0;
  for (const row of Object.values(rows).filter(Array.isArray)) {
    for (const cell of row.slice(0, 7)) bytes += cell ? Buffer.byteLength(String(cell.v)) : 0;
  }
  return bytes;
}

function write(lines, path) {
  const book = XLSX.utils.book_new();
  XLSX.utils.book_append_sheet(book, XLSX.utils.aoa_to_sheet(lines), "Sheet1");
  XLSX.writeFile(book, path, { bookType: "biff8" });
  return lines.reduce((cells, line) => cells + line.length, 0);
}

function convert(path, target) {
  XLSX.writeFile(XLSX.readFile(path), target, { bookType: "csv" });
  return 0;
}

function peakMemory() {
  return /VmHWM:\s+(\d+)/.exec(readFileSync("/proc/self/status", "utf8"))[1];
}

const [how, from, to] = process.argv.slice(2);
const lines = how === "write" && readFileSync(from, "latin1").trimEnd().split("\n").map((line) => line.split(","));
const processorStart = process.cpuUsage();
const start = performance.now();
const items = how === "read" ? read(from) : how === "write" ? write(lines, to) : convert(from, to);
const passed = performance.now() - start;
const { user, system } = process.cpuUsage(processorStart);
console.log(passed.toFixed(4), (user + system) / 1000, peakMemory(), items);
