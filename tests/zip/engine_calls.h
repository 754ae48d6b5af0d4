#pragma once

#include "platform/win32.h"
#include "zip/zip_records.h"

// The engines beside the program; -1 when there is none.
template <class Proc, class... Argument>
int Call(const char* engine, const char* entry, Argument... arguments) {
    const HMODULE module = ::LoadLibraryA(engine);
    const FARPROC proc = module ? ::GetProcAddress(module, entry) : nullptr;
    return proc ? reinterpret_cast<Proc>(reinterpret_cast<void*>(proc))(arguments...) : -1;
}
inline int Dzip(ZIPCMDSTRUCT command) {
    return Call<DzipProc>("DZIP32.DLL", "dzip", &command);
}
// A command that is kept has what the call returned.
template <class Command>
int Dunzip(Command&& command) {
    return Call<DunzipProc>("DUNZIP32.DLL", "dunzip", &command);
}

inline ZIPCMDSTRUCT ZipCommand(std::int32_t function, const char* archive, const char* items) {
    ZIPCMDSTRUCT command{};
    command.zipStructSize = sizeof command;
    command.function = function;
    command.lpszZIPFile = archive;
    command.lpszItemList = items;
    command.compFactor = 5;
    return command;
}
inline UNZIPCMDSTRUCT UnzipCommand(std::int32_t function, const char* archive, const char* items,
                                   const char* destination) {
    UNZIPCMDSTRUCT command{};
    command.unzipStructSize = sizeof command;
    command.function = function;
    command.lpszZIPFile = archive;
    command.lpszFilespec = items;
    command.lpszDestination = destination;
    command.index = -1;
    command.recurseFlag = 1;
    return command;
}
