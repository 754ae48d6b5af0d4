#include "engine/unzip_command.h"

// The entry point of the unzip engine. Its calls share only the directory that was listed last, behind a lock: any
// thread may make them at any time.
extern "C" __declspec(dllexport) int __stdcall dunzip(UNZIPCMDSTRUCT* command) {
    using namespace ql::zip;
    return UnzipCode(command ? RunUnzip(*command) : Result::kBadRequest);
}
