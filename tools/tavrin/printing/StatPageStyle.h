#pragma once

namespace tool {

/// The style sheet of the page about octets.
inline constexpr char kStatPageStyle[] = R"(
:root{color-scheme:light dark;--back:#f6f7f9;--card:#fff;--ink:#1b2330;--soft:#5b6676;--line:#dfe3e9;--track:#eceff3;
--k0:#3f7fd8;--k1:#2a9d8f;--k2:#d9971c;--k3:#c2507e;--k4:#7d6bd0;--k5:#98a2b0;--k6:#b98a66;--in:#fff;--on:rgba(255,255,255,.55)}
@media(prefers-color-scheme:dark){:root{--back:#12161c;--card:#1b2129;--ink:#e6eaf0;--soft:#98a3b3;--line:#2d3540;--track:#28303a;
--k0:#3a6fbd;--k1:#23877b;--k2:#a97a1e;--k3:#a5446b;--k4:#6a5ab8;--k5:#5d6876;--k6:#8d6a4f;--in:#161b22;--on:rgba(0,0,0,.4)}}
*{box-sizing:border-box}
body{margin:0;background:var(--back);color:var(--ink);font:15px/1.5 system-ui,-apple-system,"Segoe UI",Roboto,"DejaVu Sans",sans-serif}
main{max-width:1180px;margin:0 auto;padding:28px 20px 48px}
h1{font-size:1.55rem;line-height:1.25;margin:0;overflow-wrap:anywhere}
h2{font-size:1.1rem;margin:0 0 4px}
h3{font-size:.95rem;margin:18px 0 6px;font-weight:600}
p{margin:0 0 10px;color:var(--soft)}
section{background:var(--card);border:1px solid var(--line);border-radius:10px;padding:18px 20px;margin-top:18px}
.sizes{display:grid;grid-template-columns:repeat(auto-fit,minmax(210px,1fr));gap:18px;margin-top:18px}
.sizes section{margin:0}
.sizes b{display:block;font-size:1.7rem;line-height:1.25;font-variant-numeric:tabular-nums}
.sizes span{color:var(--soft)}
.bar{display:flex;height:26px;border-radius:5px;overflow:hidden;background:var(--track);margin:4px 0 10px}
.bar div{min-width:1px}
.k0{background:var(--k0)}.k1{background:var(--k1)}.k2{background:var(--k2)}.k3{background:var(--k3)}.k4{background:var(--k4)}.k5{background:var(--k5)}.k6{background:var(--k6)}
.scroll{overflow-x:auto}
table{border-collapse:collapse;width:100%;font-variant-numeric:tabular-nums}
th,td{text-align:left;padding:5px 10px 5px 0;border-top:1px solid var(--line);vertical-align:top}
thead th{border-top:0;color:var(--soft);font-weight:500;font-size:.87rem;white-space:nowrap;vertical-align:bottom}
tbody th{font-weight:500}
.n{text-align:right;white-space:nowrap}
td.n:last-child,th.n:last-child{padding-right:0}
.share{color:var(--soft)}
.swatch{display:inline-block;width:11px;height:11px;border-radius:3px;margin-right:8px}
.track{background:var(--track);border-radius:3px;height:7px;min-width:70px;margin-top:8px}
.track div{height:7px;border-radius:3px}
code{font:.92em/1.45 ui-monospace,"DejaVu Sans Mono",Menlo,Consolas,monospace;overflow-wrap:anywhere;white-space:pre-wrap}
.map{position:relative;height:560px;border-radius:5px;overflow:hidden;background:var(--track)}
.box{position:absolute;overflow:hidden;border:1px solid var(--card);border-radius:3px;container-type:size;color:#fff;text-shadow:0 1px 2px rgba(0,0,0,.5);font-size:12px;line-height:18px}
.box b{display:block;padding:0 5px;font-weight:500;white-space:nowrap;overflow:hidden;text-overflow:ellipsis}
.box i{font-style:normal;opacity:.8}
.box.has{background:var(--track);color:var(--ink);text-shadow:none;border-color:var(--line)}
.in{position:absolute;left:2px;right:2px;top:19px;bottom:2px}
@container(max-height:17px){.box>b{display:none}}
@container(max-width:26px){.box>b{display:none}}
.key{display:flex;flex-wrap:wrap;gap:4px 18px;color:var(--soft);font-size:.9rem;margin:10px 0 0;padding:0;list-style:none}
footer{margin-top:22px;font-size:.87rem}
@media(max-width:640px){.wide{display:none}main{padding:18px 12px 32px}section{padding:14px 12px}.map{height:420px}th,td{padding-right:8px}}
@media print{section{break-inside:avoid}}
)";

}  // namespace tool
