#pragma once

// What the whole server shares: its module handle, the count of live objects
// and of locks (for DllCanUnloadNow), and its type library.

#include <string>

#include "com/com_headers.hpp"

namespace quillbank::com {

HINSTANCE ModuleHandle();
void SetModuleHandle(HINSTANCE module);

// The full path of the server's own file.
std::wstring ModulePath();

void ObjectCreated();
void ObjectDestroyed();
void LockServer(bool lock);
bool CanUnload();

// The type information of one interface of the server's type library
// (embedded as TYPELIB resource 1), loaded once; null when it cannot be
// loaded.
ITypeInfo* TypeInfoOf(REFIID iid);
void ReleaseTypeLibrary();

}  // namespace quillbank::com
