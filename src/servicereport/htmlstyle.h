// SPDX-License-Identifier: MIT
#pragma once

/*! The style sheet of a service report, behind the colours of ReportInk::styleSheet(). Without the sign for "child of",
 *  which XML would have to escape and HTML would not understand then.
 */
constexpr char htmlStyle[] = R"css(
*{box-sizing:border-box}
html{color-scheme:light dark;-webkit-text-size-adjust:100%}
body{margin:0;background:var(--shade);color:var(--text);
  font:15px/1.5 "Noto Sans","Segoe UI","Helvetica Neue",Arial,"DejaVu Sans","Noto Sans CJK SC","Microsoft YaHei",sans-serif;
  overflow-wrap:break-word}
main{max-width:56rem;margin:0 auto;background:var(--paper);padding:1.5rem 2rem 2rem}
header.letter{display:flex;justify-content:space-between;align-items:flex-start;gap:1rem;
  border-bottom:3px solid var(--accent);padding-bottom:1rem}
header.letter img{max-width:12rem;max-height:5rem;height:auto}
.shop{font-weight:700;font-size:1.15rem}
.shoplines{color:var(--faint);font-size:.9rem}
h1{margin:0;font-size:1.7rem;line-height:1.2;color:var(--accent)}
h2{margin:2.2rem 0 .7rem;font-size:1.25rem;color:var(--accent);border-bottom:1px solid var(--rule);padding-bottom:.25rem}
h3{margin:1.8rem 0 .5rem;font-size:1.05rem;display:flex;align-items:center;gap:.5rem;flex-wrap:wrap}
h3 span{min-width:0}
h3 .aside{color:var(--faint);font-weight:400;font-size:.9rem}
h4{margin:0;font-size:.95rem}
p{margin:.4rem 0}
.small{color:var(--faint);font-size:.87rem}
.code{font-family:"DejaVu Sans Mono",Consolas,Menlo,monospace;background:var(--shade);padding:.5rem .7rem;border-radius:.3rem}
.lines{white-space:pre-line}
svg.mark{width:1.05em;height:1.05em;flex:none;vertical-align:-.14em}
.verdict{display:flex;gap:1rem;align-items:center;margin:1.4rem 0 .5rem;padding:1rem 1.2rem;background:var(--shade);
  border-left:.5rem solid var(--ink);border-radius:.3rem}
.verdict svg.mark{width:2.6rem;height:2.6rem}
.verdict strong{display:block;font-size:1.35rem;line-height:1.25;color:var(--ink)}
dl{display:grid;grid-template-columns:repeat(auto-fill,minmax(15rem,1fr));gap:.55rem 1.5rem;margin:1rem 0}
dl div{min-width:0;overflow-wrap:anywhere}
dl div.wide{grid-column:1/-1}
dt{color:var(--faint);font-size:.82rem}
dd{margin:0;white-space:pre-line}
ul.items{list-style:none;margin:0;padding:0}
ul.items li{display:flex;gap:.8rem;padding:.75rem 0;border-bottom:1px solid var(--rule)}
ul.items li:last-child{border-bottom:0}
ul.items svg.mark{width:1.4rem;height:1.4rem;margin-top:.1rem}
ul.items .what{min-width:0;flex:1}
.place{font-weight:700}
.word{color:var(--ink);font-weight:700}
.said{white-space:pre-line}
.advice{margin:.3rem 0 0;padding-left:.8rem;border-left:3px solid var(--rule);white-space:pre-line}
.advice b{font-weight:700}
table{border-collapse:collapse;table-layout:fixed;width:100%;margin:.6rem 0;font-size:.93rem}
th{text-align:left;color:var(--faint);font-weight:400;font-size:.82rem;border-bottom:2px solid var(--rule);padding:.25rem .6rem .25rem 0;
  vertical-align:bottom}
td{padding:.35rem .6rem .35rem 0;border-bottom:1px solid var(--rule);vertical-align:top}
td.marked{color:var(--ink);font-weight:700}
figure{margin:1rem 0;max-width:34rem}
figcaption{font-size:.9rem;white-space:pre-line}
svg.chart{display:block;width:100%;height:auto;font-family:inherit}
.visually-hidden{position:absolute;width:1px;height:1px;overflow:hidden;clip-path:inset(50%);white-space:nowrap}
footer{margin-top:2.5rem;padding-top:.6rem;border-top:1px solid var(--rule);color:var(--faint);font-size:.85rem}
@media (max-width:40rem){
  main{padding:1rem}
  header.letter{flex-direction:column-reverse}
  table.wide,table.wide tbody,table.wide tr,table.wide td{display:block;width:100%}
  table.wide thead,table.wide colgroup{display:none}
  table.wide tr{border-bottom:1px solid var(--rule);padding:.5rem 0}
  table.wide td{border:0;padding:.1rem 0}
  table.wide td:empty{display:none}
  dl{grid-template-columns:repeat(auto-fill,minmax(9rem,1fr))}
  table.wide td[data-title]::before{content:attr(data-title) ": ";color:var(--faint);font-weight:400}
}
@media print{
  body{background:none;font-size:10.5pt}
  main{max-width:none;padding:0}
  h2,h3{break-after:avoid}
  li,tr,figure,.verdict,dl div{break-inside:avoid}
  thead{display:table-header-group}
}
)css";
