#pragma once

// Registration of the server's creatable classes and type library, per
// machine (HKLM\Software\Classes) or per user (HKCU\Software\Classes, for a
// user without administrator rights: DllInstall with "user", as
// `regsvr32 /n /i:user` calls it). Each build writes into its own registry
// view (on 64-bit Windows the 32-bit server's class keys land in the WOW64
// view) and its own entry of the type library (win32 or win64).
//
// A registration either completes or leaves the registry as it was: what a
// failed write had already changed is undone, and the registry's status is
// returned. Unregistration removes what registration wrote and nothing
// else; unregistering what is not registered changes nothing and succeeds.

#include <cstddef>

#include "com/com_headers.hpp"

namespace quillbank::com {

enum class RegistrationScope { Machine, User };

struct RegisteredClass {
    const CLSID* clsid;
    const wchar_t* name;  // the ProgID is "Quillbank." + name
};

HRESULT RegisterServer(RegistrationScope scope, const RegisteredClass* classes, std::size_t count);
HRESULT UnregisterServer(RegistrationScope scope, const RegisteredClass* classes, std::size_t count);

// The scope DllInstall's command line names: empty or "machine", or "user"
// (either case); false for anything else.
bool ScopeOfCommandLine(const wchar_t* commandLine, RegistrationScope* scope);

}  // namespace quillbank::com
