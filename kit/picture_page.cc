// The page: the ring that one can walk about in, a table, and the buffer trees. All stands in the one file;
// the data are JSON, and the script puts names on the page as text alone, never as markup.
#include "kit/picture_layout.hh"

#include "kit/json.hh"
#include "support/text.hh"

#include <string_view>

namespace {

constexpr std::string_view PAGE = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>@TITLE@: boundary register</title>
<style>
@RING_STYLE@
html,body{margin:0;height:100%;font:13px Helvetica,Arial,sans-serif;color:#111;background:#fff}
body{display:grid;grid-template:auto 1fr/1fr 340px}
header{grid-column:1/3;display:flex;flex-wrap:wrap;gap:6px 10px;align-items:center;padding:6px 10px;background:#eef1f4;border-bottom:1px solid #b8c0c8}
header h1{font-size:16px;margin:0 8px 0 0;max-width:22em;overflow:hidden;text-overflow:ellipsis;white-space:nowrap}
button{font:inherit;padding:2px 9px;border:1px solid #99a;border-radius:4px;background:#fff;cursor:pointer}
button[aria-pressed=true]{background:#0b4f8a;color:#fff}
main{position:relative;overflow:hidden;min-height:0}
main>section{position:absolute;inset:0;overflow:auto}
#ring-view{overflow:hidden;touch-action:none;cursor:grab}
[hidden]{display:none!important}
.ring{width:100%;height:100%;display:block;user-select:none}
.ring .afar,.ring .tie{display:none}
.ring.far .near,.ring.far .name,.ring.far .letter,.ring.far .word,.ring.far .lead,.ring.far .count{display:none}
.ring.far .afar{display:inline}
.ring.far .pad rect,.ring.far .cell rect{stroke:none}
.ring.far .thread,.ring.far .test,.ring.far .tie{vector-effect:non-scaling-stroke}
.ring.all-ties .tie,.ring .tie.on{display:inline}
.ring .tie.on{opacity:1;stroke-width:2;stroke-dasharray:none}
.ring .cell,.ring .pad,.ring .tap,.ring .mark{cursor:pointer}
.ring .on>rect{stroke:#c000a0;stroke-width:4}
.ring.far .on>rect{stroke:#c000a0;stroke-width:7;vector-effect:non-scaling-stroke}
aside{border-left:1px solid #b8c0c8;overflow:auto;padding:8px 10px;min-height:0;overflow-wrap:anywhere}
aside h2{font-size:13px;margin:12px 0 4px}
aside h2:first-child{margin-top:0}
dl{display:grid;grid-template-columns:auto 1fr;gap:2px 8px;margin:0 0 10px}
dt{color:#555}
dd{margin:0}
dd.head{grid-column:1/3;font-weight:bold;border-bottom:1px solid #ccd}
.go{color:#0b4f8a;text-decoration:underline;cursor:pointer;background:none;border:0;padding:0;font:inherit;text-align:left}
#tip{position:fixed;pointer-events:none;background:#fffff2;border:1px solid #776;border-radius:4px;padding:5px 8px;max-width:420px;box-shadow:0 2px 6px #0004;overflow-wrap:anywhere;z-index:5}
#tip dl{margin:0}
#legend{display:flex;flex-wrap:wrap;gap:3px 9px}
#legend b{display:inline-block;width:16px;text-align:center;border:1px solid #222;margin-right:4px}
.finding{display:block;width:100%;margin:0 0 6px;padding:4px 6px;border-left:4px solid #c00000;background:#fbf3f3;border-radius:0}
.finding.warning{border-left-color:#8a6d00;background:#fbf8ee}
.finding.note{border-left-color:#555;background:#f4f4f4}
button.finding{border-width:0 0 0 4px;text-align:left}
table{border-collapse:collapse;white-space:nowrap}
th{position:sticky;top:0;background:#eef1f4;cursor:pointer;text-align:left}
th,td{padding:2px 9px;border-bottom:1px solid #dde;max-width:26em;overflow:hidden;text-overflow:ellipsis}
tbody tr:hover{background:#eaf2fa}
tbody tr.on{background:#f9e3f5}
td i{display:inline-block;width:16px;margin-right:5px;text-align:center;font-style:normal;font-weight:bold;border:1px solid #222}
.tree{padding:6px 12px 14px;border-bottom:1px solid #dde}
.tree h2{font-size:14px;margin:4px 0}
.tree div{overflow-x:auto}
.tree svg{display:block}
.tree line{stroke:#888}
.tree .branch{cursor:pointer}
.tree .branch rect{fill:#dfeaf5;stroke:#0b4f8a}
.tree .branch.root rect{fill:#0b4f8a}
.tree .branch.root text{fill:#fff}
.tree .branch:hover rect{stroke-width:3}
.tree text{font:11px Helvetica,Arial,sans-serif;text-anchor:middle;pointer-events:none}
</style>
</head>
<body>
<header>
<h1 id="title">@TITLE@</h1>
<span id="views"><button data-view="ring">Ring</button> <button data-view="table">Table</button> <button data-view="trees">Buffer trees</button></span>
<label>Search <input id="search" type="search" size="18" placeholder="port, net, number"></label><span id="found"></span>
<span id="tools"><button id="in" title="zoom in">+</button> <button id="out" title="zoom out">&minus;</button> <button id="fit">Fit</button>
<button id="ties" aria-pressed="false">Control lines</button> <button id="fold" aria-pressed="false">Fold buses</button></span>
<span id="legend"></span>
</header>
<main>
<section id="ring-view">
@WHOLE@
@FOLDED@
</section>
<section id="table-view" hidden></section>
<section id="trees-view" hidden></section>
</main>
<aside><h2>Selected</h2><div id="details">Point at a pad or cell; click to keep it here.</div><h2 id="finding-count"></h2><div id="findings"></div><div id="unchecked"></div></aside>
<div id="tip" hidden></div>
<script id="data" type="application/json">@DATA@</script>
<script>@SCRIPT@</script>
</body>
</html>
)";

constexpr std::string_view SCRIPT = R"(
'use strict';
const chip = JSON.parse(document.getElementById('data').textContent);
const $ = id => document.getElementById(id);
const SVG = 'http://www.w3.org/2000/svg';
const PIXELS_OF_A_WORD = 0.55;   // below this scale names can't be read
const counts = new Intl.Collator('en', {numeric: true}).compare;

function make(tag, parent, text, name) {
  const element = document.createElement(tag);
  if (text !== undefined) element.textContent = text;
  if (name) element.className = name;
  if (parent) parent.append(element);
  return element;
}

function draw(tag, parent, values, text) {
  const element = document.createElementNS(SVG, tag);
  for (const key in values) element.setAttribute(key, values[key]);
  if (text !== undefined) element.textContent = text;
  parent.append(element);
  return element;
}

// ---- what is told of a pad, a cell, a finding -------------------------------------------------------

const portsOf = cell => cell.pads.map(pad => chip.pads[pad].port).join(', ');
const listOf = element => (element || '').split(' ').filter(word => word !== '').map(Number);
const kindOf = row => chip.kinds[row.kind];

function cellFacts(number, isWhole) {
  const cell = chip.cells[number], facts = [[`Cell ${number}`], ['port', portsOf(cell)]];
  facts.push(['pin', cell.pads.map(pad => [chip.pads[pad].pin, chip.pads[pad].name].filter(word => word).join(' ')).join(', ')]);
  facts.push(['pad', cell.pads.map(pad => [chip.pads[pad].inst, chip.pads[pad].class].filter(word => word).join(' : ')).join(', ')]);
  facts.push(['kind', kindOf(cell).label + (cell.function === kindOf(cell).label ? '' : ` (${cell.function})`)]);
  if (cell.control >= 0)
    facts.push(['control cell', `${cell.control}, off at ${cell.disable}`, {cells: [cell.control], pads: []}]);
  if (cell.held.length)
    facts.push(['holds', few(cell.held.map(pad => chip.pads[pad].port)), {cells: [], pads: cell.held}]);
  facts.push(['BSDL row', cell.bsdl.join('; ')], ['instance', `${cell.inst} : ${cell.class}`]);
  const nets = cell.nets.filter(net => net[1] !== '');
  if (isWhole) for (const net of nets) facts.push([`net at ${net[0]}`, net[1]]);
  else facts.push(['nets', nets.map(net => net.join(': ')).join('; ')]);
  return facts.filter(fact => fact.length === 1 || fact[1] !== '');
}

function padFacts(number) {
  const pad = chip.pads[number];
  return [[pad.port || pad.name || 'pin'], ['pin', [pad.pin, pad.name].filter(word => word).join(' ')], ['kind', kindOf(pad).label],
          ['pad', [pad.inst, pad.class].filter(word => word).join(' : ')], ['direction', pad.dir], ['no cell', pad.reason],
          ['cells', pad.cells.join(', '), {cells: pad.cells, pads: []}]].filter(fact => fact.length === 1 || fact[1] !== '');
}

const few = words => words.length > 12 ? `${words.slice(0, 12).join(', ')} and ${words.length - 12} more` : words.join(', ');

function branchFacts(tree, branch) {
  return [[branch.parent < 0 ? `${tree.pin} of the TAP` : branch.inst], ['buffer', branch.parent < 0 ? '' : branch.class],
          ['level', String(branch.level)], ['cells', few(branch.cells)], ['other pins', branch.others ? String(branch.others) : '']]
    .filter(fact => fact.length === 1 || fact[1] !== '');
}

/// Facts as a list of definitions; a fact with a place is a link to it, but in the tip, which nobody can click.
function tell(parent, facts) {
  const list = make('dl', parent);
  for (const [word, value, place] of facts) {
    if (value === undefined) { make('dd', list, word, 'head'); continue; }
    make('dt', list, word);
    const cell = make('dd', list);
    if (place && parent !== $('tip')) make('button', cell, value, 'go').onclick = () => jump(place);
    else cell.textContent = value;
  }
}

// ---- selection --------------------------------------------------------------------------------------

let selected = {cells: [], pads: []};

const elementsOf = (selector, ids) => [...document.querySelectorAll(selector)].map(element => ({element, ids: listOf(ids(element))}));
const cellElements = elementsOf('.ring [data-cells]', element => element.dataset.cells);
const padElements = elementsOf('.ring [data-pads]', element => element.dataset.pads);
const ties = [...document.querySelectorAll('.ring .tie')].map(element => ({element, cell: +element.dataset.cell, pad: +element.dataset.pad}));
let tableLines = [];   // the lines of the table with their places, once it was shown

/// Ties of the selection: those that a selected control cell holds, and those that hold a selected pad.
function markSelection(place) {
  const cells = new Set(place.cells), pads = new Set(place.pads);
  for (const cell of place.cells) for (const pad of chip.cells[cell].pads) if (chip.cells[cell].control >= 0) pads.add(pad);
  const wanted = new Set(place.pads);
  for (const {element, ids} of cellElements) element.classList.toggle('on', ids.some(cell => cells.has(cell)));
  for (const {element, ids} of padElements) element.classList.toggle('on', ids.some(pad => wanted.has(pad)));
  for (const tie of ties) tie.element.classList.toggle('on', cells.has(tie.cell) || pads.has(tie.pad));
  for (const {element, place: row} of tableLines) element.classList.toggle('on', row.cells.some(cell => cells.has(cell)) || row.pads.some(pad => wanted.has(pad)));
}

function select(place) {
  selected = place;
  markSelection(place);
  $('details').replaceChildren();
  for (const pad of place.pads.slice(0, 40)) tell($('details'), padFacts(pad));
  for (const cell of place.cells.slice(0, 40)) tell($('details'), cellFacts(cell, place.cells.length === 1));
  const more = place.pads.length + place.cells.length - 80;
  if (more > 0) make('p', $('details'), `and ${more} more`);
}

/// Selects, and brings the first of it to the middle of the ring.
function jump(place) {
  show('ring');
  select(place);
  const element = ring().querySelector('.cell.on, .pad.on');
  if (!element) return;
  const box = element.getBBox(), size = $('ring-view').getBoundingClientRect();
  const width = Math.min(view.w, Math.max(size.width / 1.2, 300)), height = width * size.height / Math.max(size.width, 1);
  look({x: box.x + box.width / 2 - width / 2, y: box.y + box.height / 2 - height / 2, w: width, h: height});
}

// ---- the ring: zoom and pan -------------------------------------------------------------------------

let isFolded = false, view = {x: 0, y: 0, w: 1, h: 1};
const ring = () => $(isFolded ? 'folded' : 'whole');
const wholeOf = svg => { const [x, y, w, h] = svg.dataset.whole.split(' ').map(Number); return {x, y, w, h}; };

function look(box) {
  const svg = ring(), size = $('ring-view').getBoundingClientRect();
  view = box;
  svg.setAttribute('viewBox', [box.x, box.y, box.w, box.h].map(value => value.toFixed(2)).join(' '));
  svg.classList.toggle('far', Math.min(size.width / box.w, size.height / box.h) < PIXELS_OF_A_WORD);
}

const fit = () => look(wholeOf(ring()));

/// `x` and `y` are the place of the window that stays where it is.
function zoom(factor, x, y) {
  const matrix = ring().getScreenCTM();
  if (!matrix) return;
  const most = wholeOf(ring()).w * 1.5, width = Math.min(Math.max(view.w / factor, 60), most), real = width / view.w;
  const at = new DOMPoint(x, y).matrixTransform(matrix.inverse());
  look({x: at.x - (at.x - view.x) * real, y: at.y - (at.y - view.y) * real, w: width, h: view.h * real});
}

function zoomMiddle(factor) {
  const size = $('ring-view').getBoundingClientRect();
  zoom(factor, size.left + size.width / 2, size.top + size.height / 2);
}

function fold(isWanted) {
  isFolded = isWanted;
  $('whole').toggleAttribute('hidden', isFolded);
  $('folded').toggleAttribute('hidden', !isFolded);
  $('fold').setAttribute('aria-pressed', isFolded);
  fit();
}

let drag = null;
$('ring-view').addEventListener('wheel', event => {
  event.preventDefault();
  zoom(event.deltaY < 0 ? 1.25 : 0.8, event.clientX, event.clientY);
}, {passive: false});
$('ring-view').addEventListener('pointerdown', event => { drag = {x: event.clientX, y: event.clientY, box: view, isFar: false}; });
addEventListener('pointerup', () => { setTimeout(() => { drag = null; }); });
addEventListener('pointermove', event => {
  if (!drag || !event.buttons) return;
  const scale = ring().getScreenCTM().a, dx = event.clientX - drag.x, dy = event.clientY - drag.y;
  drag.isFar = drag.isFar || Math.hypot(dx, dy) > 4;
  if (drag.isFar) look({...drag.box, x: drag.box.x - dx / scale, y: drag.box.y - dy / scale});
});

// ---- pointing ---------------------------------------------------------------------------------------

/// What an element of the ring stands for.
function placeOf(element) {
  const at = element.closest('[data-cells],[data-pads]');
  return at && {cells: listOf(at.dataset.cells), pads: listOf(at.dataset.pads)};
}

function showTip(event, facts) {
  const tip = $('tip');
  tip.replaceChildren();
  for (const part of facts) tell(tip, part);
  tip.hidden = facts.length === 0;
  tip.style.left = `${Math.max(Math.min(event.clientX + 14, innerWidth - tip.offsetWidth - 8), 0)}px`;
  tip.style.top = `${Math.max(Math.min(event.clientY + 14, innerHeight - tip.offsetHeight - 8), 0)}px`;
}

function factsOf(place) {
  const facts = [...place.pads.slice(0, 3).map(padFacts), ...place.cells.slice(0, 3).map(cell => cellFacts(cell, false))];
  const more = place.pads.length + place.cells.length - facts.length;
  return more > 0 ? [...facts, [[`and ${more} more`]]] : facts;
}

$('ring-view').addEventListener('pointerover', event => {
  const finding = event.target.closest('[data-finding]'), place = placeOf(event.target);
  if (drag && drag.isFar) return;
  if (finding) showTip(event, [findingFacts(chip.findings[finding.dataset.finding])]);
  else if (place) showTip(event, factsOf(place));
  else if (event.target.closest('.tap')) showTip(event, [[['TAP'], ['instance', chip.tap.inst], ['class', chip.tap.class], ['cells', String(chip.cells.length)]]]);
  else $('tip').hidden = true;
  const shown = place || {cells: [], pads: []};
  markSelection({cells: [...selected.cells, ...shown.cells], pads: [...selected.pads, ...shown.pads]});
});
$('ring-view').addEventListener('pointerleave', () => { $('tip').hidden = true; markSelection(selected); });
$('ring-view').addEventListener('click', event => {
  const finding = event.target.closest('[data-finding]'), place = placeOf(event.target);
  if (drag && drag.isFar) return;
  if (finding) $('findings').children[finding.dataset.finding].scrollIntoView({block: 'nearest'});
  select(finding ? findingPlace(chip.findings[finding.dataset.finding]) : place || {cells: [], pads: []});
});
// The names of elements are told by the page's own tip; the plain file keeps its titles.
for (const title of document.querySelectorAll('.ring title')) title.remove();

// ---- findings ---------------------------------------------------------------------------------------

const findingPlace = finding => ({cells: finding.cells, pads: finding.pads});
const findingFacts = finding => [[`${finding.severity}: ${finding.rule}`], ['found by', `rimkit ${finding.verb}`], ['says', finding.text], ['file', finding.file],
  ['instance', finding.inst], ['net', finding.net], ['port', finding.port], ['effect', finding.effect], ['cure', finding.cure]]
  .filter(fact => fact.length === 1 || fact[1] !== '');

$('finding-count').textContent = `Findings of rimkit check and doctor: ${chip.findings.length}`;
for (const line of chip.unchecked) make('p', $('unchecked'), line);
for (const finding of chip.findings) {
  const words = [finding.file, finding.port && `port ${finding.port}`, finding.inst && `instance ${finding.inst}`].filter(word => word).join(', ');
  const button = make('button', $('findings'), `${finding.severity} ${finding.verb} ${finding.rule}: ${finding.text}${words && ` (${words})`}`, `finding ${finding.severity}`);
  button.onclick = () => { jump(findingPlace(finding)); tell($('details'), findingFacts(finding)); };
}

// ---- search -----------------------------------------------------------------------------------------

let hits = [], hit = 0;

/// How well a text fits: the whole of it, its start, a part; 9 for not at all.
function rank(text, word, least) {
  const at = text.toLowerCase().indexOf(word);
  return at < 0 ? 9 : text.length === word.length ? least : least + (at === 0 ? 1 : 2);
}

function search(text) {
  const word = text.trim().toLowerCase();
  hits = [];
  hit = 0;
  if (word !== '') {
    chip.cells.forEach((cell, number) => {
      const ranks = [String(number) === word ? 0 : 9, rank(cell.inst, word, 4), ...cell.pads.map(pad => rank(chip.pads[pad].port, word, 1)),
                     ...cell.nets.map(net => rank(net[1], word, 4))];
      hits.push({rank: Math.min(...ranks), place: {cells: [number], pads: []}});
    });
    chip.pads.forEach((pad, number) => {
      const ranks = [rank(pad.port, word, pad.cells.length ? 9 : 1), pad.pin.toLowerCase() === word ? 3 : 9, rank(pad.inst, word, 4)];
      hits.push({rank: Math.min(...ranks), place: {cells: [], pads: [number]}});
    });
    hits = hits.filter(row => row.rank < 9).sort((a, b) => a.rank - b.rank);
  }
  $('found').textContent = word === '' ? '' : hits.length ? `1 of ${hits.length}` : 'nothing';
  if (hits.length) jump(hits[0].place);
}
$('search').addEventListener('input', () => search($('search').value));
$('search').addEventListener('keydown', event => {
  if (event.key !== 'Enter' || !hits.length) return;
  hit = (hit + 1) % hits.length;
  $('found').textContent = `${hit + 1} of ${hits.length}`;
  jump(hits[hit].place);
});

// ---- the table --------------------------------------------------------------------------------------

const COLUMNS = [['number', row => row.number], ['port', row => row.port], ['pin', row => row.pin], ['pad', row => row.pad], ['kind', row => row.kind.label],
  ['function', row => row.function], ['control', row => row.control], ['off at', row => row.disable], ['BSDL row', row => row.bsdl],
  ['class', row => row.class], ['instance', row => row.inst], ['nets', row => row.nets]];
const table = make('table', $('table-view')), heads = make('tr', make('thead', table)), body = make('tbody', table);
let rows = null, sortedBy = -1, isDown = false;

function tableRows() {
  const cells = chip.cells.map((cell, number) => ({number: String(number), port: portsOf(cell), pin: cell.pads.map(pad => chip.pads[pad].pin).join(', '),
    pad: cell.pads.map(pad => chip.pads[pad].inst).join(', '), kind: kindOf(cell), function: cell.function, control: cell.control < 0 ? '' : String(cell.control),
    disable: cell.disable < 0 ? '' : String(cell.disable), bsdl: cell.bsdl.join('; '), class: cell.class, inst: cell.inst,
    nets: cell.nets.filter(net => net[1] !== '').map(net => net.join(' ')).join(', '), place: {cells: [number], pads: []}}));
  const pads = chip.pads.map((pad, number) => ({number: '', port: pad.port, pin: pad.pin, pad: pad.inst, kind: kindOf(pad), function: pad.reason, control: '',
    disable: '', bsdl: '', class: '', inst: '', nets: '', place: {cells: [], pads: [number]}}));
  return [...cells, ...pads.filter(row => !chip.pads[row.place.pads[0]].cells.length)];
}

function sortTable(column) {
  const value = COLUMNS[column][1];
  isDown = column === sortedBy && !isDown;
  sortedBy = column;
  const order = (a, b) => (value(a) === '') - (value(b) === '') || counts(value(a), value(b)) * (isDown ? -1 : 1);
  rows = (rows || tableRows()).sort(order);
  body.replaceChildren();
  tableLines = [];
  for (const row of rows) {
    const line = make('tr', body);
    tableLines.push({element: line, place: row.place});
    line.onclick = () => jump(row.place);
    for (const [name, text] of COLUMNS) {
      const cell = make('td', line);
      if (name === 'kind') {
        const letter = make('i', cell, row.kind.letter);
        letter.style.background = row.kind.fill;
        letter.style.color = row.kind.ink;
      }
      cell.append(text(row));
      cell.title = text(row);
    }
  }
  heads.replaceChildren();
  COLUMNS.forEach(([name], i) => { make('th', heads, name + (i === column ? isDown ? ' \u25bc' : ' \u25b2' : '')).onclick = () => sortTable(i); });
  markSelection(selected);
}

// ---- buffer trees -----------------------------------------------------------------------------------

const LEAF = 40, LEVEL = 54;

/// Leaves side by side, each branch above the middle of its children.
function placeTree(tree) {
  const children = tree.branches.map(() => []);
  tree.branches.forEach((branch, i) => { if (branch.parent >= 0) children[branch.parent].push(i); });
  const places = [];
  let leaves = 0;
  const visit = at => {
    children[at].forEach(visit);
    const list = children[at];
    places[at] = list.length ? (places[list[0]] + places[list[list.length - 1]]) / 2 : LEAF * (leaves++ + 0.5);
  };
  visit(0);
  return {places, width: Math.max(leaves * LEAF, 120)};
}

function showTree(tree) {
  const box = make('div', $('trees-view'), undefined, 'tree'), buffers = tree.branches.length - 1;
  const most = Math.max(...tree.branches.map((branch, i) => branch.cells.length + branch.others + tree.branches.filter(row => row.parent === i).length));
  make('h2', box, `${tree.signal}: ${tree.pin} of the TAP`);
  make('p', box, `${tree.loads} loads, ${buffers} buffers, longest path ${tree.levels} ${tree.levels === 1 ? 'buffer' : 'buffers'}, at most ${most} pins on one net`);
  const levels = [];
  for (const branch of tree.branches) if (branch.parent >= 0) levels[branch.level] = (levels[branch.level] || 0) + 1;
  if (buffers) make('p', box, levels.map((count, level) => `level ${level}: ${count}`).filter(word => word).join(', '));
  // Cells and pins at a branch and behind it; parents stand before children.
  const below = tree.branches.map(branch => branch.cells.length + branch.others);
  for (let i = below.length - 1; i > 0; --i) below[tree.branches[i].parent] += below[i];
  const {places, width} = placeTree(tree), frame = make('div', box), svg = draw('svg', frame, {width: width + 8, height: (tree.levels + 1) * LEVEL});
  const y = branch => branch.level * LEVEL + 16, shift = tree.branches.length === 1 ? 40 : 4;
  tree.branches.forEach((branch, i) => {
    if (branch.parent >= 0)
      draw('line', svg, {x1: places[i] + shift, y1: y(branch), x2: places[branch.parent] + shift, y2: y(tree.branches[branch.parent])});
  });
  tree.branches.forEach((branch, i) => {
    const group = draw('g', svg, {class: branch.parent < 0 ? 'branch root' : 'branch'});
    draw('rect', group, {x: places[i] + shift - 17, y: y(branch) - 11, width: 34, height: 22, rx: 4});
    draw('text', group, {x: places[i] + shift, y: y(branch) + 4}, below[i]);
    group.onpointerover = event => showTip(event, [branchFacts(tree, branch)]);
    group.onpointerleave = () => { $('tip').hidden = true; };
    group.onclick = () => { if (branch.cells.length) { jump({cells: branch.cells, pads: []}); fit(); } };
  });
  frame.scrollLeft = places[0] - frame.clientWidth / 2;
}

// ---- views ------------------------------------------------------------------------------------------

function show(name) {
  for (const word of ['ring', 'table', 'trees']) $(`${word}-view`).hidden = word !== name;
  for (const button of document.querySelectorAll('#views button')) button.setAttribute('aria-pressed', button.dataset.view === name);
  $('tools').style.visibility = name === 'ring' ? 'visible' : 'hidden';
  $('tip').hidden = true;
  if (name === 'table' && rows === null) sortTable(0);
  if (name === 'trees' && !$('trees-view').children.length) chip.trees.forEach(showTree);
}

/// A link to a place: #search=txd, #view=table, #fold=1, #sort=port
function follow() {
  const words = new URLSearchParams(location.hash.slice(1)), column = COLUMNS.findIndex(row => row[0] === words.get('sort'));
  if (words.has('fold')) fold(words.get('fold') === '1');
  if (words.has('search')) { $('search').value = words.get('search'); search(words.get('search')); }
  if (['ring', 'table', 'trees'].includes(words.get('view'))) show(words.get('view'));
  if (column >= 0) { show('table'); sortTable(column); }
}

for (const kind of chip.kinds) {
  const key = make('span', $('legend')), letter = make('b', key, kind.letter);
  letter.style.background = kind.fill;
  letter.style.color = kind.ink;
  key.append(kind.label);
}
for (const button of document.querySelectorAll('#views button')) button.onclick = () => show(button.dataset.view);
$('in').onclick = () => zoomMiddle(1.5);
$('out').onclick = () => zoomMiddle(1 / 1.5);
$('fit').onclick = fit;
$('fold').onclick = () => fold(!isFolded);
$('fold').hidden = !chip.buses;
$('ties').onclick = () => {
  const isOn = $('ties').getAttribute('aria-pressed') !== 'true';
  $('ties').setAttribute('aria-pressed', isOn);
  for (const svg of [$('whole'), $('folded')]) svg.classList.toggle('all-ties', isOn);
};
for (const svg of [$('whole'), $('folded')]) svg.dataset.whole = svg.getAttribute('viewBox');
show('ring');
fold(false);
follow();
addEventListener('hashchange', follow);
addEventListener('resize', () => look(view));
)";

// ---- the data -----------------------------------------------------------------------------------------

/// JSON inside a script element: no '<' may begin its end, or a comment.
std::string data_text(const std::string &text) {
    std::string good;
    for (char c : json_text(text))
        good += c == '<' ? std::string("\\u003c") : std::string(1, c);
    return good;
}

std::string number_list(const std::vector<int32_t> &numbers) {
    std::string text;
    for (int32_t number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return "[" + text + "]";
}

/// One member of an object; the first has no comma in front.
void add_text(std::string &object, const char *name, const std::string &value) {
    object += (object.empty() ? "{\"" : ",\"") + std::string(name) + "\":" + data_text(value);
}

void add_number(std::string &object, const char *name, int64_t value) {
    object += (object.empty() ? "{\"" : ",\"") + std::string(name) + "\":" + std::to_string(value);
}

void add_raw(std::string &object, const char *name, const std::string &value) {
    object += (object.empty() ? "{\"" : ",\"") + std::string(name) + "\":" + value;
}

/// The rows as a list of objects, a line each.
template <class ROW, class WRITE> std::string object_list(const std::vector<ROW> &rows, WRITE write) {
    std::string list;
    for (const ROW &row : rows)
        list += (list.empty() ? "\n" : ",\n") + write(row) + "}";
    return "[" + list + "]";
}

std::string pad_data(const PICTURE_PAD &pad) {
    std::string object;
    add_text(object, "port", pad.port);
    add_text(object, "pin", pad.pin);
    add_text(object, "name", pad.package_name);
    add_text(object, "dir", pad.direction);
    add_text(object, "inst", pad.instance);
    add_text(object, "class", pad.class_name);
    add_number(object, "kind", pad.kind);
    add_text(object, "reason", pad.reason);
    add_raw(object, "cells", number_list(pad.cells));
    return object;
}

std::string cell_data(const PICTURE_CELL &cell) {
    std::string object, rows, nets;
    for (const std::string &row : cell.bsdl_rows)
        rows += (rows.empty() ? "" : ",") + data_text(row);
    for (const auto &[pin, net] : cell.nets)
        nets += (nets.empty() ? "[" : ",[") + data_text(pin) + "," + data_text(net) + "]";
    add_number(object, "kind", cell.kind);
    add_text(object, "function", cell.function);
    add_text(object, "inst", cell.instance);
    add_text(object, "class", cell.class_name);
    add_raw(object, "pads", number_list(cell.pads));
    add_number(object, "control", cell.control);
    add_number(object, "disable", cell.disable);
    add_raw(object, "held", number_list(cell.held));
    add_raw(object, "bsdl", "[" + rows + "]");
    add_raw(object, "nets", "[" + nets + "]");
    return object;
}

std::string branch_data(const PICTURE_BRANCH &branch) {
    std::string object;
    add_text(object, "inst", branch.instance);
    add_text(object, "class", branch.class_name);
    add_number(object, "parent", branch.parent);
    add_number(object, "level", branch.level);
    add_raw(object, "cells", number_list(branch.cells));
    add_number(object, "others", branch.others);
    return object;
}

std::string tree_data(const PICTURE_TREE &tree) {
    std::string object;
    add_text(object, "signal", tree.signal);
    add_text(object, "pin", tree.pin);
    add_number(object, "levels", tree.levels);
    add_number(object, "loads", tree.loads);
    add_raw(object, "branches", object_list(tree.branches, branch_data));
    return object;
}

std::string finding_data(const PICTURE_FINDING &finding) {
    std::string object;
    add_text(object, "severity", severity_word(finding.severity));
    add_text(object, "verb", finding.verb);
    add_text(object, "rule", finding.rule);
    add_text(object, "text", finding.text);
    add_text(object, "effect", finding.effect);
    add_text(object, "cure", finding.cure);
    add_text(object, "file", finding.file);
    add_text(object, "inst", finding.instance);
    add_text(object, "net", finding.net);
    add_text(object, "port", finding.port);
    add_raw(object, "cells", number_list(finding.cells));
    add_raw(object, "pads", number_list(finding.pads));
    add_raw(object, "tap", finding.is_at_tap ? "true" : "false");
    return object;
}

std::string kinds_data() {
    std::string list;
    for (const PICTURE_KIND_INFO &kind : PICTURE_KINDS) {
        std::string object;
        add_text(object, "label", kind.label);
        add_text(object, "letter", kind.letter);
        add_text(object, "fill", kind.fill);
        add_text(object, "ink", kind.ink);
        list += (list.empty() ? "" : ",") + object + "}";
    }
    return "[" + list + "]";
}

std::string page_data(const PICTURE &picture, bool has_buses) {
    std::string object, tap;
    add_text(tap, "inst", picture.tap_instance);
    add_text(tap, "class", picture.tap_class);
    add_text(object, "design", picture.design);
    add_text(object, "package", picture.package);
    add_raw(object, "tap", tap + "}");
    add_raw(object, "buses", has_buses ? "true" : "false");
    add_raw(object, "kinds", kinds_data());
    add_raw(object, "pads", object_list(picture.pads, pad_data));
    add_raw(object, "cells", object_list(picture.cells, cell_data));
    add_raw(object, "trees", object_list(picture.trees, tree_data));
    add_raw(object, "findings", object_list(picture.findings, finding_data));
    std::string unchecked;
    for (const std::string &line : picture.unchecked)
        unchecked += (unchecked.empty() ? "" : ",") + data_text(line);
    add_raw(object, "unchecked", "[" + unchecked + "]");
    return object + "}";
}

} // namespace

std::string picture_page(const PICTURE &picture, const PICTURE_LAYOUT &whole, const PICTURE_LAYOUT &folded) {
    const std::pair<std::string_view, std::string> parts[] = {
        {"@TITLE@", xml_text(picture.design)},
        {"@RING_STYLE@", picture_style()},
        {"@WHOLE@", picture_svg(picture, whole, "whole", false)},
        {"@FOLDED@", picture_svg(picture, folded, "folded", false)},
        {"@DATA@", page_data(picture, folded.slots.size() < whole.slots.size())},
        {"@SCRIPT@", std::string(SCRIPT)},
    };
    std::string text;
    for (size_t at = 0; at < PAGE.size();) {
        // One pass, so that a name that looks like a mark stays a name.
        bool is_part = false;
        for (const auto &[mark, part] : parts)
            if (PAGE.compare(at, mark.size(), mark) == 0) {
                text += part;
                at += mark.size();
                is_part = true;
                break;
            }
        if (!is_part)
            text += PAGE[at++];
    }
    return text;
}
