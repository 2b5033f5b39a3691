// What the leak checker is told of: memory that the library leaves behind on purpose. Tests count these blocks.

// A test may have a list of its own: this one is weak.
// NOLINTBEGIN(bugprone-reserved-identifier): the checker's name
extern "C" __attribute__((visibility("default"), weak)) const char *__lsan_default_suppressions();

const char *__lsan_default_suppressions() {
    return "leak:ZoningCache::ZoningUnlock\n"     // does not free its batch
           "leak:ZoningCache::replaceZoningDB\n"; // a batch that cannot grow leaves its array behind
}
// NOLINTEND(bugprone-reserved-identifier)
