#pragma once

#include <cstdint>

namespace quillbank {

enum EncodingTypes : std::int32_t {
    etNotEncoded = 0,
    etBase64Encoded = 1,
};

enum PropertyTypes : std::int32_t {
    ptNone = 0,
    ptBoolean = 1,
    ptLong = 2,
    ptDouble = 3,
    ptString = 4,
    ptDate = 5,
    ptColor = 6,
    ptFont = 7,
    ptRectangle = 8,
    ptAsset = 9,
    ptLocation = 10,
    ptPPC = 11,
    ptCEC = 12,
};

// There is no zero member: a map interprets every other value in its own way.
enum StoryboardInsertTypes : std::int32_t {
    sbitInsertBefore = 1,
    sbitInsertAfter = 2,
    sbitInsertAsChild = 3,
};

}  // namespace quillbank
