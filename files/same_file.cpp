#include "files/same_file.h"

#include "platform/long_number.h"
#include "platform/system_text.h"
#include "text/characters.h"

namespace ql {

namespace {

FileNumber NumberOf(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION known;
    if (!::GetFileInformationByHandle(file, &known)) return {};
    return {known.dwVolumeSerialNumber, Join(known.nFileIndexHigh, known.nFileIndexLow)};
}

std::wstring PlaceOf(HANDLE file) {
    return SystemText([file](wchar_t* text, DWORD size) {
        return ::GetFinalPathNameByHandleW(file, text, size, VOLUME_NAME_DOS);
    });
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
