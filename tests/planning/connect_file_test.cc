// The connection files, exact, from description files as a user writes them.
#include "description/reader.hh"
#include "description/tables.hh"
#include "planning/connect_file.hh"
#include "planning/tap_state.hh"
#include "support/run_state.hh"
#include "tests/planning/planned_chip.hh"

namespace {

/// A pin of each sort: sel[3] is a register of three bits; MB and LB have a plain and a gated enable.
const char *const instruction_table = R"(%INSTRUCTION_TABLE {
    %INSTRUCTION MB { %BINARY_CODE = 0101; %DATA_REGISTER = mreg[8]; %EN_H mb_en; %EN_L mb_res AND x; }
    %INSTRUCTION LB { %BINARY_CODE = 0110; %DATA_REGISTER = lreg; %EN_H lb_en; %EN_H lb_res OR y; }
    %INSTRUCTION SEL { %BINARY_CODE = 0111; %DATA_REGISTER = sel[3]; %EN_H sel_en; %EN_H sel_gated NOR z; }
    %INSTRUCTION SC { %BINARY_CODE = 1000; %DATA_REGISTER = screg; %EN_H sc_en; }
    %INSTRUCTION DG { %BINARY_CODE = 1001; %DATA_REGISTER = dgreg; %EN_H dg_en; }
    %INSTRUCTION ONE { %BINARY_CODE = 1010; %DATA_REGISTER = one; }
}
)";

/// Writes the connection files for `bist` in a child; the scratch folder holds what the child leaves.
run_result connect(const scratch_folder &scratch, const std::string &bist, const char *path = nullptr) {
    scratch.write("chip.lib", "%SCAN_CELL BC { %TDI si; }\n%TAP_CONTROLLER TAP { %TDI tdi; }\n");
    scratch.write("chip.bsc", instruction_table + bist);
    return run_child(scratch, [&] {
        TOP_MODULE = "chip";
        JTAG_OPTION[OPT_OPATH] = path != nullptr;
        OPATH = path;
        bsdft_init();
        get_bs_dft_file("chip.lib", "chip.bsc", 0);
        TAP_PORT[PORT_TCK].tap_pin = "tck";
        TAP_PIN[SIG_SHIFT] = "shift_dr";
        org_tap_instance_nameG = "u_core.u_tap";
        rwv_write_connect_file();
    });
}

const struct {
    const char *name; ///< of the expected file
    const char *file, *bist;
    const char *like = ""; ///< the expected file that it differs from
} CONNECTIONS[] = {
    {"connect_memory_block", "mbist_rimweave.cnt",
     "%MEMORY_BIST { %INSTRUCTION mb { %SEL_INSTRUCTION SEL; %CTRL_ORDER 2, 10; %CNT_FILE a.cnt; } }"},
    {"connect_logic_block", "lbist_rimweave.cnt",
     "%LOGIC_BIST { %INSTRUCTION LB { %CTRL_ORDER 3; %SEL_INSTRUCTION ONE; %LBIST_INSTRUCTION DG; %TESTS (1, "
     "0); } }"},
    {"connect_diagnosis", "lbist_rimweave.cnt",
     "%LOGIC_BIST { %INSTRUCTION LB { %CNT_FILE a.cnt, b.cnt; %DIAG_INSTRUCTION DG; %SCAN_INSTRUCTION SC; "
     "%LBIST_INSTRUCTION MB; %SEL_INSTRUCTION SEL; } }"},
    {"connect_without_an_instruction", "lbist_rimweave.cnt",
     "%LOGIC_BIST { %LBIST_INSTRUCTION LB; %SEL_INSTRUCTION SEL; %TESTS (101); %DEBUG_INSTRUCTION SC; "
     "%DIAG_INSTRUCTION NULL, DG, SC; %DIAG_CNT_FILE x.cnt, d.cnt, e.cnt; }"},
    {"connect_cores", "lbist_rimweave.cnt", "%LOGIC_BIST { %INSTANCE_NAME u_soc; %DFT_FILE dft/soc.dft; }"},
    {"connect_cores_diagnosis", "lbist_rimweave.cnt",
     "%LOGIC_BIST { %INSTANCE_NAME u_soc; %DFT_FILE dft/soc.dft; %DIAG_INSTRUCTION DG; %DIAG_CNT_FILE d.cnt; "
     "}",
     "planning/expected/connect_cores.cnt"},
    {"connect_cores_scan", "lbist_rimweave.cnt",
     "%LOGIC_BIST { %INSTRUCTION LB { %INSTANCE_NAME u_soc; %DFT_FILE dft/soc.dft; %SCAN_INSTRUCTION SC; } "
     "}"},
};

const char *const tap_line = "%TAP_INSTANCE    chip.u_core.u_tap;\n";

