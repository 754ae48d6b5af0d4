#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/export.h"
#include "rw/wide_string.h"

struct HDC__;  // NOLINT(bugprone-reserved-identifier): the system's name
using HDC = HDC__*;

namespace ql {
struct NameAccess;
}

// The name of a file, a directory, a URL, a document-management document or a plug-in item, split into
// scheme, root, directory, name, extension and tail, and put together again. Backslash and slash both
// separate; the one met is kept and written back. Only the queries and temporary names at the end of the
// class ask the disk; all else works on text alone.
//
//     text                         scheme      root    dir    name          extension  tail
//     C:\Docs\Letter.docx          file        C:      Docs   Letter        docx
//     \\srv\share\a.txt            file        \\srv   share  a             txt
//     sub\a                        file                sub    a
//     a.txt                                                   a             txt
//     http://srv/a/b/f.htm?x#top   http        srv     a/b    f             htm        ?x#top
//     mailto:a.b                   mailto      a.b
//     ::ODMA\123                   ::ODMA\                    123
//     PLUGIN\{abc}                 PLUGIN\{                   PLUGIN\{abc}
//
// Kept on purpose:
//  - Assigning a name parses the other's text, so what that text leaves out is lost: the tail of any name but
//    "http" and "https", the name and extension of "mailto" and "news". Copy construction keeps every field.
//  - Any two or more units before the first colon are a scheme, whatever they hold; a single one is a drive.
//  - "PLUGIN\{" is told in this case alone, "::ODMA\" in any.
//  - Only a blank followed by a slash makes GetCmdLine quote, since it would be read as a switch; a blank
//    alone does not.
//  - Both case changes lower the scheme; ToLower raises the tail.
//  - SetFileName without a new tail keeps the old one, SetPathAndFileName keeps the separators of the former
//    name unless the new one has a path, and SetPath of an empty text makes the name local, hence no longer
//    null.
//  - A closing quote goes without an opening one, too. Tabs are no blanks.
//
// Parsing expands environment references of the form %NAME% in paths and file names; a dot that an expansion
// brings into a name without one begins no extension. Texts have any length, a null pointer stands for the
// empty text, and every text ends at its first zero unit. When memory ends, a name that was being changed or
// copied is null, and a text that was asked for is empty. One object may be read by several threads or
// changed by one.
class QL_API QLFileName {
  public:
    // What CanAccess asks for, to be added up. <lmaccess.h> has macros of these names: take them back with
    // #undef where both are used.
    static constexpr int ACCESS_READ = 4;
    static constexpr int ACCESS_WRITE = 2;

    // Schemes, as GetScheme answers them; a document-management id and a plug-in item begin with the last
    // two.
    static constexpr wchar_t FILE[] = L"file";
    static constexpr wchar_t HTTP[] = L"http";
    static constexpr wchar_t HTTPS[] = L"https";
    static constexpr wchar_t FTP[] = L"ftp";
    static constexpr wchar_t MAILTO[] = L"mailto";
    static constexpr wchar_t NEWS[] = L"news";
    static constexpr wchar_t RES[] = L"res";
    static constexpr wchar_t QLINTERNAL[] = L"qlinternal";
    static constexpr wchar_t PLUGIN[] = L"PLUGIN\\{";
    static constexpr wchar_t ODMADOCID[] = L"::ODMA\\";

    QLFileName() noexcept = default;  // null
    // As SetPathAndFileName.
    QLFileName(const wchar_t* pathAndName);
    template <ql::CountedText Text>
    QLFileName(const Text& pathAndName) {
        SetPathAndFileName(pathAndName);
    }
    // The name is taken as it is given, dots and all. There always is an extension, if an empty one.
    QLFileName(ql::TextView path, ql::TextView name, ql::TextView ext);

    // A copy has every field; assigning parses the other's text.
    QLFileName(const QLFileName& other) noexcept;
    QLFileName& operator=(const QLFileName& other);

    virtual ~QLFileName() = default;

    // The text for a command line, in quotes when a blank and a slash follow each other in it.
    virtual RWWString GetCmdLine() const;

    // Whether there is nothing but, at most, a tail.
    virtual int IsNull() const;

    // Back to the default-constructed state.
    virtual void Reset();

