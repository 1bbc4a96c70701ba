// FormatXml: MSXML's SAX reader feeding MSXML's SAX writer.

#include <quillbank/xml.hpp>

#include <cstdio>

#include "xml/msxml/com_support.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

using msxml::Bstr;
using msxml::ComPtr;

namespace {

// The writer gives its text as a string, where the encoding it names is not
// applied; every character above U+007F becomes a decimal character
// reference here, as the named US-ASCII encoding requires.
std::string AsciiOnly(const wchar_t* text, std::size_t length) {
    std::string out;
    out.reserve(length);
    for (std::size_t i = 0; i < length; ++i) {
        std::uint32_t c = static_cast<std::uint16_t>(text[i]);
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
            continue;
        }
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < length) {
            const std::uint32_t low = static_cast<std::uint16_t>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        char reference[16];
        std::snprintf(reference, sizeof reference, "&#%u;", static_cast<unsigned>(c));
        out += reference;
    }
    return out;
}

std::optional<std::string> Format(std::string_view text) {
    ComPtr<IMXWriter> writer;
    if (FAILED(msxml::CreateMsxmlObject(CLSID_MXXMLWriter30, IID_IMXWriter, reinterpret_cast<void**>(writer.Out())))) {
        return std::nullopt;
    }
    const Bstr encoding("US-ASCII");
    if (FAILED(writer->put_omitXMLDeclaration(VARIANT_FALSE)) || FAILED(writer->put_indent(VARIANT_TRUE)) ||
        FAILED(writer->put_standalone(VARIANT_TRUE)) || FAILED(writer->put_disableOutputEscaping(VARIANT_FALSE)) ||
        FAILED(writer->put_encoding(encoding.Get()))) {
        return std::nullopt;
    }
    ComPtr<ISAXXMLReader> reader;
    if (FAILED(msxml::CreateMsxmlObject(CLSID_SAXXMLReader30, IID_ISAXXMLReader,
                                        reinterpret_cast<void**>(reader.Out())))) {
        return std::nullopt;
    }
    const ComPtr<ISAXContentHandler> content = writer.As<ISAXContentHandler>(IID_ISAXContentHandler);
    const ComPtr<ISAXLexicalHandler> lexical = writer.As<ISAXLexicalHandler>(IID_ISAXLexicalHandler);
    if (!content || !lexical || FAILED(reader->putContentHandler(content.Get()))) {
        return std::nullopt;
    }
    VARIANT handler;
    VariantInit(&handler);
    V_VT(&handler) = VT_UNKNOWN;
    V_UNKNOWN(&handler) = lexical.Get();
    if (FAILED(reader->putProperty(L"http://xml.org/sax/properties/lexical-handler", handler))) {
        return std::nullopt;
    }
    const Bstr source(text);
    VARIANT input;
    VariantInit(&input);
    V_VT(&input) = VT_BSTR;
    V_BSTR(&input) = source.Get();
    if (FAILED(reader->parse(input))) {
        return std::nullopt;
    }
    if (FAILED(writer->flush())) {
        return std::nullopt;
    }
    msxml::Variant output;
    if (FAILED(writer->get_output(output.Out())) || V_VT(&output.Get()) != VT_BSTR) {
        return std::nullopt;
    }
    const BSTR result = V_BSTR(&output.Get());
    return AsciiOnly(result, result == nullptr ? 0 : SysStringLen(result));
}

}  // namespace

std::optional<std::string> FormatXml(std::string_view text) {
    if (!IsValidUtf8(text)) {
        return std::nullopt;
    }
    return Format(text);
}

}  // namespace quillbank::xml
