// What the cache takes: its object, its heap after the first pass, a waiting notification, the stack of the EVAL thread.
//
//   measure PROFILE [ZONING-SETS ZONES-PER-SET MEMBERS-PER-ZONE]
//
// The simulated switch lives in the same process. What it allocates is told apart by counting per thread, and by marking
// the calls of the switch library: the functions below stand before those of the library.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <malloc.h>
#include <new>
#include <pthread.h>
#include <stdexcept>
#include <string>
#include <sys/mman.h>

#include "datacache/DataCache.h"
#include "docs/examples/CacheHold.h"
#include "docs/examples/driver.h"

namespace {

constexpr std::size_t kStackSize = 131072; // what the cache asks for
constexpr unsigned char kPaint = 0xA5;

enum Owner : unsigned char { nobody = 0, theCache = 0xCA, theZoning = 0x20 };

thread_local bool counting = false; // this thread runs the cache
thread_local Owner owner = theCache;
std::atomic<long> cacheBytes{0};
std::atomic<long> zoningBytes{0};

unsigned char *stack = nullptr; // its lowest byte
unsigned char *firstFrame = nullptr;

/// Who asked for a block stands before it.
constexpr std::size_t kNote = 16;

std::atomic<long> *countOf(unsigned char whose) {
    if (whose == theCache)
        return &cacheBytes;
    return whose == theZoning ? &zoningBytes : nullptr;
}

/// Marks a call of the switch library, for as long as it takes.
class LibraryCall {
public:
    explicit LibraryCall(Owner whose) : _before(owner) { owner = whose; }
    ~LibraryCall() { owner = _before; }
    LibraryCall(const LibraryCall &) = delete;
    LibraryCall &operator=(const LibraryCall &) = delete;

private:
    Owner _before;
};

template <class Function> Function *next(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

void *runEvalThread(void *argument) {
    firstFrame = static_cast<unsigned char *>(__builtin_frame_address(0));
    counting = true;
    return DataCache::evalThread(argument);
}

} // namespace

void *operator new(std::size_t size) {
    auto *block = static_cast<unsigned char *>(std::malloc(size + kNote));
    if (block == nullptr)
        throw std::bad_alloc();
    *block = counting ? owner : nobody;
    if (std::atomic<long> *count = countOf(*block)) // with what malloc() itself takes
        *count += static_cast<long>(malloc_usable_size(block) + sizeof(std::size_t) - kNote);
    return block + kNote;
}

void operator delete(void *place) noexcept {
    if (place == nullptr)
        return;
    unsigned char *block = static_cast<unsigned char *>(place) - kNote;
    if (std::atomic<long> *count = countOf(*block))
        *count -= static_cast<long>(malloc_usable_size(block) + sizeof(std::size_t) - kNote);
    std::free(block);
}

void operator delete(void *place, std::size_t /*size*/) noexcept {
    operator delete(place);
}

// The calls of the switch library in which much is allocated: those that bring zoning, and those that exchange keys.
#define CALL(whose, name, parameters, arguments)                                                                       \
    int32_t name parameters {                                                                                          \
        static auto *const real = next<int32_t parameters>(#name);                                                     \
        const LibraryCall marked(whose);                                                                               \
        return real arguments;                                                                                         \
    }

CALL(nobody, zov_IPConnect, (const char *host, const char *client, const char *text, zov_handle_t *handle),
     (host, client, text, handle))
CALL(nobody, zov_enRegisterForEventList,
     (zov_handle_t handle, zov_eventcallback_t callback, void *context, zov_eventreg_s *list, int32_t count),
     (handle, callback, context, list, count))
CALL(nobody, zov_fzsGetZoningLimitations, (zov_handle_t handle, zov_fzs_zoninglimits_s *limits), (handle, limits))
CALL(nobody, zov_smlGetBatch, (zov_handle_t handle, SmlMessage *messages, int32_t count), (handle, messages, count))
CALL(nobody, zov_fzsGetZonesetList, (zov_handle_t handle, int32_t *count, char **names), (handle, count, names))
CALL(theZoning, zov_fzsGetActiveZoneset, (zov_handle_t handle, void **zoneset), (handle, zoneset))
CALL(theZoning, zov_fzsGetZoneset, (zov_handle_t handle, const char *name, void **zoneset), (handle, name, zoneset))
CALL(theZoning, zov_fzsGetAllZonesAndAliases, (zov_handle_t handle, const char *name, void **zoneset),
     (handle, name, zoneset))
CALL(nobody, zov_ZonesetGetName, (void *zoneset, char *name), (zoneset, name))
CALL(nobody, zov_ZonesetGetZoneCount, (void *zoneset), (zoneset))
CALL(nobody, zov_ZonesetGetAliasCount, (void *zoneset), (zoneset))
CALL(nobody, zov_ZoneGetMemberCount, (void *zone), (zone))
CALL(nobody, zov_ZoneAliasGetMemberCount, (void *alias), (alias))
CALL(nobody, zov_MemberGetAttr, (void *member, zov_fzs_zonemember_type_e *type, void *attribute),
     (member, type, attribute))

void *zov_ZonesetListZones(void *zoneset, int32_t index) {
    static auto *const real = next<void *(void *, int32_t)>("zov_ZonesetListZones");
    const LibraryCall marked(nobody);
    return real(zoneset, index);
}

void *zov_ZoneListMembers(void *zone, int32_t index) {
    static auto *const real = next<void *(void *, int32_t)>("zov_ZoneListMembers");
    const LibraryCall marked(nobody);
    return real(zone, index);
}

// Gives the EVAL thread a painted stack, so that what it used can be seen.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): those of the header are reserved
extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*body)(void *),
                              void *argument) {
    static auto *const create =
        next<int(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *)>("pthread_create");
    if (body != DataCache::evalThread)
        return create(thread, attributes, body, argument);
    constexpr std::size_t memory = kStackSize + 65536; // room above the first frame for what the C library keeps there
    stack =
        static_cast<unsigned char *>(mmap(nullptr, memory, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    std::fill_n(stack, memory, kPaint);
    pthread_attr_t painted;
    pthread_attr_init(&painted);
    pthread_attr_setstack(&painted, stack, memory);
    const int result = create(thread, &painted, runEvalThread, argument);
    pthread_attr_destroy(&painted);
    return result;
}

namespace {

int zonesets = 0;
int zonesPerSet = 0;
int membersPerZone = 0;

/// A database in which every zone is in one zone set, and the first set is active.
sim::ZoningDatabase zoning() {
    sim::ZoningDatabase database;
    for (int set = 0; set < zonesets; ++set) {
        sim::ZoneSet zoneset;
        zoneset.name = "set" + std::to_string(set);
        for (int i = 0; i < zonesPerSet; ++i) {
            sim::Zone zone;
            zone.name = "zone" + std::to_string(set * zonesPerSet + i);
            for (int member = 0; member < membersPerZone; ++member) {
                char text[17];
                std::snprintf(text, sizeof(text), "10000000C9%06X",
                              static_cast<unsigned>(((set * zonesPerSet + i) * membersPerZone + member) & 0xFFFFFF));
                zone.members.push_back({ZOV_ZMT_PORTWWN, text});
            }
            zoneset.zones.push_back(zone.name);
            database.zones.push_back(zone);
        }
        database.zonesets.push_back(zoneset);
    }
    return database;
}

std::size_t stackUsed() {
    const unsigned char *deepest = std::find_if(stack, firstFrame, [](unsigned char byte) { return byte != kPaint; });
    return static_cast<std::size_t>(firstFrame - deepest);
}

void print(const char *what, long bytes) {
    std::printf("%-34s %9ld bytes\n", what, bytes);
}

bool sound = true;

/// What holds of the figures on every machine.
void require(bool condition, const char *what) {
    if (condition)
        return;
    std::printf("not so: %s\n", what);
    sound = false;
}

void measure() {
    sim::Simulator &theSwitch = example::theSwitch();
    if (zonesets > 0) {
        theSwitch.setZoning(zoning());
        theSwitch.activateZoneset("set0");
    }
    theSwitch.clearRecords();
    counting = true;
    DataCache::init();
    const auto begin = std::chrono::steady_clock::now();
    CacheHold()->start([](DataCacheEvent *) {});
    example::waitUntil("the first pass", [] { return CacheHold()->isCacheReady(); });
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
    counting = false;
    const CacheHold cache; // the EVAL thread waits
    const std::vector<sim::Record> records = theSwitch.records();
    const auto exchanges = std::count_if(records.begin(), records.end(),
                                         [](const sim::Record &record) { return record.call == "zov_smlGetBatch"; });
    const long loaded = cacheBytes;
    print("the DataCache object", static_cast<long>(sizeof(DataCache)));
    print("its heap, the object included", loaded);
    print("zoning held by the switch library", zoningBytes);

    counting = true;
    constexpr long waiting = 1000;
    for (long i = 0; i < waiting; ++i)
        cache->zovlibEventKick(ZOV_EVENT_ZONE_CHANGE, nullptr, "any text");
    print("a notification that waits", (cacheBytes - loaded) / waiting);
    counting = false;
    print("stack of the EVAL thread, used", static_cast<long>(stackUsed()));
    std::printf("%-34s %9ld exchanges, %.1f ms\n", "the first pass", static_cast<long>(exchanges), time.count());

    require(loaded > static_cast<long>(sizeof(DataCache)), "the object lies in the heap");
    require(loaded < 1000000, "a loaded cache takes less than a megabyte");
    require(zoningBytes > (zonesets > 0 ? 10000 : 0), "zoning takes room in the switch library");
    require(stackUsed() > 1000 && stackUsed() < kStackSize / 2, "the EVAL thread uses less than half of its stack");
    if (!sound)
        throw std::runtime_error("the figures are not what the guide says of them");
}

} // namespace

int main(int argc, char **argv) {
    const auto number = [&](int at) { return argc > at ? static_cast<int>(std::strtol(argv[at], nullptr, 10)) : 0; };
    zonesets = number(2);
    zonesPerSet = number(3);
    membersPerZone = number(4);
    return example::run(argc > 1 ? argv[1] : "fixed-24", nullptr, measure);
}
