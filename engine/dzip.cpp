#include "engine/zip_command.h"

// The entry point of the zip engine. Its calls share nothing: any thread may make them at any time.
extern "C" __declspec(dllexport) int __stdcall dzip(ZIPCMDSTRUCT* command) {
    using namespace ql::zip;
    return ZipCode(command ? RunZip(*command) : Result::kBadRequest);
}
