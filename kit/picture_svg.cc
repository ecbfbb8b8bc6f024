// The ring as SVG: pads outside, the cells of the register inside them, the thread through the cells, the TAP
// in the middle. The same element stands alone in a paper and inside the page.
#include "kit/picture_layout.hh"

#include "support/text.hh"

#include <algorithm>
#include <cmath>
#include <set>
#include <unordered_map>

namespace {

constexpr size_t SMALL_CHIP = 160; // marks; a larger one gets arrows that are seen from afar

constexpr const char *STYLE = R"(
.ring text{font-family:Helvetica,Arial,sans-serif;font-size:11px}
.ring .letter{text-anchor:middle;font-weight:bold;pointer-events:none}
.ring .pin{fill:#666;font-size:9px}
.ring .pad rect,.ring .cell rect,.ring .key rect{stroke:#222;stroke-width:1}
.ring .count{font-size:9px;text-anchor:middle;stroke:#fff;stroke-width:3;paint-order:stroke}
.ring .lead{stroke:#888;stroke-width:1}
.ring .thread{fill:none;stroke:#222;stroke-width:1.6}
.ring .arrow{fill:#222}
.ring .test{fill:none;stroke:#0b4f8a;stroke-width:1.3}
.ring .word{fill:#0b4f8a;font-weight:bold;stroke:#fff;stroke-width:3;paint-order:stroke}
.ring .tie{fill:none;stroke:#b34700;stroke-width:1;stroke-dasharray:4 3;opacity:.55}
.ring .mark{fill:#c00000;stroke:#fff;stroke-width:1}
.ring .mark.warning{fill:#8a6d00}
.ring .mark.note{fill:#555}
)";

struct POINT {
    double x, y;
};

/// A way of the thread, with the direction in which it arrives.
struct LEG {
    std::string path;
    POINT from, to, heading;
};

constexpr POINT INWARD[] = {{1, 0}, {0, -1}, {-1, 0}, {0, 1}};

POINT middle_of(const PICTURE_BOX &box) {
    return {box.x + box.w / 2, box.y + box.h / 2};
}

/// The middle of the box's edge that looks inwards, or outwards.
POINT edge_of(const PICTURE_BOX &box, bool inner) {
    double sign = inner ? 1 : -1;
    POINT middle = middle_of(box), in = INWARD[box.side];
    return {middle.x + sign * in.x * box.w / 2, middle.y + sign * in.y * box.h / 2};
}

/// Where the line from the middle of the box to a point leaves the box.
POINT leaves(const PICTURE_BOX &box, POINT to) {
    POINT from = middle_of(box);
    double dx = to.x - from.x, dy = to.y - from.y;
    double part = std::min(dx == 0 ? 1 : box.w / 2 / std::fabs(dx), dy == 0 ? 1 : box.h / 2 / std::fabs(dy));
    return {from.x + dx * std::min(part, 1.0), from.y + dy * std::min(part, 1.0)};
}

LEG straight(POINT from, POINT to) {
    double length = std::max(std::hypot(to.x - from.x, to.y - from.y), 1e-6);
    return {format_text("M%.1f %.1fL%.1f %.1f", from.x, from.y, to.x, to.y),
            from,
            to,
            {(to.x - from.x) / length, (to.y - from.y) / length}};
}

/// From mark to mark: straight to the next on the same side, else a bow on the inner side of the ring.
LEG leg_between(const PICTURE_LAYOUT &layout, const PICTURE_MARK &a, const PICTURE_MARK &b) {
    if (a.box.side == b.box.side && std::abs(a.place - b.place) == 1)
        return straight(leaves(a.box, middle_of(b.box)), leaves(b.box, middle_of(a.box)));
    POINT from = edge_of(a.box, true), to = edge_of(b.box, true);
    double far = std::hypot(to.x - from.x, to.y - from.y);
    double bow = std::min(14 + far * 0.22, layout.width * 0.2);
    POINT u = INWARD[a.box.side], v = INWARD[b.box.side];
    return {format_text("M%.1f %.1fC%.1f %.1f %.1f %.1f %.1f %.1f", from.x, from.y, from.x + u.x * bow,
                        from.y + u.y * bow, to.x + v.x * bow, to.y + v.y * bow, to.x, to.y),
            from,
            to,
            {-v.x, -v.y}};
}

/// An arrow head whose tip is at the point.
std::string arrow(POINT tip, POINT heading, double size, const char *name) {
    double bx = tip.x - heading.x * size, by = tip.y - heading.y * size;
    double sx = -heading.y * size * 0.55, sy = heading.x * size * 0.55;
    return format_text("<path class=\"arrow %s\" d=\"M%.1f %.1fL%.1f %.1fL%.1f %.1fZ\"/>\n", name, tip.x,
                       tip.y, bx + sx, by + sy, bx - sx, by - sy);
}

// ---- the thread ---------------------------------------------------------------------------------------

/// The chain as a way through marks, from TDI to TDO; what comes twice is drawn once.
std::vector<LEG> thread_legs(const PICTURE_LAYOUT &layout, const PICTURE &picture) {
    std::vector<LEG> legs;
    if (picture.cells.empty())
        return legs;
    auto mark_of = [&](size_t cell) -> const PICTURE_MARK & {
        return layout.marks[static_cast<size_t>(layout.mark_of_cell[cell])];
    };
    const PICTURE_MARK &first = mark_of(picture.cells.size() - 1), &last = mark_of(0);
    POINT in = edge_of(first.box, true), out = edge_of(last.box, true);
    legs.push_back(straight(leaves(layout.tap, in), in));
    std::vector<std::pair<int32_t, int32_t>> drawn;
    for (size_t i = picture.cells.size() - 1; i-- > 0;)
        if (layout.mark_of_cell[i] != layout.mark_of_cell[i + 1])
            drawn.emplace_back(layout.mark_of_cell[i + 1], layout.mark_of_cell[i]);
    std::vector<std::pair<int32_t, int32_t>> sorted = drawn;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    std::vector<bool> is_done(sorted.size());
    for (const auto &leg : drawn) {
        auto at = static_cast<size_t>(std::lower_bound(sorted.begin(), sorted.end(), leg) - sorted.begin());
        if (!is_done[at])
            legs.push_back(leg_between(layout, layout.marks[static_cast<size_t>(leg.first)],
                                       layout.marks[static_cast<size_t>(leg.second)]));
        is_done[at] = true;
    }
    if (picture.is_whole)
        legs.push_back(straight(out, leaves(layout.tap, out)));
    return legs;
}

/// The thread with its arrows; those that are seen from afar are for the end of the drawing, above the cells.
struct THREAD_TEXT {
    std::string near, afar;
};

THREAD_TEXT thread_text(const PICTURE_LAYOUT &layout, const PICTURE &picture) {
    std::vector<LEG> legs = thread_legs(layout, picture);
    std::string path;
    THREAD_TEXT text;
    size_t every = std::max<size_t>(legs.size() / 32, 1);
    for (size_t i = 0; i < legs.size(); ++i) {
        path += legs[i].path;
        text.near += arrow(legs[i].to, legs[i].heading, 6, "near");
        bool is_end = i == 0 || i + 1 == legs.size();
        if (legs.size() > SMALL_CHIP && (is_end || i % every == every / 2))
            text.afar += arrow(legs[i].to, legs[i].heading, layout.width / 90, "afar");
    }
    text.near = "<path class=\"thread\" d=\"" + path + "\"/>\n" + text.near;
    return text;
}

// ---- pads, cells, TAP ---------------------------------------------------------------------------------

std::string box_text(const PICTURE_BOX &box, PICTURE_KIND kind, bool is_round) {
    const PICTURE_KIND_INFO &info = PICTURE_KINDS[kind];
    POINT middle = middle_of(box);
    return format_text("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\"%s fill=\"%s\"/>", box.x,
                       box.y, box.w, box.h, is_round ? " rx=\"5\"" : "", info.fill) +
           format_text("<text class=\"letter\" x=\"%.1f\" y=\"%.1f\" fill=\"%s\">%s</text>", middle.x,
                       middle.y + 4, info.ink, info.letter);
}

/// The name outside the pad, and the number of its pin behind it.
std::string label_text(const PICTURE_SLOT &slot, const std::string &pin) {
    POINT at = edge_of(slot.box, false), in = INWARD[slot.box.side];
    bool is_turned = slot.box.side % 2 == 1, ends_here = slot.box.side == 0 || slot.box.side == 1;
    POINT text = {at.x - in.x * 5 + (is_turned ? 4 : 0), at.y - in.y * 5 + (is_turned ? 0 : 4)};
    std::string turn = is_turned ? format_text(" transform=\"rotate(-90 %.1f %.1f)\"", text.x, text.y) : "";
    std::string name = xml_text(short_label(slot.label, LONGEST_LABEL));
    std::string number =
        pin.empty() ? "" : "<tspan class=\"pin\">" + xml_text(short_label(pin, 6)) + "</tspan>";
    return format_text("<text class=\"name\" x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\"%s>", text.x, text.y,
                       ends_here ? "end" : "start", turn.c_str()) +
           (ends_here ? number + (number.empty() ? "" : " ") + name
                      : name + (number.empty() ? "" : " ") + number) +
           "</text>";
}

/// What a pad is to the eye that has no script.
std::string pad_title(const PICTURE_PAD &pad) {
    std::string text = (pad.port.empty() ? pad.package_name : pad.port) +
                       (pad.pin.empty() ? "" : ", pin " + pad.pin) + ": " +
                       (pad.reason.empty() ? PICTURE_KINDS[pad.kind].label : pad.reason);
    for (size_t i = 0; i < pad.cells.size(); ++i)
        text += (i == 0 ? ", cell " : " ") + std::to_string(pad.cells[i]);
    return text;
}

std::string cell_title(const PICTURE &picture, int32_t number) {
    const PICTURE_CELL &cell = picture.cells[static_cast<size_t>(number)];
    std::string text = format_text("cell %d, %s", number, cell.function.c_str());
    for (int32_t pad : cell.pads)
        text += ", port " + picture.pads[static_cast<size_t>(pad)].port;
    return text + (cell.control < 0 ? "" : format_text(", control cell %d", cell.control)) + ", " +
           cell.instance;
}

std::string id_list(const std::vector<int32_t> &ids) {
    std::string text;
    for (int32_t id : ids)
        text += (text.empty() ? "" : " ") + std::to_string(id);
    return text;
}

std::string slot_text(const PICTURE &picture, const PICTURE_SLOT &slot) {
    if (slot.pads.empty())
        return "";
    const PICTURE_PAD &pad = picture.pads[static_cast<size_t>(slot.pads[0])];
    std::string title = slot.pads.size() == 1
                            ? pad_title(pad)
                            : format_text("%s: %zu pads", slot.label.c_str(), slot.pads.size());
    return format_text("<g class=\"pad k-%s\" data-pads=\"%s\">", PICTURE_KINDS[pad.kind].word,
                       id_list(slot.pads).c_str()) +
           "<title>" + xml_text(title) + "</title>" + box_text(slot.box, pad.kind, false) +
           label_text(slot, slot.pads.size() == 1 ? pad.pin : "") + "</g>\n";
}

std::string mark_text(const PICTURE &picture, const PICTURE_LAYOUT &layout, const PICTURE_MARK &mark) {
    PICTURE_KIND kind = picture.cells[static_cast<size_t>(mark.cells[0])].kind;
    std::string title = mark.cells.size() == 1
                            ? cell_title(picture, mark.cells[0])
                            : format_text("%zu cells, %s", mark.cells.size(), PICTURE_KINDS[kind].label);
    std::string lead;
    if (!picture.cells[static_cast<size_t>(mark.cells[0])].pads.empty()) {
        POINT at = edge_of(mark.box, false), in = INWARD[mark.box.side];
        lead = format_text("<path class=\"lead\" d=\"M%.1f %.1fL%.1f %.1f\"/>", at.x, at.y,
                           at.x - in.x * layout.gap, at.y - in.y * layout.gap);
    }
    if (mark.cells.size() > 1) {
        POINT at = edge_of(mark.box, true), in = INWARD[mark.box.side];
        lead += format_text("<text class=\"count\" x=\"%.1f\" y=\"%.1f\">%zu</text>", at.x + in.x * 9,
                            at.y + in.y * 9 + 3, mark.cells.size());
    }
    return format_text("<g class=\"cell k-%s\" data-cells=\"%s\">", PICTURE_KINDS[kind].word,
                       id_list(mark.cells).c_str()) +
           "<title>" + xml_text(title) + "</title>" + lead + box_text(mark.box, kind, true) + "</g>\n";
}

/// The lines from control cells to the pads that they hold.
std::string ties_text(const PICTURE &picture, const PICTURE_LAYOUT &layout) {
    std::string text;
    for (size_t i = 0; i < picture.cells.size(); ++i)
        for (int32_t pad : picture.cells[i].held) {
            const PICTURE_BOX &cell = layout.marks[static_cast<size_t>(layout.mark_of_cell[i])].box;
            const PICTURE_BOX &box =
                layout.slots[static_cast<size_t>(layout.slot_of_pad[static_cast<size_t>(pad)])].box;
            POINT from = edge_of(cell, true), to = edge_of(box, true), u = INWARD[cell.side],
                  v = INWARD[box.side];
            double bow = std::min(10 + std::hypot(to.x - from.x, to.y - from.y) * 0.3, layout.width * 0.3);
            text += format_text(
                "<path class=\"tie\" data-cell=\"%zu\" data-pad=\"%d\" d=\"M%.1f %.1fC%.1f %.1f %.1f "
                "%.1f %.1f %.1f\"/>\n",
                i, pad, from.x, from.y, from.x + u.x * bow, from.y + u.y * bow, to.x + v.x * (bow + 30),
                to.y + v.y * (bow + 30), to.x, to.y);
        }
    return text;
}

/// What a pad of the test port is to the TAP, on the inner side of the cells.
std::string test_word(const PICTURE_BOX &box, const char *word) {
    POINT edge = edge_of(box, true), in = INWARD[box.side];
    bool is_turned = box.side % 2 == 1, begins_here = box.side == 0 || box.side == 1;
    POINT at = {edge.x + in.x * 8 + (is_turned ? 4 : 0), edge.y + in.y * 8 + (is_turned ? 0 : 4)};
    std::string turn = is_turned ? format_text(" transform=\"rotate(-90 %.1f %.1f)\"", at.x, at.y) : "";
    return format_text("<text class=\"word\" x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\"%s>%s</text>\n", at.x,
                       at.y, begins_here ? "start" : "end", turn.c_str(), word);
}

/// The TAP with lines to the pads of the test port.
std::string tap_text(const PICTURE &picture, const PICTURE_LAYOUT &layout) {
    std::string text;
    for (size_t i = 0; i < picture.pads.size(); ++i) {
        const PICTURE_PAD &pad = picture.pads[i];
        if (pad.tap_port < 0)
            continue;
        POINT at = edge_of(layout.slots[static_cast<size_t>(layout.slot_of_pad[i])].box, true);
        LEG leg = straight(at, leaves(layout.tap, at));
        POINT tip = leg.to;
        if (pad.tap_port == 1)
            leg = straight(tip, at);
        text += "<path class=\"test\" d=\"" + leg.path + "\"/>" +
                arrow(leg.to, leg.heading, 7, "test-arrow") +
                test_word(layout.slots[static_cast<size_t>(layout.slot_of_pad[i])].box,
                          PICTURE_TEST_WORDS[pad.tap_port]);
    }
    double size = layout.tap.w / 7;
    POINT middle = middle_of(layout.tap);
    return text +
           format_text(
               "<g class=\"tap\"><title>%s</title><rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" "
               "rx=\"8\" fill=\"%s\" stroke=\"#222\"/>",
               xml_text("TAP " + picture.tap_instance + ", " + picture.tap_class).c_str(), layout.tap.x,
               layout.tap.y, layout.tap.w, layout.tap.h, PICTURE_KINDS[PICTURE_TAP].fill) +
           format_text("<text x=\"%.1f\" y=\"%.1f\" fill=\"#fff\" text-anchor=\"middle\" "
                       "style=\"font-size:%.1fpx;font-weight:bold\">TAP</text>",
                       middle.x, middle.y, size * 1.5) +
           format_text("<text x=\"%.1f\" y=\"%.1f\" fill=\"#fff\" text-anchor=\"middle\" "
                       "style=\"font-size:%.1fpx\">%s</text></g>\n",
                       middle.x, middle.y + size * 1.4, size * 0.8,
                       picture.is_whole ? format_text("%zu cells", picture.cells.size()).c_str()
                                        : "chain broken");
}

/// The boxes that a finding stands at, each once: the cells and pads of a bus may share one.
std::vector<const PICTURE_BOX *> boxes_of(const PICTURE_FINDING &finding, const PICTURE_LAYOUT &layout) {
    std::set<int32_t> marks, slots;
    for (int32_t cell : finding.cells)
        marks.insert(layout.mark_of_cell[static_cast<size_t>(cell)]);
    for (int32_t pad : finding.pads)
        slots.insert(layout.slot_of_pad[static_cast<size_t>(pad)]);
    std::vector<const PICTURE_BOX *> boxes;
    for (int32_t mark : marks)
        boxes.push_back(&layout.marks[static_cast<size_t>(mark)].box);
    for (int32_t slot : slots)
        boxes.push_back(&layout.slots[static_cast<size_t>(slot)].box);
    if (finding.is_at_tap)
        boxes.push_back(&layout.tap);
    return boxes;
}

/// A triangle at each place of each finding.
std::string findings_text_of(const PICTURE &picture, const PICTURE_LAYOUT &layout) {
    std::string text;
    std::unordered_map<const PICTURE_BOX *, int> marked; // findings at one place stand side by side
    for (size_t i = 0; i < picture.findings.size(); ++i)
        for (const PICTURE_BOX *box : boxes_of(picture.findings[i], layout)) {
            double x = box->x + box->w - 6 * marked[box]++, y = box->y + 3;
            text +=
                format_text(
                    "<path class=\"mark %s\" data-finding=\"%zu\" d=\"M%.1f %.1fL%.1f %.1fL%.1f %.1fZ\">",
                    severity_word(picture.findings[i].severity), i, x, y - 8, x + 6, y + 4, x - 6, y + 4) +
                "<title>" + xml_text(picture.findings[i].text) + "</title></path>\n";
        }
    return text;
}

/// True when the pads of the test port, whose lines run to the TAP, stand in the lower half.
bool is_test_port_below(const PICTURE &picture, const PICTURE_LAYOUT &layout) {
    double sum = 0;
    for (size_t i = 0; i < picture.pads.size(); ++i)
        if (picture.pads[i].tap_port >= 0)
            sum += layout.slots[static_cast<size_t>(layout.slot_of_pad[i])].box.y - layout.height / 2;
    return sum > 0;
}

/// What the colours and letters mean: in the empty corner, or inside a large ring, where it can be seen.
std::string legend_text(const PICTURE &picture, const PICTURE_LAYOUT &layout) {
    bool is_large = layout.marks.size() > SMALL_CHIP;
    double scale = is_large ? layout.width / 900 : 1;
    double x = is_large ? layout.width * 0.44 : 0;
    double y = 24, down = !is_large ? 0 : layout.height * (is_test_port_below(picture, layout) ? 0.12 : 0.66);
    std::string text =
        format_text("<g class=\"legend\" transform=\"translate(%.1f %.1f) scale(%.2f)\">", x, down, scale);
    text += format_text("<text x=\"8\" y=\"16\" style=\"font-size:14px;font-weight:bold\">%s</text>",
                        xml_text(short_label(picture.design, 24)).c_str());
    for (size_t kind = 0; kind < PICTURE_KIND_COUNT; ++kind, y += 15)
        text += "<g class=\"key\">" + box_text({8, y, 13, 13, 0}, static_cast<PICTURE_KIND>(kind), false) +
                format_text("<text x=\"26\" y=\"%.1f\">%s</text></g>", y + 10.5, PICTURE_KINDS[kind].label);
    return text + "</g>\n";
}

} // namespace

const char *picture_style() {
    return STYLE;
}

std::string xml_text(const std::string &text) {
    std::string good;
    for (char c : text)
        switch (c) {
        case '&':
            good += "&amp;";
            break;
        case '<':
            good += "&lt;";
            break;
        case '>':
            good += "&gt;";
            break;
        case '"':
            good += "&quot;";
            break;
        case '\'':
            good += "&#39;";
            break;
        default:
            good += c;
        }
    return good;
}

std::string picture_svg(const PICTURE &picture, const PICTURE_LAYOUT &layout, const char *id, bool alone) {
    std::string text = format_text(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" id=\"%s\" class=\"ring%s\" viewBox=\"0 0 %.0f %.0f\"", id,
        layout.marks.size() > SMALL_CHIP ? " large" : "", layout.width, layout.height);
    // On paper a large ring is seen as a whole: its thread is thick, and lines to the pads would be fog.
    std::string large =
        layout.marks.size() <= SMALL_CHIP
            ? ""
            : format_text(".ring .thread,.ring .test{stroke-width:%.1f}\n.ring .tie{display:none}\n",
                          layout.width / 900);
    if (alone)
        text += format_text(" width=\"%.0f\" height=\"%.0f\"><style>%s%s</style>\n"
                            "<rect width=\"100%%\" height=\"100%%\" fill=\"#fff\"/>\n%s",
                            layout.width, layout.height, STYLE, large.c_str(),
                            legend_text(picture, layout).c_str());
    else
        text += ">\n";
    text += "<g class=\"ties\">\n" + ties_text(picture, layout) + "</g>\n";
    text += tap_text(picture, layout);
    THREAD_TEXT thread = thread_text(layout, picture);
    text += thread.near;
    for (const PICTURE_SLOT &slot : layout.slots)
        text += slot_text(picture, slot);
    // From TDI to TDO, as the thread runs.
    for (size_t i = layout.marks.size(); i-- > 0;)
        text += mark_text(picture, layout, layout.marks[i]);
    return text + thread.afar + findings_text_of(picture, layout) + "</svg>\n";
}
