// The markup options made from a warm store beside as many bare reads of the store.
#include <benchmark/benchmark.h>

#include <cwchar>
#include <iterator>
#include <string>
#include <vector>

#include "prefs/markup_options.h"
#include "settings/preference_keys.h"
#include "settings/settings_store.h"
#include "settings/thread_slots.h"

namespace {

// The started library. Nothing is stored, so that every reading after the first is the store's.
struct Library {
    Library() {
        TlsmInitialize();
        CQlsSettings::Initialize();
        TlsmInitializeThread();
        CQlsSettings::InitializeThread();
        const CPrettyTplOpt warm;
    }
    ~Library() {
        CQlsSettings::UninitializeThread();
        TlsmUninitializeThread();
        CQlsSettings::Uninitialize();
        TlsmUninitialize();
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

void StartLibrary() {
    static const Library library;
}

struct Entry {
    const wchar_t* section;
    std::wstring name;
};

// What the options read as text, and what as a boolean.
std::vector<Entry> TextEntries() {
    std::vector<Entry> entries;
    for (const wchar_t* pattern : {QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL, QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B,
                                   QLIE_TEXT_TEMPLATE_COLOR_TIERED, QLIE_TEXT_TEMPLATE_COLOR_TIERED_B}) {
        for (int level = 1; level <= 20; ++level) {
            wchar_t name[64];
            std::swprintf(name, std::size(name), pattern, level);
            entries.push_back({QLIS_DEVELOPMENT, name});
        }
    }
    for (const wchar_t* name :
         {QLIE_TEXT_TEMPLATE_COLOR_VARIABLE, QLIE_TEXT_TEMPLATE_COLOR_VARIABLE_B,
          QLIE_TEXT_TEMPLATE_COLOR_INSERT, QLIE_TEXT_TEMPLATE_COLOR_INSERT_B, QLIE_TEXT_TEMPLATE_COLOR_IF,
          QLIE_TEXT_TEMPLATE_COLOR_IF_B, QLIE_TEXT_TEMPLATE_COLOR_IF, QLIE_TEXT_TEMPLATE_COLOR_IF_B,
          QLIE_TEXT_TEMPLATE_COLOR_REPEAT, QLIE_TEXT_TEMPLATE_COLOR_REPEAT_B, QLIE_TEXT_TEMPLATE_COLOR_SPAN,
          QLIE_TEXT_TEMPLATE_COLOR_SPAN_B})
        entries.push_back({QLIS_DEVELOPMENT, name});
    for (const wchar_t* name :
         {QLIE_VAR_FIELD_BEGIN, QLIE_VAR_FIELD_END, QLIE_INS_FIELD_BEGIN, QLIE_INS_FIELD_END,
          QLIE_COND_TXT_BEGIN, QLIE_COND_TXT_END, QLIE_ALT_TXT_BEGIN, QLIE_ALT_TXT_END, QLIE_RPT_TXT_BEGIN,
          QLIE_RPT_TXT_END, QLIE_EDIT_TXT_BEGIN, QLIE_EDIT_TXT_END, QLIE_COLOR_SELECTION, QLIE_ANNOT_TYPE,
          QLIE_ANNOT_STYLE})
        entries.push_back({QLIS_ANNOTATION, name});
    return entries;
}

std::vector<Entry> BoolEntries() {
    std::vector<Entry> entries;
    for (const wchar_t* name :
         {QLIE_PROCESS_VAR_FIELD, QLIE_PROCESS_INS_FIELD, QLIE_PROCESS_COND_FIELD, QLIE_PROCESS_ALT_FIELD,
          QLIE_PROCESS_RPT_TXT, QLIE_PROCESS_EDIT_TXT, QLIE_USE_DEV_CMTS_FOR_ANS_FIELDS,
          QLIE_USE_DEV_CMTS_FOR_TEXT_BLOCKS, QLIE_USE_MC_OPTS, QLIE_ENCLOSE_LABELS, QLIE_LABEL_END_OF_FIELD,
          QLIE_ANNOTATE_FIELDS, QLIE_ANNOTATE_END, QLIE_BOLD_ANNOT_MARKERS, QLIE_BOLD_ANNOT_LABELS,
          QLIE_ITALIC_ANNOT_MARKERS, QLIE_ITALIC_ANNOT_LABELS, QLIE_COLOR_ANNOT_MARKERS,
          QLIE_COLOR_ANNOT_LABELS})
        entries.push_back({QLIS_ANNOTATION, name});
    return entries;
}

void MakeOptions(benchmark::State& state) {
    StartLibrary();
    for (auto _ : state) {
        const CPrettyTplOpt options;
        benchmark::DoNotOptimize(&options);
    }
}

void ReadStore(benchmark::State& state) {
    StartLibrary();
    const std::vector<Entry> texts = TextEntries();
    const std::vector<Entry> flags = BoolEntries();
    for (auto _ : state) {
        for (const Entry& entry : texts) {
            RWWString text;
            CQlsSettings::GetThreadRegStrSetting(entry.section, entry.name.c_str(), &text);
            benchmark::DoNotOptimize(text.data());
        }
        for (const Entry& entry : flags) {
            bool flag = false;
            CQlsSettings::GetThreadRegBoolSetting(entry.section, entry.name.c_str(), &flag);
            benchmark::DoNotOptimize(flag);
        }
    }
}

BENCHMARK(MakeOptions)->Name("markup options, warm store/ours");
BENCHMARK(ReadStore)->Name("markup options, warm store/126 bare reads");

}  // namespace
