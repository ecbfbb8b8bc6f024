// Memory that is taken with `new`: blocks of many megabytes always lie in large pages
// (support/large_pages.hh), all of it where a program asks for that.
#pragma once

/// Called first by a program that holds whole designs: from the first megabytes on, all that it takes lies in
/// large pages, and what it frees is kept for the next. Its peak is then higher by a few megabytes.
void keep_heap_in_large_pages();
