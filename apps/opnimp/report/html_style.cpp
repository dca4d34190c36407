#include "apps/opnimp/report/html_style.h"

namespace velk {

// Amounts have figures of one width. A table whose columns do not fit becomes a list, a row a block
// with the title of its column before each value. Paper is always light.
const std::string_view htmlStyle = R"(
:root {
  color-scheme: light dark; font-size: 15px;
  --paper: #fdfcfa; --ink: #23262b; --soft: #656a72; --line: #dcd8d0; --faint: #f4f1eb;
  --good: #2d6a5a; --noted: #8aa74f; --skipped: #a9a69e; --refused: #b0452f; --doubtful: #d0952b;
  --untouched: #d6d2c9;
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --paper: #191b1e; --ink: #e4e2dd; --soft: #a0a4ab; --line: #383b40; --faint: #212429;
    --good: #5ba28d; --noted: #a9c272; --skipped: #7f7e7a; --refused: #d9735c; --doubtful: #ddb055;
    --untouched: #4a4c50;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0; background: var(--paper); color: var(--ink);
  font: 1rem/1.55 system-ui, "Segoe UI", "Liberation Sans", Arial, sans-serif;
  font-variant-numeric: tabular-nums lining-nums; overflow-wrap: anywhere;
}
main { max-width: 58rem; margin: 0 auto; padding: 3rem 1.5rem 4rem; }
header { border-bottom: 1px solid var(--line); padding-bottom: 1.5rem; }
.kicker { margin: 0; color: var(--soft); font-size: .8rem; letter-spacing: .08em; }
h1, h2 { font-family: Georgia, "Liberation Serif", "Times New Roman", serif; font-weight: normal; }
h1 { margin: .25rem 0 1rem; font-size: 2rem; line-height: 1.2; }
h2 { margin: 2.5rem 0 .75rem; font-size: 1.25rem; break-after: avoid; }
p { margin: .5rem 0; }
.verdict { margin: 0; padding-left: .9rem; border-left: 3px solid; font-size: 1.05rem; }
.soft { color: var(--soft); }
dl { display: grid; grid-template-columns: fit-content(12rem) 1fr; gap: .35rem 1.5rem; margin: 1.5rem 0 0; }
dt { color: var(--soft); }
dd { margin: 0; min-width: 0; }
ul { margin: .5rem 0; padding-left: 1.2rem; }
svg { display: block; }
.picture { width: 100%; height: 1.75rem; margin: 0 0 1.25rem; border-radius: 3px; }
.key { display: inline-block; width: .7rem; height: .7rem; margin-right: .6rem; }
.good { fill: var(--good); border-color: var(--good); }
.noted { fill: var(--noted); border-color: var(--noted); }
.skipped { fill: var(--skipped); border-color: var(--skipped); }
.refused { fill: var(--refused); border-color: var(--refused); }
.doubtful { fill: var(--doubtful); border-color: var(--doubtful); }
.untouched { fill: var(--untouched); border-color: var(--untouched); }
.stroke { stroke: var(--paper); stroke-width: 1.5; }
table { width: 100%; border-collapse: collapse; font-size: .9rem; }
th, td { padding: .4rem 0 .4rem 1rem; text-align: left; vertical-align: top; }
th { color: var(--soft); font-weight: normal; border-bottom: 1px solid var(--ink); }
td { border-bottom: 1px solid var(--line); }
th:first-child, td:first-child { padding-left: 0; min-width: 7rem; }
.number { text-align: right; white-space: nowrap; }
.sum td { font-weight: 600; border-top: 1px solid var(--ink); }
tr { break-inside: avoid; }
.signatures { display: grid; grid-template-columns: 1fr 1fr; gap: 3rem; break-inside: avoid; }
.signatures div { padding-top: 2.75rem; }
.signatures span { display: block; border-top: 1px solid var(--ink); padding-top: .3rem;
  color: var(--soft); font-size: .8rem; }
@media screen and (max-width: 52rem) {
  main { padding: 1.5rem 1rem 3rem; }
  h1 { font-size: 1.5rem; }
  dl { grid-template-columns: 1fr; gap: 0; }
  dd { margin-bottom: .6rem; }
  table, tbody, tr, td { display: block; }
  thead { display: none; }
  tr { padding: .5rem 0; border-bottom: 1px solid var(--line); }
  td, td:first-child { display: flex; justify-content: space-between; gap: 1rem; padding: .1rem 0;
    border: 0; }
  td > * { min-width: 0; }
  td::before { content: attr(data-title); color: var(--soft); flex: none; max-width: 45%; }
  td:first-child { font-weight: 600; }
  td:first-child::before { display: none; }
  td:empty { display: none; }
  td.text { display: block; }
  td.text::before { display: block; max-width: none; }
  .number { white-space: normal; }
  .sum td { border: 0; }
  .signatures { grid-template-columns: 1fr; gap: 1.5rem; }
}
@page {
  size: A4; margin: 18mm 16mm 20mm;
  @bottom-right { content: "Page " counter(page) " of " counter(pages); font: 8pt sans-serif; }
}
@media print {
  :root { font-size: 9pt; }
  body { background: none; }
  main { max-width: none; padding: 0; }
  h2 { margin-top: 1.8rem; }
}
)";

}  // namespace velk