    // Replaces the whole name. Surrounding blanks and one pair of quotes are dropped first. A text that ends
    // with a separator, or with a bare host or drive, is a path without file name.
    void SetPathAndFileName(const wchar_t* text);
    void SetPathAndFileName(const QLFileName& other);
    template <ql::CountedText Text>
    void SetPathAndFileName(const Text& text) {
        SetCounted(text);
    }

    // Replaces scheme, root, directory and separators. A directory without a separator at its end gets a
    // backslash.
    void SetPath(ql::TextView text);

    // Replaces name and extension, and the tail if there is one: what follows the last question mark or the
    // last number sign behind the last dot, whichever comes first.
    void SetFileName(ql::TextView text);

    // The path of a directory's name, and the name of an entry in it as the disk has it: nothing is expanded,
    // and what follows the last dot is the extension, whatever it holds. The tail stays.
    void SetEntry(const QLFileName& directory, ql::TextView entry);

    // With or without its dot; blanks at the end are dropped. An empty text makes an empty extension, not
    // none.
    void SetExtension(ql::TextView ext);

    // Drops the root and puts the prefix before the directory; an empty prefix drops the root alone.
    // Always 1.
    int PrependPath(ql::TextView prefix);

    // The composed texts; empty where there is nothing. GetPath ends with the directory's separator.
    RWWString GetPath() const;
    RWWString GetPathAndFileName() const;
    RWWString GetFileName() const;  // name and extension, without the tail
    RWWString GetRoot() const;      // with its separator

    // The parts as they are kept. Separators are 0 when there is none; the tail begins with its "?" or "#".
    RWWString GetScheme() const { return CopyOf(kScheme); }
    RWWString GetDir() const { return CopyOf(kDir); }
    RWWString GetName() const { return CopyOf(kName); }
    RWWString GetTail() const { return CopyOf(kTail); }
    wchar_t GetRootSeparator() const noexcept { return rootSeparator_; }
    wchar_t GetDirSeparator() const noexcept { return dirSeparator_; }

    // Stores the extension with its dot and returns 1; returns 0 and leaves `out` alone when there is none
    // (or no memory for it).
    int GetExtension(RWWString& out) const;

    int HasExtension() const noexcept { return hasExtension_; }  // "a." has one, an empty one

    // What its form says: nothing is asked of the system. An id needs a text behind its prefix, a
    // plug-in item one of two units at least.
    int HasRoot() const noexcept { return !Part(kRoot).empty(); }
    int IsRemote() const noexcept { return isRemote_; }
    int IsODMADocId() const noexcept;
    int IsPluginFileType() const noexcept;

    // Negative, 0 or positive, by scheme, root, directory, name and extension, ignoring case. The root's and
    // the directory's separators (those within a directory count), tail and IsRemote take no part, and a name
    // with an extension comes after the same name without.
    int CompareTo(const QLFileName& other) const noexcept;
    bool operator==(const QLFileName& other) const noexcept { return CompareTo(other) == 0; }

    // Change the case of all parts, but for the two exceptions above.
    void ToLower();
    void ToUpper();

    // What the file system and the display say of the name. Failures of the system answer no, or the name as
    // it is.
    enum Status : int {
        StatusUnknown,       // 0, remote: nothing was asked
        StatusInUse,         // 1, exists, but cannot be had alone even for reading
        StatusWritable,      // 2, exists and can be had alone for reading and writing
        StatusCreatable,     // 3, does not exist and can be created
        StatusNotCreatable,  // 4, does not exist and cannot be created
        StatusReadOnly,      // 5, exists and can be had alone for reading only
    };

    // Kept on purpose: CanAccess asks about rooted local names alone, a relative name is never accessible;
    // Exists is no for a name without a file part, IsDirectory for both; GetStatus leaves the process with
    // the system's messages about missing disks off.
    int CanAccess(int mode) const;  // 0 to ask for existence, else ACCESS_READ and ACCESS_WRITE added up
    int Exists() const;
    int IsDirectory() const;
    Status GetStatus() const;  // StatusUnknown, too, when memory ends

    // The whole name by its share where its drive is one of the network, and in its long form.
    RWWString GetUNCPathAndFileName() const;
    RWWString GetLongPathAndFileName() const;
    RWWString GetShortPath() const;     // of a local path, with one more backslash; any other as it is
    RWWString GetShortVersion() const;  // of the whole name

