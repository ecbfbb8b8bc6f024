#include "kit/finished_run.hh"

#include "description/reader.hh"
#include "kit/engines.hh"
#include "kit/files.hh"
#include "kit/progress.hh"
#include "planning/tracing.hh"
#include "siblings/tool.hh"

FINISHED_RUN finished_run(const KIT_CALL &call) {
    if (call.names.size() != 1)
        kit_usage_fault("one DESIGN, the name of the top module, is needed");
    FINISHED_RUN run{call.names[0], kit_value(call, "opath"), cell_models(call, call.names[0])};
    if (!run.opath.empty() && run.opath.back() != '/')
        run.opath += '/';
    return run;
}

std::string run_file(const FINISHED_RUN &run, const std::string &ending) {
    return (run.opath.empty() ? run.design : run.opath + TOOL_base_name(run.design)) + ending;
}

std::string run_text(const FINISHED_RUN &run, const std::string &ending) {
    std::string vhdl = run_file(run, ending + ".vhd"), verilog = run_file(run, ending + ".v");
    return TOOL_exists(vhdl) && is_outdated(verilog, {vhdl}) ? vhdl : verilog;
}

std::string verilog_obstacle(const std::string &file) {
    if (file.ends_with(".vhd"))
        return file + " is VHDL, and the engines read Verilog";
    return TOOL_exists(file) ? "" : "there is no " + file;
}

void need_run_files(const FINISHED_RUN &run, const char *verb) {
    for (const std::string &file : {run.design + ".lib", run.design + ".bsc", run.design + ".c.sdb",
                                    run_file(run, "_jtag.c.sdb"), run.design + ".bso"})
        if (!TOOL_exists(file))
            TOOL_fail("", 0, "there is no '%s'; `rimkit %s` runs in the folder of a finished run.",
                      file.c_str(), verb);
}

bool open_finished_run(const FINISHED_RUN &run) {
    std::string edited = run_file(run, "_jtag.c.sdb");
    KIT_PROGRESS progress("reading " + edited);
    TOOL_set_search_path();
    bsdft_init();
    get_bs_dft_file((run.design + ".lib").c_str(), (run.design + ".bsc").c_str(), 0);
    if (!TOOL_exists(edited))
        return false;
    open_sdb_file(edited.c_str());
    return true;
}
