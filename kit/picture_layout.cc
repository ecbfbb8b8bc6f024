#include "kit/picture_layout.hh"

#include "kit/names.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

constexpr double PITCH = 26, CELL = 18, PAD_DEPTH = 26, GAP = 10, CORNER = 96, SMALLEST_SIDE = 260;
constexpr double LETTER = 6.7; // width of a label's letter

/// What stands at a slot, with its columns.
struct SLOT_PLAN {
    std::vector<int32_t> marks; ///< in their order along the ring
    size_t columns = 1;
};

// ---- which pads and cells stand together --------------------------------------------------------------

bool follows_in_bus(const PICTURE_PAD &before, const PICTURE_PAD &pad) {
    KIT_BIT a = kit_bit(before.port), b = kit_bit(pad.port);
    return !pad.port.empty() && a.base == b.base && a.index >= 0 && b.index >= 0 && before.side == pad.side;
}

std::string label_of(const PICTURE &picture, const std::vector<int32_t> &pads) {
    const PICTURE_PAD &first = picture.pads[static_cast<size_t>(pads.front())];
    if (pads.size() == 1)
        return !first.port.empty() ? first.port : first.package_name;
    KIT_BIT from = kit_bit(first.port);
    KIT_BIT to = kit_bit(picture.pads[static_cast<size_t>(pads.back())].port);
    return format_text("%s[%ld:%ld]", from.base.c_str(), from.index, to.index);
}

void make_slots(PICTURE_LAYOUT &layout, const PICTURE &picture, bool folds_buses) {
    layout.slot_of_pad.resize(picture.pads.size());
    const PICTURE_PAD *before = nullptr;
    for (int32_t id : picture.ring) {
        const PICTURE_PAD &pad = picture.pads[static_cast<size_t>(id)];
        if (before == nullptr || !folds_buses || !follows_in_bus(*before, pad))
            layout.slots.push_back({.pads = {}, .label = "", .side = pad.side});
        layout.slots.back().pads.push_back(id);
        layout.slot_of_pad[static_cast<size_t>(id)] = static_cast<int32_t>(layout.slots.size() - 1);
        before = &pad;
    }
    if (layout.slots.empty())
        layout.slots.emplace_back();
    for (PICTURE_SLOT &slot : layout.slots)
        slot.label = slot.pads.empty() ? "" : label_of(picture, slot.pads);
}

/// The slot of each cell: that of its pad, of the pads that it holds, or of the next cell that has one.
std::vector<int32_t> slots_of_cells(const PICTURE_LAYOUT &layout, const PICTURE &picture) {
    std::vector<int32_t> slots(picture.cells.size(), -1);
    auto slot_of = [&](int32_t pad) { return layout.slot_of_pad[static_cast<size_t>(pad)]; };
    for (size_t i = 0; i < slots.size(); ++i)
        if (!picture.cells[i].pads.empty())
            slots[i] = slot_of(picture.cells[i].pads[0]);
    std::vector<int32_t> known = slots;
    for (size_t i = 0; i < slots.size(); ++i) {
        if (slots[i] >= 0)
            continue;
        // A neighbour in the chain whose enable it holds is the best place, so that the thread runs on.
        for (size_t next : {i + 1, i - 1})
            if (next < slots.size() && known[next] >= 0 &&
                (slots[i] < 0 || picture.cells[next].control == static_cast<int32_t>(i)))
                slots[i] = known[next];
    }
    for (size_t i = 1; i < slots.size(); ++i)
        slots[i] = slots[i] < 0 ? slots[i - 1] : slots[i];
    for (size_t i = slots.size(); i-- > 0;)
        if (slots[i] < 0)
            slots[i] = i + 1 < slots.size() ? slots[i + 1] : 0;
    return slots;
}

/// Cells get marks: one each, or one for those of a kind at the pads of a bus. Marks of a slot stand in the
/// direction in which the chain mostly runs.
std::vector<SLOT_PLAN> make_marks(PICTURE_LAYOUT &layout, const PICTURE &picture) {
    std::vector<SLOT_PLAN> plans(layout.slots.size());
    std::vector<int32_t> slots = slots_of_cells(layout, picture);
    int64_t ascending = 0;
    layout.mark_of_cell.assign(slots.size(), -1);
    for (size_t i = 0; i < slots.size(); ++i) {
        SLOT_PLAN &plan = plans[static_cast<size_t>(slots[i])];
        bool is_bus = layout.slots[static_cast<size_t>(slots[i])].pads.size() > 1;
        int32_t mark = -1;
        for (int32_t known : plan.marks)
            if (is_bus &&
                picture.cells[static_cast<size_t>(layout.marks[static_cast<size_t>(known)].cells[0])].kind ==
                    picture.cells[i].kind)
                mark = known;
        if (mark < 0) {
            mark = static_cast<int32_t>(layout.marks.size());
            plan.marks.push_back(mark);
            layout.marks.push_back({.cells = {}, .slot = slots[i]});
        }
        layout.marks[static_cast<size_t>(mark)].cells.push_back(static_cast<int32_t>(i));
        layout.mark_of_cell[i] = mark;
        if (i > 0)
            ascending += slots[i] > slots[i - 1] ? 1 : slots[i] < slots[i - 1] ? -1 : 0;
    }
    for (SLOT_PLAN &plan : plans) {
        if (ascending < 0)
            std::reverse(plan.marks.begin(), plan.marks.end());
        plan.columns = std::max<size_t>(plan.marks.size(), 1);
    }
    for (size_t i = 0; i < plans.size(); ++i)
        if (layout.slots[i].pads.size() > 1) // a bus is seen as one
            plans[i].columns = std::max<size_t>(plans[i].columns, 2);
    return plans;
}

