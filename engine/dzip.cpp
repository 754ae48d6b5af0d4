#include "engine/zip_command.h"

// The entry points of the zip engine. Calls share nothing: any thread may make them at any time.
extern "C" __declspec(dllexport) int __stdcall dzip(ZIPCMDSTRUCT* command) {
    using namespace ql::zip;
    return ZipCodeOf(command ? RunZip(*command) : Result::kBadRequest);
}

extern "C" __declspec(dllexport) int __stdcall dzipfiles(const ZIPCMDSTRUCT* command, ZIPSOURCE* sources,
                                                         std::int32_t count) {
    using namespace ql::zip;
    return ZipCodeOf(command ? RunZipFiles(*command, sources, count) : Result::kBadRequest);
}
