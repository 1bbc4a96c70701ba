#include "support/guid.hpp"

#include <array>
#include <cstdint>

#if defined(_WIN32)
#include <objbase.h>
#else
#include <sys/random.h>
#endif

namespace quillbank::support {

namespace {

bool FillRandom(std::array<std::uint8_t, 16>& bytes) {
#if defined(_WIN32)
    GUID guid;
    if (CoCreateGuid(&guid) != S_OK) {
        return false;
    }
    // Rendered as StringFromGUID2 does: Data1, Data2, Data3 as numbers, then Data4 bytes.
    bytes = {static_cast<std::uint8_t>(guid.Data1 >> 24), static_cast<std::uint8_t>(guid.Data1 >> 16),
             static_cast<std::uint8_t>(guid.Data1 >> 8),  static_cast<std::uint8_t>(guid.Data1),
             static_cast<std::uint8_t>(guid.Data2 >> 8),  static_cast<std::uint8_t>(guid.Data2),
             static_cast<std::uint8_t>(guid.Data3 >> 8),  static_cast<std::uint8_t>(guid.Data3),
             guid.Data4[0], guid.Data4[1], guid.Data4[2], guid.Data4[3],
             guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]};
    return true;
#else
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = getrandom(bytes.data() + filled, bytes.size() - filled, 0);
        if (got <= 0) {
            return false;
        }
        filled += static_cast<std::size_t>(got);
    }
    // A random (version 4, RFC 4122 variant) GUID.
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    return true;
#endif
}

}  // namespace

std::string NewGUIDString() {
    std::array<std::uint8_t, 16> bytes{};
    if (!FillRandom(bytes)) {
        return EmptyGUIDString();
    }
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            out.push_back('-');
        }
        out.push_back(kHex[bytes[i] >> 4]);
        out.push_back(kHex[bytes[i] & 0x0F]);
    }
    return out;
}

std::string EmptyGUIDString() { return "00000000-0000-0000-0000-000000000000"; }

}  // namespace quillbank::support
