#pragma once

// The one place that includes the system's headers. What they make macros of, or leave out, is said
// once for all sources by the build.
#include <winsock2.h>
#include <ws2tcpip.h>
// After the sockets, which it otherwise brings in an older form.
#include <windows.h>
// Left out there.
#include <shellapi.h>
