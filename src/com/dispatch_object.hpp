#pragma once

// The part every COM object of the server shares: reference counting,
// QueryInterface, IDispatch through the type library (ITypeInfo::Invoke),
// and ISupportErrorInfo for its one dual interface.

#include "com/module.hpp"
#include "com/reference_count.hpp"

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
    ULONG STDMETHODCALLTYPE AddRef() override { return AddReference(references_); }
    ULONG STDMETHODCALLTYPE Release() override { return ReleaseReference(references_, this); }

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
        HRESULT hr = info->Invoke(static_cast<Interface*>(this), id, flags, parameters, result, exception,
                                  argumentError);
        if (hr == E_NOTIMPL && RecordArgumentMismatch(info, id, flags, parameters, argumentError)) {
            // Wine's ITypeInfo::Invoke cannot convert to a record and says
            // so before calling the member; an argument that is no record at
            // all is a type mismatch, as Windows reports it.
            hr = DISP_E_TYPEMISMATCH;
        }
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

    static bool IsCall(WORD flags) { return (flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) != 0; }

private:
    // Whether a member `id` called as `flags` declares a record parameter
    // that was given something other than a record; sets `argumentError`
    // to that argument's place in DISPPARAMS.
    static bool RecordArgumentMismatch(ITypeInfo* info, DISPID id, WORD flags, DISPPARAMS* parameters,
                                       UINT* argumentError) {
        if (parameters == nullptr) {
            return false;
        }
        TYPEATTR* attributes = nullptr;
        if (FAILED(info->GetTypeAttr(&attributes))) {
            return false;
        }
        const WORD functions = attributes->cFuncs;
        info->ReleaseTypeAttr(attributes);
        bool mismatch = false;
        for (WORD f = 0; f < functions && !mismatch; ++f) {
            FUNCDESC* function = nullptr;
            if (FAILED(info->GetFuncDesc(f, &function))) {
                continue;
            }
            // INVOKEKIND and the DISPATCH_ flags share their bit values.
            if (function->memid == id && (static_cast<WORD>(function->invkind) & flags) != 0) {
                const UINT given = parameters->cArgs - parameters->cNamedArgs;
                for (UINT p = 0; p < given && p < static_cast<UINT>(function->cParams) && !mismatch; ++p) {
                    if (!IsRecordType(info, function->lprgelemdescParam[p].tdesc)) {
                        continue;
                    }
                    const UINT place = parameters->cArgs - 1 - p;
                    VARIANT* argument = &parameters->rgvarg[place];
                    if (V_VT(argument) == (VT_BYREF | VT_VARIANT)) {
                        argument = V_VARIANTREF(argument);
                    }
                    if ((V_VT(argument) & ~VT_BYREF) != VT_RECORD) {
                        mismatch = true;
                        if (argumentError != nullptr) {
                            *argumentError = place;
                        }
                    }
                }
            }
            info->ReleaseFuncDesc(function);
        }
        return mismatch;
    }

    // Whether `type` (or what it points to) is a record of the type library.
    static bool IsRecordType(ITypeInfo* info, const TYPEDESC& type) {
        const TYPEDESC* described = &type;
        if (described->vt == VT_PTR && described->lptdesc != nullptr) {
            described = described->lptdesc;
        }
        if (described->vt != VT_USERDEFINED) {
            return false;
        }
        ITypeInfo* referenced = nullptr;
        if (FAILED(info->GetRefTypeInfo(described->hreftype, &referenced))) {
            return false;
        }
        bool record = false;
        TYPEATTR* attributes = nullptr;
        if (SUCCEEDED(referenced->GetTypeAttr(&attributes))) {
            record = attributes->typekind == TKIND_RECORD;
            referenced->ReleaseTypeAttr(attributes);
        }
        referenced->Release();
        return record;
    }

    LONG references_ = 1;
};

}  // namespace quillbank::com
