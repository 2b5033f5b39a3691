// What a line costs: no heap memory, whatever the line.
#include "foundation/cim_log.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/Log.h"
#include "tests/support/Memory.h"

namespace {

/// Blocks that this thread asks for while it does something.
template <class Action> long blocksOf(const Action &action) {
    const long before = support::blocks_asked_for;
    action();
    return support::blocks_asked_for - before;
}

TEST(CimLogMemory, TheCountSeesWhatTheLibraryAsksFor) {
    SmlMsgGroup *group = nullptr;
    EXPECT_EQ(blocksOf([&group] { group = zov_smlAllocMsgGroup(3); }), 2);
    zov_smlFreeMsgGroup(group);
    EXPECT_EQ(blocksOf([] { operator delete(operator new(8)); }), 1);
}

TEST(CimLogMemory, ALineTakesNoHeapMemory) {
    cim_log(CIM_LOG_INFO, "the first line reads the time zone\n");
    const std::string text(3000, 'x');
    EXPECT_EQ(blocksOf([&text] {
                  cim_log(CIM_LOG_INFO, "DCACHE: %s %d\n", "text", 1);
                  cim_log(CIM_LOG_CRIT, "CRIT:%s:%s[%d] %s\n", "file", "function", 1, text.c_str());
                  DataCacheLogger("%5u|%-20s|%08lx\n", 1U, "client", 2UL);
              }),
              0);
    EXPECT_EQ(support::messagesIn(support::kMainLog).size(), 3U) << "three newlines: the cut line has none";
}

TEST(CimLogMemory, RotationTakesNoHeapMemory) {
    cim_log(CIM_LOG_INFO, "the first line reads the time zone\n");
    EXPECT_EQ(blocksOf([] {
                  for (int line = 0; line < 2100; ++line)
                      cim_log(CIM_LOG_CRIT, "line %d\n", line);
              }),
              0);
    EXPECT_FALSE(support::readFile("/tmp/cim.out.2").empty()) << "it did rotate twice";
}

TEST(CimLogMemory, AThreadsFirstLineTakesNoHeapMemory) {
    cim_log(CIM_LOG_INFO, "the first line reads the time zone\n");
    long blocks = -1;
    std::thread thread([&blocks] { blocks = blocksOf([] { cim_log(CIM_LOG_INFO, "from a new thread\n"); }); });
    thread.join();
    EXPECT_EQ(blocks, 0);
}

TEST(CimLogMemory, LinesAreWrittenWhenThereIsNoMemory) {
    cim_log(CIM_LOG_INFO, "the first line reads the time zone\n");
    const size_t mark = support::logMark();
    {
        const support::MemoryFailure failure(1);
        cim_log(CIM_LOG_INFO, "no memory for %s\n", "others");
        EXPECT_FALSE(support::MemoryFailure::happened());
    }
    EXPECT_EQ(support::messagesSince(mark), std::vector<std::string>{"no memory for others"});
}

} // namespace
