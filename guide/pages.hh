// The commands of the menus that show one row of a table as a page: turn it, add one, leave them.
#pragma once

#include "guide/guide_tables.hh"
#include "guide/menu.hh"

#include <type_traits>

/// The record of a flat list; TABLE is the address of the list's handle.
template <auto TABLE> using PAGE_RECORD = std::remove_reference_t<decltype(***TABLE)>;

inline MENU_STEP show_page(MENU_PAGE &page, int32_t row) {
    page.row = row;
    page.number = row + 1;
    return MENU_STAY;
}

/// Behind the last row comes row 0.
template <auto TABLE> MENU_STEP next_page(MENU_PAGE &page) {
    return show_page(page, page.row + 1 < DYNA_count(*TABLE) ? page.row + 1 : 0);
}

template <auto TABLE> MENU_STEP add_page(MENU_PAGE &page) {
    append_row(*TABLE, new_record<PAGE_RECORD<TABLE>>());
    return show_page(page, DYNA_count(*TABLE) - 1);
}

template <auto TABLE> MENU_STEP leave_pages(MENU_PAGE &) {
    delete_unnamed(*TABLE);
    return MENU_LEAVE;
}

/// A text of the shown row as the field of an entry.
template <auto TABLE, auto FIELD> const char *&row_text(const MENU_PAGE &page) {
    return (*TABLE)[page.row]->*FIELD;
}
