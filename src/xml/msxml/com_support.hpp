#pragma once

// What the MSXML backend needs of COM: a counted pointer, text at the
// boundary (UTF-8 inside the library, BSTR outside), and failures turned
// into the library's errors.

#include <string>
#include <string_view>
#include <utility>

#include <objbase.h>
#include <oleauto.h>
#include <msxml2.h>

namespace quillbank::xml::msxml {

// Owns one reference to a COM interface.
template <class T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(const ComPtr& other) : p_(other.p_) { AddRef(); }
    ComPtr(ComPtr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    ~ComPtr() { Release(); }
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(p_, other.p_);
        return *this;
    }
    // Takes over a reference the caller already owns.
    static ComPtr Attach(T* p) noexcept {
        ComPtr out;
        out.p_ = p;
        return out;
    }
    // Adds a reference of its own.
    static ComPtr Share(T* p) noexcept {
        ComPtr out;
        out.p_ = p;
        out.AddRef();
        return out;
    }
    T* Get() const noexcept { return p_; }
    T* operator->() const noexcept { return p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }
    // For out-parameters: releases what is held first.
    T** Out() noexcept {
        Release();
        return &p_;
    }
    T* Detach() noexcept { return std::exchange(p_, nullptr); }

    template <class U>
    ComPtr<U> As(REFIID iid) const {
        ComPtr<U> out;
        if (p_ != nullptr) {
            p_->QueryInterface(iid, reinterpret_cast<void**>(out.Out()));
        }
        return out;
    }

private:
    void AddRef() noexcept {
        if (p_ != nullptr) p_->AddRef();
    }
    void Release() noexcept {
        if (p_ != nullptr) std::exchange(p_, nullptr)->Release();
    }
    T* p_ = nullptr;
};

// Owns one BSTR.
class Bstr {
public:
    Bstr() = default;
    explicit Bstr(std::string_view utf8);
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(s_); }
    BSTR Get() const noexcept { return s_; }
    BSTR* Out() noexcept {
        SysFreeString(s_);
        s_ = nullptr;
        return &s_;
    }
    std::string Utf8() const;

private:
    BSTR s_ = nullptr;
};

std::wstring ToWide(std::string_view utf8);
std::string ToUtf8(const wchar_t* text, std::size_t length);
std::string ToUtf8(BSTR text);

// Owns one VARIANT.
class Variant {
public:
    Variant() { VariantInit(&v_); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&v_); }
    VARIANT* Out() noexcept {
        VariantClear(&v_);
        return &v_;
    }
    VARIANT& Get() noexcept { return v_; }

private:
    VARIANT v_;
};

// Raises the failure `hr` as the library's error: number, source and
// description from the error object the failing call left, or the given
// description with the source MSXML uses.
[[noreturn]] void RaiseComError(HRESULT hr, const char* description);

inline void Check(HRESULT hr, const char* description) {
    if (FAILED(hr)) {
        RaiseComError(hr, description);
    }
}

// Creates an MSXML object; when the calling thread has not entered COM yet
// (a plain program rather than a host), enters a single-threaded apartment
// first and stays in it.
HRESULT CreateMsxmlObject(REFCLSID clsid, REFIID iid, void** object);

}  // namespace quillbank::xml::msxml
