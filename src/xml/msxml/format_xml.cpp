// FormatXml: MSXML's SAX reader feeding MSXML's SAX writer.

#include <quillbank/xml.hpp>

#include <cstdio>
#include <new>

#include "xml/msxml/com_support.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml {

using msxml::Bstr;
using msxml::ComPtr;

namespace {

constexpr const char* kEncoding = "US-ASCII";

// Makes the declaration at the start of `text` name US-ASCII.
void NameEncoding(std::string& text) {
    const std::size_t end = text.find("?>");
    const std::size_t at = text.find("encoding=\"");
    if (text.rfind("<?xml", 0) != 0 || end == std::string::npos || at == std::string::npos || at > end) {
        return;
    }
    const std::size_t valueStart = at + 10;
    const std::size_t valueEnd = text.find('"', valueStart);
    if (valueEnd == std::string::npos || valueEnd > end) {
        return;
    }
    text.replace(valueStart, valueEnd - valueStart, kEncoding);
}

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

// Passes the reader's content events on to the writer, except the document
// locator: Wine's writer refuses it (E_NOTIMPL), which would end the parse,
// and the writer has no use for it.
class ContentForwarder final : public ISAXContentHandler {
public:
    explicit ContentForwarder(ComPtr<ISAXContentHandler> target) : target_(std::move(target)) {}
    ContentForwarder(const ContentForwarder&) = delete;
    ContentForwarder& operator=(const ContentForwarder&) = delete;
    virtual ~ContentForwarder() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_ISAXContentHandler)) {
            *object = static_cast<ISAXContentHandler*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) {
            delete this;
        }
        return static_cast<ULONG>(left);
    }

    HRESULT STDMETHODCALLTYPE putDocumentLocator(ISAXLocator*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE startDocument() override { return target_->startDocument(); }
    HRESULT STDMETHODCALLTYPE endDocument() override { return target_->endDocument(); }
    HRESULT STDMETHODCALLTYPE startPrefixMapping(const wchar_t* prefix, int prefixLength, const wchar_t* uri,
                                                 int uriLength) override {
        return target_->startPrefixMapping(prefix, prefixLength, uri, uriLength);
    }
    HRESULT STDMETHODCALLTYPE endPrefixMapping(const wchar_t* prefix, int prefixLength) override {
        return target_->endPrefixMapping(prefix, prefixLength);
    }
    HRESULT STDMETHODCALLTYPE startElement(const wchar_t* uri, int uriLength, const wchar_t* localName,
                                           int localNameLength, const wchar_t* qName, int qNameLength,
                                           ISAXAttributes* attributes) override {
        return target_->startElement(uri, uriLength, localName, localNameLength, qName, qNameLength, attributes);
    }
    HRESULT STDMETHODCALLTYPE endElement(const wchar_t* uri, int uriLength, const wchar_t* localName,
                                         int localNameLength, const wchar_t* qName, int qNameLength) override {
        return target_->endElement(uri, uriLength, localName, localNameLength, qName, qNameLength);
    }
    HRESULT STDMETHODCALLTYPE characters(const wchar_t* chars, int length) override {
        return target_->characters(chars, length);
    }
    HRESULT STDMETHODCALLTYPE ignorableWhitespace(const wchar_t* chars, int length) override {
        return target_->ignorableWhitespace(chars, length);
    }
    HRESULT STDMETHODCALLTYPE processingInstruction(const wchar_t* target, int targetLength, const wchar_t* data,
                                                    int dataLength) override {
        return target_->processingInstruction(target, targetLength, data, dataLength);
    }
    HRESULT STDMETHODCALLTYPE skippedEntity(const wchar_t* name, int nameLength) override {
        return target_->skippedEntity(name, nameLength);
    }

private:
    ComPtr<ISAXContentHandler> target_;
    LONG references_ = 1;
};

std::optional<std::string> Format(std::string_view text) {
    ComPtr<IMXWriter> writer;
    if (FAILED(msxml::CreateMsxmlObject(CLSID_MXXMLWriter30, IID_IMXWriter, reinterpret_cast<void**>(writer.Out())))) {
        return std::nullopt;
    }
    const Bstr encoding(kEncoding);
    if (FAILED(writer->put_omitXMLDeclaration(VARIANT_FALSE)) || FAILED(writer->put_indent(VARIANT_TRUE)) ||
        FAILED(writer->put_standalone(VARIANT_TRUE)) || FAILED(writer->put_disableOutputEscaping(VARIANT_FALSE))) {
        return std::nullopt;
    }
    // Wine's writer knows no US-ASCII; it writes its own encoding's name
    // into the declaration then, which is put right below.
    const bool encodingTaken = SUCCEEDED(writer->put_encoding(encoding.Get()));
    ComPtr<ISAXXMLReader> reader;
    if (FAILED(msxml::CreateMsxmlObject(CLSID_SAXXMLReader30, IID_ISAXXMLReader,
                                        reinterpret_cast<void**>(reader.Out())))) {
        return std::nullopt;
    }
    const ComPtr<ISAXContentHandler> content = writer.As<ISAXContentHandler>(IID_ISAXContentHandler);
    const ComPtr<ISAXLexicalHandler> lexical = writer.As<ISAXLexicalHandler>(IID_ISAXLexicalHandler);
    if (!content || !lexical) {
        return std::nullopt;
    }
    auto* forwarder = new (std::nothrow) ContentForwarder(content);
    if (forwarder == nullptr) {
        return std::nullopt;
    }
    const ComPtr<ISAXContentHandler> handler = ComPtr<ISAXContentHandler>::Attach(forwarder);
    if (FAILED(reader->putContentHandler(handler.Get()))) {
        return std::nullopt;
    }
    VARIANT lexicalHandler;
    VariantInit(&lexicalHandler);
    V_VT(&lexicalHandler) = VT_UNKNOWN;
    V_UNKNOWN(&lexicalHandler) = lexical.Get();
    if (FAILED(reader->putProperty(L"http://xml.org/sax/properties/lexical-handler", lexicalHandler))) {
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
    std::string formatted = AsciiOnly(result, result == nullptr ? 0 : SysStringLen(result));
    if (!encodingTaken) {
        NameEncoding(formatted);
    }
    return formatted;
}

}  // namespace

std::optional<std::string> FormatXml(std::string_view text) {
    if (!IsValidUtf8(text)) {
        return std::nullopt;
    }
    return Format(text);
}

}  // namespace quillbank::xml
