#include "bvconn/component/registration.h"

#include <stdexcept>
#include <string>
#include <string_view>
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

HKEY root_of(Whom whom) {
  return whom == Whom::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

// The file that this code was loaded from.
std::wstring library_path() {
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

std::vector<Value> values_of(const ComponentClass& row, const std::wstring& library) {
  const std::wstring id = detail::wide(guid_text(row.id));
  const std::wstring key = class_key(id);
  const std::vector<std::wstring> prog_ids = prog_ids_of(row);
  std::vector<Value> values{{key, L"", prog_ids.front()},
                            {key + L"\\InprocServer32", L"", library},
                            {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
                            {key + L"\\ProgID", L"", prog_ids.front()}};
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

void remove(HKEY root, const std::wstring& key) {
  const LSTATUS code = ::RegDeleteTreeW(root, (std::wstring(kClassesKey) + key).c_str());
  if (code != ERROR_FILE_NOT_FOUND) check(code);
}

bool is_in_other_view(HKEY root, const std::wstring& key) {
  HKEY found = nullptr;
  const std::wstring path = std::wstring(kClassesKey) + key;
  const LSTATUS code = ::RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE | kOtherView, &found);
  if (code == ERROR_SUCCESS) ::RegCloseKey(found);
  return code == ERROR_SUCCESS;
}

// A user who had no class of their own had no key for them.
void remove_if_empty(HKEY root, const std::wstring& path) {
  HKEY found = nullptr;
  if (::RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE, &found) != ERROR_SUCCESS) return;
  DWORD keys = 0;
  DWORD values = 0;
  const LSTATUS code = ::RegQueryInfoKeyW(found, nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                                          &values, nullptr, nullptr, nullptr, nullptr);
  ::RegCloseKey(found);
  if (code == ERROR_SUCCESS && keys == 0 && values == 0) ::RegDeleteKeyW(root, path.c_str());
}

}  // namespace

Hresult install_classes(Whom whom) noexcept {
  try {
    const std::wstring library = library_path();
    for (const ComponentClass& row : component_classes()) {
      for (const Value& value : values_of(row, library)) write(root_of(whom), value);
    }
    return kOk;
  } catch (...) {
    return kRegistrationFailed;
  }
}

Hresult remove_classes(Whom whom) noexcept {
  try {
    const HKEY root = root_of(whom);
    for (const ComponentClass& row : component_classes()) {
      const std::wstring key = class_key(detail::wide(guid_text(row.id)));
      remove(root, key);
      if (is_in_other_view(root, key)) continue;
      for (const std::wstring& prog_id : prog_ids_of(row)) remove(root, prog_id);
    }
    remove_if_empty(root, L"Software\\Classes\\CLSID");
    return kOk;
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
