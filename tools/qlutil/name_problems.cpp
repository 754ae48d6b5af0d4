#include "tools/qlutil/name_problems.h"

#include <algorithm>
#include <string_view>

namespace {

using Text = std::wstring_view;

constexpr std::size_t kMostOfAPart = 255;
constexpr std::size_t kMostOfAPath = 259;
constexpr Text kRefused = L"<>:\"|?*";
constexpr Text kDevices[] = {L"CON", L"PRN", L"AUX", L"NUL"};
constexpr Text kNumberedDevices[] = {L"COM", L"LPT"};

std::wstring Quoted(Text text) {
    return L'"' + std::wstring(text) + L'"';
}

// Whatever follows the first dot, with blanks before it.
bool IsDevice(Text part) {
    const Text stem = part.substr(0, part.find(L'.'));
    RWWString device(stem.substr(0, stem.find_last_not_of(L' ') + 1));
    for (std::size_t i = 0; i < device.size(); ++i) {
        if (device[i] >= L'a' && device[i] <= L'z') device[i] = static_cast<wchar_t>(device[i] - L'a' + L'A');
    }
    const bool isNumbered = device.size() == 4 && device[3] >= L'1' && device[3] <= L'9';
    return isNumbered ? std::ranges::count(kNumberedDevices, device.view().substr(0, 3)) > 0
                      : std::ranges::count(kDevices, device.view()) > 0;
}

void CheckPart(Text part, std::vector<std::wstring>& problems) {
    if (part == L"." || part == L"..") return;
    for (std::size_t i = 0; i < part.size(); ++i) {
        const wchar_t unit = part[i];
        if (part.find(unit) < i) continue;
        if (unit < L' ') {
            problems.push_back(L"the control character " + std::to_wstring(static_cast<unsigned>(unit)) +
                               L" cannot be in a name");
        } else if (kRefused.find(unit) != Text::npos) {
            problems.push_back(Quoted({&unit, 1}) + L" cannot be in a name: " + Quoted(part));
        }
    }
    if (IsDevice(part)) problems.push_back(Quoted(part) + L" is a device, not a file");
    if (part.ends_with(L' ') || part.ends_with(L'.'))
        problems.push_back(L"blanks and dots at the end of a name are lost: " + Quoted(part));
    if (part.size() > kMostOfAPart) {
        problems.push_back(L"a part of " + std::to_wstring(part.size()) +
                           L" characters is too long; at most " + std::to_wstring(kMostOfAPart) +
                           L" are kept");
    }
}

}  // namespace

std::vector<std::wstring> ProblemsOf(const QLFileName& name) {
    if (name.IsNull()) return {L"the name is empty"};
    if (name.GetScheme() != QLFileName::FILE && !name.GetScheme().empty())
        return {L"a name of the scheme " + Quoted(name.GetScheme()) + L" is none of the file system"};

    std::vector<std::wstring> problems;
    const RWWString dir = name.GetDir();
    for (Text rest = dir; !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of(L"\\/"), rest.size());
        CheckPart(rest.substr(0, end), problems);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    CheckPart(name.GetFileName(), problems);
    if (!name.GetTail().empty())
        problems.push_back(Quoted(name.GetTail()) + L" is taken for the tail of a web name and left out");
    const std::size_t length = name.GetPathAndFileName().size();
    if (length > kMostOfAPath) {
        problems.push_back(L"a path of " + std::to_wstring(length) +
                           L" characters is too long for most programs, which take " +
                           std::to_wstring(kMostOfAPath));
    }
    return problems;
}
