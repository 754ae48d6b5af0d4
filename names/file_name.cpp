#include "names/file_name.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/failure.h"
#include "platform/win32.h"
#include "text/blanks.h"
#include "text/characters.h"
#include "text/paths.h"

// Standing here, the constants are in the library for whoever needs their addresses.
constexpr int QLFileName::ACCESS_READ;
constexpr int QLFileName::ACCESS_WRITE;
constexpr wchar_t QLFileName::FILE[];
constexpr wchar_t QLFileName::HTTP[];
constexpr wchar_t QLFileName::HTTPS[];
constexpr wchar_t QLFileName::FTP[];
constexpr wchar_t QLFileName::MAILTO[];
constexpr wchar_t QLFileName::NEWS[];
constexpr wchar_t QLFileName::RES[];
constexpr wchar_t QLFileName::QLINTERNAL[];
constexpr wchar_t QLFileName::PLUGIN[];
constexpr wchar_t QLFileName::ODMADOCID[];

namespace {

using Text = std::wstring_view;

constexpr std::size_t kNone = Text::npos;

// What a scheme makes of the composed text.
enum class Form { Nothing, Local, Web, Url, Address, Document, Plugin };

struct FormRow {
    Text scheme;
    Form form;
};

constexpr FormRow kForms[] = {
    {L"", Form::Nothing},
    {QLFileName::FILE, Form::Local},
    {QLFileName::HTTP, Form::Web},
    {QLFileName::HTTPS, Form::Web},
    {QLFileName::MAILTO, Form::Address},
    {QLFileName::NEWS, Form::Address},
    {QLFileName::ODMADOCID, Form::Document},
    {QLFileName::PLUGIN, Form::Plugin},
};

Form FormOf(Text scheme) noexcept {
    for (const FormRow& row : kForms) {
        if (ql::EqualIgnoringCase(scheme, row.scheme)) return row.form;
    }
    return Form::Url;
}

// The length of the text when there is none.
std::size_t First(Text text, wchar_t unit) {
    return static_cast<std::size_t>(std::ranges::find(text, unit) - text.begin());
}

// The length of the text when there is none.
std::size_t FirstSeparator(Text text) {
    return static_cast<std::size_t>(std::ranges::find_if(text, ql::IsSeparator) - text.begin());
}

std::size_t LastSeparator(Text text) {
    const auto found = std::find_if(text.rbegin(), text.rend(), ql::IsSeparator);
    return static_cast<std::size_t>(text.rend() - found) - 1;  // kNone when there is none
}

Text UpToZero(Text text) {
    return text.substr(0, text.find(L'\0'));
}

// What the system makes of a text with environment references (%NAME%). Nothing when it fails, or would cut
// the text or the result.
std::optional<std::wstring> SystemExpansion(Text text) {
    constexpr std::size_t kMostUnits = 32766;
    if (text.size() > kMostUnits) return std::nullopt;
    const std::wstring given(text);
    std::wstring expanded;
    // Asked first without room, and again while another thread lengthens a variable.
    for (;;) {
        const DWORD needed =
            ::ExpandEnvironmentStringsW(given.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
        if (needed == 0 || needed > kMostUnits + 1) return std::nullopt;
        if (needed <= expanded.size()) return expanded.substr(0, needed - 1);  // without the closing zero
        expanded.resize(needed);
    }
}

// One reference after the other. The second sign of an unknown one may begin another.
std::wstring WithEachValue(Text text) {
    std::wstring expanded;
    for (;;) {
        const std::size_t sign = First(text, L'%');
        expanded.append(text.substr(0, sign));
        text.remove_prefix(sign);
        const std::size_t end = text.find(L'%', 1);
        if (end == kNone) return expanded.append(text);
        const Text reference = text.substr(0, end + 1);
        const std::optional<std::wstring> value = SystemExpansion(reference);
        const bool isKnown = value && *value != reference;
        expanded.append(isKnown ? Text(*value) : text.substr(0, end));
        text.remove_prefix(isKnown ? end + 1 : end);
    }
}

std::wstring WithValues(Text text) {
    std::optional<std::wstring> whole = SystemExpansion(text);
    return whole ? std::move(*whole) : WithEachValue(text);
}

// The text itself, or its expansion, which then lives in the buffer.
Text Expanded(Text text, std::wstring& buffer) {
    if (First(text, L'%') == text.size()) return text;
    return buffer = WithValues(text);
}

bool IsDocumentId(Text text) noexcept {
    constexpr Text prefix = QLFileName::ODMADOCID;
    return text.size() > prefix.size() && ql::StartsWithIgnoringCase(text, prefix);
}

// One unit alone behind the brace, such as a closing one, names no item.
bool IsPluginItem(Text text) noexcept {
    constexpr Text prefix = QLFileName::PLUGIN;
    return text.size() > prefix.size() + 1 && text.starts_with(prefix);
}

// Where the path of a text ends: at its last separator, or its last colon when it has none.
std::size_t PathEnd(Text text) {
    const std::size_t separator = LastSeparator(text);
    return separator != kNone ? separator : text.rfind(L':');
}

// Whether a text whose path ends at `end` is a path as a whole: a bare UNC server or host, or a scheme with
// what follows its colon.
bool IsPathAlone(Text text, std::size_t end) {
    if (end == 1 && ql::StartsWithTwoSeparators(text)) return true;
    if (end >= 2 && text[end] == L':') return true;
    if (end >= 3 && text[end - 1] == L':') return true;
    return end >= 4 && text[end - 2] == L':' && ql::IsSeparator(text[end - 1]);
}

// Where the tail of a file name begins: at the earlier of the last "?" and the last "#", of those behind the
// dot.
std::size_t TailBegin(Text text, std::size_t dot) {
    const auto behindDot = [dot](std::size_t at) { return at < dot + 1 ? kNone : at; };  // kNone + 1 is 0
    return std::min({behindDot(text.rfind(L'?')), behindDot(text.rfind(L'#')), text.size()});
}

bool IsPlainLower(Text text) {
    return std::ranges::all_of(text,
                               [](wchar_t unit) { return unit < 0x80 && !(unit >= L'A' && unit <= L'Z'); });
}

void AppendSeparator(std::wstring& out, wchar_t separator) {
    if (separator) out.push_back(separator);
}

}  // namespace

template <class Change>
void QLFileName::TryTo(Change change) noexcept {
    if (!ql::Completes(change)) QLFileName::Reset();
}

QLFileName::QLFileName(const wchar_t* pathAndName) {
    SetPathAndFileName(pathAndName);
}

QLFileName::QLFileName(ql::TextView path, ql::TextView name, ql::TextView ext) {
    TryTo([&] { SetParts(path, name, ext); });
}

void QLFileName::SetParts(std::wstring_view path, std::wstring_view name, std::wstring_view ext) {
    ParsePath(UpToZero(path));
    SetPart(kName, UpToZero(name));
    StoreExtension(UpToZero(ext));
}

QLFileName::QLFileName(const QLFileName& other) noexcept
    : ends_(other.ends_),
      hasExtension_(other.hasExtension_),
      isRemote_(other.isRemote_),
      rootSeparator_(other.rootSeparator_),
      dirSeparator_(other.dirSeparator_) {
    TryTo([&] { text_ = other.text_; });
}

QLFileName& QLFileName::operator=(const QLFileName& other) {
    SetPathAndFileName(other);
    return *this;
}

void QLFileName::Reset() {
    ClearParts();
    rootSeparator_ = dirSeparator_ = 0;
}

void QLFileName::SetPathAndFileName(const QLFileName& other) {
    TryTo([&] { Parse(other.PathAndFileName()); });
}

void QLFileName::SetPathAndFileName(const wchar_t* text) {
    TryTo([&] { Parse(ql::TextOf(text)); });
}

void QLFileName::SetCounted(std::wstring_view text) {
    TryTo([&] { Parse(UpToZero(text)); });
}

void QLFileName::ClearParts() noexcept {
    text_.clear();
    ends_ = {};
    hasExtension_ = isRemote_ = false;
}

void QLFileName::Parse(std::wstring_view text) {
    ClearParts();
    text = ql::WithoutBlanks(ql::WithoutQuotes(ql::WithoutBlanks(text)));
    if (text.empty()) return;

    text_.reserve(text.size() + std::size(FILE));
    if (IsDocumentId(text)) {
        SetPart(kScheme, ODMADOCID);
        SetPart(kName, text.substr(Text(ODMADOCID).size()));
        return;
    }
    if (IsPluginItem(text)) {
        SetPart(kScheme, PLUGIN);
        SetPart(kName, text);
        return;
    }
    const std::size_t end = PathEnd(text);
    if (end == kNone) return ParseFileName(text);
    if (IsPathAlone(text, end)) return ParsePath(text);
    ParsePath(text.substr(0, end + 1));
    ParseFileName(text.substr(end + 1));
}

void QLFileName::SetPath(ql::TextView text) {
    TryTo([&] { ParsePath(UpToZero(text)); });
}

void QLFileName::ParsePath(std::wstring_view text) {
    rootSeparator_ = dirSeparator_ = 0;
    std::wstring buffer;
    text = Expanded(text, buffer);
    if (ql::StartsWithTwoSeparators(text)) return ParseUnc(text);
    const std::size_t colon = First(text, L':');
    if (colon < text.size() && colon >= 2) return ParseUrl(text, colon);
    ParseLocal(text);
}

void QLFileName::ParseUnc(std::wstring_view text) {
    constexpr std::size_t prefix = 2;
    const std::size_t rootEnd = prefix + FirstSeparator(text.substr(prefix));
    SetOrigin(FILE, text.substr(0, rootEnd), false);
    ParseDir(text.substr(rootEnd));
}

void QLFileName::ParseUrl(std::wstring_view text, std::size_t colon) {
    const Text scheme = text.substr(0, colon);
    Text rest = text.substr(colon + 1);
    if (FormOf(scheme) == Form::Address) {
        SetOrigin(scheme, rest, true);
        return ParseDir({});
    }
    for (int i = 0; i < 2 && ql::StartsWithSeparator(rest); ++i) rest.remove_prefix(1);
    const std::size_t rootEnd = FirstSeparator(rest);
    SetOrigin(scheme, rest.substr(0, rootEnd), true);
    ParseDir(rest.substr(rootEnd));
}

void QLFileName::ParseLocal(std::wstring_view text) {
    const std::size_t rootEnd = text.size() >= 2 && text[1] == L':' ? 2 : 0;
    SetOrigin(FILE, text.substr(0, rootEnd), false);
    ParseDir(text.substr(rootEnd));
}

void QLFileName::SetOrigin(std::wstring_view scheme, std::wstring_view root, bool remote) {
    SetPart(kScheme, scheme);
    // Most schemes are lower case already: that is cheaper to see than to ask the system for.
    if (!IsPlainLower(scheme)) ChangeCase(kScheme, ql::MakeLower);
    SetPart(kRoot, root);
    isRemote_ = remote;
}

void QLFileName::ParseDir(std::wstring_view text) {
    if (ql::StartsWithSeparator(text)) {
        rootSeparator_ = text.front();
        text.remove_prefix(1);
    }
    if (ql::EndsWithSeparator(text)) {
        dirSeparator_ = text.back();
        text.remove_suffix(1);
    }
    SetPart(kDir, text);
    if (!text.empty() && dirSeparator_ == 0) dirSeparator_ = L'\\';
}

void QLFileName::SetFileName(ql::TextView text) {
    TryTo([&] { ParseFileName(UpToZero(text)); });
}

void QLFileName::ParseFileName(std::wstring_view text) {
    std::size_t dot = text.rfind(L'.');
    const Text tail = text.substr(TailBegin(text, dot));

    std::wstring buffer;
    text = Expanded(text.substr(0, text.size() - tail.size()), buffer);
    if (dot != kNone) dot = text.rfind(L'.');  // the expansion may have moved it
    SetPart(kName, text.substr(0, dot));
    SetPart(kExtension, {});
    hasExtension_ = false;
    if (dot != kNone) StoreExtension(text.substr(dot));
    if (!tail.empty()) SetPart(kTail, tail);
}

void QLFileName::SetEntry(const QLFileName& directory, ql::TextView entry) {
    TryTo([&] {
        const Text name = UpToZero(entry);
        const std::size_t dot = std::min(name.rfind(L'.'), name.size());
        const std::wstring tail(Part(kTail));
        ends_ = directory.ends_;
        std::fill(ends_.begin() + kName, ends_.end(), ends_[kDir]);
        text_.assign(directory.text_, 0, ends_[kDir]);
        isRemote_ = directory.isRemote_;
        rootSeparator_ = directory.rootSeparator_;
        dirSeparator_ = directory.dirSeparator_;
        SetPart(kName, name.substr(0, dot));
        hasExtension_ = dot < name.size();
        if (hasExtension_) SetPart(kExtension, name.substr(dot + 1));
        if (!tail.empty()) SetPart(kTail, tail);
    });
}

void QLFileName::SetExtension(ql::TextView ext) {
    TryTo([&] { StoreExtension(UpToZero(ext)); });
}

void QLFileName::StoreExtension(std::wstring_view ext) {
    if (ext.starts_with(L'.')) ext.remove_prefix(1);
    SetPart(kExtension, ql::WithoutTrailingBlanks(ext));
    hasExtension_ = true;
}

void QLFileName::SetRoot(ql::TextView root) {
    TryTo([&] {
        Text text = UpToZero(root);
        rootSeparator_ = text.empty() ? L'\0' : L'\\';
        if (ql::EndsWithSeparator(text)) {
            rootSeparator_ = text.back();
            text.remove_suffix(1);
        }
        SetPart(kRoot, text);
    });
}

int QLFileName::PrependPath(ql::TextView prefix) {
    TryTo([&] { Prepend(UpToZero(prefix)); });
    return 1;
}

void QLFileName::Prepend(std::wstring_view prefix) {
    std::wstring path(prefix);
    if (HasRoot()) SetRoot(nullptr);  // needs no memory
    if (path.empty()) return;
    if (!ql::EndsWithSeparator(path)) path.push_back(rootSeparator_ ? rootSeparator_ : L'\\');
    ParsePath(path.append(Part(kDir)));
}

RWWString QLFileName::CopyOf(PartIndex part) const noexcept {
    return ql::FailureIfThrown({}, [&] { return RWWString(Part(part)); });
}

RWWString QLFileName::GetPath() const {
    return ql::FailureIfThrown({}, [this] { return Path(); });
}

RWWString QLFileName::GetFileName() const {
    return ql::FailureIfThrown({}, [this] { return FileName(); });
}

RWWString QLFileName::GetPathAndFileName() const {
    return ql::FailureIfThrown({}, [this] { return PathAndFileName(); });
}

std::wstring QLFileName::Path() const {
    std::wstring path;
    AppendPath(path);
    return path;
}

std::wstring QLFileName::FileName() const {
    std::wstring fileName;
    AppendFileName(fileName);
    return fileName;
}

std::wstring QLFileName::PathAndFileName() const {
    const Form form = FormOf(Part(kScheme));
    std::wstring text;
    AppendPath(text);
    if (form == Form::Address) return text;
    AppendFileName(text);
    if (form == Form::Web) text.append(Part(kTail));
    return text;
}

void QLFileName::AppendPath(std::wstring& out) const {
    const Form form = FormOf(Part(kScheme));
    if (form == Form::Nothing || form == Form::Plugin) return;
    if (form == Form::Document) {
        out.append(ODMADOCID);
        return;
    }
    constexpr Text colonAndTwo = L"://";
    out.reserve(text_.size() + colonAndTwo.size() + 3);  // two separators and the dot
    if (form != Form::Local) out.append(Part(kScheme)).append(form == Form::Address ? L":" : colonAndTwo);
    out.append(Part(kRoot));
    if (form == Form::Address) return;
    AppendSeparator(out, rootSeparator_);
    out.append(Part(kDir));
    AppendSeparator(out, dirSeparator_);
}

void QLFileName::AppendFileName(std::wstring& out) const {
    out.append(Part(kName));
    if (!hasExtension_) return;
    out.push_back(L'.');
    out.append(Part(kExtension));
}

RWWString QLFileName::GetRoot() const {
    return ql::FailureIfThrown({}, [this] {
        std::wstring root(Part(kRoot));
        if (!root.empty()) AppendSeparator(root, rootSeparator_);
        return root;
    });
}

int QLFileName::GetExtension(RWWString& out) const {
    if (!hasExtension_) return 0;
    return ql::Completes([&] {
        out.str().reserve(1 + Part(kExtension).size());
        out.assign(L".").append(Part(kExtension));
    });
}

RWWString QLFileName::GetCmdLine() const {
    return ql::FailureIfThrown({}, [this] { return CmdLine(); });
}

std::wstring QLFileName::CmdLine() const {
    std::wstring text = PathAndFileName();
    return text.find(L" /") == kNone ? text : L'"' + text + L'"';
}

int QLFileName::IsNull() const {
    return ends_[kExtension] == 0 && !hasExtension_;
}

int QLFileName::IsODMADocId() const noexcept {
    return FormOf(Part(kScheme)) == Form::Document && !Part(kName).empty();
}

int QLFileName::IsPluginFileType() const noexcept {
    return FormOf(Part(kScheme)) == Form::Plugin && !Part(kName).empty();
}

int QLFileName::CompareTo(const QLFileName& other) const noexcept {
    for (const PartIndex part : {kScheme, kRoot, kDir, kName}) {
        if (const int order = ql::CompareIgnoringCase(Part(part), other.Part(part))) return order;
    }
    if (hasExtension_ != other.hasExtension_) return hasExtension_ ? 1 : -1;
    return ql::CompareIgnoringCase(Part(kExtension), other.Part(kExtension));
}

void QLFileName::ToLower() {
    TryTo([this] {
        for (const PartIndex part : {kScheme, kRoot, kDir, kName, kExtension})
            ChangeCase(part, ql::MakeLower);
        ChangeCase(kTail, ql::MakeUpper);
    });
}

void QLFileName::ToUpper() {
    TryTo([this] {
        ChangeCase(kScheme, ql::MakeLower);
        for (const PartIndex part : {kRoot, kDir, kName, kExtension, kTail}) ChangeCase(part, ql::MakeUpper);
    });
}

void QLFileName::ChangeCase(PartIndex part, void (*change)(std::wstring&) noexcept) {
    std::wstring changed(Part(part));
    change(changed);
    SetPart(part, changed);
}

void QLFileName::SetPart(PartIndex part, std::wstring_view value) {
    const std::size_t begin = Begin(part);
    const std::size_t oldSize = ends_[part] - begin;
    if (begin == text_.size()) {
        text_.append(value);  // parsing stores the parts in their order: the quick way
    } else {
        text_.replace(begin, oldSize, value);
    }
    for (std::size_t i = part; i < kPartCount; ++i) ends_[i] += value.size() - oldSize;
}

void QLFileName::SubstPathPlaceholders(RWWString& text) {
    ql::Completes([&] { text = WithValues(UpToZero(text)); });
}
