#include "names/file_name.h"
#include "names/file_type.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/name_problems.h"

namespace {

RWWString SeparatorText(wchar_t separator) {
    return separator ? RWWString(&separator, 1) : RWWString();
}

// The root and the extension as they are kept: without the separator and the dot that their getters add.
RWWString KeptRoot(const QLFileName& name) {
    RWWString root = name.GetRoot();
    if (name.HasRoot() && name.GetRootSeparator()) root.resize(root.length() - 1);
    return root;
}

RWWString KeptExtension(const QLFileName& name) {
    RWWString extension;
    return name.GetExtension(extension) ? RWWString(extension.view().substr(1)) : RWWString();
}

Record Describe(const QLFileName& name) {
    List problems;
    for (const std::wstring& problem : ProblemsOf(name)) problems.emplace_back(problem);
    return {
        {L"scheme", name.GetScheme()},
        {L"root", KeptRoot(name)},
        {L"dir", name.GetDir()},
        {L"name", name.GetName()},
        {L"extension", KeptExtension(name)},
        {L"tail", name.GetTail()},
        {L"hasExtension", name.HasExtension() != 0},
        {L"isRemote", name.IsRemote() != 0},
        {L"rootSeparator", SeparatorText(name.GetRootSeparator())},
        {L"dirSeparator", SeparatorText(name.GetDirSeparator())},
        {L"path", name.GetPath()},
        {L"fileName", name.GetFileName()},
        {L"pathAndFileName", name.GetPathAndFileName()},
        {L"cmdLine", name.GetCmdLine()},
        {L"isNull", name.IsNull() != 0},
        {L"isODMADocId", name.IsODMADocId() != 0},
        {L"isPlugin", name.IsPluginFileType() != 0},
        {L"problems", std::move(problems)},
    };
}

Answer Name(const Arguments& arguments) {
    QLFileName name(arguments[0]);
    if (const auto extension = arguments.Value(L"ext")) name.SetExtension(*extension);
    if (const auto prefix = arguments.Value(L"prepend")) name.PrependPath(*prefix);
    if (arguments.Has(L"lower")) name.ToLower();
    if (arguments.Has(L"upper")) name.ToUpper();
    return Describe(name);
}

Answer Compare(const Arguments& arguments) {
    const QLFileName a(arguments[0]);
    const QLFileName b(arguments[1]);
    const int order = a.CompareTo(b);
    return Record{{L"result", order < 0 ? -1 : order > 0 ? 1 : 0}};
}

Answer Kind(const Arguments& arguments) {
    List kinds;
    for (std::wstring_view word : arguments.all()) {
        const QLFileName name(word);
        const FileType type = GetFileType(name);
        const FileType templateType = GetTemplateType(name);
        kinds.push_back(Record{
            {L"file", word},
            {L"fileType", static_cast<int>(type)},
            {L"documentType", static_cast<int>(GetDocumentType(name))},
            {L"templateType", static_cast<int>(templateType)},
            {L"templateDocType", static_cast<int>(GetTemplateDocType(templateType))},
            {L"displayName", GetFileName(type)},
            {L"extension", GetFileExt(type)},
            {L"isQuillet", IsQuilletFileType(name)},
        });
    }
    return kinds;
}

constexpr SwitchRow kNameSwitches[] = {{L"ext", true}, {L"prepend", true}, {L"lower"}, {L"upper"}};

constexpr Command kCommands[] = {
    {L"name", L"TEXT [--ext E] [--prepend P] [--lower] [--upper]",
     L"The parts of a file name, URL, document-management id or plug-in item, the texts made from them, and "
     L"what the "
     L"file system would refuse.",
     kNameSwitches, 1, 1, Name},
    {L"compare", L"TEXT TEXT", L"The order of two file names: -1, 0 or 1.", {}, 2, 2, Compare},
    {L"kind", L"TEXT...", L"The kind of each file, told from its extension alone.", {}, 1, kAnyNumber, Kind},
};

}  // namespace

std::span<const Command> NameCommands() {
    return kCommands;
}
