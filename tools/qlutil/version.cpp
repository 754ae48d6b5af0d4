#include "tools/qlutil/version.h"

#include <climits>

Version OwnVersion() noexcept {
    return {QL_VERSION, static_cast<int>(sizeof(void*) * CHAR_BIT), QL_BUILD};
}
