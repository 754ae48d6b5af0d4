#include "engine/unzip_command.h"

// The entry points of the unzip engine. Calls share only the directories that are kept between them, behind a
// lock: any thread may make them at any time.
extern "C" __declspec(dllexport) int __stdcall dunzip(UNZIPCMDSTRUCT* command) {
    using namespace ql::zip;
    return UnzipCodeOf(command ? RunUnzip(*command) : Result::kBadRequest);
}

extern "C" __declspec(dllexport) int __stdcall dunzipeach(UNZIPCMDSTRUCT* command, ZipMemberProc each,
                                                          void* userData) {
    using namespace ql::zip;
    return UnzipCodeOf(command ? RunUnzipEach(*command, each, userData) : Result::kBadRequest);
}
