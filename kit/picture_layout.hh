// Places of pads and cells in the picture, in units of a paper pixel with x to the right and y downwards.
//
// Pads go round counter-clockwise from the upper left corner, as packages count their pins. Each has as many
// columns as cells stand at it, so that the thread is a smooth line wherever register and pins have one
// order.
#pragma once

#include "kit/picture.hh"

struct PICTURE_BOX {
    double x, y, w, h;
    int32_t side; ///< 0 left, 1 bottom, 2 right, 3 top
};

/// A pad, or all pads of a bus.
struct PICTURE_SLOT {
    std::vector<int32_t> pads;
    std::string label;
    int8_t side = -1; ///< where a placement tells it; the slots are shared out among the sides otherwise
    PICTURE_BOX box{};
};

/// A cell, or those of one kind at the pads of a bus.
struct PICTURE_MARK {
    std::vector<int32_t> cells;
    int32_t slot = -1;
    int32_t place = -1; ///< among the marks, counted round the ring
    PICTURE_BOX box{};
};

struct PICTURE_LAYOUT {
    double width = 0, height = 0;
    double gap = 0; ///< between a pad and its cells
    PICTURE_BOX tap{};
    std::vector<PICTURE_SLOT> slots;
    std::vector<PICTURE_MARK> marks;
    std::vector<int32_t> mark_of_cell, slot_of_pad;
};

/// With `folds_buses`, pads of one vector that stand side by side share a slot.
PICTURE_LAYOUT picture_layout(const PICTURE &picture, bool folds_buses);

/// Characters of a label on the ring.
constexpr size_t LONGEST_LABEL = 28;

/// A label of at most that many characters of UTF-8; a cut one ends with "…".
std::string short_label(const std::string &text, size_t most);
