#include "tools/qlutil/command.h"
#include "tools/qlutil/version.h"

namespace {

Answer ShowVersion(const Arguments&) {
    const Version own = OwnVersion();
    return Record{{L"version", own.number}, {L"bits", own.bits}, {L"build", own.build}};
}

constexpr Command kCommands[] = {
    {L"version",
     L"",
     L"The version, the word size, and the state of the sources that this was built from.",
     {},
     0,
     0,
     ShowVersion,
     Library::kLeftToCommand},
};

}  // namespace

std::span<const Command> VersionCommands() {
    return kCommands;
}
