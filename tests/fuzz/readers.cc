// The readers under fuzz.
#include "tests/fuzz/fuzz.hh"

#include "description/keywords.hh"
#include "description/lookups.hh"
#include "description/reader.hh"
#include "dftlang/scan_interface.hh"
#include "guide/guide.hh"
#include "guide/save.hh"
#include "kit/liberty.hh"
#include "kit/liberty_function.hh"
#include "kit/package_list.hh"
#include "kit/placement.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "siblings/edit_program.hh"
#include "siblings/flat_program.hh"
#include "siblings/list_program.hh"
#include "siblings/verilog_to_sdb.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/settings.hh"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

// Of dftlang/grammar.hh, whose names of node kinds are those of the description files' too.
struct BLOCK;
const std::vector<BLOCK> &grammar_blocks();

namespace {

namespace fs = std::filesystem;

/// Runs one of the programs that take a command line.
template <int MAIN(int, char **)> void run_tool(std::initializer_list<const char *> words) {
    fuzz_run([&] {
        std::vector<char *> line;
        for (const char *word : words)
            line.push_back(const_cast<char *>(word));
        int count = static_cast<int>(line.size());
        line.push_back(nullptr);
        MAIN(count, line.data());
    });
}

void copy_from_tree(const char *file, const char *to) {
    fs::copy_file(fs::path(RW_SOURCE_DIR) / file, to);
}

void write_text(const char *path, const char *text) {
    std::ofstream(path) << text;
}

void make_cells() {
    fs::create_directory("lib");
    copy_from_tree("tests/editing/designs/cells.v", "lib/cells.v");
    run_tool<VTOS_main>({"kalmverin", "-lib", "lib/cells.v", "-opath", "lib"});
}

// --- description files

void read_descriptions(const char *lib, const char *bsc) {
    bsdft_init();
    get_bs_dft_file(lib, bsc, 0);
    for (const BUFFER_CELL *buffer : rows(BUFFER_TAB))
        get_buffer(buffer->name);
    lib_text();
    bsc_text();
    pin_text();
}

void read_lib() {
    fuzz_run([] { read_descriptions("in.lib", "short.bsc"); });
}

void read_bsc() {
    fuzz_run([] { read_descriptions("chip.lib", "in.bsc"); });
}

void read_pins() {
    fuzz_run([] { read_descriptions("short.lib", "pins.bsc"); });
    fuzz_run([] { read_descriptions("short.lib", "packages.bsc"); });
}

void make_keywords() {
    lib_keyword_lookup("");
    bsc_keyword_lookup("");
    pin_keyword_lookup("");
}

void prepare_descriptions() {
    make_keywords();
    for (const char *file : {"chip.lib", "chip.pin"})
        copy_from_tree((std::string("examples/uart_chip/") + file).c_str(), file);
    write_text("short.lib", "%SCAN_CELL BC_IN { %DATA_IN DI; }");
    write_text("short.bsc", "%GLOBAL_TDI tdi;");
    write_text("pins.bsc", "%PIN_LIST { %FILE_NAME in.pin; }");
    write_text("packages.bsc", "%PACKAGE_LIST { %FILE_NAME chip.pin; %FILE_NAME in.pin; }");
}

// --- settings, and the list of directories

void read_settings() {
    fuzz_run([] {
        char directories[256] = {};
        if (std::FILE *list = std::fopen("directories", "r"))
            std::fclose((std::fgets(directories, sizeof directories, list), list));
        CMD_set_path(directories, ".", "designs:lib");
        RC_load("velmora", directories[0] == '\0' ? nullptr : "tool");
        RC_sget("hier_dot*", ".");
        RC_search("*a?");
        FNM_find_input("chip.lib");
    });
}

// --- test configurations

void prepare_dft() {
    grammar_blocks();
}

void read_dft() {
    fuzz_run([] {
        scan_interface("every", 0, "hier_dft");
        for (int32_t row = 0; row < DYNA_count(SL_CORE_LIST); row++)
            DFT_inst_setup(SL_CORE_LIST[row].core_name);
        set_current_core_name(0);
    });
}

// --- designs

void read_verilog() {
    run_tool<VTOS_main>({"kalmverin", "in.v"});
    run_tool<VTOS_main>({"kalmverin", "-lib", "in.v"});
    run_tool<VTOS_main>({"kalmverin", "-drop_parameters", "-D", "X=1", "-as_input", "c", "-power", "c,z",
                         "-top", "t", "in.v"});
}

void read_edits() {
    run_tool<EDIT_main>({"kalmedit", "-nologo", "-b", "in"});
}

void prepare_edits() {
    make_cells();
    copy_from_tree("tests/editing/designs/pads_in_module.v", "chip.v");
    run_tool<VTOS_main>({"kalmverin", "chip.v"});
}

/// A name of each kind, and the nets with their nodes.
void look_up_all(const SDB_HANDLE *design) {
    for (int32_t port = 0; port < port_count; port++)
        SDB_nl_search_port(SYM_get(sym_tab, port_tab[port].name));
    for (int32_t obj = 0; obj < obj_count; obj++) {
        const char *name = SDB_obj_name(design, obj);
        SDB_lookup_obj(name);
        SDB_nl_search_node(name, SDB_obj_class_name(design, obj));
        SDB_search_node(2, obj);
        SDB_obj_class_name(design, obj);
        SDB_prefix_class_name(design, SDB_obj_prefix_row(design, obj));
        SDB_prefix_instance_name(design, SDB_obj_prefix_row(design, obj));
    }
    for (int32_t net = 0; net < net_count; net++) {
        SDB_net_name(design, net);
        for (int32_t node = net_tab[net].first_node; node >= 0; node = node_tab[node].next)
            if (node_tab[node].net != net)
                __builtin_trap();
    }
}

void read_sdb() {
    int status = fuzz_run([] {
        SDB_HANDLE *design = SDB_setup(SDB_open("chip.sdb", "r", 0));
        if (design == nullptr)
            end_run();
        look_up_all(design);
        ALIAS_write();
        SDB_close(design, 0);
    });
    if (status != 0)
        return;
    run_tool<LIST_main>({"kalmlist", "-verilog", "-hierarchy", "-o", "out.v", "chip.sdb"});
    run_tool<LIST_main>({"kalmlist", "-vhdl", "-o", "out.vhd", "chip.sdb"});
    run_tool<FLAT_main>({"kalmflat", "-cellonly", "-keepempty", "chip", "-opath", "."});
    run_tool<EDIT_main>({"kalmedit", "-nologo", "-b", "add"});
    run_tool<EDIT_main>({"kalmedit", "-nologo", "-b", "change"});
}

void prepare_sdb() {
    prepare_edits();
    fs::remove("chip.sdb");
    write_text("change.cmd",
               "edit chip\ndisconnect u1{D}\nconnect u1{D} VCC\nreplace u2 BC_IN\nsave\nquit\n");
    write_text("add.cmd",
               "edit chip\nadd fuzz_1 INV\nadd fuzz_2 input\nconnect fuzz_1{A} fuzz_2\nsave\nquit\n");
}

// --- the guide

void read_answers() {
    fuzz_run([] {
        struct ANSWERS {
            std::FILE *console = std::exchange(stdin, std::fopen("answers", "r"));
            ~ANSWERS() {
                stdin = console;
            }
        } answers;
        TOP_MODULE = "chip";
        JTAG_BSC_FILE = FNM_search("chip.bsc", 0, FNM_HERE);
        JTAG_LIB_FILE = FNM_search("chip.lib", 0, FNM_HERE);
        guideline_handler();
        bsdft_init();
        get_bs_dft_file(JTAG_LIB_FILE, JTAG_BSC_FILE, 0);
    });
}

// --- what drafts are made of

void ask_function(const std::string &text) {
    LIBERTY_FUNCTION function = liberty_function(text);
    for (const std::string &pin : function.names)
        for (LIBERTY_SENSE sense : {LIBERTY_SENSE::DIRECT, LIBERTY_SENSE::INVERTED}) {
            bool follows = liberty_function_shows(function, pin, sense).when == LIBERTY_WHEN::ALWAYS;
            if (follows != liberty_function_is(function, pin, sense))
                __builtin_trap();
        }
    liberty_function_true_when_any(function);
}

void read_liberty() {
    fuzz_run([] {
        LIBERTY library;
        liberty_read(library, "in.lib");
        for (const auto &[name, cell] : library.cells)
            for (const LIBERTY_PIN &pin : cell.pins) {
                ask_function(pin.function);
                ask_function(pin.three_state);
            }
    });
}

void read_lists() {
    fuzz_run([] {
        PLACEMENT placement = placement_read("in.def");
        if (placement_ring(placement.components).size() != placement.components.size())
            __builtin_trap();
    });
    fuzz_run([] { package_list_read("in.csv"); });
}

const FUZZ_READER readers[] = {
    {"lib", {"in.lib"}, read_lib, prepare_descriptions},
    {"bsc", {"in.bsc", "chip.pin", "chip.lib"}, read_bsc, prepare_descriptions},
    {"pin", {"in.pin"}, read_pins, prepare_descriptions},
    {"settings", {".velmora.def", "directories"}, read_settings},
    {"dft",
     {"every.dft", "core.dft", "every.map", "every.inst", "every.latch", "every.path", "every.false",
      "every.fault"},
     read_dft,
     prepare_dft},
    {"edit", {"in.cmd"}, read_edits, prepare_edits},
    {"verilog", {"in.v", "inc.v"}, read_verilog, make_cells},
    {"sdb", {"chip.sdb", "chip.asn"}, read_sdb, prepare_sdb},
    {"liberty", {"in.lib", "inc.lib"}, read_liberty},
    {"lists", {"in.def", "in.csv"}, read_lists},
    {"guide", {"answers", "chip.bsc", "chip.lib", "chip.pin"}, read_answers, make_keywords},
};

} // namespace

const FUZZ_READER &fuzz_reader(const char *name) {
    return *std::find_if(std::begin(readers), std::end(readers),
                         [&](const FUZZ_READER &reader) { return std::strcmp(reader.name, name) == 0; });
}
