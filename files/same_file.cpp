#include "files/same_file.h"

#include <string>

#include "text/characters.h"

namespace ql {

namespace {

FileNumber NumberOf(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION known;
    if (!::GetFileInformationByHandle(file, &known)) return {};
    return {known.dwVolumeSerialNumber, std::uint64_t{known.nFileIndexHigh} << 32 | known.nFileIndexLow};
}

std::wstring PlaceOf(HANDLE file) {
    std::wstring path(::GetFinalPathNameByHandleW(file, nullptr, 0, VOLUME_NAME_DOS), L'\0');
    const auto capacity = static_cast<DWORD>(path.size());
    const DWORD length = ::GetFinalPathNameByHandleW(file, path.data(), capacity, VOLUME_NAME_DOS);
    path.resize(length < capacity ? length : 0);
    return path;
}

}  // namespace

bool LieAtOnePlace(HANDLE a, HANDLE b) {
    const std::wstring place = PlaceOf(a);
    return !place.empty() && EqualIgnoringCase(place, PlaceOf(b));
}

bool AreOneFile(HANDLE a, HANDLE b) {
    const Sameness sameness = Compare(NumberOf(a), NumberOf(b));
    return sameness == Sameness::kSame || (sameness == Sameness::kUnknown && LieAtOnePlace(a, b));
}

}  // namespace ql
