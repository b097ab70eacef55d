// What a failed call says, and whether it may be made again: errors SERVER-URL SESSION PROJECT-GID
// asks for the review of a project.

#include <bvconn/connectors/documents/bv_project_connector.h>
#include <bvconn/core/session_state.h>
#include <bvconn/platform/error_numbers.h>
#include <bvconn/platform/explain.h>

#include <iostream>

namespace numbers = bvconn::error_numbers;

// The three cases that a program has to tell apart, whatever went wrong.
const char* what_now(const bvconn::Error& error) {
  switch (error.outcome) {
    case bvconn::Outcome::kNotSent:
      return "The call may be made again.";
    case bvconn::Outcome::kUnknown:
      return "Look whether it was done before calling again.";
    case bvconn::Outcome::kAnswered:
      return "The same call will get the same answer.";
    case bvconn::Outcome::kNone:
      break;  // Of errors that no call raised.
  }
  return "";
}

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: errors SERVER-URL SESSION PROJECT-GID\n";
    return 2;
  }
  try {
    bvconn::BVProjectConnector projects;
    // Each of the two calls can fail; a project that is not there fails in the first.
    const bvconn::SoapNode project = projects.getExistingProject(argv[1], argv[2], argv[3]);
    projects.RequestReview(argv[1], argv[2], project);
    std::cout << "The review is asked for.\n";
  } catch (const bvconn::Error& error) {
    // For people: the number by which the error is found, its words, and what helps against it.
    std::cout << bvconn::hex_number(error.number) << " from " << error.source << ": "
              << error.description << '\n'
              << bvconn::explain(error) << '\n'
              << what_now(error) << '\n';
    // For support staff: which request it was.
    if (const auto exchange = bvconn::session().LastExchange()) {
      std::cout << "It happened in " << exchange->cls << '.' << exchange->operation << ".\n";
    }
    // Programs decide by the number, never by the words.
    return error.number == numbers::kCannotConnect ? 3 : 1;
  }
}
