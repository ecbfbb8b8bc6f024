// tests/dftlang/every holds every statement of the five kinds of file, with the trees, the warnings and the
// records that are made of them.
#include "tests/dftlang/dft_case.hh"

#include <string>

namespace {

void show_names(const char *field, const char *const *names) {
    if (DYNA_count(names) == 0)
        return;
    std::printf("%s:", field);
    for (const char *name : rows(names))
        std::printf(" %s", name);
    std::printf("\n");
}

void show_statements(const std::vector<DFT_STATEMENT> &body, int indent) {
    for (const DFT_STATEMENT &row : body) {
        std::printf("%*s%.*s", indent, "", static_cast<int>(row.keyword.size()), row.keyword.data());
        for (const char *value : row.values)
            std::printf(" %s", value);
        std::printf("\n");
        show_statements(row.body, indent + 2);
    }
}

struct BLOCK_FIELD {
    const char *name;
    const SCAN_AST *DFT_CONFIGURATION::*field;
};

const BLOCK_FIELD block_fields[] = {
    {"test_schedule", &DFT_CONFIGURATION::test_schedule},
    {"test_session", &DFT_CONFIGURATION::test_session},
    {"test_architecture", &DFT_CONFIGURATION::test_architecture},
    {"hookup", &DFT_CONFIGURATION::hookup},
    {"fold_scan_info", &DFT_CONFIGURATION::fold_scan_info},
    {"clock_period", &DFT_CONFIGURATION::clock_period},
    {"test_files", &DFT_CONFIGURATION::test_files},
    {"mbist_bsd", &DFT_CONFIGURATION::mbist_bsd},
    {"connect_cores", &DFT_CONFIGURATION::connect_cores},
    {"select_fault", &DFT_CONFIGURATION::select_fault},
    {"scan_repair", &DFT_CONFIGURATION::scan_repair},
    {"ta_constraints", &DFT_CONFIGURATION::ta_constraints},
    {"scan_modules", &DFT_CONFIGURATION::scan_modules},
    {"plls", &DFT_CONFIGURATION::plls},
    {"blackboxes", &DFT_CONFIGURATION::blackboxes},
    {"gui", &DFT_CONFIGURATION::gui},
    {"capture_clock", &DFT_CONFIGURATION::capture_clock},
    {"wrapper", &DFT_CONFIGURATION::wrapper},
    {"deep_scan", &DFT_CONFIGURATION::deep_scan},
    {"pll_clock_fix", &DFT_CONFIGURATION::pll_clock_fix},
    {"test_conversion", &DFT_CONFIGURATION::test_conversion},
};

struct NAMES_FIELD {
    const char *name;
    const char **DFT_CONFIGURATION::*field;
};

const NAMES_FIELD names_fields[] = {
    {"lockup_latch_list", &DFT_CONFIGURATION::lockup_latch_list},
    {"dont_fault", &DFT_CONFIGURATION::dont_fault},
    {"must_fault", &DFT_CONFIGURATION::must_fault},
    {"ciphertext", &DFT_CONFIGURATION::ciphertext},
    {"critical_paths", &DFT_CONFIGURATION::critical_paths},
    {"scan_in_list", &DFT_CONFIGURATION::scan_in_list},
    {"scan_out_list", &DFT_CONFIGURATION::scan_out_list},
    {"nontpi_instances", &DFT_CONFIGURATION::nontpi_instances},
    {"def_info", &DFT_CONFIGURATION::def_info},
    {"core_no_scan", &DFT_CONFIGURATION::core_no_scan},
};

const char *shown(const char *text) {
    return text == nullptr ? "-" : text;
}

void show_elements(const char *field, const INSTANCE_LIST *lists) {
    std::vector<INSTANCE_ELEMENT> elements;
    for (const INSTANCE_LIST &list : rows(lists))
        CONVERT_SCAN_INSTANCES(list, elements);
    for (const INSTANCE_ELEMENT &row : elements)
        std::printf("%s: %s count %d tail_form %d marks %d%d%d tail %s %s %s words %d %d %d %d %d group %d\n",
                    field, shown(row.name), row.count, row.tail_form, row.inverted, row.bang_before,
                    row.bang_after, shown(row.tail[0]), shown(row.tail[1]), shown(row.tail[2]), row.control,
                    row.observe, row.transition, row.pipeline, row.capture1, row.group);
}

void show_paths(const char *field, const PATH_ROW *paths) {
    for (const PATH_ROW &row : rows(paths)) {
        std::printf("%s: cycle %d\n", field, row.cycle);
        show_names("  from", row.from);
        show_names("  through", row.through);
        show_names("  to", row.to);
        show_names("  files", row.files);
    }
}

void show_sequences() {
    for (const SEQUENCE *row : rows(DFT_OBJECT->sequences)) {
        std::printf("sequence: %s cycle_length %d frame_length %d timings %d %d %d\n", row->name,
                    row->cycle_length, row->frame_length, DYNA_count(row->timing),
                    DYNA_count(row->launch_timing), DYNA_count(row->capture_timing));
        for (const FORCE_ROW &force : rows(row->forces))
            std::printf("  force %d %s %s\n", force.kind, force.signal, shown(force.pattern));
        std::printf("  clocks %d\n", DYNA_count(row->clocks));
    }
    for (const SCAN_INSTRUCTION &row : rows(DFT_OBJECT->instructions))
        std::printf("instruction: %s mode '%s' preamble %d %s shift %s extra %d capture %s postamble %d\n",
                    row.name, shown(row.mode), DYNA_count(row.preamble), row.first_preamble->name,
                    row.shift->name, DYNA_count(row.extra_sequences), row.capture->name,
                    DYNA_count(row.postamble));
    std::printf("order:");
    for (const INSTR_ORDER_ROW &row : rows(INSTR_ORDER_TAB))
        std::printf(" %d/%d", row.instruction, row.statement);
    std::printf("\n");
}

void show_cores() {
    for (const CORE_ENTRY &row : rows(DFT_OBJECT->cores)) {
        std::printf("core: %s line %d dft '%s' lbist '%s' preamble %s instructions %d patsets %d fix %s %s\n",
                    row.name, row.line, row.dft_file, shown(row.lbist_file), row.preamble[0]->name,
                    DYNA_count(row.instructions), DYNA_count(row.patsets), row.dont_fix[1].first,
                    row.dont_fix[1].second);
        show_names("  clock_ports", row.clock_ports);
        show_names("  scan_out_ports", row.scan_out_ports);
        show_names("  tie1", row.tie1);
    }
}

void show_decoder() {
    const SCAN_DECODER &decoder = *DFT_OBJECT->scan_decoder;
    for (const CONTROL_PORT &port : decoder.ports)
        std::printf("decoder port: block %d %s %s %s %s\n", port.in_block_form, shown(port.port_name),
                    shown(port.pad_name), shown(port.pad_out), shown(port.polarity));
    for (const FS_MODE_ROW &row : rows(decoder.fs_mode))
        std::printf("fs_mode: %s %d\n", row.port_name, row.value);
}

void show_atpg() {
    for (const ATPG_MODE &mode : rows(DFT_OBJECT->atpg_constraints)) {
        for (const LEGAL_ROW &row : rows(mode.legal)) {
            show_names("legal ports", row.ports);
            show_names("legal patterns", row.patterns);
        }
        show_statements(dft_statements(mode.block), 2);
    }
}

void show_object() {
    const DFT_CONFIGURATION &made = *DFT_OBJECT;
    std::printf("top %s file %s map %s latch file %s command %s binary %s length %s\n", made.top_module,
                made.file_name, made.read_map, made.lockup_latch_file, made.modify_cmd,
                made.instruction_binary, made.register_length);
    std::printf("select_scan: %d %.2f\n", made.select_scan->init.number, made.select_scan->init.fraction);
    for (const PORT_ROW &port : rows(made.port_info))
        std::printf("port: %s type %d pads %d map %s\n", port.name, port.type, DYNA_count(port.pads),
                    port.port_map[0].names[1]);
    show_sequences();
    show_cores();
    show_decoder();
    show_paths("multicycle", made.multicycle_paths);
    show_paths("multicycle file", made.file_multicycle_paths[0].paths);
    show_paths("false", made.false_paths);
    show_paths("false file", made.file_false_paths[0].paths);
    for (const MBIST_PIN &pin : rows(made.mbist_constraints[0].pins))
        std::printf("mbist pin: %s %s %s\n", std::string(pin.keyword).c_str(), shown(pin.instance), pin.pin);
    for (const FOLD_GROUP &group : rows(made.fold_scan_in[0].groups))
        std::printf("fold in: %s %s %s/%s %s/%s %s\n", made.fold_scan_in[0].name, group.name,
                    group.pairs[0].first, shown(group.pairs[0].second), group.pairs[1].first,
                    shown(group.pairs[1].second), group.members == nullptr ? "-" : group.members[0]);
    for (const CONNECT_ROW &row : rows(made.connect_scans))
        std::printf("connect_scan: %s %s violation %d clocks %s %d\n", row.first, row.second,
                    row.ms_violation, row.clocks[0].keyword, row.clocks[0].polarity);
    show_elements("must_scan", made.connect_scans[0].instances.elements);
    show_elements("fs_scan", made.connect_bists[0].instances.fs_scan);
    show_statements(dft_statements(made.connect_scans[0].instances.files[0]), 2);
    show_atpg();
    for (const NAMES_FIELD &field : names_fields)
        show_names(field.name, made.*field.field);
    for (const BLOCK_FIELD &field : block_fields) {
        std::printf("%s\n", field.name);
        show_statements(dft_statements(made.*field.field), 2);
    }
    std::printf("map %s\n", made.map->scan_mode_active[0].second);
    show_statements(dft_statements(made.map->file), 2);
}

run_result read_every(const scratch_folder &scratch, int debug, const std::function<void()> &show) {
    std::filesystem::copy(RW_SOURCE_DIR "/tests/dftlang/every", scratch.dir);
    return run_child(scratch, [&] {
        scan_interface("every.dft", debug, "hier_dft");
        show();
    });
}

} // namespace

/// The tree with its leaves, which have a value, on the line of what stands before them, behind their depth.
static std::string folded(const std::string &tree) {
    std::istringstream lines(tree);
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        const size_t blanks = line.find_first_not_of(' ');
        const bool leaf = line.find('[') != std::string::npos;
        text += leaf ? " " + std::to_string(blanks / 4) + ":" + line.substr(blanks) : "\n" + line;
    }
    return text + "\n";
}

TEST(EveryStatement, MakesItsTree) {
    scratch_folder scratch;
    run_result result = read_every(scratch, 1, [] {});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, scratch.read("every.err"));
    EXPECT_EQ(folded(result.out), scratch.read("every.tree"));
}

TEST(EveryStatement, MakesItsRecords) {
    scratch_folder scratch;
    run_result result = read_every(scratch, 0, show_object);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, scratch.read("every.object"));
}
