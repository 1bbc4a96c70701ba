#pragma once

// The part every COM object of the server shares: reference counting,
// QueryInterface, IDispatch through the type library (ITypeInfo::Invoke),
// and ISupportErrorInfo for its one dual interface.

#include "com/module.hpp"

namespace quillbank::com {

template <class Interface, const IID* InterfaceId>
class DispatchObject : public Interface, public ISupportErrorInfo {
public:
    DispatchObject() { ObjectCreated(); }
    DispatchObject(const DispatchObject&) = delete;
    DispatchObject& operator=(const DispatchObject&) = delete;
    virtual ~DispatchObject() { ObjectDestroyed(); }

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, *InterfaceId)) {
            *object = static_cast<Interface*>(this);
        } else if (IsEqualIID(iid, IID_ISupportErrorInfo)) {
            *object = static_cast<ISupportErrorInfo*>(this);
        } else {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) {
            delete this;
        }
        return static_cast<ULONG>(left);
    }

    // IDispatch
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) {
            return E_POINTER;
        }
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (info == nullptr) {
            return E_POINTER;
        }
        *info = nullptr;
        if (index != 0) {
            return DISP_E_BADINDEX;
        }
        *info = TypeInfoOf(*InterfaceId);
        return *info != nullptr ? S_OK : TYPE_E_CANTLOADLIBRARY;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        ITypeInfo* info = TypeInfoOf(*InterfaceId);
        if (info == nullptr) {
            return TYPE_E_CANTLOADLIBRARY;
        }
        const HRESULT hr = DispGetIDsOfNames(info, names, count, ids);
        info->Release();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argumentError) override {
        ITypeInfo* info = TypeInfoOf(*InterfaceId);
        if (info == nullptr) {
            return TYPE_E_CANTLOADLIBRARY;
        }
        // A method called with the property-get flag too (as script hosts
        // do) is still the method.
        const HRESULT hr = info->Invoke(static_cast<Interface*>(this), id, flags, parameters, result, exception,
                                        argumentError);
        info->Release();
        return hr;
    }

    // ISupportErrorInfo
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return IsEqualIID(iid, *InterfaceId) ? S_OK : S_FALSE;
    }

private:
    LONG references_ = 1;
};

}  // namespace quillbank::com
