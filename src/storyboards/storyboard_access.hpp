#pragma once

// What a storyboard offers the library's other classes only: setting its
// identifier, and its short number (its position when its set was last written).

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <quillbank/storyboard.hpp>
#include <quillbank/xml.hpp>

namespace quillbank::detail {

struct StoryboardAccess {
    static void SetSBID(Storyboard& sb, std::string_view NewSBID) { sb.SetSBID(NewSBID); }
    // The identifier without a copy.
    static const std::string& SBIDRef(const Storyboard& sb) { return sb.sbid_; }
    static std::int32_t ShortID(const Storyboard& sb) { return sb.ShortID(); }
    static void SetShortID(Storyboard& sb, std::int32_t NewValue) { sb.SetShortID(NewValue); }
    // A new storyboard read from a "storyboard" element: the same as Create()
    // followed by FromXMLElement, without making an identifier that the
    // reading would replace at once.
    static std::shared_ptr<Storyboard> CreateFromElement(const xml::Element& Element);
};

}  // namespace quillbank::detail
