#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "tree/include_rules.h"
#include "tree/source_tree.h"

namespace bvconn::test {
namespace {

// The picture as the tree gives it: a line for each room, with the rooms that it includes.
std::string picture_of(const SourceTree& tree) {
  const auto included = rooms_included(tree);
  std::string picture;
  for (const std::string& room : room_names()) {
    const auto found = included.find(room);
    if (found == included.end()) continue;
    picture += room + ":";
    for (const std::string& target : room_names()) {
      if (found->second.contains(target)) picture += " " + target;
    }
    picture += "\n";
  }
  return picture;
}

// The text between the first pair of fences.
std::string fenced(const std::string& page) {
  const auto begin = page.find("```\n");
  const auto end = page.find("```\n", begin + 4);
  if (begin == std::string::npos || end == std::string::npos) return "";
  return page.substr(begin + 4, end - begin - 4);
}

TEST(Rooms, AreDrawnAsTheyAre) {
  EXPECT_EQ(fenced(read_text(BVCONN_SOURCE_DIR "/docs/rooms.md")),
            picture_of(read_source_tree(BVCONN_SOURCE_DIR)));
}

TEST(Rooms, PointDownwardsInThePicture) {
  std::istringstream picture(fenced(read_text(BVCONN_SOURCE_DIR "/docs/rooms.md")));
  std::vector<std::string> seen;
  for (std::string line; std::getline(picture, line);) {
    std::istringstream words(line);
    std::string room;
    words >> room;
    for (std::string target; words >> target;) {
      EXPECT_NE(std::find(seen.begin(), seen.end(), target), seen.end())
          << room << " includes " << target << ", which does not stand above it on the page";
    }
    room.pop_back();
    seen.push_back(room);
  }
  EXPECT_GT(seen.size(), 15U);
}

}  // namespace
}  // namespace bvconn::test
