// What the leak sanitizer is told in programs that link Qt Gui. Its search of thread-local memory runs into a wild address
// there (g++ 12: it guesses where the memory of a library begins), so that memory is left out, and GLib keeps some in it. D-Bus
// keeps a buffer of each thread for good.

extern "C" {

const char* __lsan_default_options() {
    return "use_tls=0:print_suppressions=0";
}

const char* __lsan_default_suppressions() {
    return "leak:libglib-2.0\nleak:libdbus-1";
}
}
