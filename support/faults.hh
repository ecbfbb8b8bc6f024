// Collecting faults, for a program that wants to see all of them at once.
//
// A step of a run ends the process at its first fault. While a FAULT_COLLECTOR lives, what the console, the
// report and the error stream would get goes to the collector instead, and the end of the process becomes the
// end of the step that is being tried. Without one, as in a run, each function here is what it stands for.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// What leaves a step in place of the process. It is no std::exception, so that no handler of faults takes
/// it.
struct END_OF_STEP {
    int status; ///< that the process would have had
};

/// Stands on a line of its own.
constexpr std::string_view END_MARK = "\001";

/// One at a time.
class FAULT_COLLECTOR {
  public:
    FAULT_COLLECTOR();
    ~FAULT_COLLECTOR();
    FAULT_COLLECTOR(const FAULT_COLLECTOR &) = delete;
    FAULT_COLLECTOR &operator=(const FAULT_COLLECTOR &) = delete;

    std::string text; ///< all that was printed, with a line END_MARK where a step ended before its end
};

/// The one that lives, or null: there is none in a run.
extern FAULT_COLLECTOR *fault_collector;

/// Ends the process with the status or, while faults are collected, the step.
[[noreturn]] void end_process(int status);

/// Tries a step. False when it ended before its end; without a collector it then does not return at all.
template <class STEP> bool try_step(const STEP &step) {
    if (fault_collector == nullptr) {
        step();
        return true;
    }
    try {
        step();
        return true;
    } catch (const END_OF_STEP &) {
        fault_collector->text.append("\n").append(END_MARK).append("\n");
        return false;
    }
}

/// Goes through things that do not depend on each other. While faults are collected the fault of one leaves
/// the others to be looked at, and the step ends behind the last; else this is the plain loop.
template <class ROWS, class BODY> void each_apart(ROWS &&rows, const BODY &body) {
    bool whole = true;
    for (auto &&row : rows)
        whole = try_step([&] { body(row); }) && whole;
    if (!whole)
        end_process(255);
}

/// The same for the numbers from 0 to below `count`.
template <class BODY> void each_number_apart(int32_t count, const BODY &body) {
    bool whole = true;
    for (int32_t number = 0; number < count; ++number)
        whole = try_step([&] { body(number); }) && whole;
    if (!whole)
        end_process(255);
}

/// The same for steps that do not depend on each other.
inline void each_apart(std::initializer_list<void (*)()> steps) {
    each_apart(steps, [](void (*step)()) { step(); });
}
