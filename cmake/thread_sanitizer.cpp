// What the thread sanitizer cannot know: the C library guards some of its memory with locks of its own, which
// the sanitizer does not see. So it takes for races that the time zone's name comes and goes on different
// threads, and that the variables of a thread that has ended, which that thread destroyed, are freed by
// another one that reuses its stack.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();

const char* __tsan_default_suppressions()
{
    return "race:tzset_internal\n"
           "race:_dl_deallocate_tls\n";
}
