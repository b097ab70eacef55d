#include <exception>
#include <utility>

#include "sandbox/contract/words.h"
#include "sandbox/endpoints/asked.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/endpoints/guard.h"
#include "sandbox/endpoints/record.h"
#include "sandbox/endpoints/stubbed.h"
#include "sandbox/faults/misbehave.h"
#include "sandbox/page/page.h"

namespace bvconn::sandbox {
namespace {

Reply right_answer(Sandbox& sandbox, const Operations& operations, Asked& asked) {
  if (auto reply = stubbed(sandbox, operations, asked)) return std::move(*reply);
  return asked.exchange.route == Route::kSoap ? answer_soap(sandbox, operations, asked)
                                              : answer_dal(sandbox, operations, asked);
}

Reply answer_or_misbehave(ServedSandbox& sandbox, const Operations& operations,
                          const Request& request, Asked& asked) {
  const auto fault = sandbox.faults->next(asked.exchange, request);
  if (!fault) {
    Reply reply = right_answer(sandbox, operations, asked);
    if (reply.status == 200) sandbox.faults->keep_answer(asked.exchange.route, reply.body);
    return reply;
  }
  Reply reply = misbehave(*fault, asked.exchange, *sandbox.faults,
                          [&] { return right_answer(sandbox, operations, asked); });
  // Afterwards, since the right answer has its own outcome, and a stub may have given it.
  asked.exchange.outcome = Outcome::kInjected;
  asked.exchange.answered_by = "fault " + fault->name.value_or("");
  return reply;
}

/// A request that does not fit is told so whatever was asked to go wrong, and is not counted.
Reply answer_asked(ServedSandbox& sandbox, const Operations& operations, const Request& request,
                   Asked& asked) {
  if (asked.refusal) return *asked.refusal;
  try {
    return answer_or_misbehave(sandbox, operations, request, asked);
  } catch (const DatabaseError& error) {
    // Faults and stubs that processes share cannot be counted.
    return answer_error(operations, asked, error);
  }
}

/// What is asked for by the library's own ways, and so goes into the journal.
Reply exchange(ServedSandbox& sandbox, const Operations& operations, const Request& request) {
  Record record(sandbox);
  Asked asked = request.path() == "/soap" ? read_soap(sandbox, request)
                                          : read_dal(sandbox, operations, request);
  record.begin(request, asked);
  Reply reply = answer_asked(sandbox, operations, request, asked);
  record.end(asked, reply);
  return reply;
}

/// What a browser shows of it is what it says that it is.
Reply answer_admin_safely(ServedSandbox& sandbox, const Request& request) {
  Reply reply = answer_admin(sandbox, request);
  reply.headers.push_back({.name = "X-Content-Type-Options", .value = "nosniff"});
  return reply;
}

Reply route(ServedSandbox& sandbox, const Operations& operations, const Request& request) {
  const std::string_view path = request.path();
  if (auto refusal = refuse_stranger(sandbox, request)) return std::move(*refusal);
  if (path == "/soap" || path == "/dal" || path.starts_with("/dal/")) {
    return exchange(sandbox, operations, request);
  }
  if (path.starts_with("/admin/")) return answer_admin_safely(sandbox, request);
  if (path == "/" || path.starts_with("/page/")) return answer_page(request);
  return text_reply(404,
                    "There is nothing here. POST to /soap or /dal/{Object}/{Operation}, ask "
                    "/admin/, or look at /.\n");
}

}  // namespace

Reply answer(ServedSandbox& sandbox, const Operations& operations, const Request& request) {
  try {
    return route(sandbox, operations, request);
  } catch (const std::exception& error) {
    return text_reply(500, std::string("The sandbox failed: ") + error.what() + "\n");
  } catch (...) {
    // A fault or an error of the other protocol's, thrown where it means nothing.
    return text_reply(500, "The sandbox failed in a way that it cannot name.\n");
  }
}

Reply error_text_reply(int status, const std::string& text) {
  Reply reply = text_reply(status, text + ".\n");
  reply.remark = shortened(text);
  return reply;
}

Reply method_not_allowed(const Request& request, std::string_view allowed) {
  Reply reply = error_text_reply(
      405, request.method + " is not allowed here, expected " + std::string(allowed));
  reply.headers.push_back({.name = "Allow", .value = std::string(allowed)});
  return reply;
}

}  // namespace bvconn::sandbox
