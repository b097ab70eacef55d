#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/export.h"

namespace bvconn {

/// What stands where a secret stood.
inline constexpr std::string_view kMasked = "***";

/// Whether an element or an argument of this name holds a password.
BVCONN_EXPORT bool names_password(std::string_view name);

/// A request as a trace may show it: of the method updatePassword every text, of a login the
/// passwords (the second parameter, and every element that is named so). Other requests are
/// unchanged.
BVCONN_EXPORT std::string mask_request(std::string_view request);

namespace detail {

/// What `mask_envelope` hides.
enum class EnvelopeMask {
  kPasswords,   ///< what `mask_request` hides
  kAllSecrets,  ///< besides, the header userID, and in any method the elements named like passwords
  kWholeBody,   ///< every text in the Body: the answer to a login
};

/// The envelope with its secrets hidden; each text that was goes to `hidden`, as it stood.
BVCONN_EXPORT std::string mask_envelope(std::string_view text, EnvelopeMask mask,
                                        std::vector<std::string>& hidden);

/// How much of what stands behind the two slashes of a URL is user and password, without the @. A
/// password with a slash in it, which should have been escaped, is looked for too.
BVCONN_EXPORT std::size_t user_info_size(std::string_view rest);

/// The local name of the Body's first element; "" where there is none.
std::string_view body_element(std::string_view text);

}  // namespace detail
}  // namespace bvconn
