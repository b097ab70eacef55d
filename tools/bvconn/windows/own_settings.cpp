#include "own_settings.h"

#include <array>

#include "bvconn/platform/settings/settings_key.h"

namespace bvconn::tool {
namespace {

constexpr std::array<std::string_view, 2> kForms{"component", "http"};

constexpr std::array kOwnSettings{
    LibrarySetting{detail::kServiceObjectsSetting, SettingsRoot::kLocalMachine, "",
                   "component or http: what InitTorvexDAL makes service objects of; empty: the "
                   "component where one is registered",
                   kForms},
};

}  // namespace

std::span<const LibrarySetting> own_settings() {
  return kOwnSettings;
}

}  // namespace bvconn::tool
