#include "bvconn/component/registration.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "bvconn/component/class_table.h"
#include "bvconn/component/handles.h"
#include "bvconn/component/windows/install.h"
#include "bvconn/platform/windows/components.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::component {
namespace {

constexpr std::wstring_view kClassesKey = L"Software\\Classes\\";

// Names are common to programs of both sizes of a pointer, but classes are apart.
constexpr REGSAM kOtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

constexpr std::wstring_view kSystem = sizeof(void*) == 8 ? L"win64" : L"win32";
constexpr std::wstring_view kOtherSystem = sizeof(void*) == 8 ? L"win32" : L"win64";

// The system's own, for interfaces that are called by name or number.
constexpr const wchar_t* kProxyOfDispatch = L"{00020420-0000-0000-C000-000000000046}";

HKEY root_of(Whom whom) {
  return whom == Whom::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

void check(LSTATUS code) {
  if (code != ERROR_SUCCESS) throw std::runtime_error("the registry refuses");
}

struct Value {
  std::wstring key;
  // Empty for the key's own value.
  std::wstring name;
  std::wstring text;
};

std::wstring class_key(const std::wstring& id) {
  return L"CLSID\\" + id;
}

std::vector<std::wstring> prog_ids_of(const ComponentClass& row) {
  return {detail::wide(prog_id_of(row)), detail::wide(library_prog_id_of(row))};
}

std::wstring type_library_id() {
  return detail::wide(guid_text(kTypeLibrary));
}

std::wstring type_library_version() {
  return std::to_wstring(kTypeLibraryMajor) + L"." + std::to_wstring(kTypeLibraryMinor);
}

std::wstring type_library_key() {
  return L"TypeLib\\" + type_library_id();
}

// The type library is the library's own file, one for programs of each size of a pointer.
std::wstring type_library_file_key(std::wstring_view system) {
  return type_library_key() + L"\\" + type_library_version() + L"\\0\\" + std::wstring(system);
}

struct Interface {
  std::wstring id;
  std::wstring name;
};

std::vector<Interface> all_interfaces() {
  std::vector<Interface> all{
      {detail::wide(guid_text(kHeartBeatEvents)), L"__BVHeartBeatConnector"}};
  const auto add = [&](const auto& row) {
    all.push_back({detail::wide(guid_text(row.interface_id)), L"_" + detail::wide(row.name)});
  };
  std::ranges::for_each(component_classes(), add);
  std::ranges::for_each(result_objects(), add);
  return all;
}

// With these the system carries calls between apartments, and finds the type library by its
// identifier.
std::vector<Value> type_library_values(const std::wstring& library) {
  const std::wstring key = type_library_key() + L"\\" + type_library_version();
  std::vector<Value> values{{key, L"", L"BVConnector"},
                            {type_library_file_key(kSystem), L"", library},
                            {key + L"\\FLAGS", L"", L"0"},
                            {key + L"\\HELPDIR", L"", library.substr(0, library.rfind(L'\\'))}};
  for (const Interface& each : all_interfaces()) {
    const std::wstring interface_key = L"Interface\\" + each.id;
    values.push_back({interface_key, L"", each.name});
    values.push_back({interface_key + L"\\ProxyStubClsid32", L"", kProxyOfDispatch});
    values.push_back({interface_key + L"\\TypeLib", L"", type_library_id()});
    values.push_back({interface_key + L"\\TypeLib", L"Version", type_library_version()});
  }
  return values;
}

std::vector<Value> values_of(const ComponentClass& row, const std::wstring& library) {
  const std::wstring id = detail::wide(guid_text(row.id));
  const std::wstring key = class_key(id);
  const std::vector<std::wstring> prog_ids = prog_ids_of(row);
  std::vector<Value> values{{key, L"", prog_ids.front()},
                            {key + L"\\InprocServer32", L"", library},
                            {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
                            {key + L"\\ProgID", L"", prog_ids.front()},
                            {key + L"\\TypeLib", L"", type_library_id()},
                            {key + L"\\Version", L"", type_library_version()}};
  for (const std::wstring& prog_id : prog_ids) {
    values.push_back({prog_id, L"", prog_id});
    values.push_back({prog_id + L"\\CLSID", L"", id});
  }
  return values;
}

void write(HKEY root, const Value& value) {
  const std::wstring key = std::wstring(kClassesKey) + value.key;
  check(::RegSetKeyValueW(root, key.c_str(), value.name.c_str(), REG_SZ, value.text.c_str(),
                          static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t))));
}

// The text of a value, "" for none; `name` is null for the key's own value.
std::wstring text_at(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
  const std::wstring path = std::wstring(kClassesKey) + key;
  for (std::wstring text(MAX_PATH, L'\0');; text.resize(2 * text.size())) {
    auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    const LSTATUS code =
        ::RegGetValueW(root, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
    if (code == ERROR_SUCCESS) return text.substr(0, text.find(L'\0'));
    if (code != ERROR_MORE_DATA) return {};
  }
}

bool is_there(const std::wstring& file) {
  return ::GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// The volume and the number that the file has there; zeros for a file that does not open.
std::tuple<DWORD, DWORD, DWORD> identity_of(const std::wstring& file) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle = ::CreateFileW(file.c_str(), 0, kShared, nullptr, OPEN_EXISTING, 0, nullptr);
  BY_HANDLE_FILE_INFORMATION known{};
  if (handle != INVALID_HANDLE_VALUE) {
    ::GetFileInformationByHandle(handle, &known);
    ::CloseHandle(handle);
  }
  return {known.dwVolumeSerialNumber, known.nFileIndexHigh, known.nFileIndexLow};
}

// Two paths may name one file, one of them with short names, say.
bool is_same_file(const std::wstring& one, const std::wstring& other) {
  return one == other || identity_of(one) == identity_of(other);
}

bool exists(HKEY root, const std::wstring& key, REGSAM view = 0) {
  HKEY found = nullptr;
  const std::wstring path = std::wstring(kClassesKey) + key;
  const LSTATUS code = ::RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE | view, &found);
  if (code == ERROR_SUCCESS) ::RegCloseKey(found);
  return code == ERROR_SUCCESS;
}

// A user who had no class of their own had no key for them.
void remove_if_empty(HKEY root, const std::wstring& path, REGSAM view = 0) {
  HKEY found = nullptr;
  if (::RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE | view, &found) != ERROR_SUCCESS) {
    return;
  }
  DWORD keys = 0;
  DWORD values = 0;
  const LSTATUS code = ::RegQueryInfoKeyW(found, nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                                          &values, nullptr, nullptr, nullptr, nullptr);
  ::RegCloseKey(found);
  if (code == ERROR_SUCCESS && keys == 0 && values == 0) {
    ::RegDeleteKeyExW(root, path.c_str(), view, 0);
  }
}

