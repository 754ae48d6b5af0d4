#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "engine/archive.h"
#include "engine/call_progress.h"
#include "engine/entry_reader.h"
#include "engine/patience.h"
#include "engine/result.h"
#include "engine/windows_files.h"
#include "zip/zip_records.h"

namespace ql::zip {

// Told of every member and how its work ended; throws to end the call.
using MemberEnd = std::function<void(const Entry& entry, Result result)>;

// What an extraction works on.
struct ExtractionSource {
    InputFile& file;
    const Archive& archive;
    Patience& patience;
};

// What becomes of a member whose file one of another folder has just become, where no folders are made.
enum class SameName { kReplaces, kRefused };

// Brings members to the disk, or tests them, as a record asks. A file that is already there stays whole until
// the new one is; nothing is written outside the destination.
class Extraction {
  public:
    Extraction(const UNZIPCMDSTRUCT& command, const ExtractionSource& source,
               const std::vector<const Entry*>& members, SameName sameName, const MemberEnd& each);

    // A member that fails does not keep the others back; the first failure is thrown at the end, a member
    // that was left out (kSkipped) only when nothing worse happened.
    void Run();

  private:
    bool One(const Entry& entry);  // false where the flags leave it out
    void Test(const Entry& entry);
    void Write(const Entry& entry, const std::wstring& target, DWORD formerAttributes);
    std::string UsedName(const Entry& entry) const;
    std::wstring TargetOf(const std::string& name) const;
    void RequireOwn(const std::u32string& file, const Entry& entry) const;
    bool MayReplace(const Entry& entry, const WIN32_FILE_ATTRIBUTE_DATA& former) const;
    void NeedFolder(const std::wstring& folder);
    void Note(Result result);

    const UNZIPCMDSTRUCT& command_;
    const std::vector<const Entry*>& members_;
    const bool refusesSameName_;
    const MemberEnd& each_;
    Patience& patience_;
    std::wstring destination_, lastFolder_;
    EntryReader reader_;
    CallProgress progress_;
    // Files and the members that they were, case aside; only where the same name is refused.
    std::map<std::u32string, std::u32string> written_;
    Result worst_ = Result::kOk;
};

}  // namespace ql::zip
