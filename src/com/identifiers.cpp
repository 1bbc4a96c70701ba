// The identifiers of the type library, defined once (widl's header declares them).

#include <initguid.h>

#include "com/com_headers.hpp"
