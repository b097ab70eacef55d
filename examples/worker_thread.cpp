// Asks the server on a thread of its own, so that the screen never waits, and closes in time.

#include <bvconn/automation/endpoint.h>
#include <bvconn/platform/error.h>
#include <bvconn/platform/timeout_scope.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <iostream>
#include <mutex>
#include <thread>

// What others post for one thread to run, in order; an application has its event loop for this.
struct Tasks {
  std::deque<std::function<void()>> tasks;
  std::mutex mutex;
  std::condition_variable_any posted;
  void post(std::function<void()> task) {
    const std::lock_guard lock(mutex);
    tasks.push_back(std::move(task));
    posted.notify_one();
  }
  std::function<void()> next(const std::stop_token& stop = {}) {  // none once a stop is asked for
    std::unique_lock lock(mutex);
    posted.wait(lock, stop, [this] { return !tasks.empty(); });
    if (stop.stop_requested()) return {};
    auto task = std::move(tasks.front());
    tasks.pop_front();
    return task;
  }
};

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: worker_thread SERVER-URL SESSION [SECONDS]\n";
    return 2;
  }
  const bvconn::Endpoint office{.url = argv[1], .session = argv[2]};
  const std::chrono::seconds patience(argc > 3 ? std::stoi(argv[3]) : 10);
  std::string shown;
  Tasks screen, work;
  const auto show = [&](std::string text) { screen.post([&shown, text] { shown = text; }); };
  std::jthread worker([&](const std::stop_token& stop) {
    const bvconn::TimeoutScope limit(patience);  // No call holds up the closing for longer.
    while (const auto task = work.next(stop)) task();
  });
  work.post([&] {
    try {
      bvconn::BVSearchConnector search;  // Made where it is used: in the worker's own session.
      const auto brands = bvconn::call<&bvconn::BVSearchConnector::SearchForBrands>(office, search);
      show(std::to_string(brands.Nodes().Count()) + " brands");  // Nodes stay on their thread.
    } catch (const bvconn::Error& error) {
      show(error.description + " (" + bvconn::hex_number(error.number) + ")");
    }
  });
  while (shown.empty()) screen.next()();  // The screen, which is never inside a call.
  std::cout << shown << '\n';
}  // Closing: the worker is asked to stop, and is waited for until the call that runs has ended.