/// Three levels in two folders: `cpu` and `dsp` share a file under two spellings of its name, and a core
/// without a BIST file hides what is below it.
void lay_out_cores(const scratch_folder &scratch) {
    scratch.write("dft/soc.dft", R"(%TOP_MODULE = soc;
%CORE { %NAME = cpu; %DFT_FILE = "cores/cpu.dft"; %LBIST_FILE = "x"; }
%CORE { %NAME = plain; %DFT_FILE = "cores/ram.dft"; }
%CORE { %NAME = dsp; %NAME = gpu; %DFT_FILE = "cores/CPU.dft"; %LBIST_FILE = "x"; }
)");
    scratch.write("dft/cores/CPU.dft", "another file whose name differs in its case alone");
    scratch.write("dft/cores/cpu.dft", R"(%TOP_MODULE = cpu_top;
%CORE { %NAME = alu; %DFT_FILE = "alu.dft"; %LBIST_FILE = "x"; }
%CORE { %NAME = hidden; %DFT_FILE = "alu.dft"; }
)");
    scratch.write("dft/cores/alu.dft",
                  "%TOP_MODULE = alu_top;\n%CORE { %NAME = mul; %DFT_FILE = \"../mul.dft\"; "
                  "%LBIST_FILE = \"x\"; }\n");
    scratch.write("dft/mul.dft", "%TOP_MODULE = mul_top;\n");
    scratch.write("dft/cores/ram.dft",
                  "%TOP_MODULE = ram_top;\n%CORE { %NAME = below; %DFT_FILE = \"../mul.dft\"; "
                  "%LBIST_FILE = \"x\"; }\n");
}

} // namespace

TEST(ConnectFile, HoldsTheBlocks) {
    for (const auto &[name, file, bist, like] : CONNECTIONS) {
        scratch_folder scratch;
        lay_out_cores(scratch);
        run_result result = connect(scratch, bist);
        EXPECT_EQ(result.status, 0) << name << result.out << result.err;
        expect_file(std::string("planning/expected/") + name + ".cnt", scratch.read(file), like);
        EXPECT_FALSE(scratch.has("soc.dft_map.log")) << name;
    }
}

TEST(ConnectFile, RefusesWhatItCannotWrite) {
    const char *const core = "%CORE { %NAME = a; %DFT_FILE = \"b.dft\"; %LBIST_FILE = \"x\"; }";
    const char *const rows[] = {"%LOGIC_BIST { %DFT_FILE a.dft; }",
                                "%LOGIC_BIST { %INSTRUCTION LB { %DFT_FILE a.dft; } }",
                                "%LOGIC_BIST { %TESTS (1); }",
                                "%LOGIC_BIST { %DIAG_INSTRUCTION DG, SC; %DIAG_CNT_FILE a; }",
                                "%LOGIC_BIST { %DIAG_INSTRUCTION QQ; %DIAG_CNT_FILE a; }",
                                "%LOGIC_BIST { %INSTANCE_NAME u; %DFT_FILE a.dft; }"};
    std::string said;
    for (const char *row : rows) {
        scratch_folder scratch;
        scratch.write("a.dft", core);
        scratch.write("b.dft", "%CORE { %NAME = a; %DFT_FILE = \"c.dft\"; %LBIST_FILE = \"x\"; }");
        scratch.write("c.dft", "%TOP_MODULE = leaf;");
        run_result result =
            connect(scratch, std::string(row) + "\n%MEMORY_BIST { %INSTRUCTION NONE { %CTRL_ORDER 1; } }");
        said += section(row, result);
        EXPECT_EQ(scratch.read("mbist_rimweave.cnt"), tap_line) << "the file before it stays";
        EXPECT_FALSE(scratch.has("lbist_rimweave.cnt"));
    }
    expect_file("planning/expected/connect_refusals.txt", said);
}

TEST(ConnectFile, GoesWhereOutputGoes) {
    const char *const both =
        "%MEMORY_BIST { %INSTRUCTION NONE { %CTRL_ORDER 1; } }\n%LOGIC_BIST { %INSTRUCTION NONE { "
        "%CTRL_ORDER 1; } }";
    scratch_folder scratch;
    scratch.write("out/there", "");
    EXPECT_EQ(connect(scratch, both, "out").status, 0);
    EXPECT_EQ(scratch.read("out/mbist_rimweave.cnt") + scratch.read("out/lbist_rimweave.cnt"),
              std::string(tap_line) + tap_line);
    run_result result = connect(scratch, both, "nowhere");
    EXPECT_EQ(result.out, "ERROR: can't open file 'nowhere/lbist_rimweave.cnt'.\n\n");
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(connect(scratch, "").status, 0);
    EXPECT_FALSE(scratch.has("mbist_rimweave.cnt"));
}

TEST(ConnectFile, NamesTheWholePathOfTheTap) {
    planning_folder folder;
    CHIP chip = {.design = R"(module M(input B); GATE g(.A(B)); endmodule
module chip(input a); IBUF p(.PAD(a), .C(n)); M m(.B(n)); endmodule)",
                 .pins = "1 A a *\n",
                 .settings = "%MEMORY_BIST { %INSTRUCTION NONE { %CTRL_ORDER 2; } }",
                 .tap = "m.TAP"};
    folder.lay_out(chip);
    for (const char *options : {"-add_tap", "-add_tap_only"}) {
        chip.options = options;
        std::filesystem::remove(folder.scratch.dir / "mbist_rimweave.cnt");
        EXPECT_EQ(folder.insert(chip).status, 0);
        EXPECT_EQ(folder.scratch.read("mbist_rimweave.cnt"), "%TAP_INSTANCE    chip.m.TAP;\n") << options;
    }
}
