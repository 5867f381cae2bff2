// Read by the leak sanitizer in every test program: memory that these libraries keep until the program ends
// is not a leak of ours.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libdbus-1\nleak:libfontconfig\nleak:libQt6\nleak:libQCustomPlot\n";
}
