#pragma once

// The two ends of the model's writers: the elements that a writer function
// writes into a caller's document, and the string forms, the "xml" text of
// what it writes, written directly (TextWriter), byte for byte the "xml" of
// the elements either backend would build.

#include <string>
#include <utility>

#include "support/text.hpp"
#include "xml/writer.hpp"

namespace quillbank::xml {

// The element `write` writes, unattached, in `document`, which is first
// switched to preserve whitespace, as every writer but the maps' does.
template <class Write>
Element WriteElementIn(Document document, Write&& write) {
    document.SetPreserveWhiteSpace(true);
    DomWriter writer(std::move(document));
    std::forward<Write>(write)(writer);
    return writer.Result();
}

template <class Write>
std::string WriteString(Write&& write) {
    TextWriter writer;
    std::forward<Write>(write)(writer);
    return writer.TakeText();
}

// WriteString without the control characters below U+001A other than TAB,
// LF and CR, as the string forms give their text. The direct writer knows
// whether it wrote any, and the removal pass is made only then.
template <class Write>
std::string WriteStrippedString(Write&& write) {
    TextWriter writer;
    std::forward<Write>(write)(writer);
    if (writer.MayHoldControls()) {
        return support::StripControlCharsOwned(writer.TakeText());
    }
    return writer.TakeText();
}

}  // namespace quillbank::xml
