#include "bvconn/component/registration.h"

#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <vector>

#include "bvconn/component/class_table.h"
#include "bvconn/component/handles.h"
#include "bvconn/platform/platform.h"

namespace bvconn::component {
namespace {

constexpr std::string_view kClassesKey = "HKCU\\Software\\Classes\\";
constexpr std::string_view kTextType = "REG_SZ";

// The file that this code was loaded from.
std::string library_path() {
  Dl_info info{};
  if (dladdr(module_mark(), &info) == 0 || info.dli_fname == nullptr) return {};
  return std::filesystem::absolute(info.dli_fname).string();
}

struct Entry {
  std::string path;
  std::string value;
};

std::vector<Entry> entries_of(const ComponentClass& row, const std::string& library) {
  const std::string id = guid_text(row.id);
  const std::string prog_id = prog_id_of(row);
  const std::string key = std::string(kClassesKey) + "CLSID\\" + id + "\\";
  return {{key + "ProgID", prog_id},
          {key + "InprocServer32", library},
          {key + "InprocServer32\\ThreadingModel", "Apartment"},
          {std::string(kClassesKey) + prog_id + "\\CLSID", id}};
}

}  // namespace

Hresult register_classes() noexcept {
  try {
    const std::string library = library_path();
    if (library.empty()) return kRegistrationFailed;
    const auto settings = platform::current().settings();
    for (const ComponentClass& row : component_classes()) {
      for (const Entry& entry : entries_of(row, library)) {
        settings->Write(entry.path, entry.value, kTextType);
      }
    }
    return kOk;
  } catch (...) {
    return kRegistrationFailed;
  }
}

Hresult unregister_classes() noexcept {
  try {
    const auto settings = platform::current().settings();
    for (const ComponentClass& row : component_classes()) {
      for (const Entry& entry : entries_of(row, {})) {
        if (settings->Exists(entry.path)) settings->Write(entry.path, std::string(), kTextType);
      }
    }
    return kOk;
  } catch (...) {
    return kRegistrationFailed;
  }
}

}  // namespace bvconn::component
