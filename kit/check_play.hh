// The simulation behind `rimkit check`.
#pragma once

#include "kit/check.hh"

/// Plays the steps of the patterns on the chip; chip.play, whose instructions are known, gets what came of
/// it.
void play_chip(CHECK_CHIP &chip);
