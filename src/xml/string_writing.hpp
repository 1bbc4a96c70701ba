#pragma once

// The string forms of the model's elements: the "xml" text of what a writer
// function writes. The pugixml build writes the text directly; the Windows
// build writes the elements into a new MSXML document and asks for their
// "xml", so that all its XML work stays inside MSXML.

#include <string>
#include <utility>

#include "xml/writer.hpp"

namespace quillbank::xml {

template <class Write>
std::string WriteString(Write&& write) {
    if constexpr (kWritesTextDirectly) {
        TextWriter writer;
        std::forward<Write>(write)(writer);
        return std::move(writer.Out());
    } else {
        Document document = Document::Create();
        document.SetPreserveWhiteSpace(true);
        DomWriter writer(document);
        std::forward<Write>(write)(writer);
        return writer.Result().Xml();
    }
}

}  // namespace quillbank::xml
