// Leaks of libraries that are not ours.

// The leak sanitizer asks for this function by its name.
extern "C" const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
    return "leak:vorbis_encode_setup_init\n"; // with six channels
}
