#!/usr/bin/env python3
"""What `rimkit picture` draws: the files are well formed, each pad and cell has its place and its facts, no two lie on one
another; and in Chromium, where it is installed, search, pointing, zoom, folding and sorting do what they should.

    picture_test.py --chip uart|ring|names|large --bin build/bin --work DIR
"""

import html
import json
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree

sys.dont_write_bytecode = True
import bsdl_chips  # noqa: E402
from bsdl_chips import EXAMPLE, HERE, ROOT, Failed, expect  # noqa: E402

ODD_PORT, ODD_PAD = "t<x>&\"'d", "pad</script><b>\"&@DATA@"
SVG = "{http://www.w3.org/2000/svg}"

# Done in the page as by a hand. What it shows then is handed over as JSON.
HAND = """
const seen = {}, over = (element, kind, more) => {
  const box = element.getBoundingClientRect(), at = {bubbles: true, cancelable: true, clientX: box.x + box.width / 2, clientY: box.y + box.height / 2};
  element.dispatchEvent(kind === 'wheel' ? new WheelEvent(kind, {...at, ...more}) : kind === 'click' ? new MouseEvent(kind, at) : new PointerEvent(kind, {...at, ...more}));
  return at;
};
const type = text => { $('search').value = text; $('search').dispatchEvent(new Event('input')); };
const shown = () => ring().viewBox.baseVal.width;
seen.whole = shown();
seen.far = ring().classList.contains('far');
type(SEARCH);
seen.found = $('details').textContent;
seen.count = $('found').textContent;
const target = ring().querySelector('.cell.on, .pad.on'), before = shown();
const place = target.getBoundingClientRect(), frame = $('ring-view').getBoundingClientRect();
seen.inside = place.left >= frame.left && place.right <= frame.right && place.top >= frame.top && place.bottom <= frame.bottom;
over(target, 'pointerover');
seen.tip = $('tip').hidden ? '' : $('tip').textContent;
const at = over(target, 'wheel', {deltaY: -1}), after = target.getBoundingClientRect();
seen.zoom = before / shown();
seen.moved = Math.hypot(after.x + after.width / 2 - at.clientX, after.y + after.height / 2 - at.clientY);
over(ring(), 'click');
seen.unselected = document.querySelectorAll('.ring .on').length;
const held = document.querySelector('#whole .tie');
if (held) { over(document.querySelector(`#whole [data-cells="${held.dataset.cell}"]`), 'click'); seen.ties = document.querySelectorAll('#whole .tie.on').length; seen.held = chip.cells[held.dataset.cell].held.length; }
$('fold').click();
seen.folded = [...document.querySelectorAll('#folded .cell')].flatMap(element => listOf(element.dataset.cells)).sort((a, b) => a - b).join() === chip.cells.map((_, i) => i).join();
$('fit').click();
document.querySelector('[data-view=table]').click();
const column = i => [...document.querySelectorAll('#table-view tbody tr')].map(row => row.children[i].textContent);
seen.numbers = column(0).slice(0, chip.cells.length).join() === chip.cells.map((_, i) => i).join();
document.querySelectorAll('#table-view th')[1].click();
const up = column(1).filter(text => text);
document.querySelectorAll('#table-view th')[1].click();
seen.turned = up.join() === column(1).filter(text => text).reverse().join() && up.length > 1 && counts(up[0], up[up.length - 1]) < 0;
document.querySelector('[data-view=trees]').click();
seen.trees = [...document.querySelectorAll('.tree p:nth-of-type(1)')].map(element => element.textContent);
if (chip.findings.length) { $('findings').children[0].click(); seen.finding = $('details').textContent; seen.marked = document.querySelectorAll('#folded .on').length; }
document.body.setAttribute('data-seen', JSON.stringify(seen));
"""


