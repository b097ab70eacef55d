#pragma once

namespace bvconn::tool {

/// Has the interrupts of this process come here, once where it is no default; gives who had them
/// before. Those that the process was started without stay ignored.
void (*set_interrupt_handler(void (*handler)(int)))(int);

}  // namespace bvconn::tool
