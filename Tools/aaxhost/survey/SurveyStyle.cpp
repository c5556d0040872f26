#include "Tools/aaxhost/survey/SurveyStyle.h"

const char* const kSurveyStyle = R"css(
main { max-width: 92rem; }
table.survey { border-collapse: separate; border-spacing: 0; }
.unfinished { margin-top: 1rem; }
.hidden { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); white-space: nowrap; }
.scroll { overflow-x: auto; position: relative; margin: 1rem 0; border: 1px solid var(--rule); border-radius: .6rem; background: var(--card); }
.scroll:focus-visible, a:focus-visible, button:focus-visible { outline: 2px solid var(--a); outline-offset: 2px; }
a { color: var(--a); }
table.survey th, table.survey td { padding: .5rem .5rem; overflow-wrap: normal; background: var(--card); }
table.survey thead th { vertical-align: bottom; white-space: nowrap; color: var(--ink); }
table.survey tbody tr:last-child > * { border-bottom: 0; }
table.survey tbody th { font-size: .9375rem; color: var(--ink); min-width: 11rem; max-width: 18rem; overflow-wrap: anywhere; position: sticky; left: 0; z-index: 1; }
table.survey thead th:first-child { position: sticky; left: 0; z-index: 2; }
table.survey tbody th small { display: block; color: var(--soft); font-weight: 400; }
table.survey td.why { min-width: 16rem; color: var(--soft); }
table.survey td.maker { min-width: 7rem; max-width: 12rem; overflow-wrap: anywhere; }
table.survey .mark { white-space: nowrap; }
table.survey .count { text-align: right; } table.survey .group { text-align: center; white-space: nowrap; }
table.survey .group { padding-left: .3rem; padding-right: .3rem; } table.survey thead .group button { display: inline-flex; flex-direction: column; align-items: center; }
table.survey thead .group span.head { writing-mode: vertical-rl; transform: rotate(180deg); }
table.survey thead .count span.head { display: inline-block; white-space: normal; max-width: 4.6rem; }
td.failed { color: var(--bad); font-weight: 600; } td.warning, td.unseen { color: var(--fair); } td.passed { color: var(--good); } td.skipped, td.none { color: var(--soft); }
table.survey button { all: unset; cursor: pointer; font: inherit; color: inherit; box-sizing: border-box; text-align: inherit; }
table.survey button:focus-visible { outline: 2px solid var(--a); outline-offset: 2px; border-radius: .2rem; }
table.survey button:hover span.head { text-decoration: underline; }
th[aria-sort] .arrow::before { content: "\2195"; color: var(--soft); } th[aria-sort=ascending] .arrow::before { content: "\2191"; color: var(--ink); } th[aria-sort=descending] .arrow::before { content: "\2193"; color: var(--ink); }
th .arrow { display: inline-block; width: 1em; text-align: center; }
.legend { font-size: .875rem; color: var(--soft); max-width: none; }
ul.failures { list-style: none; padding: 0; margin: .5rem 0 0; } ul.failures li { padding: .35rem 0; border-top: 1px solid var(--rule); overflow-wrap: anywhere; }
ul.failures code { color: var(--soft); }
@media (max-width: 44rem) { table.survey tbody th { min-width: 8.5rem; max-width: 9rem; } }
@media print { .scroll { overflow: visible; border: 0; } table.survey tbody th, table.survey thead th:first-child { position: static; } th .arrow { display: none; } }
)css";

const char* const kSurveyScript = R"js(
"use strict";
(() => {
  const table = document.querySelector("table.survey");
  const heads = [...table.tHead.rows[0].cells];
  const words = new Intl.Collator("en", {numeric: true, sensitivity: "base"});
  const valueOf = (row, column) => row.cells[column]?.dataset.value; // none: it goes last, whatever the order
  const sortBy = (column) => {
    const head = heads[column];
    const isCount = !head.classList.contains("words");
    const first = isCount ? "descending" : "ascending"; // the worst first
    const other = isCount ? "ascending" : "descending";
    const order = head.getAttribute("aria-sort") === first ? other : first;
    const sign = order === "ascending" ? 1 : -1;
    const compare = (one, two) => {
      const [a, b] = [valueOf(one, column), valueOf(two, column)];
      if (a === undefined || b === undefined) return (a === undefined) - (b === undefined);
      return sign * (isCount ? a - b : words.compare(a, b));
    };
    for (const each of heads) each.setAttribute("aria-sort", each === head ? order : "none");
    table.tBodies[0].append(...[...table.tBodies[0].rows].sort(compare));
  };
  heads.forEach((head, column) => {
    const button = document.createElement("button");
    button.type = "button";
    button.append(...head.childNodes);
    const arrow = document.createElement("span");
    arrow.className = "arrow";
    arrow.setAttribute("aria-hidden", "true");
    button.append(arrow);
    button.addEventListener("click", () => sortBy(column));
    head.append(button);
    head.setAttribute("aria-sort", column === 0 ? "ascending" : "none"); // as the rows are written
  });
})();
)js";
