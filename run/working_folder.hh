// ./rimweave_lib, and the lock on it that keeps a second run in the same place out of the way of the first.
#pragma once

#include <string>

/// Makes the folder where it is missing and locks it to the end of the process, however that comes. Returns
/// an empty text, or the error that is to end the run: no such folder, not writable, used by another run.
std::string take_working_folder();
