// The reader of exchange drawings loses some memory on files that it refuses, which the desk reads at
// start-up at most. Leaks of our own are found all the same.

extern "C" const char* __lsan_default_suppressions();   // NOLINT: the sanitizer's own name
extern "C" const char* __lsan_default_suppressions() {  // NOLINT
  return "leak:libdime.so";
}
