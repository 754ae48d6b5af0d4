#include "names/file_name.h"
#include "names/file_type.h"
#include "tools/qlutil/command.h"

namespace {

RWWString Text(std::wstring_view word) {
    return RWWString(word);
}

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
    };
}

Answer Name(const Arguments& arguments) {
    QLFileName name(Text(arguments[0]).data());
    if (const auto extension = arguments.Value(L"ext")) name.SetExtension(Text(*extension).data());
    if (const auto prefix = arguments.Value(L"prepend")) name.PrependPath(Text(*prefix).data());
    if (arguments.Has(L"lower")) name.ToLower();
    if (arguments.Has(L"upper")) name.ToUpper();
    return Describe(name);
}

Answer Compare(const Arguments& arguments) {
    const QLFileName a(Text(arguments[0]).data());
    const QLFileName b(Text(arguments[1]).data());
    const int order = a.CompareTo(b);
    return Record{{L"result", order < 0 ? -1 : order > 0 ? 1 : 0}};
}

Answer Kind(const Arguments& arguments) {
    List kinds;
    for (std::wstring_view word : arguments.all()) {
        const QLFileName name(Text(word).data());
        const FileType type = GetFileType(name);
        const FileType templateType = GetTemplateType(name);
        kinds.push_back(Record{
            {L"file", Text(word)},
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
     L"The parts of a file name, URL, document-management id or plug-in item, and the texts made from them.",
     kNameSwitches, 1, 1, Name},
    {L"compare", L"TEXT TEXT", L"The order of two file names: -1, 0 or 1.", {}, 2, 2, Compare},
    {L"kind", L"TEXT...", L"The kind of each file, told from its extension alone.", {}, 1, kAnyNumber, Kind},
};

}  // namespace

std::span<const Command> NameCommands() {
    return kCommands;
}
