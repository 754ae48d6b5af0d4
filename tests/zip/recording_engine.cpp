// An engine that does nothing but remember its calls.
#include "tests/zip/recording_engine.h"

#include <cstring>

namespace {

Recording recording;

template <std::size_t size>
void Keep(char (&into)[size], const char* text) {
    std::strncpy(into, text ? text : "(null)", size - 1);
}

}  // namespace

extern "C" __declspec(dllexport) Recording* Recorded() {
    return &recording;
}

extern "C" __declspec(dllexport) int __stdcall dzip(ZIPCMDSTRUCT* command) {
    ++recording.calls;
    recording.zip = *command;
    Keep(recording.archive, command->lpszZIPFile);
    Keep(recording.items, command->lpszItemList);
    Keep(recording.place, command->lpszTempPath);
    Keep(recording.comment, command->lpszComment);
    return recording.answer;
}

extern "C" __declspec(dllexport) int __stdcall dunzip(UNZIPCMDSTRUCT* command) {
    ++recording.calls;
    recording.unzip = *command;
    Keep(recording.archive, command->lpszZIPFile);
    Keep(recording.items, command->lpszFilespec);
    Keep(recording.place, command->lpszDestination);
    command->returnCount = recording.count;
    if (command->zInfo) *command->zInfo = recording.info;
    if (command->lpszReturnString)
        std::memcpy(command->lpszReturnString, recording.comment, std::strlen(recording.comment) + 1);
    return recording.answer;
}
