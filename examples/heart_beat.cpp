// Keeps a session alive: heart_beat SERVER-URL SESSION BEATS SECONDS-BETWEEN

#include <bvconn/connectors/session/bv_heart_beat_connector.h>
#include <bvconn/core/session_state.h>
#include <bvconn/platform/error.h>

#include <chrono>
#include <iostream>
#include <string>
#include <thread>

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "usage: heart_beat SERVER-URL SESSION BEATS SECONDS-BETWEEN\n";
    return 2;
  }
  const int beats = std::stoi(argv[3]);
  const std::chrono::seconds pause(std::stoi(argv[4]));
  bool out_of_reach = false;
  try {
    bvconn::BVHeartBeatConnector heart;
    // Raised inside of sendHeartBeat, on its thread, where a beat failed and no reply of any call
    // has come for 15 minutes: at each such beat anew, and from the first on before there was a
    // reply.
    heart.HeartBeatError = [&] {
      out_of_reach = true;
      std::cout << "the server is out of reach\n";
    };
    for (int beat = 1; beat <= beats; ++beat) {
      if (beat > 1) std::this_thread::sleep_for(pause);  // An application has a timer for this.
      heart.sendHeartBeat(argv[1], argv[2]);
      // A beat that failed throws nothing, deliberately; how it went is in the record.
      const auto exchange = bvconn::session().LastExchange();
      const bool failed = exchange && exchange->error;
      std::cout << "beat " << beat << ": " << (failed ? exchange->error->description : "OK")
                << '\n';
    }
  } catch (const bvconn::Error& error) {
    // What comes here has nothing to do with the server: settings that cannot be read, for
    // instance.
    std::cerr << bvconn::hex_number(error.number) << ": " << error.description << '\n';
    return 1;
  }
  return out_of_reach ? 1 : 0;
}