    // A name that no file has: "~ql12", a number, and the extension that the name had or ".tmp", in the
    // directory that the name had or the temporary one. With `create`, an empty file of that name; without,
    // a file may have the name if the directory is a relative one, since Exists is no for those. The file
    // part is empty when none was to be had.
    void SetTempPath();
    void SetTempFileName(bool create);
    void SetTempPathAndFileName(bool create);

    // The text with leading directories replaced by an ellipsis until it is at least two units narrower than
    // `width` pixels in the font of the device context, as far as that goes: C:\one\two\f.txt ->
    // C:\...\two\f.txt -> C:\...\f.txt. Backslashes alone count; of a share's name the server goes, too.
    RWWString FitToWidth(HDC dc, int width) const;
    static void FitToWidth(HDC dc, RWWString& text, int width);

    // Expands the environment references of a text, which ends at its first zero unit if it has any. The
    // system says which they are, and one by one where text or result is longer than it takes. Unknown
    // references, those whose value the system does not tell, and the whole text when memory ends, stay as
    // they are.
    static void SubstPathPlaceholders(RWWString& text);

  protected:
    // Replaces root and its separator: the one that ends the text, else a backslash; none for an empty text.
    void SetRoot(ql::TextView root);

    // What the members above do, but throwing when memory ends.
    void Parse(std::wstring_view text);
    void SetParts(std::wstring_view path, std::wstring_view name, std::wstring_view ext);
    std::wstring Path() const;
    std::wstring FileName() const;
    std::wstring PathAndFileName() const;
    std::wstring CmdLine() const;
    bool Allows(int mode) const;

  private:
    friend struct ql::NameAccess;

    enum PartIndex { kScheme, kRoot, kDir, kName, kExtension, kTail, kPartCount };

    std::size_t Begin(PartIndex part) const noexcept { return part == kScheme ? 0 : ends_[part - 1u]; }
    std::wstring_view Part(PartIndex part) const noexcept {
        return std::wstring_view(text_).substr(Begin(part), ends_[part] - Begin(part));
    }
    bool HasFilePart() const noexcept;
    void SetPart(PartIndex part, std::wstring_view value);
    void ClearParts() noexcept;  // and the flags, but not the separators
    void ChangeCase(PartIndex part, void (*change)(std::wstring&) noexcept);

    // Makes a change as a whole, or the name null.
    template <class Change>
    void TryTo(Change change) noexcept;

    RWWString CopyOf(PartIndex part) const noexcept;
    void SetCounted(std::wstring_view text);
    void ParsePath(std::wstring_view text);
    void ParseFileName(std::wstring_view text);
    void ParseUnc(std::wstring_view text);
    void ParseUrl(std::wstring_view text, std::size_t colon);
    void ParseLocal(std::wstring_view text);
    void SetOrigin(std::wstring_view scheme, std::wstring_view root, bool remote);
    void ParseDir(std::wstring_view text);
    void StoreExtension(std::wstring_view ext);
    void Prepend(std::wstring_view prefix);
    bool TakeFreeFileName(bool create);

    void AppendPath(std::wstring& out) const;
    void AppendFileName(std::wstring& out) const;

    // The six parts one after another, so that a name costs one block of memory at most; where each ends.
    std::wstring text_;
    std::array<std::size_t, kPartCount> ends_{};
    bool hasExtension_ = false;
    bool isRemote_ = false;
    wchar_t rootSeparator_ = 0;
    wchar_t dirSeparator_ = 0;
};

// The long form of a path, and its short (8.3) form. Only a path that begins with a drive has a short form; a
// file that does not exist is created for a moment to be asked. A path that has no such form, or a long one
// of more than 259 units, is answered as it is, in the short form with backslashes for slashes and, behind a
// drive's root, without one at the end. Wildcards in the last part stand, in the short form, for the first
// entry that matches; a path with others has none.
QL_API RWWString QLGetLongPathName(const RWWString& path);
QL_API RWWString QLGetShortPathName(const RWWString& path);

// The first that can be read and written: the environment's TMP, its TEMP, the answer directory; else the
// Windows directory. The environment is that of the C run time, which SetEnvironmentVariable does not change.
QL_API RWWString QLGetTempPath();
