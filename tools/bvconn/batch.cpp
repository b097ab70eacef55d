#include "batch.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "batch_request.h"
#include "bvconn/platform/error.h"
#include "call_answer.h"
#include "json_text.h"
#include "nearest_names.h"

namespace bvconn::tool {
namespace {

using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;
using automation::Value;

constexpr std::string_view kNoId = "null";
constexpr std::string_view kOutOfMemory =
    R"({"number":7,"hex":"0x00000007","source":"BVConn",)"
    R"("description":"out of memory","helpFile":"","helpContext":0})";

CallArguments read_arguments(const Member& member, const JsonValue& request,
                             const Connection& connection) {
  CallArguments arguments;
  if (const JsonValue* const args = request.find("args")) {
    if (args->object() == nullptr) throw UsageError("args: an object is expected");
    for (const auto& [name, json] : *args->object()) {
      place_argument(member, name, arguments, [&, &value = json](automation::ValueType type) {
        return value_from_json(value, type, arguments);
      });
    }
  }
  fill_arguments(member, connection, arguments);
  require_arguments(member, arguments);
  return arguments;
}

/// Runs something of the request's path, whose usage errors then name the path.
template <class Body>
auto on_path(std::string_view path, const Body& body) {
  try {
    return body();
  } catch (const UsageError& error) {
    throw UsageError(std::string(path) + ": " + error.what());
  }
}

}  // namespace

Batch::~Batch() {
  // In the order in which they were made, one by one: what they log then has an order too.
  for (Instance& instance : instances_) instance.object.reset();
}

void Batch::run(std::string_view line) {
  if (trimmed(line).empty()) return;
  id_ = kNoId;
  event_failure_ = nullptr;
  out_.clear();
  try {
    answer_line(line);
  } catch (const std::bad_alloc&) {
    answer_out_of_memory(line);
  }
  id_ = kNoId;
  out_.raw('}');
  out_.end_line();
}

JsonOutput& Batch::begin_answer() {
  // Only an answer that failed halfway is followed by another: what it failed with is at hand.
  if (out_.has_left()) throw;
  out_.clear();
  return out_.raw(R"({"id":)").raw(id_).raw(',');
}

void Batch::answer_out_of_memory(std::string_view line) {
  some_failed_ = true;
  try {
    id_ = raw_member(line, "id");
  } catch (const std::exception&) {
    // The answer is to nobody's line rather than to none.
    id_ = kNoId;
  }
  write_error(begin_answer(), kOutOfMemory);
}

void Batch::answer_line(std::string_view line) {
  try {
    const JsonValue request = parse_json(line);
    if (request.object() == nullptr) throw UsageError("a JSON object is expected");
    id_ = raw_member(line, "id");
    answer(request);
  } catch (const UsageError& error) {
    begin_answer().raw(R"("usage":)").string(error.what());
    if (status_ == kDone) status_ = kNotUnderstood;
  } catch (const Error& error) {
    write_error(begin_answer(), failed(json_error(error)));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    write_error(begin_answer(), failure(error.what()));
  } catch (...) {
    write_error(begin_answer(), failure("unknown exception"));
  }
}

void Batch::answer(const JsonValue& request) {
  const std::string verb = verb_of(request);
  if (verb == "call") return call(request);
  if (verb == "new") return make(request);
  if (verb == "get") return get(request);
  if (verb == "set") return set(request);
  return release(request);
}

void Batch::call(const JsonValue& request) {
  Target target = resolve(request, "call");
  const Member& member = *target.member;
  const CallArguments arguments = on_path(text_member(request, "call"), [&] {
    if (member.kind == MemberKind::kEvent) throw UsageError("an event cannot be called");
    if (!member.callable()) throw UsageError("a property is not called; use get or set");
    return read_arguments(member, request, connection_);
  });
  const CallAnswer answer(member, arguments);
  try {
    if (!target.object) target.object = make_object(*target.info);
    const Value result = member.invoke(target.object.get(), arguments.values);
    if (event_failure_) std::rethrow_exception(std::exchange(event_failure_, nullptr));
    answer.write_result(begin_answer(), result);
  } catch (const Error& error) {
    answer.write_error(begin_answer(), failed(json_error(error)));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    answer.write_error(begin_answer(), failure(error.what()));
  }
}

void Batch::make(const JsonValue& request) {
  const std::string& class_name = text_member(request, "new");
  const std::string& name = text_member(request, "as");
  const ClassInfo* info = automation::find_class(class_name);
  if (info == nullptr) {
    throw UsageError(class_name + ": there is no such class" +
                     did_you_mean(class_name, class_names()));
  }
  if (name.empty()) throw UsageError("as: a name is expected");
  if (automation::find_class(name) != nullptr) throw UsageError(name + ": the name of a class");
  if (find(name) != instances_.end()) {
    throw UsageError(name + ": there is an object with this name already");
  }
  instances_.push_back({name, info, make_object(*info)});
  write_result(begin_answer(), {});
}

void Batch::get(const JsonValue& request) {
  const Target target = resolve(request, "get");
  const std::string& path = text_member(request, "get");
  const auto object = on_path(path, [&] {
    const Member& member = *target.member;
    if (member.kind == MemberKind::kProperty && !member.callable() && !member.readable) {
      throw UsageError("the property cannot be read");
    }
    return property_object(target);
  });
  write_result(begin_answer(), target.member->get(object.get()));
}

void Batch::set(const JsonValue& request) {
  const Target target = resolve(request, "set");
  const std::string& path = text_member(request, "set");
  CallArguments arguments;
  Value value;
  const auto object = on_path(path, [&] {
    const JsonValue* const given = request.find("value");
    if (target.member->kind == MemberKind::kProperty && !target.member->writable) {
      throw UsageError("the property cannot be written");
    }
    auto instance = property_object(target);
    if (given == nullptr) throw UsageError("value is required");
    value = value_from_json(*given, target.member->result, arguments);
    return instance;
  });
  target.member->set(object.get(), value);
  write_result(begin_answer(), {});
}

void Batch::release(const JsonValue& request) {
  const std::string& name = text_member(request, "release");
  const auto found = find(name);
  if (found == instances_.end()) throw UsageError(name + ": there is no such object");
  instances_.erase(found);
  write_result(begin_answer(), {});
}

Batch::Target Batch::resolve(const JsonValue& request, const char* verb) {
  const std::string& path = text_member(request, verb);
  const std::size_t dot = path.rfind('.');
  if (dot == std::string::npos) throw UsageError(path + ": OBJECT.MEMBER is expected");
  const std::string_view owner = std::string_view(path).substr(0, dot);
  Target target;
  if (const auto found = find(owner); found != instances_.end()) {
    target.info = found->info;
    target.object = found->object;
  } else {
    target.info = automation::find_class(owner);
  }
  if (target.info == nullptr) {
    std::vector<std::string> known = class_names();
    for (const Instance& instance : instances_) known.push_back(instance.name);
    throw UsageError(path + ": there is no object or class " + std::string(owner) +
                     did_you_mean(owner, known));
  }
  const std::string_view name = std::string_view(path).substr(dot + 1);
  target.member = target.info->find(name);
  if (target.member == nullptr) {
    throw UsageError(path + ": " + target.info->name + " has no such member" +
                     did_you_mean(name, member_names(*target.info)));
  }
  return target;
}

/// The object whose property is asked for, after checks that reading and writing share.
std::shared_ptr<void> Batch::property_object(const Target& target) {
  const Member& member = *target.member;
  if (member.kind == MemberKind::kEvent) throw UsageError("an event has no value");
  if (member.kind == MemberKind::kOperation) throw UsageError("an operation is called; use call");
  if (member.callable()) throw UsageError("the property takes arguments; use call");
  if (target.object) return target.object;
  if (!target.info->predeclared) {
    throw UsageError("the property of an object; make one of the class with new");
  }
  return make_object(*target.info);
}

std::shared_ptr<void> Batch::make_object(const ClassInfo& info) {
  auto object = info.make();
  for (const Member& member : info.members) {
    if (member.kind != MemberKind::kEvent) continue;
    member.connect(object.get(), [this, event = json_string(info.name + "." + member.name)] {
      // An operation keeps what its event's handlers throw; this is for the call that it is part
      // of.
      try {
        output_->end("{\"event\":" + event + ",\"id\":" + std::string(id_) + "}");
      } catch (...) {
        event_failure_ = std::current_exception();
      }
    });
  }
  return object;
}

std::string Batch::failure(const char* what) {
  status_ = kFailed;
  return failed(internal_error_json(what));
}

std::string Batch::failed(std::string error_json) {
  some_failed_ = true;
  return error_json;
}

std::vector<Batch::Instance>::iterator Batch::find(std::string_view name) {
  return std::find_if(instances_.begin(), instances_.end(),
                      [&](const Instance& instance) { return instance.name == name; });
}

}  // namespace bvconn::tool
