#pragma once

// Reading the arguments of the members a served object calls directly from
// IDispatch::Invoke, and handing their results back.

#include <initializer_list>

#include "com/com_headers.hpp"

namespace quillbank::com {

// The arguments of a member called directly from Invoke, read by a pattern
// of one letter per argument: 'S' text, 'L' 32-bit integer, 'O' object (asked
// for as the next interface of `interfaces`; Nothing gives null), 'E' an
// optional encoding (etNotEncoded when missing), 'T' an optional boolean
// (true when missing, read as 0 or -1), 'N' an optional 32-bit integer (-1
// when missing). Everything read is released
// with the reader.
class DirectArguments {
public:
    DirectArguments(DISPPARAMS* parameters, const char* pattern, std::initializer_list<const IID*> interfaces) {
        for (int i = 0; i < kMost; ++i) {
            VariantInit(&texts_[i]);
        }
        if (parameters != nullptr && parameters->cNamedArgs != 0) {
            status_ = DISP_E_NONAMEDARGS;
            return;
        }
        const UINT count = parameters == nullptr ? 0 : parameters->cArgs;
        UINT required = 0;
        UINT all = 0;
        for (const char* p = pattern; *p != '\0'; ++p, ++all) {
            if (*p != 'E' && *p != 'T' && *p != 'N') {
                ++required;
            }
        }
        if (count < required || count > all) {
            status_ = DISP_E_BADPARAMCOUNT;
            return;
        }
        auto nextInterface = interfaces.begin();
        for (UINT i = 0; i < all; ++i) {
            bool read = true;
            switch (pattern[i]) {
                case 'S':
                    read = TextArgument(parameters, i, &texts_[i]);
                    break;
                case 'L':
                    read = LongArgument(parameters, i, &longs_[i]);
                    break;
                case 'E':
                    read = OptionalLongArgument(parameters, i, etNotEncoded, &longs_[i]);
                    break;
                case 'T':
                    read = OptionalLongArgument(parameters, i, VARIANT_TRUE, &longs_[i]);
                    break;
                case 'N':
                    read = OptionalLongArgument(parameters, i, -1, &longs_[i]);
                    break;
                default:
                    read = ObjectArgument(parameters, i, **nextInterface++, reinterpret_cast<void**>(&objects_[i]));
                    break;
            }
            if (!read) {
                status_ = DISP_E_TYPEMISMATCH;
                return;
            }
        }
    }
    DirectArguments(const DirectArguments&) = delete;
    DirectArguments& operator=(const DirectArguments&) = delete;
    ~DirectArguments() {
        for (int i = 0; i < kMost; ++i) {
            VariantClear(&texts_[i]);
            if (objects_[i] != nullptr) {
                objects_[i]->Release();
            }
        }
    }

    HRESULT Status() const noexcept { return status_; }
    BSTR Text(int i) { return V_VT(&texts_[i]) == VT_BSTR ? V_BSTR(&texts_[i]) : nullptr; }
    LONG Long(int i) const noexcept { return longs_[i]; }
    template <class Interface>
    Interface* Object(int i) noexcept {
        return static_cast<Interface*>(objects_[i]);
    }
    template <class Interface>
    Interface** ObjectSlot(int i) noexcept {
        return reinterpret_cast<Interface**>(&objects_[i]);
    }

private:
    static constexpr int kMost = 3;

    static VARIANT* At(DISPPARAMS* parameters, UINT position) {
        VARIANT* given = &parameters->rgvarg[parameters->cArgs - 1 - position];
        if (V_VT(given) == (VT_BYREF | VT_VARIANT)) {
            given = V_VARIANTREF(given);
        }
        return given;
    }
    static bool Missing(VARIANT* given) { return V_VT(given) == VT_ERROR && V_ERROR(given) == DISP_E_PARAMNOTFOUND; }
    static bool TextArgument(DISPPARAMS* parameters, UINT position, VARIANT* text) {
        VARIANT* given = At(parameters, position);
        return !Missing(given) && SUCCEEDED(VariantChangeType(text, given, 0, VT_BSTR));
    }
    static bool LongArgument(DISPPARAMS* parameters, UINT position, LONG* value) {
        VARIANT* given = At(parameters, position);
        VARIANT converted;
        VariantInit(&converted);
        if (Missing(given) || FAILED(VariantChangeType(&converted, given, 0, VT_I4))) {
            return false;
        }
        *value = V_I4(&converted);
        return true;
    }
    static bool OptionalLongArgument(DISPPARAMS* parameters, UINT position, LONG fallback, LONG* value) {
        *value = fallback;
        if (position >= parameters->cArgs || Missing(At(parameters, position))) {
            return true;
        }
        return LongArgument(parameters, position, value);
    }
    static bool ObjectArgument(DISPPARAMS* parameters, UINT position, REFIID iid, void** object) {
        *object = nullptr;
        VARIANT* given = At(parameters, position);
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

    HRESULT status_ = S_OK;
    VARIANT texts_[kMost];
    LONG longs_[kMost] = {};
    IUnknown* objects_[kMost] = {};
};

// Puts an object result into the caller's variant, or releases it when the
// caller wants none.
inline void HandObject(VARIANT* result, IDispatch* object) {
    if (result != nullptr) {
        VariantInit(result);
        V_VT(result) = VT_DISPATCH;
        V_DISPATCH(result) = object;
    } else if (object != nullptr) {
        object->Release();
    }
}

inline void HandLong(VARIANT* result, LONG value) {
    if (result != nullptr) {
        VariantInit(result);
        V_VT(result) = VT_I4;
        V_I4(result) = value;
    }
}

}  // namespace quillbank::com
