#include "tools/zovsim/signals.h"

#include <future>
#include <thread>

namespace zovsim {

EndingSignals::EndingSignals() {
    sigemptyset(&_signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction now = {};
        sigaction(number, nullptr, &now);
        if (now.sa_handler != SIG_IGN) // nohup, for one
            sigaddset(&_signals, number);
    }
    pthread_sigmask(SIG_BLOCK, &_signals, &_before);
}

EndingSignals::~EndingSignals() {
    pthread_sigmask(SIG_SETMASK, &_before, nullptr);
}

void EndingSignals::wait() {
    int number = 0;
    while (sigwait(&_signals, &number) != 0)
        continue;
    pthread_sigmask(SIG_SETMASK, &_before, nullptr);
}

void endInTime(const std::function<void()> &end, const std::function<void()> &leave,
               std::chrono::milliseconds patience) {
    std::packaged_task<void()> task(end);
    std::future<void> ended = task.get_future();
    std::thread worker(std::move(task));
    if (ended.wait_for(patience) != std::future_status::ready)
        leave();
    worker.join();
    ended.get();
}

} // namespace zovsim