def browse(work, page, search):
    """What the page showed, or null where there is no browser."""
    if shutil.which("chromium") is None:
        return None
    text = (work / page).read_text()
    end = text.rindex("</body>")
    hand = HAND.replace("SEARCH", json.dumps(search).replace("<", "\\u003c"))
    (work / "hand.html").write_text(f"{text[:end]}<script>{hand}</script>{text[end:]}")
    done = subprocess.run(["chromium", "--headless", "--no-sandbox", "--disable-gpu", f"--user-data-dir={work / 'profile'}", "--window-size=1400,900",
                           "--enable-logging=stderr", "--dump-dom", f"file://{work / 'hand.html'}"], capture_output=True, text=True, timeout=120)
    expect([line for line in done.stderr.splitlines() if "CONSOLE" in line], [])
    seen = re.search(r'data-seen="([^"]*)"', done.stdout)
    if seen is None:
        raise Failed(f"the page did not come to its end\n{done.stderr[-1000:]}")
    return json.loads(html.unescape(seen.group(1)))


def overlaps(boxes):
    """Pairs of boxes that lie on one another, by a sweep from left to right."""
    boxes, found = sorted(boxes), []
    for i, (x, y, w, h) in enumerate(boxes):
        for other in boxes[i + 1:i + 3000]:
            if other[0] >= x + w:
                break
            if y < other[1] + other[3] and other[1] < y + h:
                found.append(((x, y, w, h), other))
    return found


def plain(name):
    """A port as both files may write it: rdata[3], rdata(3), rdata_3."""
    return re.sub(r"\W+", "_", name).strip("_") or "*"


def read_picture(bench, design, *options):
    """Draws twice: same bytes. The elements of the SVG, and the data of the page."""
    texts = []
    for _ in range(2):
        bench.run("rimkit", "picture", *options, design)
        texts.append([(bench.work / f"{design}{ending}").read_bytes() for ending in (".svg", ".html")])
    expect(texts[0] == texts[1], True)
    svg = xml.etree.ElementTree.fromstring(texts[0][0])
    data = re.search(r'<script id="data" type="application/json">(.*?)</script>', texts[0][1].decode(), re.S).group(1)
    return svg, json.loads(data)


def judge(bench, design, search):
    """The drawing against the BSDL file, which is held against the netlist by its own tests."""
    bench.run("rimkit", "bsdl", design)
    svg, chip = read_picture(bench, design)
    groups = {name: [group for group in svg.iter(SVG + "g") if name in group.get("class", "").split()] for name in ("cell", "pad", "tap")}
    expect([int(cell.get("data-cells")) for cell in groups["cell"]], list(reversed(range(len(chip["cells"])))))
    expect([int(pad.get("data-pads")) for pad in groups["pad"]], list(range(len(chip["pads"]))))
    rects = [group.find(SVG + "rect") for name in groups for group in groups[name]]
    expect(overlaps([tuple(float(rect.get(word)) for word in ("x", "y", "width", "height")) for rect in rects]), [])
    text = (bench.work / f"{design}.bsd").read_text()
    told = dict(re.findall(r'"(\d+) \((?:\w+), ([^,]+),', text))
    for number, cell in enumerate(chip["cells"]):
        words = [plain(chip["pads"][pad]["port"]) for pad in cell["pads"]]
        if plain(told[str(number)]) not in (words or ["*"]) or not cell["bsdl"][0].startswith(f"{number} ("):
            raise Failed(f"cell {number}: {words}, {cell['bsdl']}; the description has {told[str(number)]}")
    pins = re.findall(r"^(\S+) +(\S+) +(\S+)", (bench.work / f"{design}.pin").read_text(), re.M)
    rows = [row for row in pins if row[0][0] not in "%#/"]
    expect([pad["pin"] for pad in chip["pads"]][:len(rows)], [row[0] for row in rows])
    for tree in chip["trees"]:
        expect(len({cell for branch in tree["branches"] for cell in branch["cells"]}) <= len(chip["cells"]), True)
    seen = browse(bench.work, f"{design}.html", search)
    if seen is not None:
        facts = {word: seen[word] for word in ("inside", "unselected", "folded", "numbers", "turned")}
        expect(facts, {"inside": True, "unselected": 0, "folded": True, "numbers": True, "turned": True})
        expect((search in seen["found"], search in seen["tip"], seen["zoom"] > 1.2, seen["moved"] < 3, len(seen["trees"])),
               (True, True, True, True, len(chip["trees"])))
        expect(seen.get("ties"), seen.get("held"))
    return chip, seen


