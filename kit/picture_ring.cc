// The order of the pads in the picture, from a placement.
#include "kit/picture.hh"

#include "kit/placement.hh"
#include "kit/progress.hh"

#include <algorithm>

void place_picture(PICTURE &picture, const std::string &def_file) {
    PLACEMENT placement = placement_read(def_file);
    std::vector<std::string> instances;
    for (const PICTURE_PAD &pad : picture.pads)
        instances.push_back(pad.instance);
    std::vector<int32_t> rows = placement_rows(placement, instances);
    std::vector<PLACEMENT_COMPONENT> placed;
    std::vector<int32_t> pads;
    for (size_t pad = 0; pad < rows.size(); ++pad)
        if (rows[pad] >= 0) {
            placed.push_back(placement.components[static_cast<size_t>(rows[pad])]);
            pads.push_back(static_cast<int32_t>(pad));
        }
    if (placed.empty()) {
        kit_warn("%s places none of the pads; they stand as in the pin file.", def_file.c_str());
        return;
    }
    // The die's ring begins at the left end of its lower side, that of the picture at the upper end of the
    // left.
    std::vector<PLACEMENT_SIDE> sides = placement_sides(placed);
    std::vector<int32_t> on_side[4];
    for (int32_t row : placement_ring(placed)) {
        auto at = static_cast<size_t>(row);
        auto side = static_cast<int8_t>((static_cast<int>(sides[at]) + 1) % 4);
        picture.pads[static_cast<size_t>(pads[at])].side = side;
        on_side[side].push_back(pads[at]);
    }
    for (size_t pad = 0; pad < rows.size(); ++pad)
        if (rows[pad] < 0) {
            auto *shortest = std::min_element(on_side, on_side + 4, [](const auto &one, const auto &other) {
                return one.size() < other.size();
            });
            picture.pads[pad].side = static_cast<int8_t>(shortest - on_side);
            shortest->push_back(static_cast<int32_t>(pad));
        }
    picture.ring.clear();
    for (const std::vector<int32_t> &side : on_side)
        picture.ring.insert(picture.ring.end(), side.begin(), side.end());
}
