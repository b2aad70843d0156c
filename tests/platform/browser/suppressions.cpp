// What the sanitizers must not hold against the tests that run the web engine, which is not built with them.

/// The engine ends without freeing what lives as long as the program, and so does the font library
/// that it works with.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions() { // NOLINT: its name
  return "leak:libQt6WebEngineCore\nleak:libfontconfig";
}

/// The engine frees some of its own objects by the size of their base.
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options() { // NOLINT: its name
  return "new_delete_type_mismatch=0";
}
