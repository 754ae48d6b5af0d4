#include "tools/qlutil/library_run.h"

#include "settings/lifetime.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"

LibraryRun::LibraryRun()
    : ok_(TlsmInitialize() && InitializeUtil() && CQlsSettings::Initialize() && TlsmInitializeThread() &&
          CQlsSettings::InitializeThread()) {}

LibraryRun::~LibraryRun() {
    CQlsSettings::UninitializeThread();
    TlsmUninitializeThread();
    CQlsSettings::Uninitialize();
    TlsmUninitialize();
    UninitializeUtil();
}

LibraryThread::LibraryThread() {
    TlsmInitializeThread();
    CQlsSettings::InitializeThread();
}

LibraryThread::~LibraryThread() {
    CQlsSettings::UninitializeThread();
    TlsmUninitializeThread();
}
