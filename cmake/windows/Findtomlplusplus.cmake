include(BVConnHostHeaders)
bvconn_host_headers(tomlplusplus::tomlplusplus toml++)
set(tomlplusplus_FOUND TRUE)