// ---- places -------------------------------------------------------------------------------------------

/// The square that the pads' outer edges lie on.
struct RING_FRAME {
    double margin, square;
    double deep; ///< factor on depths: a large ring is seen from afar
};

PICTURE_BOX box_at(const RING_FRAME &ring, int32_t side, double along, double depth, double length,
                   double height) {
    double near = ring.margin + depth, far = ring.margin + ring.square - depth - height;
    double forward = ring.margin + along, backward = ring.margin + ring.square - along - length;
    switch (side) {
    case 0:
        return {near, forward, height, length, side};
    case 1:
        return {forward, far, length, height, side};
    case 2:
        return {far, backward, height, length, side};
    default:
        return {backward, near, length, height, side};
    }
}

void place_marks(PICTURE_LAYOUT &layout, const RING_FRAME &ring, int32_t side, double along,
                 const SLOT_PLAN &plan, int32_t &place) {
    double column = PITCH * static_cast<double>(plan.columns) /
                    static_cast<double>(std::max<size_t>(plan.marks.size(), 1));
    for (size_t i = 0; i < plan.marks.size(); ++i) {
        double middle = along + column * (static_cast<double>(i) + 0.5);
        PICTURE_MARK &mark = layout.marks[static_cast<size_t>(plan.marks[i])];
        mark.place = place++;
        mark.box =
            box_at(ring, side, middle - CELL / 2, (PAD_DEPTH + GAP) * ring.deep, CELL, CELL * ring.deep);
    }
}

void place_slots(PICTURE_LAYOUT &layout, const std::vector<SLOT_PLAN> &plans) {
    size_t columns = 0, before = 0, longest = 0;
    for (const SLOT_PLAN &plan : plans)
        columns += plan.columns;
    std::vector<int32_t> side_of(plans.size());
    double length_of[4] = {0, 0, 0, 0};
    for (size_t i = 0; i < plans.size(); before += plans[i].columns, ++i) {
        size_t share = std::min<size_t>(3, 4 * (2 * before + plans[i].columns) / (2 * columns));
        side_of[i] = layout.slots[i].side >= 0 ? layout.slots[i].side : static_cast<int32_t>(share);
        length_of[side_of[i]] += PITCH * static_cast<double>(plans[i].columns);
        longest = std::max(longest, std::min(LONGEST_LABEL, layout.slots[i].label.size()));
    }
    double side_length = std::max(SMALLEST_SIDE, *std::max_element(length_of, length_of + 4));
    double deep = std::clamp(side_length / 3000, 1.0, 4.0), corner = CORNER * deep;
    RING_FRAME ring = {LETTER * static_cast<double>(longest) + 40, side_length + 2 * corner, deep};
    double along[4];
    int32_t place = 0;
    for (int32_t side = 0; side < 4; ++side)
        along[side] = corner + (side_length - length_of[side]) / 2;
    for (size_t i = 0; i < plans.size(); ++i) {
        double length = PITCH * static_cast<double>(plans[i].columns);
        double &at = along[side_of[i]];
        layout.slots[i].box = box_at(ring, side_of[i], at + 1.5, 0, length - 3, PAD_DEPTH * ring.deep);
        place_marks(layout, ring, side_of[i], at, plans[i], place);
        at += length;
    }
    layout.gap = GAP * deep;
    layout.width = layout.height = ring.square + 2 * ring.margin;
    double tap = std::max(110.0, side_length / 7), high = tap * 0.6;
    layout.tap = {(layout.width - tap) / 2, (layout.height - high) / 2, tap, high, 0};
}

} // namespace

std::string short_label(const std::string &text, size_t most) {
    size_t letters = 0, cut = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if ((static_cast<unsigned char>(text[at]) & 0xc0) == 0x80)
            continue;
        if (++letters == most)
            cut = at;
    }
    return letters <= most ? text : text.substr(0, cut) + "\xe2\x80\xa6";
}

PICTURE_LAYOUT picture_layout(const PICTURE &picture, bool folds_buses) {
    PICTURE_LAYOUT layout;
    make_slots(layout, picture, folds_buses);
    place_slots(layout, make_marks(layout, picture));
    return layout;
}
