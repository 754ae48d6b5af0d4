// A host in a dozen lines: start, ask where templates live, stop. README shows this program.
#include <cstdio>

#include "prefs/directories.h"
#include "settings/scopes.h"

int main() {
    const QLLibraryScope library;
    const QLThreadScope thread;
    if (!library.ok() || !thread.ok()) return 1;

    const RWWString templates = CQlDir::GetDirectory(TemplateDirectory);
    std::printf("templates live in %ls\n", templates.data());
    return templates.isNull() ? 1 : 0;
}
