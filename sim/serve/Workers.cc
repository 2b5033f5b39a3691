#include "sim/serve/Workers.h"

#include <system_error>
#include <utility>

namespace sim {

Workers::~Workers() {
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _ending = true;
        _changed.notify_all();
    }
    for (std::thread &thread : _threads)
        thread.join();
}

void Workers::carryOut(std::function<void()> task) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (_tasks.size() >= _idle)
        addThread();
    _tasks.push_back(std::move(task));
    _changed.notify_one();
}

/// Where there cannot be one more, those that are there do it, one after another.
void Workers::addThread() {
    try {
        _threads.emplace_back([this] { work(); });
    } catch (const std::system_error &) {
        if (_threads.empty())
            throw;
    }
}

void Workers::work() {
    std::unique_lock<std::mutex> lock(_mutex);
    for (;;) {
        ++_idle;
        _changed.wait(lock, [this] { return _ending || !_tasks.empty(); });
        --_idle;
        if (_tasks.empty())
            return;
        const std::function<void()> task = std::move(_tasks.front());
        _tasks.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

} // namespace sim
