/*
 * The memory calls of this process, counted and, when asked, failing.
 *
 * This header DEFINES malloc() and its kin, so include it in the one source file of a test program that needs it. The
 * library under test takes them from there too. Counts and failures concern the calling thread only.
 */
#ifndef TESTS_SUPPORT_MEMORY_H
#define TESTS_SUPPORT_MEMORY_H

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

#include <dlfcn.h>

/// Marks functions that run before any sanitizer does.
#define SUPPORT_BARE __attribute__((no_sanitize("address", "thread", "undefined")))

namespace support {

/// Blocks asked for by this thread: malloc, calloc, realloc, aligned_alloc, posix_memalign and operator new.
inline thread_local long blocks_asked_for = 0;
/// Blocks that this thread was given and has not yet given back. (Threads that free each other's blocks shift it.)
inline thread_local long blocks_held = 0;
/// Calls until one fails: 1 lets the next call fail, 0 none.
inline thread_local long calls_until_failure = 0;

/// Lets the n-th memory call of this thread in this scope fail (1: the first).
class MemoryFailure {
public:
    explicit MemoryFailure(long call) { calls_until_failure = call; }
    ~MemoryFailure() { calls_until_failure = 0; }
    MemoryFailure(const MemoryFailure &) = delete;
    MemoryFailure &operator=(const MemoryFailure &) = delete;

    /// Whether that call has been made.
    static bool happened() { return calls_until_failure == 0; }
};

/// Counts a call; true when it is to fail.
SUPPORT_BARE inline bool memoryCallFails() {
    ++blocks_asked_for;
    if (calls_until_failure == 0 || --calls_until_failure != 0)
        return false;
    errno = ENOMEM;
    return true;
}

/// The function of this name that this header stands before.
template <class Function> SUPPORT_BARE inline Function *next(Function *&found, const char *name) {
    if (found == nullptr)
        found = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
    return found;
}

/// Counts what a call gave.
SUPPORT_BARE inline void *held(void *block) {
    blocks_held += block != nullptr ? 1 : 0;
    return block;
}

inline void (*next_free)(void *) = nullptr;
inline bool finding_free = false; // which may itself free an old error text
inline void *(*next_malloc)(size_t) = nullptr;
inline void *(*next_calloc)(size_t, size_t) = nullptr;
inline void *(*next_realloc)(void *, size_t) = nullptr;
inline void *(*next_aligned_alloc)(size_t, size_t) = nullptr;
inline int (*next_posix_memalign)(void **, size_t, size_t) = nullptr;

} // namespace support

// NOLINTBEGIN(misc-definitions-in-headers): see above
extern "C" {

SUPPORT_BARE void free(void *ptr) noexcept {
    support::blocks_held -= ptr != nullptr ? 1 : 0;
    if (support::next_free == nullptr) {
        if (support::finding_free)
            return; // once, a few bytes, before main()
        support::finding_free = true;
        support::next(support::next_free, "free");
        support::finding_free = false;
    }
    support::next_free(ptr);
}

SUPPORT_BARE void *malloc(size_t size) noexcept {
    if (support::memoryCallFails())
        return nullptr;
    return support::held(support::next(support::next_malloc, "malloc")(size));
}

SUPPORT_BARE void *calloc(size_t nmemb, size_t size) noexcept {
    if (support::memoryCallFails())
        return nullptr;
    return support::held(support::next(support::next_calloc, "calloc")(nmemb, size));
}

SUPPORT_BARE void *realloc(void *ptr, size_t size) noexcept {
    if (support::memoryCallFails())
        return nullptr;
    void *grown = support::next(support::next_realloc, "realloc")(ptr, size);
    return ptr == nullptr ? support::held(grown) : grown;
}

SUPPORT_BARE void *aligned_alloc(size_t alignment, size_t size) noexcept {
    if (support::memoryCallFails())
        return nullptr;
    return support::held(support::next(support::next_aligned_alloc, "aligned_alloc")(alignment, size));
}

SUPPORT_BARE int posix_memalign(void **memptr, size_t alignment, size_t size) noexcept {
    if (support::memoryCallFails())
        return ENOMEM;
    const int result = support::next(support::next_posix_memalign, "posix_memalign")(memptr, alignment, size);
    support::blocks_held += result == 0 ? 1 : 0;
    return result;
}

} // extern "C"

// The sanitizers have operators of their own, which would pass malloc() by.
void *operator new(std::size_t size) {
    if (void *block = malloc(size))
        return block;
    throw std::bad_alloc();
}
void *operator new[](std::size_t size) {
    return operator new(size);
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
    return malloc(size);
}
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept {
    return malloc(size);
}
void operator delete(void *block) noexcept {
    free(block);
}
void operator delete[](void *block) noexcept {
    free(block);
}
void operator delete(void *block, std::size_t) noexcept {
    free(block);
}
void operator delete[](void *block, std::size_t) noexcept {
    free(block);
}
// NOLINTEND(misc-definitions-in-headers)

#endif // TESTS_SUPPORT_MEMORY_H
