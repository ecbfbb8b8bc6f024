#include "description/reader.hh"

#include "description/reading.hh"
#include "description/save_tables.hh"
#include "support/console.hh"
#include "support/faults.hh"
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

    struct DESCRIPTION {
        const char *&name;
        const char *given;
        std::FILE *file;
        void (*restart)(std::FILE *file);
        const int &line;
        int (*parse)();
        void (*save)();
    };
    const DESCRIPTION files[] = {
        {LIB_FILE, lib_file, lib, lib_yyrestart, lib_yylineno, lib_yyparse, save_lib_tab},
        {BSC_FILE, bsc_file, bsc, bsc_yyrestart, bsc_yylineno, bsc_yyparse, save_bsc_tab},
    };
    each_apart(files, [](const DESCRIPTION &description) {
        description.name = keep_text(description.given);
        begin_file(description.name, description.file, description.restart, description.line);
        description.parse();
        std::fclose(description.file);
        description.save();
    });

    if (GLOBAL_EXIT != 0)
        end_run();
}
