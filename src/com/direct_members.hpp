#pragma once

// The members a served object calls itself from IDispatch::Invoke, as one
// table per class: Wine's ITypeInfo::Invoke takes no interface arguments,
// so each member with an object argument is listed with its dispatch
// identifier, the pattern of its arguments (DirectArguments) with the
// interfaces its objects are asked for, and how it is called. The calls
// most members share are the templates below.

#include <array>
#include <cstddef>

#include "com/direct_arguments.hpp"

namespace quillbank::com {

template <class Object>
struct DirectMember {
    DISPID id;
    const char* pattern;
    std::array<const IID*, 2> interfaces;
    HRESULT (*call)(Object& self, DirectArguments& arguments, VARIANT* result);
};

// Calls the member of `table` named by `id` when it is called as a method
// or a property get; false when the table has no such member.
template <class Object, std::size_t N>
bool InvokeMember(Object& self, const std::array<DirectMember<Object>, N>& table, DISPID id, WORD flags,
                  DISPPARAMS* parameters, VARIANT* result, HRESULT* status) {
    if ((flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) {
        return false;
    }
    for (const DirectMember<Object>& member : table) {
        if (member.id == id) {
            DirectArguments arguments(parameters, member.pattern, {member.interfaces[0], member.interfaces[1]});
            if ((*status = arguments.Status()) == S_OK) {
                *status = member.call(self, arguments, result);
            }
            return true;
        }
    }
    return false;
}

// A property whose value is an object, set by reference (Set in VBScript)
// or by a plain property put (JScript): the value is the one named argument.
// Answers false for any other call.
template <class Object, class Argument, HRESULT (STDMETHODCALLTYPE Object::*Method)(Argument*)>
bool InvokeObjectPut(Object& self, DISPID property, const IID& iid, DISPID id, WORD flags, DISPPARAMS* parameters,
                     HRESULT* status) {
    if (id != property || (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) == 0) {
        return false;
    }
    if (parameters == nullptr || parameters->cArgs != 1) {
        *status = DISP_E_BADPARAMCOUNT;
        return true;
    }
    DISPPARAMS value = *parameters;
    value.cNamedArgs = 0;
    value.rgdispidNamedArgs = nullptr;
    DirectArguments arguments(&value, "O", {&iid});
    if ((*status = arguments.Status()) == S_OK) {
        *status = (self.*Method)(arguments.Object<Argument>(0));
    }
    return true;
}

// ToXMLElement and ToClearXMLElement: (Document) -> the new element.
template <class Object, HRESULT (STDMETHODCALLTYPE Object::*Method)(IXMLDOMDocument*, IXMLDOMElement**)>
HRESULT WriteElement(Object& self, DirectArguments& arguments, VARIANT* result) {
    IXMLDOMElement* element = nullptr;
    const HRESULT hr = (self.*Method)(arguments.Object<IXMLDOMDocument>(0), &element);
    HandObject(result, element);
    return hr;
}

// A member taking one object and giving nothing back (FromXMLElement,
// Append, Remove, the moves).
template <class Object, class Argument, HRESULT (STDMETHODCALLTYPE Object::*Method)(Argument*)>
HRESULT PassObject(Object& self, DirectArguments& arguments, VARIANT*) {
    return (self.*Method)(arguments.Object<Argument>(0));
}

// A member taking one object and a 32-bit integer (Insert, MoveTo).
template <class Object, class Argument, HRESULT (STDMETHODCALLTYPE Object::*Method)(Argument*, LONG)>
HRESULT PassObjectAndLong(Object& self, DirectArguments& arguments, VARIANT*) {
    return (self.*Method)(arguments.Object<Argument>(0), arguments.Long(1));
}

// A member taking one object and answering a position (IndexOf).
template <class Object, class Argument, HRESULT (STDMETHODCALLTYPE Object::*Method)(Argument*, LONG*), LONG kNone>
HRESULT FindObject(Object& self, DirectArguments& arguments, VARIANT* result) {
    LONG index = kNone;
    const HRESULT hr = (self.*Method)(arguments.Object<Argument>(0), &index);
    HandLong(result, index);
    return hr;
}

// A member taking one object whose declared result is an empty VARIANT
// (FromPPC, CopyFrom).
template <class Object, class Argument, HRESULT (STDMETHODCALLTYPE Object::*Method)(Argument*, VARIANT*)>
HRESULT PassObjectGiveEmpty(Object& self, DirectArguments& arguments, VARIANT* result) {
    VARIANT empty;
    const HRESULT hr = (self.*Method)(arguments.Object<Argument>(0), &empty);
    if (result != nullptr) {
        VariantInit(result);
    }
    return hr;
}

// GetPPC and GetCEC of a child element: (name, default object passed in and
// out) -> the object.
template <class Object, class Value, HRESULT (STDMETHODCALLTYPE Object::*Method)(BSTR, Value**, Value**)>
HRESULT GetObjectValue(Object& self, DirectArguments& arguments, VARIANT* result) {
    Value* value = nullptr;
    const HRESULT hr = (self.*Method)(arguments.Text(0), arguments.template ObjectSlot<Value>(1), &value);
    HandObject(result, value);
    return hr;
}

// SetPPC and SetCEC of a child element: (name, object passed in and out,
// optional encoding).
template <class Object, class Value, HRESULT (STDMETHODCALLTYPE Object::*Method)(BSTR, Value**, ::EncodingTypes)>
HRESULT SetObjectValue(Object& self, DirectArguments& arguments, VARIANT*) {
    return (self.*Method)(arguments.Text(0), arguments.template ObjectSlot<Value>(1),
                          static_cast<::EncodingTypes>(arguments.Long(2)));
}

// The XML members every class with a DOM face has, by their identifiers.
template <class Object>
constexpr DirectMember<Object> ToClearXMLElementMember(DISPID id) {
    return {id, "O", {&IID_IXMLDOMDocument, nullptr}, &WriteElement<Object, &Object::ToClearXMLElement>};
}
template <class Object>
constexpr DirectMember<Object> ToXMLElementMember(DISPID id) {
    return {id, "O", {&IID_IXMLDOMDocument, nullptr}, &WriteElement<Object, &Object::ToXMLElement>};
}
template <class Object>
constexpr DirectMember<Object> FromXMLElementMember(DISPID id) {
    return {id, "O", {&IID_IXMLDOMElement, nullptr}, &PassObject<Object, IXMLDOMElement, &Object::FromXMLElement>};
}

}  // namespace quillbank::com
