#pragma once

// The conformance pass run over XML text before it is parsed. The parser is
// more lenient than the document model must be, so this pass refuses, in one
// walk over the text, what a conforming XML 1.0 reader refuses and the parser
// would let through.

#include <string_view>

namespace quillbank::xml {

struct PrescanResult {
    // False when the text must not load.
    bool accepted = false;
    // True when some start tag has an xml:space attribute, so that
    // whitespace-only text must be kept while parsing and filtered afterwards.
    bool mentionsXmlSpace = false;
    // True when some text inside the root element starts with whitespace, so
    // that whitespace-only text may be there to drop (and remember).
    bool hasSpaceText = false;
    // True when some element is written "<a></a>", with an end tag right
    // after its start tag.
    bool hasEmptyEndTag = false;
};

// Refuses: text that is not UTF-8; characters XML 1.0 does not allow
// (control characters other than TAB, LF and CR, U+FFFE, U+FFFF); any
// reference in content or an attribute value other than &amp; &lt; &gt;
// &quot; &apos; and character references naming an allowed character (so an
// entity a document type declaration defines is never expanded: the text
// fails); an attribute given twice on one element; '<' inside an attribute value; "]]>" in content; "--" inside a
// comment; an XML declaration anywhere but at the very start; text or a
// reference outside the root element; more than one root element.
// A document type declaration, internal subset included, is stepped over.
PrescanResult PrescanXml(std::string_view text);

}  // namespace quillbank::xml
