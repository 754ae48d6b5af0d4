#pragma once

// The texts that preferences are named by, one row a constant: a section is a key below the product's base key,
// an entry a value in it. They are part of the registry's format and must not change by a letter.
// settings/preference_keys.h declares a constant for each row.

#define QL_PREFERENCE_SECTIONS(ROW)                    \
    ROW(QLIS_ANNOTATION, L"Markup View")               \
    ROW(QLIS_ANSWER_ENTRY, L"Answer Entry")            \
    ROW(QLIS_ANSWER_FOLDER_STATUS, L"Answer Folder Status") \
    ROW(QLIS_ANSWER_SOURCES, L"Answer Sources")        \
    ROW(QLIS_ASSEMBLY, L"Assembly")                    \
    ROW(QLIS_DEFAULTS, L"Defaults")                    \
    ROW(QLIS_DEVELOPMENT, L"Development")              \
    ROW(QLIS_DIRECTORIES, L"Locations")                \
    ROW(QLIS_DISABLED_PLUGINS, L"Disabled Plugins")    \
    ROW(QLIS_DOCUMENT_MANAGEMENT, L"File Mgt")         \
    ROW(QLIS_GENERAL, L"General")                      \
    ROW(QLIS_INTERNAL, L"Internal")                    \
    ROW(QLIS_INTERVIEW, L"Interview")                  \
    ROW(QLIS_JAVASCRIPT, L"JavaScript")                \
    ROW(QLIS_LIBRARY_FOLDER_STATUS, L"Library Folder Status") \
    ROW(QLIS_MODELDOCUMENTS, L"Model Documents")       \
    ROW(QLIS_PERSONAL_INFO, L"Personal")               \
    ROW(QLIS_PLUGINS, L"Plugins")                      \
    ROW(QLIS_PROVIDER, L"Provider")                    \
    ROW(QLIS_RECENT, L"Recent")                        \
    ROW(QLIS_SPELL_CHECKING, L"Spelling")              \
    ROW(QLIS_SUMMARY, L"Summary")                      \
    ROW(QLIS_WINDOW, L"Window")                        \
    ROW(QLIS_WORD_PROC, L"Word Proc")

#define QL_PREFERENCE_ENTRIES(ROW)                            \
    ROW(QLIE_ANSWER_DIR, L"Answer Files")                     \
    ROW(QLIE_CATALOG_FILES_DIR, L"Catalog Files")             \
    ROW(QLIE_DICTIONARY_PATH, L"Personal Dictionary")         \
    ROW(QLIE_EXEC_PATH, L"Program Files")                     \
    ROW(QLIE_FORM_DOCUMENT_DIR, L"Form Document Files")       \
    ROW(QLIE_LAST_LIBRARY_FOLDER, L"Library Folder")          \
    ROW(QLIE_LIBRARY_DIR, L"Library Files")                   \
    ROW(QLIE_PUB_OPTIONS_DIR, L"Publish Settings Files")      \
    ROW(QLIE_SCRIPT_DIR, L"JavaScript Files")                 \
    ROW(QLIE_TEMPLATE_FILES_DIR, L"Template Files")           \
    ROW(QLIE_TEMPLATE_SET_DIR, L"Template Sets")              \
    ROW(QLIE_VERIFY_DATES, L"Verify Dates")
