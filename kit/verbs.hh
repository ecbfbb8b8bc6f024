// The verbs of rimkit, each in the file of its name.
#pragma once

#include "kit/command.hh"

extern const KIT_VERB kit_doctor;
extern const KIT_VERB kit_start;
extern const KIT_VERB kit_run;
extern const KIT_VERB kit_bsdl;
extern const KIT_VERB kit_patterns;
extern const KIT_VERB kit_check;
extern const KIT_VERB kit_prove;
extern const KIT_VERB kit_picture;