// Deletes what there is of one file's registration. A key that is refused keeps no other one.
class Removal {
 public:
  Removal(HKEY root, std::wstring library) : root_(root), library_(std::move(library)) {}

  bool run() {
    std::ranges::for_each(component_classes(), [&](const auto& row) { remove_class(row); });
    remove_type_library();
    for (const wchar_t* key : {L"CLSID", L"Interface", L"TypeLib"}) {
      remove_if_empty(root_, std::wstring(kClassesKey) + key);
    }
    // Where programs of 32 bits have those keys, as the system itself sees it.
    if (sizeof(void*) == 4) {
      remove_if_empty(root_, std::wstring(kClassesKey) + L"Wow6432Node", KEY_WOW64_64KEY);
    }
    return all_removed_;
  }

 private:
  void remove(const std::wstring& key) {
    const LSTATUS code = ::RegDeleteTreeW(root_, (std::wstring(kClassesKey) + key).c_str());
    if (code != ERROR_SUCCESS && code != ERROR_FILE_NOT_FOUND) all_removed_ = false;
  }

  // Another copy of the library may have been registered over this one since. A file that is gone
  // is nobody's.
  bool is_anothers(const std::wstring& key) const {
    const std::wstring file = text_at(root_, key);
    return !file.empty() && is_there(file) && !is_same_file(file, library_);
  }

  void remove_class(const ComponentClass& row) {
    const std::wstring key = class_key(detail::wide(guid_text(row.id)));
    if (is_anothers(key + L"\\InprocServer32")) return;
    remove(key);
    if (exists(root_, key, kOtherView)) return;
    for (const std::wstring& prog_id : prog_ids_of(row)) remove(prog_id);
  }

  void remove_type_library() {
    if (is_anothers(type_library_file_key(kSystem))) return;
    for (const Interface& each : all_interfaces()) {
      const std::wstring key = L"Interface\\" + each.id;
      const std::wstring version = text_at(root_, key + L"\\TypeLib", L"Version");
      if (version.empty() || version == type_library_version()) remove(key);
    }
    remove(type_library_file_key(kSystem));
    if (exists(root_, type_library_file_key(kOtherSystem))) return;
    remove(type_library_key() + L"\\" + type_library_version());
    // Other versions of it are other libraries'.
    remove_if_empty(root_, std::wstring(kClassesKey) + type_library_key());
  }

  HKEY root_;
  std::wstring library_;
  bool all_removed_ = true;
};

}  // namespace

std::wstring library_file() {
  HMODULE module = nullptr;
  constexpr DWORD kFlags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (::GetModuleHandleExW(kFlags, static_cast<const wchar_t*>(module_mark()), &module) == 0) {
    throw std::runtime_error("the library does not find itself");
  }
  // A path that does not fit is cut to the size that there is.
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD size = ::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (size == 0) throw std::runtime_error("the library does not find its file");
    if (size < path.size()) return path.substr(0, size);
    path.resize(2 * path.size());
  }
}

Hresult install_classes(Whom whom) noexcept {
  try {
    const std::wstring library = library_file();
    for (const ComponentClass& row : component_classes()) {
      for (const Value& value : values_of(row, library)) write(root_of(whom), value);
    }
    for (const Value& value : type_library_values(library)) write(root_of(whom), value);
    return kOk;
  } catch (...) {
    // Half of it would be of no use to a host.
    remove_classes(whom);
    return kRegistrationFailed;
  }
}

Hresult remove_classes(Whom whom) noexcept {
  try {
    return Removal(root_of(whom), library_file()).run() ? kOk : kRegistrationFailed;
  } catch (...) {
    return kRegistrationFailed;
  }
}

Hresult register_classes() noexcept {
  return install_classes(Whom::kMachine);
}

Hresult unregister_classes() noexcept {
  return remove_classes(Whom::kMachine);
}

}  // namespace bvconn::component
