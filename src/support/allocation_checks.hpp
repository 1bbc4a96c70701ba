#pragma once

// Whether this build checks every allocation on its own (AddressSanitizer).
// Memory that is pooled or handed out in bulk hides a block used after its
// release from such a checker, so those builds allocate each block singly.

namespace quillbank::support {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kChecksEveryAllocation = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kChecksEveryAllocation = true;
#else
inline constexpr bool kChecksEveryAllocation = false;
#endif
#else
inline constexpr bool kChecksEveryAllocation = false;
#endif

}  // namespace quillbank::support
