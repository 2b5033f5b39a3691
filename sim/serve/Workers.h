/*
 * Threads that carry out calls. Any of these may hang as long as the switch is told to: there is always one more thread
 * for the next, so that nobody waits for anybody else.
 *
 * Thread-safe. The destructor waits for everything that was given; it must not be called by a worker.
 */
#ifndef SIM_SERVE_WORKERS_H
#define SIM_SERVE_WORKERS_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace sim {

class Workers {
public:
    Workers() = default;
    Workers(const Workers &) = delete;
    Workers &operator=(const Workers &) = delete;
    ~Workers();

    /// What is done must not throw. Throws when there is no memory for it, or no thread at all: then it is not done.
    void carryOut(std::function<void()> task);

private:
    void addThread();
    void work();

    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<std::function<void()>> _tasks;
    size_t _idle = 0; ///< threads that wait for a task, those included that are called but not awake yet
    bool _ending = false;
    std::vector<std::thread> _threads;
};

} // namespace sim

#endif // SIM_SERVE_WORKERS_H
