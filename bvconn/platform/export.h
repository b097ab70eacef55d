#pragma once

/// Marks what the shared library offers to its users; everything else stays hidden inside it.
#if defined(_WIN32)
#if defined(BVCONN_STATIC)
#define BVCONN_EXPORT
#elif defined(BVCONN_BUILDING)
#define BVCONN_EXPORT __declspec(dllexport)
#else
#define BVCONN_EXPORT __declspec(dllimport)
#endif
#else
#define BVCONN_EXPORT __attribute__((visibility("default")))
#endif
