#pragma once

#include <ostream>
#include <string>

namespace bvconn::tool {

struct ListOptions {
  std::string class_name;  ///< "" for all
  bool json = false;
};

/// `bvconn list`: the interface for people or as data. Gives the exit status.
int run_list(const ListOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
