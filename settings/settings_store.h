#pragma once

#include <atomic>
#include <memory>

#include "platform/export.h"
#include "rw/wide_string.h"

namespace ql {
struct LockedSettings;
}

// A setting of the host, addressed by number. The members and their meanings belong to the host.
enum QlSetting : int {};

// A store of typed settings. A setting is named by a QlSetting number, or by a registry section and entry,
// spelt alike each time (case counts here, though not in the registry), with no "<-^->" in the section;
// one of the second kind is read from the registry (settings/registry.h: current user first) when it is first
// asked for, and after that never again until it is cleared. Setting a value changes the store alone.
//
// One global store and any number of numbered stores ("contexts", for a piece of work that needs settings of
// its own) are kept by the static members. A thread attached to a context reads and writes that context's
// store, any other thread the global one:
//
//     int id = CQlsSettings::CreateThreadSettings();     // one reference, the creator's
//     CQlsSettings::GetSettings(id, true)->SetFromSerializedSettings(document);
//     CQlsSettings::AttachThreadSettings(id);            // on each thread that does the work; a reference
//     ...                                                // reads and writes on these threads use the context
//     CQlsSettings::DetachThreadSettings(id);
//     CQlsSettings::ReleaseThreadSettingsRef(id);        // at 0 references the store is gone, the id is free
//
// Every member, static or not, may be called from any thread at any time, also before Initialize and after
// Uninitialize (to Initialize once more, see there). A failure, running out of memory included, is answered
// by the result. Null texts count as empty; out-parameters must not be null. Texts end at their first zero.
//
// A name keeps the type it was first used with: through a function of another type, readers give the caller's
// default and false, writers change nothing and answer false. Callers must keep one type per name.
class QL_API CQlsSettings {
  public:
    CQlsSettings();  // one for which memory is too short answers every call with its failure
    virtual ~CQlsSettings();

    // Kept on purpose: a copy shares the settings (and their lock) with its original instead of duplicating
    // them; the abort flag is copied. Assigning to a store that other threads are using is not safe.
    CQlsSettings(const CQlsSettings& other) noexcept;
    CQlsSettings& operator=(const CQlsSettings& other) noexcept;

    // Settings by number. Only texts are kept on purpose: the boolean and integer members do nothing and
    // answer false, a getter's out-parameter is left alone. GetStrSetting answers whether a value was ever
    // set; reading an unset one keeps the default, so that a later reader gets this first default.
    bool SetStrSetting(QlSetting setting, const wchar_t* value);
    bool GetStrSetting(QlSetting setting, RWWString* value, const wchar_t* defaultValue);
    bool SetBoolSetting(QlSetting setting, bool value);
    bool GetBoolSetting(QlSetting setting, bool* value, bool defaultValue);
    bool SetIntSetting(QlSetting setting, int value);
    bool GetIntSetting(QlSetting setting, int* value, int defaultValue);
    bool ClearSetting(QlSetting setting);  // whether there was one

