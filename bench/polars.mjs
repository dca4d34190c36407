// Peer: nodejs-polars, a data frame library. Every cell is held as text, as everywhere else here.
//
//   node polars.mjs FILE [SEPARATOR]     POLARS_MAX_THREADS sets the number of threads

import { readFileSync } from "node:fs";
import pl from "nodejs-polars";

function peakMemory() {
  return /VmHWM:\s+(\d+)/.exec(readFileSync("/proc/self/status", "utf8"))[1];
}

const processorStart = process.cpuUsage();
const start = performance.now();
const table = pl.readCSV(process.argv[2], {
  inferSchemaLength: 0,
  sep: process.argv[3] ?? ",",
});
const passed = performance.now() - start;
const { user, system } = process.cpuUsage(processorStart);
console.log(passed.toFixed(4), (user + system) / 1000, peakMemory(), table.height * table.width);
