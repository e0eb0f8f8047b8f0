#include "report.h"

namespace norvakavlor::kavlor {

// Colours are chosen for contrast on both backgrounds, and never say alone what words do not say too.
const char* const kReportStyle = R"css(
:root{--bg:#f5f6f8;--card:#fff;--ink:#1a2230;--soft:#566173;--line:#dfe3e9;--track:#e6e9ee;--link:#1f4fb8;
--good:#1f8a55;--fair:#c98a14;--low:#c8372d;--mid:#6b8fd6;--none:#c3cad5;
--tgood:#17693f;--tfair:#855800;--tlow:#b32820;--bggood:#e2f3ea;--bglow:#fbe6e4;--bgmid:#e4ecfa;--bgnone:#eceff3}
@media (prefers-color-scheme:dark){:root{--bg:#10141b;--card:#191f2a;--ink:#e8ecf3;--soft:#a3aebd;--line:#2c3544;--track:#2a3341;
--link:#8fb4ff;--good:#3fae78;--fair:#d9a13c;--low:#e8635a;--mid:#5f86d4;--none:#4a5566;
--tgood:#62cf9a;--tfair:#e9b65c;--tlow:#ff8c84;--bggood:#173526;--bglow:#412220;--bgmid:#1f2f4d;--bgnone:#29313e}}
*{box-sizing:border-box}html{scroll-behavior:smooth;-webkit-text-size-adjust:100%}
@media (prefers-reduced-motion:reduce){html{scroll-behavior:auto}}
body{margin:0;background:var(--bg);color:var(--ink);font:16px/1.5 system-ui,-apple-system,"Segoe UI",Roboto,"Noto Sans","DejaVu Sans",sans-serif;
overflow-wrap:anywhere}
.wrap{max-width:1180px;margin:0 auto;padding:0 20px}
a{color:var(--link);text-underline-offset:2px}a:focus-visible,summary:focus-visible{outline:3px solid var(--link);outline-offset:2px;border-radius:4px}
.skip{position:absolute;left:-999px}.skip:focus{left:8px;top:8px;background:var(--card);padding:8px}
header{background:var(--card);border-bottom:1px solid var(--line);padding:22px 0 0;margin-bottom:22px}
.kicker{margin:0;color:var(--soft);font-size:14px}h1{margin:2px 0 10px;font-size:30px;line-height:1.2}
nav{display:flex;flex-wrap:wrap;gap:2px 20px;padding-bottom:12px}nav a{text-decoration:none;font-weight:600;font-size:15px;padding:4px 0}
nav a:hover{text-decoration:underline}
h2{font-size:21px;margin:0 0 12px;line-height:1.3}h3{font-size:17px;margin:0;line-height:1.35}h4{font-size:14px;margin:0 0 6px;color:var(--soft)}
.tiles{display:grid;grid-template-columns:repeat(4,1fr);gap:14px}
.tile,.panel,details,table.classes{background:var(--card);border:1px solid var(--line);border-radius:10px}
.tile{padding:14px 18px 16px}.tile h2{font-size:14px;font-weight:600;color:var(--soft);margin:0}
.figure{font-size:40px;font-weight:700;line-height:1.15;margin:2px 0 6px;font-variant-numeric:tabular-nums}
.figure small{font-size:18px;font-weight:500;color:var(--soft)}.under{font-size:14px;color:var(--soft)}.under .bar{display:block;margin:0 0 6px;width:100%}
.t-low{color:var(--tlow)}.t-fair{color:var(--tfair)}.t-good{color:var(--tgood)}
.block{margin-top:36px;scroll-margin-top:12px}
.panels{display:grid;grid-template-columns:repeat(3,1fr);gap:14px;align-items:start}
.panel{padding:14px 18px}.panel ol,.questions,.faults{list-style:none;margin:0;padding:0}
.panel ol{margin-top:6px}.panel li,.questions li{display:flex;gap:6px 16px;justify-content:space-between;align-items:center;padding:8px 0;border-top:1px solid var(--line)}
.panel ol li:first-child,.questions li:first-child{border-top:0}
.who{min-width:0;flex:1 1 auto}.who>span:first-child,.who>a:first-child{font-weight:600}
.panel ol .who>*{display:-webkit-box;-webkit-line-clamp:2;-webkit-box-orient:vertical;overflow:hidden;line-height:1.35}.panel ol .who>a:focus-visible{outline-offset:-2px}
.in{display:block;color:var(--soft);font-size:13px;line-height:1.4}a.in{text-decoration-color:var(--line)}
.val{flex:0 0 auto;display:flex;align-items:center;gap:8px;white-space:nowrap;font-variant-numeric:tabular-nums}
.panel .val .bar{width:56px}.more{margin:8px 0 0;font-size:14px}.fine{color:var(--soft);margin:6px 0 0}
.bar{display:inline-flex;width:110px;height:10px;border-radius:5px;background:var(--track);overflow:hidden;vertical-align:middle}
.bar>span{display:block;height:100%}.good{background:var(--good)}.fair{background:var(--fair)}.low{background:var(--low)}.mid{background:var(--mid)}.none{background:var(--none)}
.bar>span+span{border-left:1px solid var(--card)}
.n{display:inline-block;min-width:3.6em;text-align:right;font-variant-numeric:tabular-nums}
.key{margin:0 0 10px;font-size:14px;color:var(--soft)}.dot{display:inline-block;width:11px;height:11px;border-radius:3px;margin:0 6px 0 16px}.dot:first-child{margin-left:0}
table{border-collapse:separate;border-spacing:0;width:100%;font-size:15px}
th,td{padding:9px 14px;text-align:left;vertical-align:middle;border-top:1px solid var(--line)}
thead th{border-top:0;font-size:13px;color:var(--soft);font-weight:600;overflow-wrap:normal}tbody th{font-weight:600}
.num{text-align:right;font-variant-numeric:tabular-nums;white-space:nowrap}
.classes thead th:nth-child(2),.classes thead th:nth-child(5),.students thead th:nth-child(n+5){text-align:right}
.classes .bar.shares{width:150px}.said{display:block;font-size:13px;color:var(--soft)}.avg{white-space:nowrap}.id{color:var(--soft);font-size:13px;min-width:7.5em}
table.classes{margin-bottom:14px}
details{margin-top:10px;scroll-margin-top:12px}summary{cursor:pointer;padding:12px 18px;display:flex;flex-wrap:wrap;gap:2px 14px;align-items:center;list-style:none}
summary::-webkit-details-marker{display:none}summary h3::before{content:"";display:inline-block;width:7px;height:7px;border:solid var(--soft);border-width:0 2px 2px 0;transform:rotate(-45deg);margin:0 10px 2px 0}
details[open]>summary h3::before{transform:rotate(45deg);margin-bottom:4px}
summary h3{min-width:0}.sum{color:var(--soft);font-size:14px}.sumbar{margin-left:auto;white-space:nowrap}
details:target{border-color:var(--link)}details>.fine{padding:0 18px 14px;margin:0}
.tag{display:inline-block;border-radius:20px;padding:1px 10px;font-size:13px;white-space:nowrap;color:var(--ink)}
.tag.good{background:var(--bggood)}.tag.mid{background:var(--bgmid)}.tag.none{background:var(--bgnone)}.tag.low{background:var(--bglow)}
.body{display:grid;grid-template-columns:300px 1fr;gap:8px 32px;padding:4px 18px 14px}
.spread{margin:0;position:sticky;top:12px;align-self:start}.spread>div:first-child{display:flex;gap:4px;height:150px;align-items:stretch;border-bottom:1px solid var(--none);padding-top:20px}
.col{flex:1;display:flex;flex-direction:column;justify-content:flex-end;align-items:stretch;position:relative}
.col>span{border-radius:3px 3px 0 0;flex:none}.col i{font-style:normal;font-size:12px;text-align:center;color:var(--soft);line-height:16px}
.axis{display:flex;justify-content:space-between;font-size:12px;color:var(--soft)}@media screen and (max-width:900px){.spread{position:static}}
figcaption{font-size:13px;color:var(--soft);text-align:center}
.questions .val{display:grid;grid-template-columns:auto auto;gap:0 8px}.count{grid-column:1/-1;font-size:13px;color:var(--soft);text-align:right}
.questions .val .bar{width:160px}.rem{display:block}.questions .val>.fine{grid-column:1/-1;font-size:13px;margin:0}
.menu{margin-top:10px}.menu h4{margin:12px 0 0}.menu .val{display:block;text-align:right}.menu .val .bar{width:220px}.menu .count{display:block}
.faults{background:var(--card);border:1px solid var(--line);border-radius:10px}.faults li{padding:9px 18px;border-top:1px solid var(--line);font-size:15px}.faults li:first-child{border-top:0}
.doc{display:block;font-weight:600}
.facts{display:grid;grid-template-columns:repeat(5,1fr);gap:10px;margin:0}.facts div{background:var(--card);border:1px solid var(--line);border-radius:10px;padding:10px 16px}
.facts dt{font-size:13px;color:var(--soft)}.facts dd{margin:0;font-size:20px;font-weight:600;font-variant-numeric:tabular-nums}
footer{padding-top:26px;padding-bottom:36px;font-size:13px;color:var(--soft)}
@media screen and (max-width:900px){.tiles{grid-template-columns:repeat(2,1fr)}.panels{grid-template-columns:1fr}.body{grid-template-columns:1fr}.facts{grid-template-columns:repeat(3,1fr)}}
@media screen and (max-width:640px){.wrap{padding:0 12px}h1{font-size:24px}.figure{font-size:30px}.tiles{gap:8px}.tile{padding:10px 12px}
.facts{grid-template-columns:repeat(2,1fr)}.panel,summary{padding:12px 14px}.body{padding:4px 14px 12px}.sumbar{margin-left:0}
table,tbody,tr,tbody th,td{display:block}thead{position:absolute;left:-9999px}
tr{padding:10px 14px;border-top:1px solid var(--line)}th,td{border:0;padding:2px 0}
td{display:flex;justify-content:space-between;gap:12px;text-align:right;white-space:normal!important}td::before{content:attr(data-t);color:var(--soft);font-size:13px;flex:none;text-align:left}
td[data-t=Progress]{flex-wrap:wrap}td .said{flex:1 0 100%}.avg .bar{width:90px;align-self:center;margin-left:auto}.classes .bar.shares{width:140px;align-self:center}
.panel ol .who>*{-webkit-line-clamp:3}
.questions li{flex-direction:column;align-items:stretch}.questions .val{grid-template-columns:1fr auto auto}.questions .val .bar{width:100%;align-self:center}.count{grid-column:auto}
.menu .val .bar{width:100%}.menu .count{text-align:left}.key{display:grid;grid-template-columns:auto 1fr;gap:2px 0;align-items:center}.dot{margin-left:0}}
@media print{@page{size:A4;margin:14mm}:root{--bg:#fff;--card:#fff;--ink:#000;--soft:#444;--line:#ccc;--track:#e6e9ee;--link:#000;--tgood:#17693f;--tfair:#855800;--tlow:#b32820;
--good:#1f8a55;--fair:#c98a14;--low:#c8372d;--mid:#6b8fd6;--none:#c3cad5;--bggood:#e2f3ea;--bglow:#fbe6e4;--bgmid:#e4ecfa;--bgnone:#eceff3}
body{font-size:10pt;-webkit-print-color-adjust:exact;print-color-adjust:exact}nav,.skip{display:none}.wrap{padding:0;max-width:none}header{padding:0;margin-bottom:10px}
.tiles{grid-template-columns:repeat(4,1fr)}.panels{grid-template-columns:1fr 1fr;gap:8px}.figure{font-size:22pt}.tile,.panel{padding:8px 12px}table{font-size:9.5pt}th,td{padding:4px 8px}.panel li,.questions li,.faults li{padding:4px 0}.faults li{padding:4px 12px}.facts{grid-template-columns:repeat(5,1fr)}.body{grid-template-columns:190px 1fr}.spread{position:static}.in,.said,.count{font-size:8.5pt}.said{white-space:nowrap}summary{padding:6px 12px}.block{margin-top:18px}
.tile,.panel,.questions li,tr,.faults li,.spread{break-inside:avoid}h2,h3,h4,summary{break-after:avoid}a{text-decoration:none}
#classes details:not([open]){display:none}summary h3::before{display:none}}
)css";

} // namespace norvakavlor::kavlor
