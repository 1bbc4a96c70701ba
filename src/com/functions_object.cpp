// Functions and Constants: the two global objects.

#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>

#include "com/dispatch_object.hpp"
#include "com/errors.hpp"
#include "com/objects.hpp"
#include "com/records.hpp"
#include "com/text.hpp"

namespace quillbank::com {

namespace {

class ConstantsObject final : public DispatchObject<_Constants, &IID__Constants> {};

class FunctionsObject final : public DispatchObject<_Functions, &IID__Functions> {
public:
    HRESULT STDMETHODCALLTYPE get_OCXPath(BSTR* result) override {
        return Text(result, [] { return Functions::OCXPath(); });
    }
    HRESULT STDMETHODCALLTYPE get_OCXVersion(BSTR* result) override {
        return Text(result, [] { return Functions::OCXVersion(); });
    }
    HRESULT STDMETHODCALLTYPE get_OCXFilename(BSTR* result) override {
        return Text(result, [] { return Functions::OCXFilename(); });
    }
    HRESULT STDMETHODCALLTYPE NewGUID(BSTR* result) override {
        return Text(result, [] { return Functions::NewGUID(); });
    }
    HRESULT STDMETHODCALLTYPE EmptyGUID(BSTR* result) override {
        return Text(result, [] { return Functions::EmptyGUID(); });
    }
    HRESULT STDMETHODCALLTYPE HTMLColorToOLEColor(BSTR color, OLE_COLOR* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        return Guard(IID__Functions, [&] { *result = Functions::HTMLColorToOLEColor(Utf8(color)); });
    }
    HRESULT STDMETHODCALLTYPE OLEColorToHTMLColor(OLE_COLOR color, BSTR* result) override {
        return Text(result, [&] { return Functions::OLEColorToHTMLColor(color); });
    }
    HRESULT STDMETHODCALLTYPE NewAssetData(BSTR filename, BSTR description, BSTR source, ::AssetData* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        return Guard(IID__Functions, [&] {
            *result = ToCom(Functions::NewAssetData(Utf8(filename), Utf8(description), Utf8(source)));
        });
    }
    HRESULT STDMETHODCALLTYPE NewFontData(BSTR name, double size, VARIANT_BOOL bold, VARIANT_BOOL italic,
                                          VARIANT_BOOL underline, ::FontData* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        return Guard(IID__Functions, [&] {
            *result = ToCom(Functions::NewFontData(name == nullptr ? "Arial" : Utf8(name), size, bold != VARIANT_FALSE,
                                                   italic != VARIANT_FALSE, underline != VARIANT_FALSE));
        });
    }
    HRESULT STDMETHODCALLTYPE NewLocationData(BSTR startPoint, BSTR endPoint, BSTR mapName,
                                              ::LocationData* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        return Guard(IID__Functions, [&] {
            *result = ToCom(Functions::NewLocationData(Utf8(startPoint), Utf8(endPoint), Utf8(mapName)));
        });
    }
    HRESULT STDMETHODCALLTYPE NewRectangle(LONG left, LONG top, LONG width, LONG height,
                                           ::Rectangle* result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        return Guard(IID__Functions, [&] {
            *result = ToCom(Functions::NewRectangle(left, top, width, height));
        });
    }
    HRESULT STDMETHODCALLTYPE CleanXMLString(BSTR text, BSTR* result) override {
        return Text(result, [&] { return Functions::CleanXMLString(Utf8(text)); });
    }
    HRESULT STDMETHODCALLTYPE FormatXMLString(BSTR text, BSTR* result) override {
        return Text(result, [&] { return Functions::FormatXMLString(Utf8(text)); });
    }

private:
    template <class Make>
    static HRESULT Text(BSTR* result, Make&& make) {
        if (result == nullptr) {
            return E_POINTER;
        }
        *result = nullptr;
        return Guard(IID__Functions, [&] { *result = NewBstr(make()); });
    }
};

template <class Object>
HRESULT Create(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    auto* created = new (std::nothrow) Object();
    if (created == nullptr) {
        return E_OUTOFMEMORY;
    }
    const HRESULT hr = created->QueryInterface(iid, object);
    created->Release();
    return hr;
}

}  // namespace

HRESULT CreateConstants(REFIID iid, void** object) { return Create<ConstantsObject>(iid, object); }

HRESULT CreateFunctions(REFIID iid, void** object) { return Create<FunctionsObject>(iid, object); }

}  // namespace quillbank::com
