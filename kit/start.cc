// rimkit start: the three description files of a chip, drafted from its netlist and the libraries of its
// cells.
#include "kit/start.hh"
#include "kit/boundary_cells.hh"
#include "kit/drafts.hh"
#include "kit/files.hh"
#include "kit/json.hh"
#include "kit/names.hh"
#include "kit/order.hh"
#include "kit/ports.hh"
#include "kit/progress.hh"
#include "kit/verbs.hh"
#include "planning/tracing.hh"
#include "siblings/tool.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace {

constexpr KIT_OPTION START_OPTIONS[] = {
    {"liberty", "FILE", "Liberty library of pads or cells, plain or .gz; may be repeated", true},
    {"cells", "FILE", "Verilog of the library cells; may be repeated", true},
    {"netlist", "FILE", "Verilog netlist, DESIGN.v otherwise; may be repeated", true},
    {"pins", "FILE", "package pins as .csv: number, port or pad, name"},
    {"def", "FILE", "placement, for the order of the pads round the die"},
    {"idcode", "V,P,M", "version, part number and manufacturer of the IDCODE"},
    {"test-ports", "NAMES",
     "ports of the TAP: tck=TCK_PAD,tms=...; found by their\nusual names, or added, otherwise"},
    {"package", "NAME", "name of the package, DESIGN_package otherwise"},
    {"boundary-cells", "FILE", "library file of other boundary cells; their Verilog\ncomes by --cells"},
    {"intest", nullptr, "an INTEST instruction"},
    {"synch", nullptr, "cells that TCK clocks, for `rimweave -synch`"},
    {"define", "NAME", "a macro for kalmverin (-D); may be repeated", true},
    {"include", "DIR", "a folder of `include files (-I); may be repeated", true},
    {"power", "NAMES", "power ports that an assign joins (kalmverin -power)"},
    {"drop-parameters", nullptr, "leave parameters of cells away (kalmverin)"},
    {"force", nullptr, "write files that are there anew; the old ones keep a ~"},
};

std::vector<std::string> netlists(const KIT_CALL &call, const std::string &design) {
    return kit_has(call, "netlist") ? kit_values(call, "netlist") : std::vector<std::string>{design + ".v"};
}

/// The words of a kalmverin command that every one of them has here.
std::vector<std::string> reader_words(const KIT_CALL &call, bool cells) {
    std::vector<std::string> words = {"kalmverin"};
    if (cells)
        words.emplace_back("-lib");
    for (const std::string &name : kit_values(call, "define"))
        words.insert(words.end(), {"-D", name});
    for (const std::string &folder : kit_values(call, "include"))
        words.insert(words.end(), {"-I", folder});
    return words;
}

/// Reads the library cells into lib/. True when that was done.
bool read_cells(const KIT_CALL &call) {
    const std::vector<std::string> &files = kit_values(call, "cells");
    if (files.empty())
        return false;
    std::string log = TOOL_base_name(files[0]);
    log = log.substr(0, log.rfind('.')) + ".kalmverin.log";
    if (!is_outdated(log, files) && TOOL_exists("lib") && !kit_has(call, "force"))
        return false;
    std::vector<std::string> words = reader_words(call, true);
    words.insert(words.end(), files.begin(), files.end());
    words.insert(words.end(), {"-opath", "lib"});
    run_step(words);
    return true;
}

void read_netlist(const KIT_CALL &call, const std::string &design, const std::string &as_input,
                  const std::string &as_output) {
    std::vector<std::string> words = reader_words(call, false);
    std::vector<std::string> files = netlists(call, design);
    words.insert(words.end(), files.begin(), files.end());
    words.insert(words.end(), {"-top", design});
    if (kit_has(call, "power"))
        words.insert(words.end(), {"-power", kit_value(call, "power")});
    if (kit_has(call, "drop-parameters"))
        words.emplace_back("-drop_parameters");
    if (!as_input.empty())
        words.insert(words.end(), {"-as_input", as_input});
    if (!as_output.empty())
        words.insert(words.end(), {"-as_output", as_output});
    run_step(words);
}

/// Brings the design database up to date with the netlist.
void update_design(const KIT_CALL &call, const std::string &design) {
    std::vector<std::string> files = netlists(call, design);
    for (const std::string &file : files)
        if (!TOOL_exists(file))
            TOOL_fail("", 0, "there is no netlist '%s'; --netlist names the file.", file.c_str());
    bool new_cells = read_cells(call);
    if (new_cells || kit_has(call, "force") || is_outdated(design + ".c.sdb", files) ||
        !TOOL_exists(design + ".sdb"))
        read_netlist(call, design, "", "");
}

