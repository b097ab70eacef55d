// The program of one way to make the call on several cores at once: `PROGRAM URL…`, one URL for
// each core, from core 0 on. Each core has a thread with a session of its own, which stays on it. A
// line `CASE COUNT FIRST LAST` makes the threads from FIRST to LAST make so many calls each, all at
// once; the answer has the time until the last of them is done.
#include <barrier>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "common/process.h"
#include "peers/peer.h"

namespace {

struct Order {
  const bench::Case* which = nullptr;
  long calls = 0;
  int first = 0;
  int last = 0;
};

class Sessions {
 public:
  explicit Sessions(const std::vector<std::string>& urls)
      : begin_(static_cast<std::ptrdiff_t>(urls.size()) + 1),
        end_(static_cast<std::ptrdiff_t>(urls.size()) + 1) {
    for (std::size_t core = 0; core < urls.size(); ++core) {
      threads_.emplace_back([this, core, url = urls[core]] { run(static_cast<int>(core), url); });
    }
  }
  ~Sessions() {
    order_ = {};
    begin_.arrive_and_wait();
    for (std::thread& thread : threads_) thread.join();
  }
  Sessions(const Sessions&) = delete;
  Sessions& operator=(const Sessions&) = delete;

  std::int64_t round(const Order& order) {
    order_ = order;
    const bench::Moment begin = bench::Moment::now();
    begin_.arrive_and_wait();
    end_.arrive_and_wait();
    return (bench::Moment::now() - begin).wall_ns;
  }

 private:
  void run(int core, const std::string& url) {
    bench::stay_on_core(core);
    const auto peer = bench::make_peer(url);
    while (true) {
      begin_.arrive_and_wait();
      const Order order = order_;
      if (order.which == nullptr) return;
      if (core >= order.first && core <= order.last) {
        for (long made = 0; made < order.calls; ++made) peer->call(*order.which);
      }
      end_.arrive_and_wait();
    }
  }

  Order order_;
  std::barrier<> begin_;
  std::barrier<> end_;
  std::vector<std::thread> threads_;
};

}  // namespace

int main(int argc, char** argv) {
  Sessions sessions(std::vector<std::string>(argv + 1, argv + argc));
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string name;
    Order order;
    words >> name >> order.calls >> order.first >> order.last;
    order.which = bench::find_case(name);
    if (order.which == nullptr) return 2;
    std::cout << "{\"wall\": " << sessions.round(order) << "}" << std::endl;
  }
}
