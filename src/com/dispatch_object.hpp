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
        HRESULT direct = S_OK;
        if (InvokeDirect(id, flags, parameters, result, &direct)) {
            return AsDispatchStatus(direct, exception);
        }
        ITypeInfo* info = TypeInfoOf(*InterfaceId);
        if (info == nullptr) {
            return TYPE_E_CANTLOADLIBRARY;
        }
        const HRESULT hr = info->Invoke(static_cast<Interface*>(this), id, flags, parameters, result, exception,
                                        argumentError);
        info->Release();
        return hr;
    }

    // ISupportErrorInfo
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return IsEqualIID(iid, *InterfaceId) ? S_OK : S_FALSE;
    }

protected:
    // A member's failure as IDispatch::Invoke reports it: the error object
    // copied into EXCEPINFO and DISP_E_EXCEPTION, as ITypeInfo::Invoke does.
    static HRESULT AsDispatchStatus(HRESULT status, EXCEPINFO* exception) {
        if (SUCCEEDED(status) || HRESULT_FACILITY(status) == FACILITY_DISPATCH) {
            return status;
        }
        if (exception != nullptr) {
            *exception = EXCEPINFO{};
            exception->scode = status;
            IErrorInfo* info = nullptr;
            if (GetErrorInfo(0, &info) == S_OK && info != nullptr) {
                info->GetSource(&exception->bstrSource);
                info->GetDescription(&exception->bstrDescription);
                info->Release();
            }
        }
        return DISP_E_EXCEPTION;
    }

    // Members whose result Wine's ITypeInfo::Invoke cannot hand back (arrays,
    // records) are called here instead: returns true when `id` was handled,
    // with the call's status in `status`.
    virtual bool InvokeDirect(DISPID, WORD, DISPPARAMS*, VARIANT*, HRESULT*) { return false; }

    // The optional 32-bit argument at `position` (counted from the first),
    // or `fallback` when it is missing; false on a type mismatch.
    static bool OptionalLong(DISPPARAMS* parameters, UINT position, LONG fallback, LONG* value) {
        *value = fallback;
        if (parameters == nullptr || position >= parameters->cArgs) {
            return true;
        }
        VARIANT* given = &parameters->rgvarg[parameters->cArgs - 1 - position];
        if (V_VT(given) == VT_ERROR && V_ERROR(given) == DISP_E_PARAMNOTFOUND) {
            return true;
        }
        VARIANT converted;
        VariantInit(&converted);
        if (FAILED(VariantChangeType(&converted, given, 0, VT_I4))) {
            return false;
        }
        *value = V_I4(&converted);
        return true;
    }

    // The argument at `position` (counted from the first), or null when there
    // are fewer arguments.
    static VARIANT* Argument(DISPPARAMS* parameters, UINT position) {
        if (parameters == nullptr || position >= parameters->cArgs) {
            return nullptr;
        }
        VARIANT* given = &parameters->rgvarg[parameters->cArgs - 1 - position];
        if (V_VT(given) == (VT_BYREF | VT_VARIANT)) {
            given = V_VARIANTREF(given);
        }
        return given;
    }

    // A required text argument; false when it is missing or not text.
    static bool TextArgument(DISPPARAMS* parameters, UINT position, VARIANT* text) {
        VARIANT* given = Argument(parameters, position);
        VariantInit(text);
        return given != nullptr && !(V_VT(given) == VT_ERROR && V_ERROR(given) == DISP_E_PARAMNOTFOUND) &&
               SUCCEEDED(VariantChangeType(text, given, 0, VT_BSTR));
    }

    // A required object argument, asked for as `iid`: Nothing (or Null)
    // gives null; false when it is missing or not an object of that kind.
    static bool ObjectArgument(DISPPARAMS* parameters, UINT position, REFIID iid, void** object) {
        *object = nullptr;
        VARIANT* given = Argument(parameters, position);
        if (given == nullptr || (V_VT(given) == VT_ERROR && V_ERROR(given) == DISP_E_PARAMNOTFOUND)) {
            return false;
        }
        IUnknown* unknown = nullptr;
        switch (V_VT(given)) {
            case VT_EMPTY:
            case VT_NULL:
                return true;
            case VT_DISPATCH:
                unknown = V_DISPATCH(given);
                break;
            case VT_UNKNOWN:
                unknown = V_UNKNOWN(given);
                break;
            case VT_BYREF | VT_DISPATCH:
                unknown = *V_DISPATCHREF(given);
                break;
            case VT_BYREF | VT_UNKNOWN:
                unknown = *V_UNKNOWNREF(given);
                break;
            default:
                return false;
        }
        return unknown == nullptr || SUCCEEDED(unknown->QueryInterface(iid, object));
    }

    static bool IsCall(WORD flags) { return (flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) != 0; }

private:
    LONG references_ = 1;
};

}  // namespace quillbank::com
