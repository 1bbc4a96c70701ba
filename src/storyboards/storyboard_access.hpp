#pragma once

// What a storyboard offers the library's other classes only: setting its
// identifier, and its short number (its position when its set was last written).

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>
#include <quillbank/xml.hpp>

#include "xml/writer.hpp"

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
    // The "storyboard" element. Its bag and list are named "properties" and
    // "children" on the way (the names stay).
    static void Write(Storyboard& sb, xml::Writer& writer, bool clear);
};

}  // namespace quillbank::detail

namespace quillbank::storyboards {

// The "storyboards" element: each storyboard numbered with its position
// ("shortid", kept by the storyboard), in the collection's order.
void WriteStoryboards(StoryboardCollection& collection, xml::Writer& writer, bool clear);

}  // namespace quillbank::storyboards

namespace quillbank::detail {}  // namespace quillbank::detail
