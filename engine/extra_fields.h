#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace ql::zip {

// Bytes of a header's extra field, or of one of the fields in it.
struct Field {
    const std::uint8_t* data;
    std::size_t size;
};

// Takes the next field away from an extra field, with its header. What does not fit its frame is the end, as
// everywhere.
struct ExtraField {
    std::uint16_t kind;
    Field content, whole;
};
std::optional<ExtraField> TakeExtra(Field& extra);

// The content of the first field of that kind.
std::optional<Field> FindExtra(Field extra, std::uint16_t kind);

// The moment of the last change that the fields tell, in 100 nanoseconds since 1601, UTC; 0 when they tell
// none.
std::uint64_t UtcTimeIn(Field extra);

}  // namespace ql::zip
