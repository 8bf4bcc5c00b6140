#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace tavero {

// Where work that may block is done, away from the main thread. Jobs run one after another, in the
// order given. Destroying the worker waits for the job under way; what was not yet reported never
// is.
class Worker {
  public:
    virtual ~Worker() = default;

    // Runs `job` on the worker, then `done` on the main thread with a copy of what the job
    // returned.
    template <typename Job, typename Done>
    void call(Job job, Done done) {
        using Result = std::invoke_result_t<Job>;
        auto result = std::make_shared<std::optional<Result>>();
        run([result, job = std::move(job)]() mutable { result->emplace(job()); },
            [result, done = std::move(done)]() mutable { done(std::move(**result)); });
    }

  private:
    virtual void run(std::function<void()> job, std::function<void()> done) = 0;
};

} // namespace tavero