def copy_example(bench, change=lambda name, text: text):
    for name in ("cells.v", "chip.lib", "chip.bsc", "chip.pin", "chip.v"):
        (bench.work / name).write_text(change(name, (EXAMPLE / name).read_text()))
    bench.insert("chip", ["cells.v"], ["chip.v"])


def judge_placed(bench):
    """A placement that turns the ring by a side, one way along each; what it does not place stands behind that."""
    svg, chip = read_picture(bench, "chip")
    pads = [pad["inst"] for pad in chip["pads"] if pad["inst"]]
    share = -(-len(pads) // 4)
    lines = [(pad, i // share, i % share * 100 + 50) for i, pad in enumerate(pads) if pad != "pad_clk"]
    spots = {0: "( {0} 0 ) N", 1: "( 9000 {0} ) W", 2: "( {1} 9000 ) S", 3: "( 0 {1} ) E"}
    text = "".join(f"- {pad} PAD + FIXED {spots[side].format(at, 9000 - at)} ;\n" for pad, side, at in lines)
    (bench.work / "chip.def").write_text(f"DESIGN chip ;\nCOMPONENTS {len(lines)} ;\n{text}END COMPONENTS\n")
    svg, chip = read_picture(bench, "chip", "--def", "chip.def")
    rects = {int(group.get("data-pads")): [float(group.find(SVG + "rect").get(word)) for word in ("x", "y")]
             for group in svg.iter(SVG + "g") if "pad" in group.get("class", "").split()}
    place = {pad["inst"]: rects[i] for i, pad in enumerate(chip["pads"]) if pad["inst"]}
    # Down the left side, along the lower one, up the right side, and back along the upper one.
    for side, axis, turned in ((0, 0, 1), (1, 1, -1), (2, 0, -1), (3, 1, 1)):
        row = [place[pad] for pad, on, _ in lines if on == side]
        expect([spot[axis] * turned for spot in row], sorted(spot[axis] * turned for spot in row))
        expect(len({spot[1 - axis] for spot in row}), 1)
    edges = [next(place[pad] for pad, on, _ in lines if on == side) for side in range(4)]
    expect((edges[0][1] > edges[2][1], edges[1][0] > edges[3][0]), (True, True))
    expect(len({tuple(spot) for spot in rects.values()}), len(chip["pads"]))
    (bench.work / "other.def").write_text("DESIGN other ;\nCOMPONENTS 1 ;\n- u1 X + FIXED ( 0 0 ) N ;\nEND COMPONENTS\n")
    expect("places none of the pads" in bench.run("rimkit", "picture", "--def", "other.def", "chip"), True)


def judge_findings(bench):
    """What the check says with its engines and without, and what the doctor says of the descriptions as they lie there now."""
    def told(*options):
        _, chip = read_picture(bench, "chip", *options)
        return {(row["verb"], row["rule"]): row for row in chip["findings"]}, chip
    plain, chip = told()
    expect(("without simulation" in chip["unchecked"][0], [verb for verb, _ in plain]), (True, ["doctor"]))
    if all(shutil.which(engine) for engine in ("iverilog", "yosys")):
        whole, chip = told("--engines", "--cells", "cells.v")
        output = json.loads(bench.run("rimkit", "check", "--json", "--cells", "cells.v", "chip"))
        expect([row["text"] for row in chip["findings"] if row["verb"] == "check"], [row["text"] for row in output["findings"]])
        expect(chip["unchecked"], [])
    lib, pin = ((bench.work / name).read_text() for name in ("chip.lib", "chip.pin"))
    (bench.work / "chip.pin").write_text(re.sub(r"^.*\brxd\b.*\n", "", pin, flags=re.M))
    found, chip = told()
    expect([chip["pads"][pad]["port"] for pad in found["doctor", "port-without-row"]["pads"]], ["rxd"])
    (bench.work / "chip.pin").write_text(pin)
    _, chip = told()
    expect(("doctor", "port-without-row") in {(row["verb"], row["rule"]) for row in chip["findings"]}, False)
    bench.run("rimkit", "picture", "chip", "-no_such_switch", status=2)


def test_uart(bench, given):
    copy_example(bench)
    chip, _ = judge(bench, "chip", "txd")
    if (bench.work / "chip.svg").read_text() != (ROOT / "docs" / "uart_chip.svg").read_text():
        raise Failed(f"docs/uart_chip.svg is another picture than {bench.work}/chip.svg")
    reasons = {pad["port"] or pad["name"]: pad["reason"] for pad in chip["pads"]}
    expect((reasons["tdo"], reasons["VDD"], reasons["txd"]), ("TDO of the TAP", "no port of the chip, as power and ground", ""))
    cell = chip["cells"][next(pad for pad in chip["pads"] if pad["port"] == "rdata[3]")["cells"][0]]
    expect((cell["control"], cell["disable"]), (1, 1))
    expect([chip["pads"][pad]["port"] for pad in chip["cells"][1]["held"]], [f"rdata[{bit}]" for bit in range(8)])
    judge_placed(bench)
    judge_findings(bench)
    # A chain that ends early is drawn as far as it goes, and never as one that comes to TDO.
    legs = re.search(r'class="thread" d="([^"]*)"', (bench.work / "chip.svg").read_text()).group(1).count("M")
    flat = (bench.work / "chip_jtag_flat.v").read_text()
    (bench.work / "broken.v").write_text(re.sub(r"\.SI *\(BCELL20_\w+\)", ".SI(1'b0)", flat))
    bench.run("kalmverin", "broken.v", "-top", "chip_jtag")
    expect("the chain is broken" in bench.run("rimkit", "picture", "chip"), True)
    text = (bench.work / "chip.svg").read_text()
    broken = re.search(r'class="thread" d="([^"]*)"', text).group(1).count("M")
    expect((legs, broken, "chain broken" in text), (47, 25, True))


def test_ring(bench, given):
    folder = HERE.parent / "chips" / "ring_chip"
    plan = json.loads((folder / "plan.json").read_text())
    for name in plan["cells"] + plan["netlist"] + plan["files"]:
        shutil.copy(folder / name, bench.work)
    bench.insert(plan["design"], ["cells.v", "gated.v"], plan["read"] + plan["netlist"])
    chip, seen = judge(bench, plan["design"], "bidir_PAD[3]")
    checked = [row for row in chip["findings"] if row["verb"] == "check"]
    places = [[chip["pads"][pad]["port"] for pad in row["pads"]] + [chip["cells"][cell]["inst"] for cell in row["cells"]] for row in checked]
    expect(places, [[row["port"] or row["inst"]] for row in checked])
    if seen is not None:
        expect((chip["findings"][0]["cure"] in seen["finding"], seen["marked"] > 0), (True, True))


def test_names(bench, given):
    """Names with all that HTML, XML and the script give a meaning."""
    def odd(name, text):
        if name == "chip.pin":     # it has no such names: the port goes without a row
            return re.sub(r"^.*\btxd\b.*\n", "", text, flags=re.M)
        if name == "chip.v":
            text = re.sub(r"\btxd\b", lambda _: f"\\{ODD_PORT} ", text.replace("pad_txd ", f"\\{ODD_PAD} "))
        return text
    copy_example(bench, odd)
    svg, chip = read_picture(bench, "chip")
    pad = next(pad for pad in chip["pads"] if pad["port"] == ODD_PORT)
    expect((pad["inst"], [row["inst"] for row in chip["findings"] if row["verb"] == "check"]), (ODD_PAD, [ODD_PAD]))
    expect(sum("".join(text.itertext()) == ODD_PORT for text in svg.iter(SVG + "text")), 1)
    seen = browse(bench.work, "chip.html", ODD_PORT)
    if seen is not None:
        expect((ODD_PORT in seen["found"], ODD_PAD in seen["tip"]), (True, True))


def test_large(bench, given):
    """2,000 pads: names are left out from afar, and there when one of them is searched."""
    sys.path.append(str(ROOT / "bench"))
    import bench_chips
    bench_chips.make_chip(str(bench.work), str(bench.bin), 2000, 4000, "unique")
    bench.insert("chip", ["cells.v"], ["chip.v"])
    _, seen = judge(bench, "chip", "p1777")
    if seen is not None:
        expect((seen["far"], seen["whole"] > 10000), (True, True))


if __name__ == "__main__":
    sys.exit(bsdl_chips.main(globals()))
