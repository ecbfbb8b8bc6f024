#include "kit/finished_run.hh"

#include "description/reader.hh"
#include "kit/progress.hh"
#include "planning/tracing.hh"
#include "siblings/tool.hh"

void need_run_files(const std::string &design, const char *verb,
                    std::initializer_list<const char *> endings) {
    for (const char *ending : endings)
        if (!TOOL_exists(design + ending))
            TOOL_fail("", 0, "there is no '%s%s'; `rimkit %s` runs in the folder of a finished run.",
                      design.c_str(), ending, verb);
}

bool open_finished_run(const std::string &design, const std::string &edited) {
    KIT_PROGRESS progress("reading " + edited);
    bsdft_init();
    get_bs_dft_file((design + ".lib").c_str(), (design + ".bsc").c_str(), 0);
    if (!TOOL_exists(edited))
        return false;
    open_sdb_file(edited.c_str());
    return true;
}
