#include "help_texts.h"

#include <array>
#include <string>
#include <string_view>

namespace bvconn::tool {
namespace {

struct HelpText {
  std::string_view command;  ///< "" for the program itself
  std::string_view text;
};

// The examples are for a sandbox server on port 8080 (`bvsandbox --port 8080`), and run as they
// stand.
constexpr std::array<HelpText, 11> kHelpTexts{{
    {"", R"(
Examples, with a server such as `bvsandbox --port 8080`:
  bvconn list                                       # the public classes
  bvconn describe BVInvoiceConnector.GetInvoice     # what it sends, raises and logs
  bvconn call BVInvoiceConnector.GetInvoice aServerURL=http://127.0.0.1:8080/soap \
      aSessionID=S strInvoiceUID=INV-1001           # one call
  export BVCONN_SERVER=http://127.0.0.1:8080/soap BVCONN_SESSION=S
  bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=INV-1001
  echo '{"id":1,"get":"BVMethods.Beat"}' | bvconn batch

Each subcommand has a --help of its own.

Exit status: 0 done, 1 failed, 2 not understood, 3 profiles that cannot be used; call and batch
have more.)"},
    {"list", R"(
Examples:
  bvconn list                       # the public classes
  bvconn list BVInvoiceConnector    # the members of one, with their arguments
  bvconn list --json                # the whole interface as data)"},
    {"describe", R"(
Examples:
  bvconn describe BVInvoiceConnector.GetInvoice
  bvconn describe BVInvoiceConnector.GetInvoice --json
  bvconn describe --all --json | wc -l                   # one operation on each line)"},
    {"skeleton", R"(
Examples:
  bvconn skeleton BVInvoiceConnector.GetInvoice          # a line of a batch to fill in
  bvconn skeleton BVInvoiceConnector.GetInvoice --call   # a command line to fill in)"},
    {"call", R"(
Values: NAME=VALUE by the argument's type (text, true, 12, XML for a node, a JSON array, null for an
empty reference), NAME=@FILE from a file (@- is standard input; a password loses the line end behind
it), NAME=@@TEXT for a text that begins with @, NAME:=JSON in the form that a batch takes.

What the connection is made of comes from the options, else from the environment, else from the
profile: a table of $XDG_CONFIG_HOME/bvconn/profiles.toml with the options' names as keys. The
arguments aServerURL and aSessionID are taken from there when they are not given.

Examples, with a server such as `bvsandbox --port 8080`:
  bvconn call BVInvoiceConnector.GetInvoice aServerURL=http://127.0.0.1:8080/soap \
      aSessionID=S strInvoiceUID=INV-1001
  bvconn call BVInvoiceConnector.GetInvoice --server http://127.0.0.1:8080/soap --session S \
      strInvoiceUID=INV-1001 --output json --timeout 10
  echo '<Project><GID>PRJ-3001</GID></Project>' | bvconn call BVGenericConnector.Send \
      aService=urn:ProjectService aMethod=requestReview aRootNodeName=Project aSoapNode=@- \
      --server http://127.0.0.1:8080/soap --session S --trace -
  bvconn call BVOrderConnector.getSAPOrderView aServerURL=http://127.0.0.1:8080/soap aSessionID=S \
      aOrderGID=ORD-5001 aIncludePrice=true --dal http://127.0.0.1:8080/dal --user anna \
      --password-file <(echo secret)
  bvconn call BVHeartBeatConnector.sendHeartBeat --server http://127.0.0.1:8080/soap --session S

Exit status:
  0    the call went well
  1    internal failure, output that cannot be written, or an error that is none of the following
  2    not understood: nothing was called
  3    settings or profiles that cannot be used
  4    a SOAP fault, mapped ones included, or a service object's refusal
  5    the server was not reached: name, connection, TLS, proxy
  6    the connection was lost; whether the server did it is unknown
  7    time-out
  8    anything else about a reply
  130  interrupted)"},
    {"batch", R"(
Of environment and profile nothing counts unless --profile is given: a required argument that is not
there is an answer with "usage". With --profile, aServerURL and aSessionID come from there (or from
the environment) when a call does not give them.

Examples:
  echo '{"id":1,"get":"BVMethods.Beat"}' | bvconn batch
  echo '{"id":1,"call":"BVInvoiceConnector.GetInvoice","args":{"aSessionID":"S",
    "aServerURL":"http://127.0.0.1:8080/soap","strInvoiceUID":"INV-1001"}}' | tr -d '\n' |
    bvconn batch --fail --timeout 10

Exit status:
  0    every line was understood; a failed call is an answer
  1    internal failure, output that cannot be written, a login that failed
  2    a line, or the command line, was not understood
  3    profiles that cannot be used
  9    with --fail: some call failed)"},
    {"parity", R"(
Example, with a server such as `bvsandbox --port 8080`:
  bvconn parity BVOrderConnector.getSAPOrderView --server http://127.0.0.1:8080/soap --session S \
      aOrderGID=ORD-5001 aIncludePrice=true --dal http://127.0.0.1:8080/dal --user anna \
      --password-file <(echo secret)

Exit status: 0 equal, 1 different or failed, 2 not understood or but one route, 3 profiles
that cannot be used.)"},
    {"settings", R"(
Examples:
  bvconn settings list                           # all, and where they come from
  bvconn settings set defaultTimeOut 60000
  bvconn settings get defaultTimeOut)"},
    {"doctor", R"(
Example, with a server such as `bvsandbox --port 8080`:
  bvconn doctor --server http://127.0.0.1:8080/soap --session S \
      --dal http://127.0.0.1:8080/dal --user anna --password-file <(echo secret)

Exit status: 0 all is well, 1 something is in the way, 2 not understood, 3 profiles that cannot be
used.)"},
    {"support-bundle", R"(
Example, with a server such as `bvsandbox --port 8080`:
  bvconn support-bundle report.txt --server http://127.0.0.1:8080/soap --session S

Exit status: 0 written, 1 it cannot be written, 2 not understood, 3 profiles that cannot be
used.)"},
    {"completion", R"(
Examples:
  source <(bvconn completion bash)
  bvconn completion zsh > _bvconn     # into a directory of fpath
  bvconn completion fish > bvconn.fish    # into ~/.config/fish/completions)"},
}};

}  // namespace

void add_help_texts(CLI::App& app) {
  for (const HelpText& each : kHelpTexts) {
    CLI::App* command = each.command.empty() ? &app : app.get_subcommand(std::string(each.command));
    command->footer(std::string(each.text));
  }
}

}  // namespace bvconn::tool
