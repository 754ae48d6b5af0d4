#include "settings/scopes.h"

#include "platform/critical_section.h"
#include "settings/lifetime.h"
#include "settings/thread_slots.h"

namespace {

struct Library {
    ql::CriticalSection lock;
    int scopes QL_GUARDED_BY(lock) = 0;
};

Library g_library;

void End() {
    CQlsSettings::Uninitialize();
    TlsmUninitialize();
    UninitializeUtil();
}

bool Start() {
    if (!TlsmInitialize()) return false;
    if (InitializeUtil() && CQlsSettings::Initialize()) return true;
    End();
    return false;
}

}  // namespace

QLLibraryScope::QLLibraryScope() noexcept {
    const ql::CriticalSectionGuard guard(g_library.lock);
    ok_ = g_library.scopes > 0 || Start();
    if (ok_) ++g_library.scopes;
}

QLLibraryScope::~QLLibraryScope() {
    const ql::CriticalSectionGuard guard(g_library.lock);
    if (ok_ && --g_library.scopes == 0) End();
}

QLThreadScope::QLThreadScope() noexcept
    : owns_(!TlsmIsThreadInitialized() && TlsmInitializeThread()), ok_(TlsmIsThreadInitialized()) {
    if (owns_) ok_ = CQlsSettings::InitializeThread();
}

QLThreadScope::~QLThreadScope() {
    if (!owns_) return;
    CQlsSettings::UninitializeThread();
    TlsmUninitializeThread();
}

QLContextScope::QLContextScope() noexcept
    : id_(thread_.ok() ? CQlsSettings::CreateThreadSettings() : -1),
      created_(id_ >= 0),
      attached_(created_ && CQlsSettings::AttachThreadSettings(id_)) {}

QLContextScope::QLContextScope(int id) noexcept
    : id_(id), created_(false), attached_(CQlsSettings::AttachThreadSettings(id)) {}

QLContextScope::~QLContextScope() {
    if (attached_) CQlsSettings::DetachThreadSettings(id_);
    if (created_) CQlsSettings::ReleaseThreadSettingsRef(id_);
}

CQlsSettings* QLContextScope::settings() const noexcept {
    return attached_ ? CQlsSettings::GetSettings(id_, true) : nullptr;
}
