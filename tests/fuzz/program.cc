// The fuzzer of one reader; all but this is in the library.
extern const char *const fuzz_reader_name;
const char *const fuzz_reader_name = RW_READER;

extern "C" const char *__asan_default_options() {
    // Blocks are freed by what no longer knows how they were made; what is left is no leak.
    return "detect_leaks=0:alloc_dealloc_mismatch=0:quarantine_size_mb=32:malloc_context_size=6";
}
