// What the libraries beneath the windows hold for the life of the process.
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libdbus\nleak:libglib\n";
}