/// The ports that are declared `inout` and are to be read otherwise, whole vectors by their names. A vector
/// whose bits differ stays as it is, and its bits are skipped.
std::string ports_read_as(CHIP_PLAN &plan, PORT_READ_AS direction) {
    struct VECTOR {
        bool all = true, any = false;
    };
    std::map<std::string, VECTOR> vectors;
    for (const PORT_PLAN &port : plan.ports) {
        VECTOR &vector = vectors[kit_bit(port.name).base];
        (port.read_as == direction ? vector.any : vector.all) = port.read_as == direction;
    }
    std::string names;
    for (const auto &[name, vector] : vectors)
        if (vector.any && vector.all)
            names += (names.empty() ? "" : ",") + name;
    for (PORT_PLAN &port : plan.ports)
        if (port.read_as == direction && !vectors[kit_bit(port.name).base].all) {
            port.use = PORT_SKIPPED;
            port.reason = "declared inout on a pad of one direction, in a vector whose other bits differ";
            port.doubt = "the port has no boundary cell: split the vector in the netlist";
        }
    return names;
}

/// Plans the ports; where the declared direction of some is not that of their pads the netlist is read again.
void plan_design(CHIP_PLAN &plan, const KIT_CALL &call, const LIBERTY &library) {
    auto models = read_verilog_models(kit_values(call, "cells"), kit_values(call, "define"),
                                      kit_values(call, "include"));
    std::string file = plan.design + ".c.sdb";
    for (bool again : {false, true}) {
        open_sdb_file(file.c_str());
        plan_ports(plan, library, models);
        plan_test_ports(plan, kit_value(call, "test-ports"));
        std::string as_input = ports_read_as(plan, READ_AS_INPUT),
                    as_output = ports_read_as(plan, READ_AS_OUTPUT);
        plan_pin_states(plan);
        if ((as_input.empty() && as_output.empty()) || again)
            return;
        close_sdb_file();
        for (const auto &[words, names] : {std::pair{"input", as_input}, std::pair{"output", as_output}})
            if (!names.empty())
                kit_note("declared inout, on %s pads: %s; the netlist is read again with -as_%s", words,
                         names.c_str(), words);
        read_netlist(call, plan.design, as_input, as_output);
    }
}

uint32_t idcode_part(const std::string &text, size_t bits, const char *what) {
    char *end = nullptr;
    unsigned long value = std::strtoul(text.c_str(), &end, 0);
    if (text.empty() || text[0] == '-' || *end != '\0' || value >> bits != 0)
        kit_usage_fault(format_text("--idcode: '%s' is no %s of %zu bits", text.c_str(), what, bits));
    return static_cast<uint32_t>(value);
}

/// 32 digits from "version,part,manufacturer"; IEEE 1149.1 keeps manufacturer 127 from use.
std::string idcode_digits(const std::string &text) {
    if (text.empty())
        return "";
    size_t first = text.find(','), second = first == text.npos ? first : text.find(',', first + 1);
    if (second == text.npos)
        kit_usage_fault("--idcode takes VERSION,PART,MANUFACTURER");
    uint32_t version = idcode_part(text.substr(0, first), 4, "version");
    uint32_t part = idcode_part(text.substr(first + 1, second - first - 1), 16, "part number");
    uint32_t maker = idcode_part(text.substr(second + 1), 11, "manufacturer");
    if (maker == 127)
        kit_usage_fault("--idcode: manufacturer 127 (00001111111) is reserved by IEEE 1149.1");
    uint32_t word = version << 28 | part << 12 | maker << 1 | 1;
    std::string digits;
    for (int bit = 31; bit >= 0; --bit)
        digits += (word >> bit & 1) != 0 ? '1' : '0';
    return digits;
}

