#pragma once

// COM's text type, _bstr_t. Apart from the system's other headers, since it brings COM along and few need it.
#include "platform/win32.h"

#include <comutil.h>
