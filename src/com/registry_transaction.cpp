#include "com/registry_transaction.hpp"

namespace quillbank::com {

LONG RegistryTransaction::CreateKey(const std::wstring& key, HKEY* handle) {
    // Parents first, so that each key this transaction creates is known.
    std::size_t separator = 0;
    while ((separator = key.find(L'\\', separator + 1)) != std::wstring::npos) {
        HKEY parent = nullptr;
        DWORD disposition = 0;
        const std::wstring path = key.substr(0, separator);
        const LONG status = RegCreateKeyExW(root_, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &parent,
                                            &disposition);
        if (status != ERROR_SUCCESS) {
            return status;
        }
        RegCloseKey(parent);
        if (disposition == REG_CREATED_NEW_KEY) {
            createdKeys_.push_back(path);
        }
    }
    DWORD disposition = 0;
    const LONG status = RegCreateKeyExW(root_, key.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, handle,
                                        &disposition);
    if (status == ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY) {
        createdKeys_.push_back(key);
    }
    return status;
}

void RegistryTransaction::SetText(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    if (status_ != ERROR_SUCCESS) {
        return;
    }
    HKEY handle = nullptr;
    status_ = CreateKey(key, &handle);
    if (status_ != ERROR_SUCCESS) {
        return;
    }
    OldValue old;
    old.key = key;
    old.isDefault = name == nullptr;
    old.name = name == nullptr ? L"" : name;
    DWORD size = 0;
    if (RegQueryValueExW(handle, name, nullptr, &old.type, nullptr, &size) == ERROR_SUCCESS) {
        old.data.resize(size);
        old.existed = RegQueryValueExW(handle, name, nullptr, &old.type, old.data.data(), &size) == ERROR_SUCCESS;
        old.data.resize(size);
    }
    status_ = RegSetValueExW(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                             static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(handle);
    if (status_ == ERROR_SUCCESS) {
        oldValues_.push_back(std::move(old));
    }
}

void RegistryTransaction::Rollback() {
    for (auto value = oldValues_.rbegin(); value != oldValues_.rend(); ++value) {
        HKEY handle = nullptr;
        if (RegOpenKeyExW(root_, value->key.c_str(), 0, KEY_WRITE, &handle) != ERROR_SUCCESS) {
            continue;
        }
        const wchar_t* name = value->isDefault ? nullptr : value->name.c_str();
        if (value->existed) {
            RegSetValueExW(handle, name, 0, value->type, value->data.data(), static_cast<DWORD>(value->data.size()));
        } else {
            RegDeleteValueW(handle, name);
        }
        RegCloseKey(handle);
    }
    for (auto key = createdKeys_.rbegin(); key != createdKeys_.rend(); ++key) {
        RegDeleteKeyW(root_, key->c_str());
    }
    oldValues_.clear();
    createdKeys_.clear();
}

}  // namespace quillbank::com
