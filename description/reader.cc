#include "description/reader.hh"

#include "description/reading.hh"
#include "description/save_tables.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/text.hh"

namespace {

std::FILE *open_or_fail(const char *kind, const char *name) {
    std::FILE *file = FNM_open(name);
    if (file == nullptr)
        error_fail("Error: Can't open %s file %s\n", kind, name);
    return file;
}

} // namespace

const char *LIB_FILE = nullptr;
const char *BSC_FILE = nullptr;

void get_bs_dft_file(const char *lib_file, const char *bsc_file, int32_t /*dump_level*/) {
    if (lib_file == nullptr)
        error_fail("Error: lib file is a null string\n");
    if (bsc_file == nullptr)
        error_fail("Error: dft file is a null string\n");
    std::FILE *lib = open_or_fail("lib", lib_file);
    std::FILE *bsc = open_or_fail("dft", bsc_file);
    begin_pin_files();

    LIB_FILE = keep_text(lib_file);
    begin_file(LIB_FILE, lib, lib_yyrestart, lib_yylineno);
    lib_yyparse();
    std::fclose(lib);
    save_lib_tab();

    BSC_FILE = keep_text(bsc_file);
    begin_file(BSC_FILE, bsc, bsc_yyrestart, bsc_yylineno);
    bsc_yyparse();
    std::fclose(bsc);
    save_bsc_tab();

    if (GLOBAL_EXIT != 0)
        end_run();
}
