#pragma once

// What the C++ blocks of all pages take for granted: the headers of the library as an application
// includes them, and the test framework of those that show a test.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bvconn/bvconn.h"
#include "bvconn/testing/test_world.h"

// The names that running text uses of itself: where the server is, who asks, for what.
extern const std::string url;
extern const std::string session;
extern const std::string uid;

/// Shows a text, or whatever else, to the user.
template <class Shown>
void show(const Shown& shown);
