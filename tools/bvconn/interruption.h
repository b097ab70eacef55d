#pragma once

namespace bvconn::tool {

/// While it lives, an interrupt (Ctrl-C) ends the exchange that runs, so that what is known of its
/// outcome can be reported; a second one ends the process at once. Where nothing is exchanged, the
/// next exchange ends before it is sent.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Whether there was one.
  bool came() const;

 private:
  void (*before_)(int);
};

}  // namespace bvconn::tool
