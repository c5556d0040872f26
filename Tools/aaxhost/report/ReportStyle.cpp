#include "Tools/aaxhost/report/ReportStyle.h"

const char* const kReportStyle = R"css(
:root {
  color-scheme: light dark;
  --page: #fbfaf8; --card: #ffffff; --ink: #1d2126; --soft: #5d666f; --rule: #e3e0da;
  --good: #23744a; --fair: #8a5a00; --bad: #b3261e; --none: #616a73;
  --good-wash: #e6f2eb; --fair-wash: #fbf0d9; --bad-wash: #fae5e3; --none-wash: #eff0f1;
  --a: #2f5fa8; --b: #b8651b;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #15181b; --card: #1c2024; --ink: #e7e5e1; --soft: #a0a8b0; --rule: #30363c;
    --good: #7cc99d; --fair: #e3b65c; --bad: #f08b82; --none: #98a1aa;
    --good-wash: #1b2f25; --fair-wash: #33290f; --bad-wash: #3a1e1c; --none-wash: #262b30;
    --a: #86b0ee; --b: #e2a268;
  }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; text-size-adjust: 100%; }
body {
  margin: 0; background: var(--page); color: var(--ink);
  font: 400 1rem/1.55 system-ui, -apple-system, "Segoe UI", "Helvetica Neue", "Noto Sans", sans-serif;
  font-variant-numeric: tabular-nums; overflow-wrap: break-word;
}
main { max-width: 66rem; margin: 0 auto; padding: 3rem 1.5rem 4rem; }
header p, section > p, figcaption { color: var(--soft); }
h1 { font-size: clamp(1.8rem, 5vw, 2.6rem); line-height: 1.15; letter-spacing: -0.02em; margin: 0 0 .25rem; font-weight: 650; }
h2 { font-size: 1.25rem; letter-spacing: -0.01em; margin: 3.5rem 0 .75rem; padding-top: 1rem; border-top: 1px solid var(--rule); font-weight: 650; }
h3 { font-size: 1rem; margin: 1.75rem 0 .5rem; font-weight: 650; } h3.group { text-transform: capitalize; }
p { margin: 0 0 .75rem; max-width: 42rem; }
code { font: .875em/1.4 ui-monospace, "SF Mono", Menlo, Consolas, "DejaVu Sans Mono", monospace; overflow-wrap: anywhere; }
.verdict { margin: 1.75rem 0 0; padding: 1.1rem 1.4rem; border-radius: .6rem; border-left: .35rem solid; }
.verdict strong { display: block; font-size: 1.4rem; line-height: 1.3; letter-spacing: -0.01em; }
.verdict.passed { background: var(--good-wash); border-color: var(--good); }
.verdict.failed { background: var(--bad-wash); border-color: var(--bad); }
.verdict.warning { background: var(--fair-wash); border-color: var(--fair); } .verdict.warning strong { color: var(--fair); }
.verdict.passed strong { color: var(--good); } .verdict.failed strong { color: var(--bad); }
.tally { display: flex; height: .5rem; border-radius: .25rem; overflow: hidden; margin: .9rem 0 .35rem; gap: 2px; }
.tally span { display: block; min-width: 3px; }
.tally .passed { background: var(--good); } .tally .warning { background: var(--fair); }
.tally .failed { background: var(--bad); } .tally .skipped { background: var(--none); opacity: .45; }
ul.findings { list-style: none; margin: 1.25rem 0 0; padding: 0; }
ul.findings li { display: grid; grid-template-columns: 5.6rem minmax(0, 1fr); gap: .25rem .75rem; padding: .3rem 0; align-items: baseline; }
ul.findings code { color: var(--soft); }
.stems { max-width: 36rem; }
dl.facts { display: grid; grid-template-columns: repeat(auto-fit, minmax(min(13rem, 100%), 1fr)); gap: 1rem 2rem; margin: 1.75rem 0 0; }
dl.facts dt { color: var(--soft); font-size: .875rem; } dl.facts dd { margin: 0; overflow-wrap: anywhere; }
ul.checks { list-style: none; margin: 0; padding: 0; background: var(--card); border: 1px solid var(--rule); border-radius: .6rem; }
ul.checks li { display: grid; grid-template-columns: 6.2rem minmax(0, 16rem) minmax(0, 1fr); gap: .1rem 1rem; padding: .6rem 1rem; align-items: baseline; }
ul.checks li + li { border-top: 1px solid var(--rule); }
ul.checks p { margin: 0; font-size: .9375rem; } ul.checks .why { color: var(--ink); font-weight: 500; } ul.checks .what { color: var(--soft); }
.again { margin: 1rem 0 0; }
nav ul { list-style: none; display: flex; flex-wrap: wrap; gap: .3rem 1.25rem; margin: 1.5rem 0 0; padding: 0; font-size: .9375rem; }
a { color: var(--a); } a:focus-visible, summary:focus-visible { outline: 2px solid var(--a); outline-offset: 2px; border-radius: .2rem; }
ul.findings details p { color: var(--soft); font-size: .9375rem; }
details { margin: .5rem 0; } summary { cursor: pointer; color: var(--soft); } details[open] summary { margin-bottom: .5rem; }
.mark { font-size: .8125rem; font-weight: 600; border-radius: 1rem; padding: .1rem .65rem; justify-self: start; }
.mark.passed { color: var(--good); background: var(--good-wash); } .mark.warning { color: var(--fair); background: var(--fair-wash); }
.mark.failed, .mark.unstable { color: var(--bad); background: var(--bad-wash); } .mark.skipped, .mark.unseen { color: var(--none); background: var(--none-wash); }
.pair { display: grid; margin-top: 1rem; grid-template-columns: repeat(auto-fill, minmax(min(26rem, 100%), 1fr)); gap: 1rem; }
.many { display: grid; margin: 1rem 0; grid-template-columns: repeat(auto-fill, minmax(min(14rem, 100%), 1fr)); gap: 1rem; }
figure { margin: 0; padding: 1rem; background: var(--card); border: 1px solid var(--rule); border-radius: .6rem; min-width: 0; overflow-x: auto; }
figcaption { font-size: .875rem; margin-bottom: .5rem; }
svg { display: block; width: 100%; height: auto; }
svg text { font: 400 13px system-ui, -apple-system, "Segoe UI", "Noto Sans", sans-serif; fill: var(--ink); }
svg .tick { fill: var(--soft); font-size: 12px; } svg .end { text-anchor: end; } svg .middle { text-anchor: middle; }
svg .axis { fill: var(--soft); font-size: 12px; } svg .begin { text-anchor: start; } svg image { image-rendering: auto; } svg.legend { margin-top: .2rem; }
svg .grid { stroke: var(--rule); stroke-width: 1; }
svg .line { fill: none; stroke-width: 1.75; stroke-linejoin: round; } svg .line.a, svg .wire { stroke: var(--a); } svg .line.b { stroke: var(--b); stroke-dasharray: 5 3; }
svg .band.a { fill: var(--a); opacity: .85; } svg .dot.a { fill: var(--a); } svg .dot.b { fill: var(--b); }
svg .wire { fill: none; stroke-width: 1.5; } svg .box { fill: var(--card); stroke: var(--a); stroke-width: 1.5; } svg .name { font-weight: 600; }
.key::before { content: ""; display: inline-block; width: 1.4em; height: 0; border-top: 2px solid var(--a); vertical-align: middle; margin-right: .4em; }
.key.b::before { border-top: 2px dashed var(--b); } .key + .key { margin-left: 1.2em; }
table { width: 100%; border-collapse: collapse; font-size: .9375rem; }
th { text-align: left; font-weight: 600; color: var(--soft); font-size: .8125rem; }
th, td { padding: .45rem .75rem .45rem 0; border-bottom: 1px solid var(--rule); vertical-align: top; overflow-wrap: break-word; } td code { white-space: nowrap; } td.number, tbody th.number { white-space: nowrap; }
td { font-weight: 400; } tbody th { color: var(--ink); font-weight: 400; font-size: inherit; } tbody th:not(.number) { font-weight: 500; }
.numbers { overflow-x: auto; } .numbers, figure table { font-size: .875rem; } .numbers td, .numbers th, figure td, figure th { padding: .2rem .5rem .2rem 0; }
td.number, th.number { text-align: right; padding-right: 1.25rem; }
img { max-width: 100%; height: auto; display: block; border-radius: .3rem; }
.note { color: var(--soft); font-style: italic; }
footer { margin-top: 4rem; color: var(--soft); font-size: .875rem; }
@media screen and (max-width: 44rem) {
  main { padding: 1.75rem 1rem 3rem; }
  ul.checks li { grid-template-columns: minmax(0, 1fr) auto; } ul.checks li .mark { grid-column: 2; grid-row: 1; } ul.checks li code { grid-column: 1; grid-row: 1; }
  ul.checks li .said { grid-column: 1 / -1; }
  figure { padding: .75rem .6rem; }
  dl.facts { grid-template-columns: repeat(auto-fit, minmax(min(9rem, 100%), 1fr)); gap: .75rem 1.25rem; }
  svg:not(.small) .tick, svg:not(.small) .axis { font-size: 16px; } figure td.number, figure th.number { padding-right: .4rem; } .stems svg text { font-size: 16px; }
  table.wide thead { display: none; } table.wide tr { display: block; padding: .5rem 0; border-bottom: 1px solid var(--rule); }
  table.wide tbody th { display: block; border: 0; padding: 0; }
  table.wide td.none { display: none; } table.wide td { display: inline; border: 0; padding: 0; } table.wide td + td::before { content: " \00b7  "; color: var(--soft); } table.wide td.number { text-align: left; }
  table.wide td[data-name]::after { content: " " attr(data-name); color: var(--soft); }
}
@media print {
  :root { color-scheme: light; --page: #fff; --card: #fff; --ink: #000; --soft: #444; --rule: #ccc;
    --good: #1b5e3a; --fair: #6e4800; --bad: #961b14; --none: #555; --good-wash: #fff; --fair-wash: #fff; --bad-wash: #fff; --none-wash: #fff; --a: #1f4a8a; --b: #8a4a10; }
  body { font-size: 10pt; } main { max-width: none; padding: 0; }
  h2 { break-after: avoid; margin-top: 2rem; } h3 { break-after: avoid; }
  nav { display: none; } .pair { grid-template-columns: 1fr 1fr; } .many { grid-template-columns: repeat(4, 1fr); } figure { padding: .5rem; overflow: visible; }
  table { font-size: 8pt; } figure table, .numbers { font-size: 7pt; }
  figure, ul.checks li, .verdict, tr { break-inside: avoid; }
  .mark, .tally span, svg.legend rect { -webkit-print-color-adjust: exact; print-color-adjust: exact; border: 1px solid; }
  @page { margin: 16mm; }
}
)css";
