#pragma once

#include "sandbox/stubs/stub.h"

namespace bvconn::sandbox {

/// Takes the rule's answer apart at its holes and looks whether it is well-formed, whatever fills
/// them; otherwise throws BadStub.
void read_answer(StubRule& rule);

}  // namespace bvconn::sandbox
