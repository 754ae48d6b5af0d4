#include "engine/listed_archive.h"

#include <mutex>

#include "engine/windows_files.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

struct Kept {
    std::mutex mutex;
    FileIdentity identity{};
    std::shared_ptr<const Archive> archive;
};

Kept& LastListed() {
    static Kept kept;
    return kept;
}

}  // namespace

std::shared_ptr<const Archive> ListedArchive(const char* ansiPath) {
    WindowsInput file(WideFromAnsi(ansiPath), Result::kMissing, Result::kCannotOpen);
    const FileIdentity identity = file.Identity();
    Kept& kept = LastListed();
    const std::lock_guard lock(kept.mutex);
    if (!kept.archive || kept.identity != identity) {
        kept.archive.reset();
        kept.archive = std::make_shared<const Archive>(file);
        kept.identity = identity;
    }
    return kept.archive;
}

}  // namespace ql::zip
