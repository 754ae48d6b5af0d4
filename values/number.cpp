#include "values/number.h"

#include "rw/file.h"
#include "rw/virtual_streams.h"

// Said again so that the library holds them for a caller who takes their address.
// NOLINTBEGIN(readability-redundant-declaration)
constexpr double Number::m_noNumber;
constexpr double Number::m_maxNumber;
constexpr double Number::m_minNumber;
// NOLINTEND(readability-redundant-declaration)

Number operator/(Number dividend, Number divisor) {
    if (divisor.GetDouble() == 0) throw 0.0F;
    if (dividend.IsNull() || divisor.IsNull()) return {};
    return dividend.GetDouble() / divisor.GetDouble();
}

void Number::saveOn(RWFile& file) const {
    RWFileOstream stream(file);
    saveOn(stream);
}

void Number::saveOn(RWvostream& stream) const {
    stream << m_value;
}

void Number::restoreFrom(RWFile& file) {
    RWFileIstream stream(file);
    restoreFrom(stream);
}

void Number::restoreFrom(RWvistream& stream) {
    double value = 0;
    if ((stream >> value).good()) m_value = value;
}
