#include "kit/yosys.hh"

#include "kit/engines.hh"
#include "siblings/tool.hh"

#include <sstream>

std::string yosys_word(const std::string &path) {
    return "\"" + path + "\"";
}

std::string run_yosys(const std::string &script, std::string &log) {
    if (std::string fault = engine_obstacle("yosys", "yosys"); !fault.empty())
        return fault;
    SCRATCH_FOLDER folder;
    TOOL_write_file(folder.path + "/prove.ys", script);
    std::string fault =
        run_engine({"yosys", "-Q", "-T", "-s", folder.path + "/prove.ys"}, folder.path + "/log");
    log = TOOL_exists(folder.path + "/log") ? TOOL_read_file(folder.path + "/log") : "";
    size_t at = log.find("ERROR: ");
    if (!fault.empty() && at != log.npos) { // the file and line stand in front
        size_t begin = log.rfind('\n', at) + 1;
        fault = "yosys: " + log.substr(begin, at - begin) + log.substr(at + 7, log.find('\n', at) - at - 7);
    }
    return fault;
}

YOSYS_ANSWERS ask_yosys(const YOSYS_TASK &task) {
    YOSYS_ANSWERS answers;
    SCRATCH_FOLDER folder;
    TOOL_write_file(folder.path + "/own.v", task.text);
    std::string script;
    for (const std::string &file : task.files)
        script += "read_verilog -defer " + yosys_word(file) + "\n";
    script += "read_verilog " + yosys_word(folder.path + "/own.v") + "\nhierarchy -check -top " + task.top +
              "\n" + task.preparation;
    for (const std::string &question : task.questions)
        script += "sat " + question + "\n";
    std::string log;
    answers.why_not = run_yosys(script, log);
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("SAT proof finished", 0) == 0)
            answers.held.push_back(line.find("SUCCESS") != line.npos);
    if (answers.why_not.empty() && answers.held.size() != task.questions.size())
        answers.why_not = "yosys left questions without an answer";
    return answers;
}
