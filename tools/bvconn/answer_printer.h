#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "arguments.h"
#include "bvconn/automation/interface.h"
#include "json_output.h"
#include "reply_tap.h"
#include "terminal.h"

namespace bvconn::tool {

/// The forms in which a call's answer can be printed.
enum class OutputForm {
  kTree,  ///< for people
  kJson,  ///< as a batch gives it
  kXml,   ///< nodes and documents as XML
  kRaw,   ///< the reply as it came
};

/// "tree", "json", "xml" or "raw". @throws UsageError
OutputForm output_form(const std::string& name);

/// Prints what comes of one call; data to `out`, everything else to `err`.
class AnswerPrinter {
 public:
  struct Streams {
    std::ostream& out;
    std::ostream& err;
    Terminal out_terminal{};
    Terminal err_terminal{};
  };

  /// `reply` is what the platform's tap sees; of the form kRaw alone.
  AnswerPrinter(OutputForm form, const Streams& streams, std::shared_ptr<const TappedReply> reply)
      : form_(form), streams_(streams), reply_(std::move(reply)) {}

  void event(const std::string& name) const;
  void result(const automation::Member& member, const CallArguments& arguments,
              const automation::Value& value) const;
  /// What is left to print where the call failed.
  void error(const automation::Member& member, const CallArguments& arguments,
             const std::string& error_json) const;
  void usage(const std::string& text) const;

 private:
  void print_value(const automation::Value& value) const;
  void print_xml(const automation::Value& value) const;
  void print_raw() const;
  void report_unreadable(const automation::Value& value) const;
  void print_documents(const automation::Member& member, const CallArguments& arguments) const;
  void print_line(const std::function<void(JsonOutput&)>& write_answer) const;

  OutputForm form_;
  Streams streams_;
  std::shared_ptr<const TappedReply> reply_;
  mutable bool is_cut_ = false;  ///< whether an answer failed when part of it was out
};

}  // namespace bvconn::tool
