#pragma once

#include "platform/win32.h"
#include "zip/zip_records.h"

// The engines beside the program; -1 when there is none.
template <class Record>
int Call(const char* engine, const char* entry, Record& command) {
    const HMODULE module = ::LoadLibraryA(engine);
    const FARPROC proc = module ? ::GetProcAddress(module, entry) : nullptr;
    if (!proc) return -1;
    return reinterpret_cast<int(QL_ZIP_CALL*)(Record*)>(reinterpret_cast<void*>(proc))(&command);
}
inline int Dzip(ZIPCMDSTRUCT command) {
    return Call("DZIP32.DLL", "dzip", command);
}
inline int Dunzip(UNZIPCMDSTRUCT& command) {
    return Call("DUNZIP32.DLL", "dunzip", command);
}
inline int Dunzip(UNZIPCMDSTRUCT&& command) {
    return Dunzip(command);
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
