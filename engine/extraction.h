#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "engine/archive.h"
#include "engine/call_progress.h"
#include "engine/entry_reader.h"
#include "engine/ordered_work.h"
#include "engine/patience.h"
#include "engine/placement.h"
#include "engine/result.h"
#include "engine/work_folder.h"
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
// the new one is; nothing is written outside the destination. Members are unpacked one after the other, and
// the files of small ones come to the disk on all cores; they are told in their order.
class Extraction {
  public:
    Extraction(const UNZIPCMDSTRUCT& command, const ExtractionSource& source,
               const std::vector<const Entry*>& members, SameName sameName, const MemberEnd& each);

    // A member that fails does not keep the others back; the first failure is thrown at the end, a member
    // that was left out (kSkipped) only when nothing worse happened. A failure that concerns the whole call
    // ends it: some files of members behind may be there then, and are not told.
    void Run();

  private:
    // A small member on its way to its file.
    struct Unpacked {
        struct Tool {};
        void Do(Tool& none) noexcept;

        const Placement* placement = nullptr;
        const Entry* entry = nullptr;
        std::wstring place;
        Bytes contents;
        Placement::FormerFile former;
        Result result;
        bool isLeftOut;
    };
    enum class State { kDone, kLeftOut, kUnderWay };

    State Begin(const Entry& entry);
    State BeginFile(const Entry& entry, const std::string& name);
    State WriteLarge(const Entry& entry, const std::wstring& place, Placement::FormerFile former);
    void WriteSmall(const Entry& entry, const std::wstring& place, const Placement::FormerFile& former);
    void Read(const Entry& entry, const Sink& sink);
    bool IsUnderWay(const std::string& name) const;
    void EndOldest();
    void EndAll();
    void NoteFile(const Entry& entry, const Placement::FormerFile& former, bool isWritten);
    void End(const Entry& entry, Result result, bool isLeftOut);

    std::string UsedName(const Entry& entry) const;
    std::wstring TargetOf(const std::string& name) const;
    void RequireOwn(const std::u32string& file, const Entry& entry) const;
    void NeedFolder(const std::wstring& folder);
    void MakeWorkFolder();
    void LeaveWorkFolder();

    const UNZIPCMDSTRUCT& command_;
    const std::vector<const Entry*>& members_;
    const bool refusesSameName_;
    const MemberEnd& each_;
    Placement placement_;
    std::wstring destination_, lastFolder_;
    int filesInFolder_ = 0;  // since the last other one
    std::optional<WorkFolder> workFolder_;
    EntryReader reader_;
    CallProgress progress_;
    // Files and the members that they were, case aside; only where the same name is refused.
    std::map<std::u32string, std::u32string> written_;
    // Looking for a file costs a search of its folder, as making one does: where none was in the place of the
    // member before, it is only looked for when the new one does not come into its place.
    bool looksFirst_ = true;
    Result worst_ = Result::kOk, ended_ = Result::kOk;
    OrderedWork<Unpacked> files_;  // the last: its threads use the others
};

}  // namespace ql::zip
