// Twenty lines of a host: start, ask where templates live, stop. README shows this program.
#include <cstdio>

#include "prefs/directories.h"
#include "settings/lifetime.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"

int main() {
    if (!TlsmInitialize() || !InitializeUtil() || !CQlsSettings::Initialize()) return 1;
    TlsmInitializeThread();
    CQlsSettings::InitializeThread();

    const RWWString templates = CQlDir::GetDirectory(TemplateDirectory);
    std::printf("templates live in %ls\n", templates.data());

    CQlsSettings::UninitializeThread();
    TlsmUninitializeThread();
    CQlsSettings::Uninitialize();
    TlsmUninitialize();
    UninitializeUtil();
    return templates.isNull() ? 1 : 0;
}