/// Puts the sources of the chosen cells of the own library beside the drafts, so that the folder holds all
/// that the result is made of, and reads them into lib/.
void take_boundary_cells(const KIT_CALL &call, const std::string &design, const CELL_CHOICE &cells) {
    if (kit_has(call, "boundary-cells"))
        return;
    bool outdated = false;
    std::string verilog = design + "_cells.v";
    for (const auto &[language, ending] : {std::pair{"verilog/", ".v"}, std::pair{"vhdl/", ".vhd"}}) {
        std::string text;
        for (const std::string &name : cell_names(cells))
            text += TOOL_read_file(own_cells_folder() + language + name + ending) + "\n";
        if (!write_draft(design + "_cells" + ending, text, kit_has(call, "force")) &&
            TOOL_read_file(design + "_cells" + ending) != text)
            TOOL_fail(
                design + "_cells" + ending, 0,
                "it does not hold the cells of the drafts; --force writes it anew and keeps it with a ~.");
    }
    for (const std::string &name : cell_names(cells))
        outdated = outdated || is_outdated("lib/" + name + ".sdb", {verilog});
    if (outdated)
        run_step({"kalmverin", "-lib", verilog, "-opath", "lib"});
}

int32_t lines_to_check(const std::string &text) {
    int32_t lines = 0;
    for (size_t at = text.find("please check"); at != text.npos; at = text.find("please check", at + 1))
        ++lines;
    return lines;
}

/// Reads the netlist and the libraries of its cells, and plans the ports.
void plan_chip(CHIP_PLAN &plan, const KIT_CALL &call, const std::string &design) {
    plan.design = design;
    plan.idcode = idcode_digits(kit_value(call, "idcode"));
    plan.package = kit_value(call, "package", design + "_package");
    plan.with_intest = kit_has(call, "intest");
    plan.synchronous = kit_has(call, "synch");
    add_own_folder_to_path();
    TOOL_set_search_path();
    LIBERTY library;
    for (const std::string &file : kit_values(call, "liberty")) {
        KIT_PROGRESS progress("reading " + file);
        liberty_read(library, file);
    }
    update_design(call, design);
    plan_design(plan, call, library);
}

int run_start(const KIT_CALL &call) {
    if (call.names.size() != 1)
        kit_usage_fault("one DESIGN, the name of the top module, is needed");
    START_RESULT result = start_drafts(call, call.names[0]);
    if (kit_has(call, "json"))
        std::printf("{\"design\": %s, \"ports\": %zu, \"with_cells\": %zu, \"skipped\": %zu, \"order\": %s, "
                    "\"to_check\": %d}\n",
                    json_text(result.design).c_str(), result.ports, result.scanned, result.skipped,
                    json_text(result.order).c_str(), result.to_check);
    else
        std::printf("%s", start_report(result).c_str());
    return KIT_DONE;
}

} // namespace

const std::span<const KIT_OPTION> start_options = START_OPTIONS;

START_RESULT start_drafts(const KIT_CALL &call, const std::string &design) {
    CHIP_PLAN plan;
    plan_chip(plan, call, design);
    plan_order(plan, kit_value(call, "pins"), kit_value(call, "def"));
    CELL_CHOICE cells = choose_boundary_cells(plan, kit_value(call, "boundary-cells"));
    take_boundary_cells(call, design, cells);
    close_sdb_file();
    START_RESULT result = {design, plan.ports.size(), 0, 0, 0, plan.order_source, 0};
    for (const PORT_PLAN &port : plan.ports)
        ++(port.use == PORT_SCANNED   ? result.scanned
           : port.use == PORT_SKIPPED ? result.skipped
                                      : result.tests);
    for (const auto &[ending, text] :
         {std::pair{".lib", draft_lib(plan, cells)}, std::pair{".bsc", draft_bsc(plan, cells)},
          std::pair{".pin", draft_pin(plan, cells)}})
        if (write_draft(design + ending, text, kit_has(call, "force")))
            result.to_check += lines_to_check(text);
    return result;
}

std::string start_report(const START_RESULT &result) {
    const char *design = result.design.c_str();
    return format_text(
        "%s: %zu ports: %zu with boundary cells, %zu skipped, %zu of the test port\norder: %s\n"
        "%s.lib, %s.bsc, %s.pin: %d line%s with \"please check\"\n",
        design, result.ports, result.scanned, result.skipped, result.tests, result.order.c_str(), design,
        design, design, result.to_check, result.to_check == 1 ? "" : "s");
}

void start_update(const KIT_CALL &call, const std::string &design) {
    CHIP_PLAN plan;
    plan_chip(plan, call, design);
    close_sdb_file();
}

const KIT_VERB kit_start = {
    "start",
    "Drafts DESIGN.lib, DESIGN.bsc and DESIGN.pin from a netlist and the libraries of its cells.",
    "[options] DESIGN",
    START_OPTIONS,
    "  rimkit start --liberty pads.lib --cells cells.v --netlist chip.v --idcode 1,0x2650,0x2aa chip\n",
    false,
    run_start,
};
