#pragma once

// Writes registry keys and text values under one root and remembers what it
// changed, so that a registration that fails half-way leaves the registry as
// it was: Rollback deletes the keys it created (deepest first) and puts back
// the values it replaced or removes the ones it added. A key that cannot be
// written stops the transaction with the status the registry gave.

#include <string>
#include <vector>

#include "com/com_headers.hpp"

namespace quillbank::com {

class RegistryTransaction {
public:
    explicit RegistryTransaction(HKEY root) : root_(root) {}
    RegistryTransaction(const RegistryTransaction&) = delete;
    RegistryTransaction& operator=(const RegistryTransaction&) = delete;

    // Sets the text value `name` (null: the key's default value) of `key`,
    // creating the key and its missing parents. Once a write has failed,
    // later ones do nothing; Status tells the first failure.
    void SetText(const std::wstring& key, const wchar_t* name, const std::wstring& value);

    // ERROR_SUCCESS, or the registry's status of the first failed write.
    LONG Status() const { return status_; }

    // Undoes every change made so far, last first.
    void Rollback();

private:
    struct OldValue {
        std::wstring key;
        std::wstring name;
        bool isDefault = false;
        bool existed = false;
        DWORD type = 0;
        std::vector<BYTE> data;
    };

    LONG CreateKey(const std::wstring& key, HKEY* handle);

    HKEY root_;
    LONG status_ = ERROR_SUCCESS;
    std::vector<std::wstring> createdKeys_;
    std::vector<OldValue> oldValues_;
};

}  // namespace quillbank::com
