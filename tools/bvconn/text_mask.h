#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bvconn::tool {

/// Hides secrets in texts of any kind: first those that stand where secrets stand (user and
/// password in a URL, XML elements and values named like a password, a token, a cookie or a
/// session), then each of these, and whatever else it was given, wherever it turns up again.
class TextMask {
 public:
  /// A text that is to be hidden wherever it stands, from four bytes on; a shorter one stands in
  /// too many texts by chance.
  void add(std::string_view secret);
  /// The text without the secrets that show by their place, which are remembered.
  std::string mask_places(std::string_view text);
  /// The text without any secret that is known by now.
  std::string hide(std::string text) const;

 private:
  std::string mask_elements(std::string_view text);
  std::string mask_values(std::string_view text);

  std::vector<std::string> secrets_;  ///< the longest first: one may be part of another
};

/// Whether what is called so is not for everybody's eyes.
bool names_secret(std::string_view name);

}  // namespace bvconn::tool
