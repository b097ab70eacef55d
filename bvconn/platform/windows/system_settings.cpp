#include "bvconn/platform/settings/system_settings.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/files.h"
#include "bvconn/platform/settings/settings_tables.h"
#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {
namespace {

// The application has 32 bits, and a program of 64 bits that shares its settings is to see the
// same.
constexpr REGSAM kView = KEY_WOW64_32KEY;

HKEY root_key(SettingsRoot root) {
  return root == SettingsRoot::kCurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

std::string shown_path(SettingsRoot root, std::string_view key, std::string_view name) {
  std::string path = root == SettingsRoot::kCurrentUser ? "HKCU\\" : "HKLM\\";
  return path.append(key).append("\\").append(name);
}

[[noreturn]] void fail(std::string_view doing, const std::string& path, std::string_view reason) {
  std::string text("Cannot ");
  text.append(doing).append(" the setting ").append(shown(path)).append(": ").append(reason);
  throw Error(error_numbers::kSettingsUnusable, "RegistryAccess", text);
}

/// An open key, closed with this object; null where it does not open.
class Key {
 public:
  Key() = default;
  ~Key() {
    if (key_ != nullptr) ::RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  HKEY get() const { return key_; }
  HKEY* place() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

/// A value as it lies in the registry.
struct RawValue {
  DWORD type = REG_NONE;
  std::vector<char> bytes;
};

bool is_absent(LSTATUS code) {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

std::optional<RawValue> read(SettingsRoot root, std::string_view key_path, std::string_view name) {
  Key key;
  LSTATUS code = ::RegOpenKeyExW(root_key(root), wide(key_path).c_str(), 0, KEY_QUERY_VALUE | kView,
                                 key.place());
  RawValue value;
  const std::wstring wide_name = wide(name);
  // It may grow between the question for its size and the answer.
  for (DWORD size = 64; code == ERROR_SUCCESS;) {
    value.bytes.resize(size);
    code = ::RegQueryValueExW(key.get(), wide_name.c_str(), nullptr, &value.type,
                              reinterpret_cast<BYTE*>(value.bytes.data()), &size);
    if (code == ERROR_SUCCESS) {
      value.bytes.resize(size);
      return value;
    }
    if (code == ERROR_MORE_DATA) code = ERROR_SUCCESS;
  }
  if (is_absent(code)) return std::nullopt;
  fail("read", shown_path(root, key_path, name), windows_message(static_cast<DWORD>(code)));
}

template <class Number>
Number number_in(const RawValue& value) {
  Number number = 0;
  std::memcpy(&number, value.bytes.data(), std::min(value.bytes.size(), sizeof(number)));
  return number;
}

// Of 32 bits with its sign, as it was written: what the system's editor shows as 0xffffffff is -1.
std::optional<std::int64_t> whole_number(const RawValue& value) {
  if (value.type == REG_DWORD) return number_in<std::int32_t>(value);
  if (value.type == REG_QWORD) return number_in<std::int64_t>(value);
  return std::nullopt;
}

// With what stands between percent signs replaced, as every reader of such a value sees it.
std::wstring expanded(const std::wstring& text) {
  std::wstring result(text.size() + 1, L'\0');
  for (;;) {
    const auto room = static_cast<DWORD>(result.size());
    const DWORD size = ::ExpandEnvironmentStringsW(text.c_str(), result.data(), room);
    if (size == 0) return text;
    result.resize(size);
    if (size <= room) break;
  }
  result.pop_back();
  return result;
}

/// Whoever wrote it may have left the NUL at its end out.
std::optional<std::string> text_in(const RawValue& value) {
  if (value.type != REG_SZ && value.type != REG_EXPAND_SZ) return std::nullopt;
  std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), value.bytes.data(), text.size() * sizeof(wchar_t));
  text.resize(std::min(text.size(), text.find(L'\0')));
  return narrow(value.type == REG_EXPAND_SZ ? expanded(text) : text);
}

[[noreturn]] void fail_mismatch(const std::string& path, std::string_view wanted) {
  throw Error(error_numbers::kTypeMismatch, "BVConn",
              "The value " + shown(path) + " is no " + std::string(wanted));
}

class Registry final : public RegistryAccess {
 public:
  bool Exists(std::string_view path) override {
    const ValuePath place = split_path(path);
    return read(place.root, place.key, place.name).has_value();
  }

  void Write(std::string_view path, const SettingValue& value, std::string_view type) override {
    const ValuePath place = split_path(path);
    const auto* number = std::get_if<std::int64_t>(&value);
    if (number == nullptr) {
      write_text(place, std::get<std::string>(value));
    } else if (conversions::equal_ignoring_case(type, "REG_SZ")) {
      write_text(place, conversions::integer_text(*number));
    } else if (const auto small = static_cast<std::int32_t>(*number); small == *number) {
      write_bytes(place, REG_DWORD, &small, sizeof(small));
    } else {
      write_bytes(place, REG_QWORD, number, sizeof(*number));
    }
  }

  double ReadNumber(SettingsRoot root, std::string_view key, std::string_view name) override {
    const std::optional<RawValue> value = read(root, key, name);
    if (!value) return 0;
    if (const auto number = whole_number(*value)) return static_cast<double>(*number);
    if (const auto text = text_in(*value)) return conversions::text_to_double(*text);
    fail_mismatch(shown_path(root, key, name), "number");
  }

  std::string ReadString(SettingsRoot root, std::string_view key, std::string_view name) override {
    const std::optional<RawValue> value = read(root, key, name);
    if (!value) return "";
    if (auto text = text_in(*value)) return *std::move(text);
    if (const auto number = whole_number(*value)) return conversions::integer_text(*number);
    fail_mismatch(shown_path(root, key, name), "text");
  }

 private:
  static void write_text(const ValuePath& place, const std::string& text) {
    const std::wstring wide_text = wide(text);
    write_bytes(place, REG_SZ, wide_text.c_str(), (wide_text.size() + 1) * sizeof(wchar_t));
  }

  static void write_bytes(const ValuePath& place, DWORD type, const void* bytes, std::size_t size) {
    Key key;
    LSTATUS code = ::RegCreateKeyExW(root_key(place.root), wide(place.key).c_str(), 0, nullptr, 0,
                                     KEY_SET_VALUE | kView, nullptr, key.place(), nullptr);
    if (code == ERROR_SUCCESS) {
      code = ::RegSetValueExW(key.get(), wide(place.name).c_str(), 0, type,
                              static_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
    }
    if (code != ERROR_SUCCESS) {
      fail("write", shown_path(place.root, place.key, place.name),
           windows_message(static_cast<DWORD>(code)));
    }
  }
};

/// The registry, but for a root whose settings the environment keeps in a file.
class SystemSettings final : public RegistryAccess {
 public:
  bool Exists(std::string_view path) override { return of(split_path(path).root).Exists(path); }

  void Write(std::string_view path, const SettingValue& value, std::string_view type) override {
    of(split_path(path).root).Write(path, value, type);
  }

  double ReadNumber(SettingsRoot root, std::string_view key, std::string_view name) override {
    return of(root).ReadNumber(root, key, name);
  }

  std::string ReadString(SettingsRoot root, std::string_view key, std::string_view name) override {
    return of(root).ReadString(root, key, name);
  }

 private:
  RegistryAccess& of(SettingsRoot root) {
    const bool is_user = root == SettingsRoot::kCurrentUser;
    const char* variable = is_user ? "BVCONN_USER_SETTINGS" : "BVCONN_MACHINE_SETTINGS";
    if (environment(variable).empty()) return registry_;
    return *files_;
  }

  Registry registry_;
  std::unique_ptr<RegistryAccess> files_ = make_settings_files();
};

}  // namespace

std::unique_ptr<RegistryAccess> make_settings() {
  return std::make_unique<SystemSettings>();
}

}  // namespace bvconn::detail
