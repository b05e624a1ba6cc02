// What the thread sanitizer cannot know: the C library guards its time zone with a lock of its own, which the
// sanitizer does not see, but it sees the memory for the zone's name come and go on different threads.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();

const char* __tsan_default_suppressions()
{
    return "race:tzset_internal\n";
}
