// How deep the EVAL thread's stack gets.
#include <algorithm>
#include <dlfcn.h>
#include <memory>
#include <pthread.h>
#include <sys/mman.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Ports.h"
#include "tests/support/Wait.h"

namespace {

constexpr std::size_t kStackSize = 131072;
constexpr unsigned char kPaint = 0xA5;

// Room above the thread's first frame, for what the C library and a sanitizer keep there.
constexpr std::size_t kMemory = kStackSize + (2U << 20U);

unsigned char *stack = nullptr; // its lowest byte
unsigned char *firstFrame = nullptr;

void *runEvalThread(void *argument) {
    firstFrame = static_cast<unsigned char *>(__builtin_frame_address(0));
    return DataCache::evalThread(argument);
}

} // namespace

// Gives the EVAL thread a painted stack, so that what it used can be seen.
extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*body)(void *),
                              void *argument) {
    using Create = int(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *);
    auto *create = reinterpret_cast<Create *>(dlsym(RTLD_NEXT, "pthread_create"));
    if (body != DataCache::evalThread)
        return create(thread, attributes, body, argument);
    void *memory = mmap(nullptr, kMemory, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    stack = static_cast<unsigned char *>(memory);
    std::fill_n(stack, kMemory, kPaint);
    pthread_attr_t painted;
    pthread_attr_init(&painted);
    pthread_attr_setstack(&painted, memory, kMemory);
    const int result = create(thread, &painted, runEvalThread, argument);
    pthread_attr_destroy(&painted);
    return result;
}

namespace {

class EvalStack : public support::CacheTest {
protected:
    EvalStack() {
        theSwitch.reset();
        theSwitch = sim::create("director-8");
    }

    /// From the thread's first frame to the deepest byte that was written.
    static std::size_t used() {
        const unsigned char *deepest =
            std::find_if(stack, firstFrame, [](unsigned char byte) { return byte != kPaint; });
        return static_cast<std::size_t>(firstFrame - deepest);
    }
};

TEST_F(EvalStack, StaysUnderHalfOfWhatTheThreadHas) {
    DataCache::init();
    cache().start(support::recordEvent);
    ASSERT_TRUE(support::waitUntil([] { return cache().getPassCount() >= 1; }));
    // Something of everything: a change in each area, so that the second pass also tells.
    for (unsigned port = 0; port < 32; ++port)
        support::setPort(*theSwitch, port, "OperState", "Diagnostics");
    theSwitch->set("Oper.Switch.OperState", "Diagnostics", sim::Notify::no);
    theSwitch->set("Oper.Chassis.0.PowerSupply.0", "Bad", sim::Notify::no);
    theSwitch->removeBlade(7, sim::Notify::no);
    theSwitch->addAccount("stack", sim::Notify::no);
    cache().updateAll();
    cache().localPortRefreshSet();
    cache().zovlibEventKick(static_cast<zov_eventcode_e>(76), nullptr, std::string(1395, 'm').c_str());
    cache().zovlibEventKick(static_cast<zov_eventcode_e>(76), nullptr,
                            ("0;0;0;5;1;65;ABCDEFGHIJKLMNOP;1" + std::string(1364, ';')).c_str());
    theSwitch->deliver(73, {0, 0, 0}, std::string(1395, 'u'));
    ASSERT_TRUE(support::waitForEvents(30));
    ASSERT_TRUE(support::waitUntil([] { return cache().getPassCount() >= 2; }));
    const std::string unreadable =
        "DCACHE: ZOV_EVENT_PORT_MEDIA_INSTERTED event only contains 0 items, string = '" + std::string(1395, 'm') + "'";
    EXPECT_THAT(support::messagesIn(support::kMainLog), testing::Contains(unreadable));
    RecordProperty("bytes", static_cast<int>(used()));
    EXPECT_GT(used(), 1000U);
    EXPECT_LT(used(), kStackSize / 2);
    std::printf("EVAL stack: %zu of %zu bytes\n", used(), kStackSize);
}

} // namespace
