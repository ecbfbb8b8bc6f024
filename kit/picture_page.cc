#include "kit/picture_layout.hh"
std::string picture_page(const PICTURE &picture, const PICTURE_LAYOUT &whole, const PICTURE_LAYOUT &folded) {
    return "<!DOCTYPE html>" + picture_svg(picture, whole, "whole", false) + picture_svg(picture, folded, "folded", false);
}
