/*
 * Work that Ctrl-C ends, and that cannot keep anybody from leaving when the switch does not answer.
 */
#ifndef TOOLS_DCACHE_INTERRUPTIBLY_H
#define TOOLS_DCACHE_INTERRUPTIBLY_H

#include <chrono>
#include <functional>
#include <future>
#include <optional>
#include <thread>
#include <utility>

#include "tools/dcache/interruption.h"

namespace dcache {

/// For work to come to its end after Ctrl-C.
constexpr std::chrono::milliseconds kPatience{1500};

/// Does `work` on a thread of its own and returns what it returns, or throws what it throws. SIGINT and SIGTERM call
/// `stop`, which tells the work to end; when it has not ended after kPatience, `leave` is called, which must end the
/// process: a thread waits for the switch then, and nothing could end that.
template <class Result>
Result runInterruptibly(std::function<Result()> work, const std::function<void()> &stop,
                        const std::function<void()> &leave) {
    Interruption interruption(-1);
    std::packaged_task<Result()> task(std::move(work));
    std::future<Result> result = task.get_future();
    std::thread worker([&] {
        task();
        interruption.raise(0);
    });
    interruption.wait(std::nullopt);
    stop();
    if (result.wait_for(kPatience) != std::future_status::ready)
        leave();
    worker.join();
    return result.get();
}

} // namespace dcache

#endif // TOOLS_DCACHE_INTERRUPTIBLY_H
