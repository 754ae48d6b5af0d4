#include "engine/extra_fields.h"

#include "engine/format.h"

namespace ql::zip {
namespace {

// Of an NTFS field: four bytes of nothing, then attributes of which the first is the times, the change first.
constexpr std::size_t kNtfsReserved = 4;
constexpr std::uint16_t kNtfsTimes = 1;
// Of a Unix time: which times follow, the change first.
constexpr std::uint8_t kHasChange = 1;
constexpr std::uint64_t kTicksASecond = 10'000'000, kFrom1601To1970 = 11'644'473'600;

std::uint64_t NtfsTime(Field field) {
    if (field.size < kNtfsReserved) return 0;
    const auto times = FindExtra({field.data + kNtfsReserved, field.size - kNtfsReserved}, kNtfsTimes);
    return times && times->size >= 8 ? Get64(times->data) : 0;
}

std::uint64_t UnixTime(Field field) {
    if (field.size < 5 || !(field.data[0] & kHasChange)) return 0;
    const std::int64_t seconds = static_cast<std::int32_t>(Get32(field.data + 1));
    return (static_cast<std::uint64_t>(seconds) + kFrom1601To1970) * kTicksASecond;
}

}  // namespace

std::optional<ExtraField> TakeExtra(Field& extra) {
    if (extra.size < kExtraHeaderSize) return std::nullopt;
    const std::size_t size = Get16(extra.data + 2), whole = kExtraHeaderSize + size;
    if (whole > extra.size) return std::nullopt;
    const ExtraField field{Get16(extra.data), {extra.data + kExtraHeaderSize, size}, {extra.data, whole}};
    extra = {extra.data + whole, extra.size - whole};
    return field;
}

std::optional<Field> FindExtra(Field extra, std::uint16_t kind) {
    while (const auto field = TakeExtra(extra)) {
        if (field->kind == kind) return field->content;
    }
    return std::nullopt;
}

std::uint64_t UtcTimeIn(Field extra) {
    if (const auto field = FindExtra(extra, kExtraNtfs)) {
        if (const std::uint64_t time = NtfsTime(*field)) return time;
    }
    const auto field = FindExtra(extra, kExtraUnixTime);
    return field ? UnixTime(*field) : 0;
}

}  // namespace ql::zip