    // Settings by section and entry. A getter answers true when the value was set or found in the registry;
    // otherwise the out-parameter is the first reader's default. IsRegIntSettingSet answers false, on
    // purpose.
    bool GetRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool* value,
                           bool defaultValue = false);
    bool GetRegIntSetting(const wchar_t* section, const wchar_t* entry, int* value, int defaultValue = 0);
    bool GetRegStrSetting(const wchar_t* section, const wchar_t* entry, RWWString* value,
                          const wchar_t* defaultValue = nullptr);
    bool SetRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool value);
    bool SetRegIntSetting(const wchar_t* section, const wchar_t* entry, int value);
    bool SetRegStrSetting(const wchar_t* section, const wchar_t* entry, const wchar_t* value);
    bool ClearRegSetting(const wchar_t* section, const wchar_t* entry);  // whether there was one
    bool IsRegIntSettingSet(const wchar_t* section, const wchar_t* entry);

    // Asks the thread that works with this store to stop; the library itself never looks.
    bool GetAbort() const noexcept;
    void SetAbort() noexcept;
    void ClearAbort() noexcept;

    // The store as one JSON object on one line, members ordered by key:
    // {"12":"text","Section<-^->Entry":true}. Settings not read yet are read first, so an absent one is
    // written with its default.
    bool GetSerializedSettings(RWWString* json);  // the out-parameter is empty on failure

    // Sets what a document holds, leaving other settings as they are. A key is split at its first "<-^->";
    // one without it is taken as it stands, so that booleans and integers can stand under a number too.
    // Numbers are cut toward zero and held within 32 bits (no number gives 0). Members that are objects,
    // arrays or null are passed over, and those of another type than the name has; of a key that stands twice
    // the first counts. False, and nothing changes, when the text is null or no JSON object.
    bool SetFromSerializedSettings(const wchar_t* json);

    // Initialize makes the global store; TlsmInitialize (settings/thread_slots.h) comes before it. False
    // without a thread slot (the global store then works all the same; a later call takes a slot and keeps
    // the store) and when it has one already. Uninitialize destroys every store; pointers from GetSettings
    // end there, and threads that are still attached are attached to nothing. settings/scopes.h calls both.
    // Kept on purpose: Uninitialize gives the thread slot back, and TlsmFree then lets TlsmAlloc begin again
    // at 0. An Initialize that follows may so get a slot in which a host keeps pointers of its own, and would
    // take these for its records: a host with slots of its own ends them (TlsmUninitialize) as well, or makes
    // them null on every thread, before it initialises the settings again.
    static bool Initialize();
    static void Uninitialize();

    // InitializeThread is not needed: it gives a thread its record ahead, so that its reads wait for no other
    // thread; attaching does the same. At most once for each thread, after TlsmInitializeThread: what the
    // slot held is forgotten. UninitializeThread comes before TlsmUninitializeThread on each thread that was
    // initialised or attached. Kept on purpose: a thread that ends while attached does not give back its
    // reference; detach first.
    static bool InitializeThread();
    static void UninitializeThread();

    static int CreateThreadSettings();  // the lowest free id; -1 on failure

    // The new number of references. For id -1, which stands for the global store, 1 and nothing changes; for
    // an id never handed out 0. Releasing a context without references leaves it at 0.
    static int AddThreadSettingsRef(int id);
    static int ReleaseThreadSettingsRef(int id);

    // The id of the calling thread's context with a reference added, which the caller must release; -1 when
    // the thread is attached to none.
    static int GetCurThreadSettings();

    // A thread attached n times must detach n times before its reference goes. False, and nothing changes,
    // when the thread is not initialised or attached to another id, the id was never handed out, or there is
    // nothing to detach. For id -1, which stands for the global store, attaching is true and changes nothing.
    static bool AttachThreadSettings(int id);
    static bool DetachThreadSettings(int id);

    // The store of a context, owned by the library and valid while a reference is held. When the context has
    // no store yet: a new one if create is true, else the global store. For id -1 and ids never handed out:
    // the global store, or null when create is true. Null before Initialize.
    static CQlsSettings* GetSettings(int id, bool create);

    // The members of the same meaning on the calling thread's store; false (a getter's out-parameter
    // untouched) when there is no store at all. The first write, or clearing, of an attached thread makes
    // its context's store; until then it reads the global one, and from then on nothing of it. Kept on
    // purpose: the boolean and integer setters by number answer true.
    static bool SetThreadBoolSetting(QlSetting setting, bool value);
    static bool SetThreadIntSetting(QlSetting setting, int value);
    static bool SetThreadStrSetting(QlSetting setting, const wchar_t* value);
    static bool GetThreadBoolSetting(QlSetting setting, bool* value, bool defaultValue);
    static bool GetThreadIntSetting(QlSetting setting, int* value, int defaultValue);
    static bool GetThreadStrSetting(QlSetting setting, RWWString* value, const wchar_t* defaultValue);
    static bool SetThreadRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool value);
    static bool SetThreadRegIntSetting(const wchar_t* section, const wchar_t* entry, int value);
    static bool SetThreadRegStrSetting(const wchar_t* section, const wchar_t* entry, const wchar_t* value);
    static bool GetThreadRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool* value,
                                        bool defaultValue = false);
    static bool GetThreadRegIntSetting(const wchar_t* section, const wchar_t* entry, int* value,
                                       int defaultValue = 0);
    static bool GetThreadRegStrSetting(const wchar_t* section, const wchar_t* entry, RWWString* value,
                                       const wchar_t* defaultValue = nullptr);
    static bool ClearThreadRegSetting(const wchar_t* section, const wchar_t* entry);

    // The process's defaults. The setters write the current user's registry (a null text deletes the value)
    // and then the global store (which holds a null text as the empty one, and so hides the machine's value),
    // and no other writer comes in between; they answer false when only the
    // registry could be written. A store without memory for the value forgets the former one and reads the
    // registry again. The getters read the global store.
    static bool SetDefRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool value);
    static bool SetDefRegIntSetting(const wchar_t* section, const wchar_t* entry, int value);
    static bool SetDefRegStrSetting(const wchar_t* section, const wchar_t* entry, const wchar_t* value);
    static bool GetDefRegBoolSetting(const wchar_t* section, const wchar_t* entry, bool* value,
                                     bool defaultValue = false);
    static bool GetDefRegIntSetting(const wchar_t* section, const wchar_t* entry, int* value,
                                    int defaultValue = 0);
    static bool GetDefRegStrSetting(const wchar_t* section, const wchar_t* entry, RWWString* value,
                                    const wchar_t* defaultValue = nullptr);

  private:
    friend struct ql::LockedSettings;

    std::shared_ptr<ql::LockedSettings> state_;
    std::atomic<bool> abort_ = false;
};
