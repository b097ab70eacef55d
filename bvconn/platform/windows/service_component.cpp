#include "bvconn/platform/windows/service_component.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/settings/settings_key.h"
#include "bvconn/platform/settings/system_settings.h"
#include "bvconn/platform/windows/apartment.h"
#include "bvconn/platform/windows/component_call.h"
#include "bvconn/platform/windows/service_rows.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {
namespace {

std::string program_id(std::string_view name) {
  return "TorvexLib." + std::string(name);
}

std::string shown_identifier(const GUID& id) {
  wchar_t text[40] = {};
  ::StringFromGUID2(id, text, 40);
  return narrow(text);
}

/// One reference, given back on the thread of its apartment.
class HeldObject {
 public:
  HeldObject(std::shared_ptr<Apartment> apartment, IDispatch* counted)
      : apartment_(std::move(apartment)), object_(counted) {}
  ~HeldObject() { apartment_->release(object_); }
  HeldObject(const HeldObject&) = delete;
  HeldObject& operator=(const HeldObject&) = delete;

  Apartment& apartment() const { return *apartment_; }
  IDispatch& get() const { return *object_; }

 private:
  std::shared_ptr<Apartment> apartment_;
  IDispatch* object_;
};

class ServiceComponent final : public ServiceObject {
 public:
  ServiceComponent(std::string_view name, std::shared_ptr<Apartment> apartment, IDispatch* counted)
      : name_(name), held_(std::make_shared<HeldObject>(std::move(apartment), counted)) {}

  std::string_view name() const override { return name_; }

  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    // A component that calls back may let go of this very object.
    const std::shared_ptr<HeldObject> held = enter();
    const std::string full_name = name_ + "." + std::string(operation);
    const Member member = member_of(full_name, operation);
    ComponentCall call(full_name, *member.row, arguments, by_name);
    TextPlace place = member.place;
    std::string text = call.run(held->get(), member.id, place);
    if (member.place != place) known_[member.at].place = place;
    return text;
  }

  bool offers(std::string_view interface_name) const override {
    if (interface_name == name_) return true;
    const std::shared_ptr<HeldObject> held = enter();
    const std::string setting = service_interface_setting(interface_name);
    return setting.empty() ? knows_all_of(interface_name)
                           : answers_for(held->get(), interface_name, setting);
  }

 private:
  struct Member {
    const ServiceRow* row = nullptr;
    DISPID id = DISPID_UNKNOWN;
    TextPlace place = TextPlace::kUnknown;
    std::size_t at = 0;
    std::string operation{};
  };

  std::shared_ptr<HeldObject> enter() const {
    if (!held_->apartment().is_here()) {
      Error error(RPC_E_WRONG_THREAD, name_,
                  "The component " + program_id(name_) +
                      " belongs to the thread that made it, and was called on another one; each "
                      "thread calls InitTorvexDAL for itself");
      error.outcome = Outcome::kNotSent;
      throw Error(error);
    }
    held_->apartment().release_left();
    return held_;
  }

  HRESULT find(std::string_view operation, DISPID& id) const {
    std::wstring wide_name = wide(operation);
    LPOLESTR names[] = {wide_name.data()};
    return call_component(name_ + "." + std::string(operation), [&] {
      return held_->get().GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    });
  }

  Member member_of(const std::string& full_name, std::string_view operation) {
    const auto known = std::ranges::find(known_, operation, &Member::operation);
    if (known != known_.end()) return *known;
    Member member{.row = &service_row(name_, operation), .operation = std::string(operation)};
    const HRESULT result = find(operation, member.id);
    if (FAILED(result) || member.id == DISPID_UNKNOWN) {
      const HRESULT why = FAILED(result) ? result : DISP_E_UNKNOWNNAME;
      Error error(why, name_,
                  "The component " + program_id(name_) + " has no operation " +
                      full_name.substr(name_.size() + 1) + ": " + result_text(why));
      error.outcome = Outcome::kNotSent;
      throw Error(error);
    }
    member.at = known_.size();
    known_.push_back(member);
    return member;
  }

  bool knows_all_of(std::string_view interface_name) const {
    bool has_some = false;
    for (const ServiceRow& row : service_rows()) {
      if (row.object != interface_name) continue;
      DISPID id = DISPID_UNKNOWN;
      if (FAILED(find(row.operation, id)) || id == DISPID_UNKNOWN) return false;
      has_some = true;
    }
    return has_some;
  }

  static bool answers_for(IDispatch& object, std::string_view interface_name,
                          const std::string& setting) {
    IID id{};
    if (FAILED(::IIDFromString(wide(setting).c_str(), &id))) {
      throw Error(error_numbers::kTypeMismatch, "BVConn",
                  "The setting HKLM\\" + std::string(kServiceInterfacesKey) + "\\" +
                      std::string(interface_name) + " is " + shown(setting) +
                      ", which is no identifier of an interface");
    }
    IUnknown* found = nullptr;
    const HRESULT result = call_component(interface_name, [&] {
      return object.QueryInterface(id, reinterpret_cast<void**>(&found));
    });
    if (FAILED(result) || found == nullptr) return false;
    found->Release();
    return true;
  }

  std::string name_;
  std::shared_ptr<HeldObject> held_;
  std::vector<Member> known_;
};

/// A class that the registry does not have either is there for programs of the other kind.
bool is_of_other_kind(const CLSID& id, HRESULT result) {
  if (result != REGDB_E_CLASSNOTREG) return false;
  HKEY key = nullptr;
  const std::wstring path = L"CLSID\\" + wide(shown_identifier(id));
  if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
    return true;
  }
  ::RegCloseKey(key);
  return false;
}

[[noreturn]] void fail_making(std::string_view name, const CLSID& id, HRESULT result) {
  std::string why = result_text(result);
  if (result == E_NOINTERFACE) why = "it cannot be called by names: " + why;
  Error error(
      result, name,
      "Cannot make the component " + program_id(name) + " (" + shown_identifier(id) + "): " + why);
  error.outcome = Outcome::kNotSent;
  throw Error(error);
}

}  // namespace

// What goes to a component must not go over HTTP because the registry could not be read.
bool is_registered(std::string_view name, HRESULT result) {
  if (SUCCEEDED(result)) return true;
  if (result == CO_E_CLASSSTRING || result == REGDB_E_CLASSNOTREG) return false;
  Error error(result, name,
              "Cannot find out whether the component " + program_id(name) +
                  " is registered: " + result_text(result));
  error.outcome = Outcome::kNotSent;
  throw Error(error);
}

std::shared_ptr<ServiceObject> make_service_component(std::string_view name) {
  CLSID id{};
  const HRESULT found = ::CLSIDFromProgID(wide(program_id(name)).c_str(), &id);
  if (!is_registered(name, found)) return nullptr;
  std::shared_ptr<Apartment> apartment = Apartment::of_thread();
  apartment->release_left();
  IDispatch* object = nullptr;
  constexpr DWORD kAnywhere = CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER;
  const HRESULT result = call_component(name, [&] {
    return ::CoCreateInstance(id, nullptr, kAnywhere, __uuidof(IDispatch),
                              reinterpret_cast<void**>(&object));
  });
  if (is_of_other_kind(id, result)) return nullptr;
  if (FAILED(result)) fail_making(name, id, result);
  if (object == nullptr) fail_making(name, id, E_POINTER);
  return std::make_shared<ServiceComponent>(name, std::move(apartment), object);
}

std::string service_interface_setting(std::string_view interface_name) {
  return make_settings()->ReadString(SettingsRoot::kLocalMachine, kServiceInterfacesKey,
                                     interface_name);
}

}  // namespace bvconn::detail
