#pragma once

// The texts that preferences are named by, one row a constant: a section is a key below the product's base
// key, an entry a value in it, and a constant that extends an entry's name one of the texts that the entry
// takes or an entry that depends on it. An entry that holds "%d" stands for numbered ones. The texts are part
// of the registry's format and must not change by a letter, odd spellings included.
// settings/preference_keys.h declares a constant for each row.

// ROW(constant, text)
#define QL_PREFERENCE_SECTIONS(ROW)                           \
    ROW(QLIS_ANNOTATION, L"Markup View")                      \
    ROW(QLIS_ANSWER_ENTRY, L"Answer Entry")                   \
    ROW(QLIS_ANSWER_FOLDER_STATUS, L"Answer Folder Status")   \
    ROW(QLIS_ANSWER_SOURCES, L"Answer Sources")               \
    ROW(QLIS_ASSEMBLY, L"Assembly")                           \
    ROW(QLIS_DEFAULTS, L"Defaults")                           \
    ROW(QLIS_DEVELOPMENT, L"Development")                     \
    ROW(QLIS_DIRECTORIES, L"Locations")                       \
    ROW(QLIS_DISABLED_PLUGINS, L"Disabled Plugins")           \
    ROW(QLIS_DOCUMENT_MANAGEMENT, L"File Mgt")                \
    ROW(QLIS_GENERAL, L"General")                             \
    ROW(QLIS_INTERNAL, L"Internal")                           \
    ROW(QLIS_INTERVIEW, L"Interview")                         \
    ROW(QLIS_JAVASCRIPT, L"JavaScript")                       \
    ROW(QLIS_LIBRARY_FOLDER_STATUS, L"Library Folder Status") \
    ROW(QLIS_MODELDOCUMENTS, L"Model Documents")              \
    ROW(QLIS_PERSONAL_INFO, L"Personal")                      \
    ROW(QLIS_PLUGINS, L"Plugins")                             \
    ROW(QLIS_PROVIDER, L"Provider")                           \
    ROW(QLIS_RECENT, L"Recent")                               \
    ROW(QLIS_SPELL_CHECKING, L"Spelling")                     \
    ROW(QLIS_SUMMARY, L"Summary")                             \
    ROW(QLIS_WINDOW, L"Window")                               \
    ROW(QLIS_WORD_PROC, L"Word Proc")

// ROW(constant, text), or DERIVED(constant, text) for a text that was made from the constant's name because
// no other is known. One rule makes them all: the words of the name, as the known texts of its family have
// them (SUMM, CMPEX, LAST and DEFAULT in front are left out, POPUP_ASSEMBLY is "Popup", TE_..._SHOW_SYMBOLS
// "TE ... Show"), capitalised but for as, at, by, for, from, in, into, of, on and to behind the first; DIR at
// the end is "Files", and an abbreviation is written out always alike: CMP Component, COMP Computation, INT
// Interview, OUT Outline, RPT Repeated, WP and WORDPROC Word Processor.
#define QL_PREFERENCE_ENTRIES(ROW, DERIVED)                                                                \
    DERIVED(QLIE_DEFAULT_DATE_FORMAT, L"Date Format")                                                      \
    ROW(QLIE_DEFAULT_TF_GROUPING_NONE, L"None")                                                            \
    ROW(QLIE_DEFAULT_TF_GROUPING_SELECT_APPLY, L"Select All that Apply")                                   \
    ROW(QLIE_DEFAULT_TF_GROUPING_SELECT_ONE, L"Select One")                                                \
    ROW(QLIE_DEFAULT_TF_GROUPING, L"True False Grouping")                                                  \
    ROW(QLIE_COLOR_SELECTION, L"Color Selection")                                                          \
    ROW(QLIE_COLOR_ANNOT_LABELS, L"Color Labels")                                                          \
    ROW(QLIE_COLOR_ANNOT_MARKERS, L"Color Markers")                                                        \
    DERIVED(QLIE_COLOR_EXPLANATION, L"Color Explanation")                                                  \
    DERIVED(QLIE_COLOR_PAIRED_FIELD_MARKER, L"Color Paired Field Marker")                                  \
    DERIVED(QLIE_COLOR_FIELD_MARKERS, L"Color Field Markers")                                              \
    ROW(QLIE_BOLD_ANNOT_LABELS, L"Bold Labels")                                                            \
    ROW(QLIE_BOLD_ANNOT_MARKERS, L"Bold Markers")                                                          \
    DERIVED(QLIE_BOLD_PAIRED_FIELD_MARKER, L"Bold Paired Field Marker")                                    \
    DERIVED(QLIE_BOLD_FIELD_MARKERS, L"Bold Field Markers")                                                \
    ROW(QLIE_USE_MC_OPTS, L"Use Multiple Choice Options")                                                  \
    DERIVED(QLIE_USE_MIN_MARKUP, L"Use Minimum Markup")                                                    \
    ROW(QLIE_USE_DEV_CMTS_FOR_TEXT_BLOCKS, L"Use Developer Comments For Text Blocks")                      \
    ROW(QLIE_USE_DEV_CMTS_FOR_ANS_FIELDS, L"Use Developer Comments For Answer Fields")                     \
    DERIVED(QLIE_USE_TEST_DIALOG_VIEW_COLORS, L"Use Test Dialog View Colors")                              \
    DERIVED(QLIE_USE_TEST_FUNCTIONS, L"Use Test Functions")                                                \
    DERIVED(QLIE_USE_UK_DICTIONARY, L"Use UK Dictionary")                                                  \
    ROW(QLIE_PROCESS_EDIT_TXT, L"Process Editable Text")                                                   \
    ROW(QLIE_PROCESS_RPT_TXT, L"Process Repeated Text")                                                    \
    ROW(QLIE_PROCESS_ALT_FIELD, L"Process Alternative Text")                                               \
    ROW(QLIE_PROCESS_COND_FIELD, L"Process Conditional Text")                                              \
    ROW(QLIE_PROCESS_INS_FIELD, L"Process Insertion Field")                                                \
    ROW(QLIE_PROCESS_VAR_FIELD, L"Process Variable Field")                                                 \
    ROW(QLIE_VAR_FIELD_END, L"Variable Field End")                                                         \
    ROW(QLIE_VAR_FIELD_BEGIN, L"Variable Field Begin")                                                     \
    DERIVED(QLIE_VAR_SHEET_WIDTH_COL_4, L"Variable Sheet Width Column 4")                                  \
    DERIVED(QLIE_VAR_SHEET_WIDTH_COL_3, L"Variable Sheet Width Column 3")                                  \
    DERIVED(QLIE_VAR_SHEET_WIDTH_COL_2, L"Variable Sheet Width Column 2")                                  \
    DERIVED(QLIE_VAR_SHEET_WIDTH_COL_1, L"Variable Sheet Width Column 1")                                  \
    DERIVED(QLIE_DIALOG_PROCESSING, L"Dialog Processing")                                                  \
    DERIVED(QLIE_DIALOG_ITEM_IMAGES, L"Dialog Item Images")                                                \
    DERIVED(QLIE_DIALOG_ITEM_COMPONENT, L"Dialog Item Component")                                          \
    DERIVED(QLIE_DIALOG_SCRIPT_SPLITTER, L"Dialog Script Splitter")                                        \
    DERIVED(QLIE_DIALOG_COMPONENT, L"Dialog Component")                                                    \
    DERIVED(QLIE_DIALOG_FONT_SIZE, L"Dialog Font Size")                                                    \
    DERIVED(QLIE_DIALOG_FONT_NAME, L"Dialog Font Name")                                                    \
    DERIVED(QLIE_TE_UPDATE_TOC, L"TE Update Table of Contents")                                            \
    DERIVED(QLIE_TE_CLAUSEPREVIEW_ZOOM, L"TE Clause Preview Zoom")                                         \
    DERIVED(QLIE_TE_COMPARERIGHT_ZOOM, L"TE Compare Right Zoom")                                           \
    DERIVED(QLIE_TE_COMPARELEFT_ZOOM, L"TE Compare Left Zoom")                                             \
    DERIVED(QLIE_TE_DOCPREV_ZOOM, L"TE Document Preview Zoom")                                             \
    DERIVED(QLIE_TE_ZOOM, L"TE Zoom")                                                                      \
    ROW(QLIE_TE_LAYOUT_PRINT, L"Print")                                                                    \
    ROW(QLIE_TE_LAYOUT_DRAFT, L"Draft")                                                                    \
    DERIVED(QLIE_TE_CLAUSEPREVIEW_LAYOUT, L"TE Clause Preview Layout")                                     \
    DERIVED(QLIE_TE_COMPARERIGHT_LAYOUT, L"TE Compare Right Layout")                                       \
    DERIVED(QLIE_TE_COMPARELEFT_LAYOUT, L"TE Compare Left Layout")                                         \
    DERIVED(QLIE_TE_DOCPREV_LAYOUT, L"TE Document Preview Layout")                                         \
    ROW(QLIE_TE_LAYOUT, L"TE Layout")                                                                      \
    ROW(QLIE_TE_SHOW_SYMBOLS_NONE, L"None")                                                                \
    ROW(QLIE_TE_SHOW_SYMBOLS_ALL, L"All")                                                                  \
    DERIVED(QLIE_TE_CLAUSEPREVIEW_SHOW_SYMBOLS, L"TE Clause Preview Show")                                 \
    DERIVED(QLIE_TE_COMPARERIGHT_SHOW_SYMBOLS, L"TE Compare Right Show")                                   \
    DERIVED(QLIE_TE_COMPARELEFT_SHOW_SYMBOLS, L"TE Compare Left Show")                                     \
    DERIVED(QLIE_TE_DOCPREV_SHOW_SYMBOLS, L"TE Document Preview Show")                                     \
    ROW(QLIE_TE_SHOW_SYMBOLS, L"TE Show")                                                                  \
    DERIVED(QLIE_EOI_CHECK_OVERFLOWING_FIELDS, L"End of Interview Check Overflowing Fields")               \
    DERIVED(QLIE_EOI_CLOSE_PASTE, L"End of Interview Close Paste")                                         \
    DERIVED(QLIE_EOI_CLOSE_SEND_WP, L"End of Interview Close Send Word Processor")                         \
    DERIVED(QLIE_EOI_CLOSE_SEND_CB, L"End of Interview Close Send Clipboard")                              \
    DERIVED(QLIE_EOI_CLOSE_SAVE_PDF, L"End of Interview Close Save PDF")                                   \
    DERIVED(QLIE_EOI_CLOSE_SAVE_DOC, L"End of Interview Close Save Document")                              \
    DERIVED(QLIE_EOI_ACTION_FORM_SEND_TO_FILLER, L"End of Interview Action Form Send to Filler")           \
    DERIVED(QLIE_EOI_ACTION_TEXT_SEND_TO_WORDPROC, L"End of Interview Action Text Send to Word Processor") \
    DERIVED(QLIE_EOI_BUTTON_ADD_REMOVE_BUTTONS, L"End of Interview Button Add Remove Buttons")             \
    DERIVED(QLIE_EOI_BUTTON_SAVE_TO_FILE, L"End of Interview Button Save to File")                         \
    DERIVED(QLIE_EOI_BUTTON_CLOSE_NO_SAVE, L"End of Interview Button Close No Save")                       \
    DERIVED(QLIE_EOI_BUTTON_SAVE_AS_PDF, L"End of Interview Button Save as PDF")                           \
    DERIVED(QLIE_EOI_BUTTON_COPY_TO_CLIPBOARD, L"End of Interview Button Copy to Clipboard")               \
    DERIVED(QLIE_EOI_BUTTON_PASTE_INTO_WORDPROC, L"End of Interview Button Paste into Word Processor")     \
    DERIVED(QLIE_EOI_BUTTON_SEND_TO_WORDPROC, L"End of Interview Button Send to Word Processor")           \
    DERIVED(QLIE_EOI_BUTTON_VIEW_FORM_TAB, L"End of Interview Button View Form Tab")                       \
    DERIVED(QLIE_EOI_BUTTON_SEND_TO_FILLER, L"End of Interview Button Send to Filler")                     \
    DERIVED(QLIE_EOI_BUTTON_GOTO_FIRST_UNANS, L"End of Interview Button Go to First Unanswered")           \
    DERIVED(QLIE_SHOW_HELP_BUTTON, L"Show Help Button")                                                    \
    DERIVED(QLIE_SHOW_HELP_INFO, L"Show Help Info")                                                        \
    DERIVED(QLIE_SHOW_TEST_PANEL, L"Show Test Panel")                                                      \
    DERIVED(QLIE_SHOW_REQUIRED_ASTERISK, L"Show Required Asterisk")                                        \
    ROW(QLIE_SHOW_RESOURCE_BUTTONS_ALL, L"For all fields with a resource")                                 \
    ROW(QLIE_SHOW_RESOURCE_BUTTONS_CURRENT, L"For the current field only")                                 \
    ROW(QLIE_SHOW_RESOURCE_BUTTONS, L"Resource Button")                                                    \
    DERIVED(QLIE_SHOW_MERGE_COMPARISON, L"Show Merge Comparison")                                          \
    ROW(QLIE_ASSEMBLY_QUEUE_AUTO, L"Queue Auto")                                                           \
    ROW(QLIE_ASSEMBLY_QUEUE, L"Queue Show")                                                                \
    DERIVED(QLIE_ASSEMBLY_TABS_AT_BOTTOM, L"Assembly Tabs at Bottom")                                      \
    ROW(QLIE_ASSEMBLY_QUEUE_POS, L"Assembly Queue")                                                        \
    DERIVED(QLIE_ASSEMBLY_TEST_DOC_RESOURCE_HEIGHT, L"Assembly Test Document Resource Height")             \
    DERIVED(QLIE_ASSEMBLY_TEST_VAR_RESOURCE_HEIGHT, L"Assembly Test Variable Resource Height")             \
    DERIVED(QLIE_ASSEMBLY_TEST_INT_RESOURCE_HEIGHT, L"Assembly Test Interview Resource Height")            \
    DERIVED(QLIE_ASSEMBLY_TEST_PLACEMENT, L"Assembly Test Placement")                                      \
    DERIVED(QLIE_ASSEMBLY_DB_MSEL_HEIGHT, L"Assembly Database Multiple Select Height")                     \
    DERIVED(QLIE_ASSEMBLY_ANS_SHEET, L"Assembly Answer Sheet")                                             \
    DERIVED(QLIE_ASSEMBLY_FORM_DOC_TAB, L"Assembly Form Document Tab")                                     \
    DERIVED(QLIE_ASSEMBLY_TEXT_DOC_TAB, L"Assembly Text Document Tab")                                     \
    DERIVED(QLIE_ASSEMBLY_QUES_SUMMARY, L"Assembly Question Summary")                                      \
    DERIVED(QLIE_ASSEMBLY_ANS_SUMMARY, L"Assembly Answer Summary")                                         \
    DERIVED(QLIE_ASSEMBLY_DOC_RESOURCE_HEIGHT, L"Assembly Document Resource Height")                       \
    DERIVED(QLIE_ASSEMBLY_VAR_RESOURCE_HEIGHT, L"Assembly Variable Resource Height")                       \
    DERIVED(QLIE_ASSEMBLY_INT_RESOURCE_HEIGHT, L"Assembly Interview Resource Height")                      \
    DERIVED(QLIE_ASSEMBLY_RESOURCE_VARSHEET, L"Assembly Resource Variable Sheet")                          \
    DERIVED(QLIE_ASSEMBLY_RESOURCE_FORM, L"Assembly Resource Form")                                        \
    DERIVED(QLIE_ASSEMBLY_RESOURCE_DLG, L"Assembly Resource Dialog")                                       \
    DERIVED(QLIE_ASSEMBLY_RESOURCES, L"Assembly Resources")                                                \
    DERIVED(QLIE_ASSEMBLY_INT_OUTLINE_WIDTH, L"Assembly Interview Outline Width")                          \
    DERIVED(QLIE_ASSEMBLY_END_OF_INT, L"Assembly End of Interview")                                        \
    DERIVED(QLIE_ASSEMBLY_OUTLINE, L"Assembly Outline")                                                    \
    DERIVED(QLIE_ASSEMBLY_STATUSBAR, L"Assembly Status Bar")                                               \
    DERIVED(QLIE_ASSEMBLY_AUTO_ARRANGE_TOOLBARS, L"Assembly Auto Arrange Toolbars")                        \
    DERIVED(QLIE_ASSEMBLY_TOOLBAR_RPTS, L"Assembly Toolbar Reports")                                       \
    DERIVED(QLIE_ASSEMBLY_TOOLBAR_DOCUMENTS, L"Assembly Toolbar Documents")                                \
    DERIVED(QLIE_ASSEMBLY_TOOLBAR_FORMS, L"Assembly Toolbar Forms")                                        \
    DERIVED(QLIE_ASSEMBLY_TOOLBAR_DIALOGS, L"Assembly Toolbar Dialogs")                                    \
    DERIVED(QLIE_ASSEMBLY_TOOLBAR_EDIT, L"Assembly Toolbar Edit")                                          \
    DERIVED(QLIE_ASSEMBLY_TOOLBAR_STANDARD, L"Assembly Toolbar Standard")                                  \
    DERIVED(QLIE_ASSEMBLY_PLACEMENT, L"Assembly Placement")                                                \
    DERIVED(QLIE_ASSEMBLY_COLORS, L"Assembly Colors")                                                      \
    DERIVED(QLIE_DATE_FMTS, L"Date Formats")                                                               \
    DERIVED(QLIE_DATE_COMPONENT, L"Date Component")                                                        \
    ROW(QLIE_DATE_FORMAT_15_6_1990, L"15/6/2017")                                                          \
    ROW(QLIE_DATE_FORMAT_6_15_1990, L"6/15/2017")                                                          \
    ROW(QLIE_DATE_FORMAT_JUNE_3_1990, L"January 1, 2017")                                                  \
    ROW(QLIE_DATE_FORMAT_3_JUN_1990, L"1 Jan 2017")                                                        \
    ROW(QLIE_DATE_FORMAT, L"Date Display Format")                                                          \
    ROW(QLIE_DATE_ORDER_DMY, L"Day Month Year")                                                            \
    ROW(QLIE_DATE_ORDER, L"Date Detection")                                                                \
    ROW(QLIE_DATE_ORDER_MDY, L"Month Day Year")                                                            \
    DERIVED(QLIE_TEXT_FMTS, L"Text Formats")                                                               \
    DERIVED(QLIE_TEXT_COMPONENT, L"Text Component")                                                        \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B, L"Template Sequential B %d")                                \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL, L"Template Sequential %d")                                    \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_TIERED_B, L"Template Nested B %d")                                        \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_TIERED, L"Template Nested %d")                                            \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_SPAN_B, L"Template Span B")                                               \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_SPAN, L"Template Span")                                                   \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_COMMENT_B, L"Template Comment B")                                         \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_COMMENT, L"Template Comment")                                             \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_ASK_B, L"Template Ask B")                                                 \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_ASK, L"Template Ask")                                                     \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_INSERT_B, L"Template Insert B")                                           \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_INSERT, L"Template Insert")                                               \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_IF_B, L"Template If B")                                                   \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_IF, L"Template If")                                                       \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_REPEAT_B, L"Template Repeat B")                                           \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_REPEAT, L"Template Repeat")                                               \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_VARIABLE_B, L"Template Var B")                                            \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_VARIABLE, L"Template Var")                                                \
    DERIVED(QLIE_TEST_PANEL_PLACEMENT, L"Test Panel Placement")                                            \
    DERIVED(QLIE_TEST_ASSEMBLY_ANS_SHEET, L"Test Assembly Answer Sheet")                                   \
    DERIVED(QLIE_TEST_ASSEMBLY_QUES_SUMMARY, L"Test Assembly Question Summary")                            \
    DERIVED(QLIE_TEST_ASSEMBLY_ANS_SUMMARY, L"Test Assembly Answer Summary")                               \
    DERIVED(QLIE_TEST_ASSEMBLY_RESOURCE_VARSHEET, L"Test Assembly Resource Variable Sheet")                \
    DERIVED(QLIE_TEST_ASSEMBLY_RESOURCE_FORM, L"Test Assembly Resource Form")                              \
    DERIVED(QLIE_TEST_ASSEMBLY_RESOURCE_DLG, L"Test Assembly Resource Dialog")                             \
    DERIVED(QLIE_TEST_ASSEMBLY_RESOURCES, L"Test Assembly Resources")                                      \
    DERIVED(QLIE_TEST_ASSEMBLY_OUTLINE, L"Test Assembly Outline")                                          \
    ROW(QLIE_TEST_ASSEMBLY_ON_TOP_NEVER, L"Never")                                                         \
    ROW(QLIE_TEST_ASSEMBLY_ON_TOP_TEXT_TEMPLATES, L"For text templates only")                              \
    ROW(QLIE_TEST_ASSEMBLY_ON_TOP_ALWAYS, L"Always")                                                       \
    ROW(QLIE_TEST_ASSEMBLY_ON_TOP, L"Test Assembly on Top")                                                \
    DERIVED(QLIE_TEST_ANSWER_FILE, L"Test Answer File")                                                    \
    DERIVED(QLIE_SORT_BY_TYPE_USED_IN_TAB, L"Sort by Type Used in Tab")                                    \
    DERIVED(QLIE_SORT_BY_TYPE_DLG_SCRIPT, L"Sort by Type Dialog Script")                                   \
    DERIVED(QLIE_SORT_BY_TYPE_IF_FIELD, L"Sort by Type If Field")                                          \
    DERIVED(QLIE_SORT_BY_TYPE_DB_EDITOR, L"Sort by Type Database Editor")                                  \
    DERIVED(QLIE_SORT_BY_TYPE_COMP_EDITOR, L"Sort by Type Computation Editor")                             \
    DERIVED(QLIE_SORT_BY_TYPE_DLG_EDITOR, L"Sort by Type Dialog Editor")                                   \
    DERIVED(QLIE_SORT_BY_TYPE_COMPMAN2, L"Sort by Type Component Manager 2")                               \
    DERIVED(QLIE_SORT_BY_TYPE_COMPMAN1, L"Sort by Type Component Manager 1")                               \
    DERIVED(QLIE_POPUP_RESOURCES, L"Popup Resources")                                                      \
    DERIVED(QLIE_POPUP_ASSEMBLY_PLIST_DLG, L"Popup Parameter List Dialog")                                 \
    ROW(QLIE_POPUP_ASSEMBLY_DLG_SHEIGHT, L"Popup Dialog Splitter")                                         \
    ROW(QLIE_POPUP_ASSEMBLY_DLG, L"Popup Dialog")                                                          \
    DERIVED(QLIE_PUBLISHING_UPLOAD_PLACEMENT, L"Publishing Upload Placement")                              \
    DERIVED(QLIE_PUBLISHING_UPLOAD_FRIENDLY, L"Publishing Upload Friendly")                                \
    DERIVED(QLIE_PUBLISHING_UPLOAD_URL, L"Publishing Upload URL")                                          \
    DERIVED(QLIE_PUBLISHING_FOLDER, L"Publishing Folder")                                                  \
    DERIVED(QLIE_ANSWER_CONTENTS_WIDTH_COL_3, L"Answer Contents Width Column 3")                           \
    DERIVED(QLIE_ANSWER_CONTENTS_WIDTH_COL_2, L"Answer Contents Width Column 2")                           \
    DERIVED(QLIE_ANSWER_CONTENTS_WIDTH_COL_1, L"Answer Contents Width Column 1")                           \
    DERIVED(QLIE_ANSWER_UPLOAD_DIR, L"Answer Upload Files")                                                \
    ROW(QLIE_ANSWER_DIR, L"Answer Files")                                                                  \
    DERIVED(QLIE_COMPONENT_EXPLORER_COLWIDTHS, L"Component Explorer Column Widths")                        \
    DERIVED(QLIE_COMPONENT_EXPLORER_PLACEMENT, L"Component Explorer Placement")                            \
    DERIVED(QLIE_COMPONENT_MANAGER_FOLDED_WIDTH, L"Component Manager Folded Width")                        \
    DERIVED(QLIE_COMPONENT_MANAGER_UNFOLDED_WIDTH, L"Component Manager Unfolded Width")                    \
    DERIVED(QLIE_COMPONENT_FILE_CONVERSION, L"Component File Conversion")                                  \
    DERIVED(QLIE_COMPONENT_EDITOR_SAVE_WARNING, L"Component Editor Save Warning")                          \
    DERIVED(QLIE_MAIN_VIEW_MARKUP_VIEW, L"Main View Markup View")                                          \
    DERIVED(QLIE_MAIN_VIEW_FILE_NAMES, L"Main View File Names")                                            \
    DERIVED(QLIE_MAIN_TABS_AT_TOP, L"Main Tabs at Top")                                                    \
    DERIVED(QLIE_MAIN_PREVIEW, L"Main Preview")                                                            \
    DERIVED(QLIE_MAIN_PROPERTIES, L"Main Properties")                                                      \
    DERIVED(QLIE_MAIN_STATUSBAR, L"Main Status Bar")                                                       \
    DERIVED(QLIE_END_MARKER_FOLLOWS_EXPLANATION, L"End Marker Follows Explanation")                        \
    DERIVED(QLIE_END_SPAN_FIELD_MARKER, L"End Span Field Marker")                                          \
    DERIVED(QLIE_END_REPEAT_FIELD_MARKER, L"End Repeat Field Marker")                                      \
    DERIVED(QLIE_END_IF_FIELD_MARKER, L"End If Field Marker")                                              \
    DERIVED(QLIE_HIDE_SPAN_FIELDS, L"Hide Span Fields")                                                    \
    DERIVED(QLIE_HIDE_ASK_FIELDS, L"Hide Ask Fields")                                                      \
    DERIVED(QLIE_HIDE_ASSEMBLE_FIELDS, L"Hide Assemble Fields")                                            \
    DERIVED(QLIE_HIDE_INSERT_FIELDS, L"Hide Insert Fields")                                                \
    ROW(QLIE_INSERT_RETURNS_SMART, L"Smart")                                                               \
    ROW(QLIE_INSERT_RETURNS_NEVER, L"Never")                                                               \
    ROW(QLIE_INSERT_RETURNS_ALWAYS, L"Always")                                                             \
    ROW(QLIE_INSERT_RETURNS, L"Insert Returns")                                                            \
    DERIVED(QLIE_SCRIPT_EDITOR_DIALOG_MINMAX_KEY, L"Script Editor Dialog Minmax Key")                      \
    DERIVED(QLIE_SCRIPT_EDITOR_TAB_KEY, L"Script Editor Tab Key")                                          \
    DERIVED(QLIE_SCRIPT_EDITOR_SELDOM_USED_KEYWORDS, L"Script Editor Seldom Used Keywords")                \
    DERIVED(QLIE_SCRIPT_EDITOR_SYNTAX_COLOR, L"Script Editor Syntax Color")                                \
    DERIVED(QLIE_SCRIPT_EDITOR_AUTO_INDENT, L"Script Editor Auto Indent")                                  \
    DERIVED(QLIE_SCRIPT_EDITOR_TAB_WIDTH, L"Script Editor Tab Width")                                      \
    DERIVED(QLIE_SCRIPT_EDITOR_FONT, L"Script Editor Font")                                                \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_UNRECOGNIZED, L"Script Editor Color Unrecognized")                    \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_COMMENTS, L"Script Editor Color Comments")                            \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_OPERATORS, L"Script Editor Color Operators")                          \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_PLACEHOLDERS, L"Script Editor Color Placeholders")                    \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_OTHER_VALUES, L"Script Editor Color Other Values")                    \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_TEXT_VALUES, L"Script Editor Color Text Values")                      \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_LOCALS, L"Script Editor Color Locals")                                \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_COMPONENTS, L"Script Editor Color Components")                        \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_EXPRESSION_KEYWORDS, L"Script Editor Color Expression Keywords")      \
    DERIVED(QLIE_SCRIPT_EDITOR_COLOR_INSTRUCTION_KEYWORDS, L"Script Editor Color Instruction Keywords")    \
    ROW(QLIE_SCRIPT_DIR, L"JavaScript Files")                                                              \
    DERIVED(QLIE_CMPEX_SHOW_SELECTED, L"Show Selected")                                                    \
    ROW(QLIE_CMPEX_SHOW_STATUS_HINTS, L"Show Status Hints")                                                \
    ROW(QLIE_CMPEX_SHOW_STATUS, L"Show Status")                                                            \
    DERIVED(QLIE_CMPEX_SHOW_DESCRIPTIONS, L"Show Descriptions")                                            \
    DERIVED(QLIE_CMPEX_SHOW_SUPPLEMENTAL, L"Show Supplemental")                                            \
    DERIVED(QLIE_CMPEX_ICON_STYLE, L"Icon Style")                                                          \
    DERIVED(QLIE_SUMM_HONOR_ANSWERED_IF, L"Honor Answered If")                                             \
    DERIVED(QLIE_SUMM_MAX_MC, L"Maximum Multiple Choice")                                                  \
    DERIVED(QLIE_SUMM_PROMPT_PERCENT, L"Prompt Percent")                                                   \
    ROW(QLIE_SUMM_BORDERS_SCULPTURED, L"Sculptured")                                                       \
    ROW(QLIE_SUMM_BORDERS_PLAIN, L"Plain")                                                                 \
    ROW(QLIE_SUMM_BORDERS_NONE, L"None")                                                                   \
    ROW(QLIE_SUMM_BORDERS, L"Borders")                                                                     \
    DERIVED(QLIE_SUMM_BULLET_ANSWERS, L"Bullet Answers")                                                   \
    DERIVED(QLIE_SUMM_INDENT_ANSWERS, L"Indent Answers")                                                   \
    DERIVED(QLIE_SUMM_BULLET_PROMPTS, L"Bullet Prompts")                                                   \
    DERIVED(QLIE_SUMM_INDENT_PROMPTS, L"Indent Prompts")                                                   \
    ROW(QLIE_SUMM_FORMAT_TWO_COL, L"Two-Column")                                                           \
    ROW(QLIE_SUMM_FORMAT_ONE_COL, L"One-Column")                                                           \
    ROW(QLIE_SUMM_FORMAT, L"Format")                                                                       \
    ROW(QLIE_EXPAND_TO_DISPLAY_ACTIVE_ENTRY_NONE, L"Not at all")                                           \
    ROW(QLIE_EXPAND_TO_DISPLAY_ACTIVE_ENTRY_PARTIAL, L"Partially")                                         \
    ROW(QLIE_EXPAND_TO_DISPLAY_ACTIVE_ENTRY_FULL, L"Completely")                                           \
    ROW(QLIE_EXPAND_TO_DISPLAY_ACTIVE_ENTRY, L"Auto-expand")                                               \
    ROW(QLIE_REFORMAT_ANSWER_FIELD_ACTION_STAY, L"Don't leave dialog")                                     \
    ROW(QLIE_REFORMAT_ANSWER_FIELD_ACTION_PAUSE, L"Pause before leaving dialog")                           \
    ROW(QLIE_REFORMAT_ANSWER_FIELD_ACTION_LEAVE, L"Leave dialog anyway")                                   \
    ROW(QLIE_REFORMAT_ANSWER_FIELD_ACTION, L"Answer Reformat")                                             \
    ROW(QLIE_ENTER_KEY_MULTIPLE_SINGLE_LINE_BEHAVIOR, L"Same as single-line fields")                       \
    ROW(QLIE_ENTER_KEY_MULTIPLE_NEW_LINE, L"Insert new line character")                                    \
    ROW(QLIE_ENTER_KEY_MULTIPLE, L"Multiple Line Enter")                                                   \
    ROW(QLIE_ENTER_KEY_SINGLE_DISABLED, L"No action")                                                      \
    ROW(QLIE_ENTER_KEY_SINGLE_NEXT_DIALOG, L"Next dialog")                                                 \
    ROW(QLIE_ENTER_KEY_SINGLE_NEXT_FIELD, L"Next answer field")                                            \
    ROW(QLIE_ENTER_KEY_SINGLE, L"Single Line Enter")                                                       \
    DERIVED(QLIE_DISPLAY_NEXT_FIRST_IN_TAB_ORDER, L"Display Next First in Tab Order")                      \
    DERIVED(QLIE_DISPLAY_NAVBAR_FORM, L"Display Navigation Bar Form")                                      \
    DERIVED(QLIE_DISPLAY_NAVBAR_DOCUMENT, L"Display Navigation Bar Document")                              \
    DERIVED(QLIE_DISPLAY_NAVBAR_COMPARE, L"Display Navigation Bar Compare")                                \
    DERIVED(QLIE_DISPLAY_NAVIGATION_PANEL, L"Display Navigation Panel")                                    \
    DERIVED(QLIE_DISPLAY_REPEAT_ENTRIES, L"Display Repeat Entries")                                        \
    ROW(QLIE_LAST_LIBRARY_FOLDER, L"Library Folder")                                                       \
    DERIVED(QLIE_LAST_SAVED_SNAPSHOT, L"Saved Snapshot")                                                   \
    DERIVED(QLIE_LAST_TEMPLATE_COPY_FOLDER, L"Template Copy Folder")                                       \
    DERIVED(QLIE_LAST_TEMPLATE_MOVE_FOLDER, L"Template Move Folder")                                       \
    DERIVED(QLIE_LAST_LIB, L"Library")                                                                     \
    ROW(QLIE_LAST_ANS_FILE_TITLE, L"Answer File Title %d")                                                 \
    ROW(QLIE_LAST_ANS_FILE, L"Answer File %d")                                                             \
    DERIVED(QLIE_DOCPREV_UNANSWERED_COLOR, L"Document Preview Unanswered Color")                           \
    DERIVED(QLIE_DOCPREV_MODIFIED_COLOR, L"Document Preview Modified Color")                               \
    DERIVED(QLIE_DOCPREV_MODIFIABLE_COLOR, L"Document Preview Modifiable Color")                           \
    DERIVED(QLIE_DOCPREV_ANSWER_COLOR, L"Document Preview Answer Color")                                   \
    DERIVED(QLIE_DOCPREV_MARKUP_VIEW, L"Document Preview Markup View")                                     \
    DERIVED(QLIE_DOCPREV_INSTANT_UPDATE, L"Document Preview Instant Update")                               \
    DERIVED(QLIE_DOCPREV_SHOW_ANSWERS, L"Document Preview Show Answers")                                   \
    DERIVED(QLIE_INTERNET_URL_UPDATE_ONCE, L"Internet URL Update Once")                                    \
    DERIVED(QLIE_INTERNET_URL_UPDATE_NEVER, L"Internet URL Update Never")                                  \
    DERIVED(QLIE_INTERNET_URL_UPDATE_ALWAYS, L"Internet URL Update Always")                                \
    DERIVED(QLIE_INTERNET_URL_UPDATE_FREQUENCY, L"Internet URL Update Frequency")                          \
    DERIVED(QLIE_UNANSWERED_WARNING, L"Unanswered Warning")                                                \
    ROW(QLIE_UNANSWERED_FORMAT_VARIABLE, L"*** Variable ***")                                              \
    ROW(QLIE_UNANSWERED_FORMAT_VARIABLE_BRACKET, L"[Variable]")                                            \
    ROW(QLIE_UNANSWERED_FORMAT_UNDERSCORE, L"Underscores")                                                 \
    ROW(QLIE_UNANSWERED_FORMAT_ASTERISK, L"Asterisks")                                                     \
    ROW(QLIE_UNANSWERED_FORMAT_NOTHING, L"Nothing")                                                        \
    ROW(QLIE_UNANSWERED_FORMAT, L"Unanswered Variable")                                                    \
    DERIVED(QLIE_ODMA_DEF_SAVE_RTF_DOCS_AS, L"ODMA Default Save RTF Documents as")                         \
    DERIVED(QLIE_ODMA_DEF_SAVE_PLAINTEXT_DOCS_AS, L"ODMA Default Save Plaintext Documents as")             \
    DERIVED(QLIE_ODMA_DEF_SAVE_WP_DOCS_AS, L"ODMA Default Save Word Processor Documents as")               \
    DERIVED(QLIE_ODMA_DEF_SAVE_WORD_DOCS_AS, L"ODMA Default Save Word Documents as")                       \
    DERIVED(QLIE_ODMA_DEF_SAVE_DOCX_DOCS_AS, L"ODMA Default Save DOCX Documents as")                       \
    DERIVED(QLIE_ODMA_DEF_SAVE_PDF_DOCS_AS, L"ODMA Default Save PDF Documents as")                         \
    DERIVED(QLIE_ODMA_DEF_SAVE_F_PDF_DOCS_AS, L"ODMA Default Save F PDF Documents as")                     \
    DERIVED(QLIE_ODMA_DEF_SAVE_ENVOY_DOCS_AS, L"ODMA Default Save Envoy Documents as")                     \
    DERIVED(QLIE_ODMA_DEF_SAVE_ANSWERS_AS, L"ODMA Default Save Answers as")                                \
    DERIVED(QLIE_ODMA_SAVE_WP_DOCS_AS, L"ODMA Save Word Processor Documents as")                           \
    DERIVED(QLIE_ODMA_SAVE_WORD_DOCS_AS, L"ODMA Save Word Documents as")                                   \
    DERIVED(QLIE_ODMA_SAVE_DOCX_DOCS_AS, L"ODMA Save DOCX Documents as")                                   \
    DERIVED(QLIE_ODMA_SAVE_RTF_DOCS_AS, L"ODMA Save RTF Documents as")                                     \
    DERIVED(QLIE_ODMA_SAVE_F_PDF_DOCS_AS, L"ODMA Save F PDF Documents as")                                 \
    DERIVED(QLIE_ODMA_SAVE_PDF_DOCS_AS, L"ODMA Save PDF Documents as")                                     \
    DERIVED(QLIE_ODMA_SAVE_ENVOY_DOCS_AS, L"ODMA Save Envoy Documents as")                                 \
    DERIVED(QLIE_ODMA_SAVE_ANSWERS_AS, L"ODMA Save Answers as")                                            \
    DERIVED(QLIE_ODMA_DOCUMENT_DEBUG, L"ODMA Document Debug")                                              \
    DERIVED(QLIE_ODMA_ANSWER_DEBUG, L"ODMA Answer Debug")                                                  \
    DERIVED(QLIE_ODMA_DLL_DIR, L"ODMA DLL Files")                                                          \
    ROW(QLIE_MANAGE_DOCUMENTS_DOC_MGR, L"Document Manager")                                                \
    ROW(QLIE_MANAGE_DOCUMENTS_WINDOWS, L"Windows Explorer")                                                \
    ROW(QLIE_MANAGE_DOCUMENTS, L"Documents")                                                               \
    ROW(QLIE_MANAGE_ANSWER_FILES_DOC_MGR, L"Document Manager")                                             \
    ROW(QLIE_MANAGE_ANSWER_FILES_WINDOWS, L"Windows Explorer")                                             \
    ROW(QLIE_MANAGE_ANSWER_FILES_QUILLET, L"Quillet Answer File Manager")                                  \
    ROW(QLIE_MANAGE_ANSWER_FILES, L"Answer Files")                                                         \
    ROW(QLIE_ITALIC_ANNOT_LABELS, L"Italic Labels")                                                        \
    ROW(QLIE_ITALIC_ANNOT_MARKERS, L"Italic Markers")                                                      \
    DERIVED(QLIE_ITALIC_EXPLANATION, L"Italic Explanation")                                                \
    ROW(QLIE_ANNOTATE_END, L"Annotate End")                                                                \
    ROW(QLIE_ANNOTATE_FIELDS, L"Annotate Fields")                                                          \
    ROW(QLIE_ANNOTATE_END_FIELDS, L"Annotate end fields")                                                  \
    ROW(QLIE_ANNOT_STYLE, L"Annotation Style")                                                             \
    ROW(QLIE_ANNOT_TYPE, L"Annotation Type")                                                               \
    ROW(QLIE_LABEL_END_OF_FIELD, L"Label End of Field")                                                    \
    ROW(QLIE_ENCLOSE_LABELS, L"Enclose Labels in Markers")                                                 \
    DERIVED(QLIE_DECORATE_MIN_MARKUP, L"Decorate Minimum Markup")                                          \
    DERIVED(QLIE_DECORATE_FIELD_TEXT, L"Decorate Field Text")                                              \
    ROW(QLIE_EDIT_TXT_END, L"Editable Text End")                                                           \
    ROW(QLIE_EDIT_TXT_BEGIN, L"Editable Text Begin")                                                       \
    ROW(QLIE_RPT_TXT_END, L"Repeated Text End")                                                            \
    ROW(QLIE_RPT_TXT_BEGIN, L"Repeated Text Begin")                                                        \
    ROW(QLIE_ALT_TXT_END, L"Alternative Text End")                                                         \
    ROW(QLIE_ALT_TXT_BEGIN, L"Alternative Text Begin")                                                     \
    ROW(QLIE_COND_TXT_END, L"Conditional Text End")                                                        \
    ROW(QLIE_COND_TXT_BEGIN, L"Conditional Text Begin")                                                    \
    ROW(QLIE_INS_FIELD_END, L"Insertion Field End")                                                        \
    ROW(QLIE_INS_FIELD_BEGIN, L"Insertion Field Begin")                                                    \
    DERIVED(QLIE_STANDARD_NAMES, L"Standard Names")                                                        \
    DERIVED(QLIE_MACRO_DIR, L"Macro Files")                                                                \
    DERIVED(QLIE_STARTUP_DIR, L"Startup Files")                                                            \
    DERIVED(QLIE_CMD_LINE, L"Command Line")                                                                \
    DERIVED(QLIE_LAUNCH_WORD_BEFORE_SEND, L"Launch Word Before Send")                                      \
    DERIVED(QLIE_ENABLE_BINARY_CMP_FILES, L"Enable Binary Component Files")                                \
    DERIVED(QLIE_WRITE_UPDATE_LOG, L"Write Update Log")                                                    \
    DERIVED(QLIE_CLOSEWORDAFTERUSE, L"Close Word After Use")                                               \
    DERIVED(QLIE_LIBRARYVALIDATION, L"Library Validation")                                                 \
    DERIVED(QLIE_LIBRARYBACKUP, L"Library Backup")                                                         \
    ROW(QLIE_DO_UPDATES, L"Check for updates")                                                             \
    ROW(QLIE_DO_UPDATES_ONSTARTUP, L"Check for updates on startup")                                        \
    DERIVED(QLIE_DISCARD_INVALID_MC_VALUES, L"Discard Invalid Multiple Choice Values")                     \
    DERIVED(QLIE_RETAIN_PROPERTIES, L"Retain Properties")                                                  \
    DERIVED(QLIE_ALWAYS_QUOTE_IDENTS, L"Always Quote Identifiers")                                         \
    DERIVED(QLIE_UPDATE_ALL_ON_ANSWER_CHANGE, L"Update All on Answer Change")                              \
    DERIVED(QLIE_OMIT_INSTANT_SUGGESTION, L"Omit Instant Suggestion")                                      \
    DERIVED(QLIE_HTTPS_PORT, L"HTTPS Port")                                                                \
    DERIVED(QLIE_HTTP_PORT, L"HTTP Port")                                                                  \
    DERIVED(QLIE_FTP_PORT, L"FTP Port")                                                                    \
    DERIVED(QLIE_DEVELOPMENT, L"Development")                                                              \
    DERIVED(QLIE_FLAVOR, L"Flavor")                                                                        \
    DERIVED(QLIE_NO_UNC_KEYS, L"No UNC Keys")                                                              \
    DERIVED(QLIE_CUSTOM_VIEW, L"Custom View")                                                              \
    DERIVED(QLIE_VALIDATIONS, L"Validations")                                                              \
    DERIVED(QLIE_MERGE_TEXTS, L"Merge Texts")                                                              \
    DERIVED(QLIE_GROUP_FMTS, L"Group Formats")                                                             \
    DERIVED(QLIE_TF_FMTS, L"True False Formats")                                                           \
    DERIVED(QLIE_NUM_FMTS, L"Number Formats")                                                              \
    DERIVED(QLIE_FILLER_PLACEMENT, L"Filler Placement")                                                    \
    DERIVED(QLIE_AUTOMATOR_PLACEMENT, L"Automator Placement")                                              \
    DERIVED(QLIE_MODIFIABLE_TEXT_SHOW_RULER, L"Modifiable Text Show Ruler")                                \
    DERIVED(QLIE_MODIFIABLE_TEXT_PLACEMENT, L"Modifiable Text Placement")                                  \
    DERIVED(QLIE_DONT_SHOW_UPDATE_PROMPTER, L"Don't Show Update Prompter")                                 \
    DERIVED(QLIE_DONT_SHOW_UPDATE_PROGRESS, L"Don't Show Update Progress")                                 \
    DERIVED(QLIE_VIEW_RESOURCE_DLG, L"View Resource Dialog")                                               \
    DERIVED(QLIE_DEBUGGER_ROWHEIGHT, L"Debugger Row Height")                                               \
    DERIVED(QLIE_DEBUGGER_PLACEMENT, L"Debugger Placement")                                                \
    DERIVED(QLIE_DEBUGGER_ENABLED, L"Debugger Enabled")                                                    \
    DERIVED(QLIE_COMP_SPELL_CHECK_PLACEMENT, L"Computation Spell Check Placement")                         \
    DERIVED(QLIE_COMP_COMPONENT, L"Computation Component")                                                 \
    DERIVED(QLIE_CLAUSE_PREVIEW_PLACEMENT, L"Clause Preview Placement")                                    \
    DERIVED(QLIE_CLAUSE_COMPONENT, L"Clause Component")                                                    \
    DERIVED(QLIE_BROWSER_ASSEMBLY_PLACEMENT, L"Browser Assembly Placement")                                \
    DERIVED(QLIE_CLAUSELIB_COLWIDTHS, L"Clause Library Column Widths")                                     \
    DERIVED(QLIE_CLAUSELIB_PLACEMENT, L"Clause Library Placement")                                         \
    DERIVED(QLIE_ANSWERFILE_MANAGER_COLWIDTHS, L"Answer File Manager Column Widths")                       \
    DERIVED(QLIE_ANSWERFILE_MANAGER_PLACEMENT, L"Answer File Manager Placement")                           \
    DERIVED(QLIE_SPANFIELD_SHOWADVANCED, L"Span Field Show Advanced")                                      \
    DERIVED(QLIE_SPANFIELD_PLACEMENT, L"Span Field Placement")                                             \
    DERIVED(QLIE_INSERTFIELD_SHOWADVANCED, L"Insert Field Show Advanced")                                  \
    DERIVED(QLIE_INSERTFIELD_PLACEMENT, L"Insert Field Placement")                                         \
    DERIVED(QLIE_REPEATFIELD_PLACEMENT, L"Repeat Field Placement")                                         \
    DERIVED(QLIE_ASKFIELD_SHOWADVANCED, L"Ask Field Show Advanced")                                        \
    DERIVED(QLIE_ASKFIELD_PLACEMENT, L"Ask Field Placement")                                               \
    DERIVED(QLIE_PARAMETERLIST_SPLITTER, L"Parameter List Splitter")                                       \
    DERIVED(QLIE_PARAMETERLIST_PLACEMENT, L"Parameter List Placement")                                     \
    DERIVED(QLIE_EXPRESSION_SPLITTER, L"Expression Splitter")                                              \
    DERIVED(QLIE_EXPRESSION_PLACEMENT, L"Expression Placement")                                            \
    DERIVED(QLIE_IF_FIELD_SPLITTER, L"If Field Splitter")                                                  \
    DERIVED(QLIE_IF_FIELD_MARKER, L"If Field Marker")                                                      \
    DERIVED(QLIE_IFFIELD_SHOWADVANCED, L"If Field Show Advanced")                                          \
    DERIVED(QLIE_IFFIELD_PLACEMENT, L"If Field Placement")                                                 \
    DERIVED(QLIE_VARIABLEFIELD_SHOWADVANCED, L"Variable Field Show Advanced")                              \
    DERIVED(QLIE_VARIABLEFIELD_PLACEMENT, L"Variable Field Placement")                                     \
    DERIVED(QLIE_COMPVARIABLEFIELD_PLACEMENT, L"Computation Variable Field Placement")                     \
    DERIVED(QLIE_MCVARIABLEFIELD_PLACEMENT, L"Multiple Choice Variable Field Placement")                   \
    DERIVED(QLIE_SPAN_COMPONENT, L"Span Component")                                                        \
    DERIVED(QLIE_SPAN_FIELD_MARKER, L"Span Field Marker")                                                  \
    DERIVED(QLIE_MULTCHOICE_COMPONENT, L"Multiple Choice Component")                                       \
    DERIVED(QLIE_DATABASE_COMPONENT, L"Database Component")                                                \
    DERIVED(QLIE_COMPUTATION_SPLITTER, L"Computation Splitter")                                            \
    DERIVED(QLIE_TRUEFALSE_COMPONENT, L"True False Component")                                             \
    DERIVED(QLIE_NUMBER_COMPONENT, L"Number Component")                                                    \
    DERIVED(QLIE_INSERTER_BAR, L"Inserter Bar")                                                            \
    DERIVED(QLIE_COMPONENENT_MANAGER_UNFOLDED, L"Componenent Manager Unfolded")                            \
    DERIVED(QLIE_COMPONENENT_MANAGER_PLACEMENT, L"Componenent Manager Placement")                          \
    DERIVED(QLIE_DOCCOMPARE_TAB, L"Document Compare Tab")                                                  \
    DERIVED(QLIE_LIBRARY_PLACEMENT, L"Library Placement")                                                  \
    ROW(QLIE_LIBRARY_DIR, L"Library Files")                                                                \
    DERIVED(QLIE_RETURN_FOLLOWS_EXPLANATION, L"Return Follows Explanation")                                \
    DERIVED(QLIE_EXPLANATION_IN_END_FIELD, L"Explanation in End Field")                                    \
    DERIVED(QLIE_COMMENT_AS_EXPLANATION, L"Comment as Explanation")                                        \
    DERIVED(QLIE_COMMENT_AS_FIELD_TEXT, L"Comment as Field Text")                                          \
    DERIVED(QLIE_COMMENTS_FOR_ANNOTATIONS, L"Comments for Annotations")                                    \
    DERIVED(QLIE_FIELD_ANNOTATION_REF_TYPE, L"Field Annotation Reference Type")                            \
    DERIVED(QLIE_BEGIN_FIELD_ANNOTATION, L"Begin Field Annotation")                                        \
    DERIVED(QLIE_REPEAT_FIELD_MARKER, L"Repeat Field Marker")                                              \
    DERIVED(QLIE_ELSE_FIELD_MARKER, L"Else Field Marker")                                                  \
    DERIVED(QLIE_ELSE_IF_FIELD_MARKER, L"Else If Field Marker")                                            \
    ROW(QLIE_TITLE_AS_FIELD_TEXT, L"Title as field text")                                                  \
    ROW(QLIE_TITLE, L"TITLE")                                                                              \
    DERIVED(QLIE_MC_MERGE_TEXT_AS_FIELD_TEXT, L"Multiple Choice Merge Text as Field Text")                 \
    DERIVED(QLIE_CLOSING_FIELD_MARKER, L"Closing Field Marker")                                            \
    DERIVED(QLIE_OPENING_FIELD_MARKER, L"Opening Field Marker")                                            \
    DERIVED(QLIE_AUTO_GENERATE_COMPONENT_NAMES, L"Auto Generate Component Names")                          \
    DERIVED(QLIE_AUTO_COMPLETE_COMPONENT_NAMES, L"Auto Complete Component Names")                          \
    DERIVED(QLIE_CONNECT_TO_TPL, L"Connect to Template")                                                   \
    DERIVED(QLIE_VALIDATE_INTERVIEWS, L"Validate Interviews")                                              \
    DERIVED(QLIE_LINKED_VAR_WARNING, L"Linked Variable Warning")                                           \
    DERIVED(QLIE_CONVERSION_WARNING, L"Conversion Warning")                                                \
    DERIVED(QLIE_POINTCOMP_WARNING, L"Point Computation Warning")                                          \
    DERIVED(QLIE_CMP_PROPS_INTVW_WARNING2, L"Component Properties Interview Warning 2")                    \
    DERIVED(QLIE_CMP_PROPS_INTVW_WARNING1, L"Component Properties Interview Warning 1")                    \
    DERIVED(QLIE_NEW_TPL_MARK_ANSWERS, L"New Template Mark Answers")                                       \
    DERIVED(QLIE_NEW_TPL_ENABLE_EDIT, L"New Template Enable Edit")                                         \
    DERIVED(QLIE_NEW_TPL_ONLINE_COMPAT, L"New Template Online Compatibility")                              \
    DERIVED(QLIE_MARKUP_VIEW, L"Markup View")                                                              \
    DERIVED(QLIE_RESOURCE_FONT_NAME, L"Resource Font Name")                                                \
    DERIVED(QLIE_RESOURCE_FONT_SIZE, L"Resource Font Size")                                                \
    DERIVED(QLIE_WARN_WHEN_RPT_CUT, L"Warn When Repeated Cut")                                             \
    DERIVED(QLIE_INSTANT_UPDATE, L"Instant Update")                                                        \
    DERIVED(QLIE_OUTLINE_FONT_SIZE, L"Outline Font Size")                                                  \
    DERIVED(QLIE_OUTLINE_FONT_NAME, L"Outline Font Name")                                                  \
    DERIVED(QLIE_NEXT_DLG_AFTER_INT_OUT, L"Next Dialog After Interview Outline")                           \
    DERIVED(QLIE_ADD_ANOTHER_WARNING, L"Add Another Warning")                                              \
    DERIVED(QLIE_REQUIRE_FOUR_DIGITS, L"Require Four Digits")                                              \
    ROW(QLIE_VERIFY_DATES, L"Verify Dates")                                                                \
    DERIVED(QLIE_CENTURY_ROLLOVER, L"Century Rollover")                                                    \
    ROW(QLIE_SUGGESTED_ANSWER_FILE_TITLE, L"Suggested Answer File Title")                                  \
    ROW(QLIE_SUGGESTED_ANSWER_FILE, L"Suggested Answer File")                                              \
    DERIVED(QLIE_LIBPATH, L"Library Path")                                                                 \
    DERIVED(QLIE_PREV_XML_ANS_SAVED_IN_2005_FMT, L"Previous XML Answer Saved in 2005 Format")              \
    DERIVED(QLIE_FORM_MARKUP_VIEW, L"Form Markup View")                                                    \
    DERIVED(QLIE_FORM_INSTANT_UPDATE, L"Form Instant Update")                                              \
    ROW(QLIE_FORM_DOCUMENT_DIR, L"Form Document Files")                                                    \
    DERIVED(QLIE_PROMPT_SNAPSHOT_SAVE_MODIFIED_TEXT, L"Prompt Snapshot Save Modified Text")                \
    DERIVED(QLIE_PROMPT_TO_SAVE_DOCUMENT, L"Prompt to Save Document")                                      \
    DERIVED(QLIE_PROMPT_ANSWER_FILE, L"Prompt Answer File")                                                \
    DERIVED(QLIE_SNAPSHOT_DEFAULT_FOLDER, L"Snapshot Default Folder")                                      \
    DERIVED(QLIE_ALLOW_MULTIPLE_SNAPSHOTS, L"Allow Multiple Snapshots")                                    \
    DERIVED(QLIE_REPLACEMENTS_AS_UNITS, L"Replacements as Units")                                          \
    DERIVED(QLIE_KEEP_COMPARISONS_SYNCHED, L"Keep Comparisons Synched")                                    \
    DERIVED(QLIE_COMPARISON_DELETED_COLOR, L"Comparison Deleted Color")                                    \
    DERIVED(QLIE_COMPARISON_INSERTED_COLOR, L"Comparison Inserted Color")                                  \
    DERIVED(QLIE_MULTIPLE_ASSEMBLY_WARNING, L"Multiple Assembly Warning")                                  \
    DERIVED(QLIE_EXPLAIN_PARA_MARK, L"Explain Paragraph Mark")                                             \
    DERIVED(QLIE_WORDPROCESSOR_PRINT_WARNING, L"Word Processor Print Warning")                             \
    DERIVED(QLIE_QUEUE_DISPLAY_ASSEMBLIES, L"Queue Display Assemblies")                                    \
    DERIVED(QLIE_TREAT_SEND_AS_SAVE, L"Treat Send as Save")                                                \
    DERIVED(QLIE_CURRENCY_SYMS, L"Currency Symbols")                                                       \
    DERIVED(QLIE_SUPPORT_PAGE, L"Support Page")                                                            \
    DERIVED(QLIE_CONTACT, L"Contact")                                                                      \
    DERIVED(QLIE_STYLESHEET_DIR, L"Stylesheet Files")                                                      \
    DERIVED(QLIE_IMAGE_DIR, L"Image Files")                                                                \
    DERIVED(QLIE_FORMS_SEND_PDFS_TO_ACROBAT, L"Forms Send PDFs to Acrobat")                                \
    DERIVED(QLIE_ALWAYSSUGGEST, L"Always Suggest")                                                         \
    DERIVED(QLIE_MATCHCASE, L"Match Case")                                                                 \
    DERIVED(QLIE_SUGGESTSPLITWORDS, L"Suggest Split Words")                                                \
    DERIVED(QLIE_TYPOGRAPHICALSUGGESTIONS, L"Typographical Suggestions")                                   \
    DERIVED(QLIE_PHONETICSUGGESTIONS, L"Phonetic Suggestions")                                             \
    DERIVED(QLIE_CASESENSITIVE, L"Case Sensitive")                                                         \
    DERIVED(QLIE_IGNOREMIXEDDIGITS, L"Ignore Mixed Digits")                                                \
    DERIVED(QLIE_IGNOREMIXEDCASE, L"Ignore Mixed Case")                                                    \
    DERIVED(QLIE_IGNOREALLCAPPEDWORDS, L"Ignore All Capped Words")                                         \
    DERIVED(QLIE_IGNORECAPPEDWORDS, L"Ignore Capped Words")                                                \
    DERIVED(QLIE_CHECK_MULTI_LINE_ONLY, L"Check Multi Line Only")                                          \
    DERIVED(QLIE_CHECK_ANSWERS, L"Check Answers")                                                          \
    ROW(QLIE_DICTIONARY_PATH, L"Personal Dictionary")                                                      \
    DERIVED(QLIE_COUNTY, L"County")                                                                        \
    DERIVED(QLIE_TOWN, L"Town")                                                                            \
    DERIVED(QLIE_POSTALCODE, L"Postal Code")                                                               \
    DERIVED(QLIE_EMAIL, L"Email")                                                                          \
    DERIVED(QLIE_FAX, L"Fax")                                                                              \
    DERIVED(QLIE_PHONE, L"Phone")                                                                          \
    DERIVED(QLIE_ZIPCODE, L"Zip Code")                                                                     \
    DERIVED(QLIE_STATE, L"State")                                                                          \
    DERIVED(QLIE_CITY, L"City")                                                                            \
    DERIVED(QLIE_ADDRESS2, L"Address 2")                                                                   \
    DERIVED(QLIE_ADDRESS1, L"Address 1")                                                                   \
    DERIVED(QLIE_COMPANY, L"Company")                                                                      \
    DERIVED(QLIE_INITIALS, L"Initials")                                                                    \
    DERIVED(QLIE_NAME, L"Name")                                                                            \
    DERIVED(QLIE_SILVERLIGHT_FILES_DIR, L"Silverlight Files")                                              \
    ROW(QLIE_CATALOG_FILES_DIR, L"Catalog Files")                                                          \
    ROW(QLIE_TEMPLATE_FILES_DIR, L"Template Files")                                                        \
    ROW(QLIE_TEMPLATE_SET_DIR, L"Template Sets")                                                           \
    DERIVED(QLIE_ONLINE_FILES_DIR, L"Online Files")                                                        \
    ROW(QLIE_PUB_OPTIONS_DIR, L"Publish Settings Files")                                                   \
    DERIVED(QLIE_INTERVIEW_LOCALE, L"Interview Locale")                                                    \
    DERIVED(QLIE_MAX_RECURSION_DEPTH, L"Maximum Recursion Depth")                                          \
    DERIVED(QLIE_SCHEMA_FILES_DIR, L"Schema Files")                                                        \
    ROW(QLIE_EXEC_PATH, L"Program File")                                                                   \
    ROW(QLIE_DOC_DIR, L"Document Files")                                                                   \
    ROW(QLIE_WORD_PROC_TPL_DIR, L"Template Files")                                                         \
    ROW(QLIE_SEND_DOCS_TO_DEF_WP, L"Send to Default")                                                      \
    ROW(QLIE_DEF_WP, L"Default")                                                                           \
    ROW(QLIE_COUNTRY, L"Country")

// Defaults, ROW(constant, value): those of the entry of the same stem, and QLIEDEF_... of settings without an
// entry.
#define QL_PREFERENCE_BOOL_DEFAULTS(ROW)                          \
    ROW(QLIE_SCRIPT_EDITOR_DIALOG_MINMAX_KEY_DEFREGBOOL, false)   \
    ROW(QLIE_SCRIPT_EDITOR_TAB_KEY_DEFREGBOOL, false)             \
    ROW(QLIE_SCRIPT_EDITOR_SELDOM_USED_KEYWORDS_DEFREGBOOL, true) \
    ROW(QLIE_SCRIPT_EDITOR_SYNTAX_COLOR_DEFREGBOOL, true)         \
    ROW(QLIE_SCRIPT_EDITOR_AUTO_INDENT_DEFREGBOOL, true)          \
    ROW(QLIEDEF_HONOR_CMP_FILE_UNANS_FMT, false)

#define QL_PREFERENCE_INT_DEFAULTS(ROW)            \
    ROW(QLIE_SCRIPT_EDITOR_TAB_WIDTH_DEFREGINT, 3) \
    ROW(QLIEDEF_MAX_WHILE_COUNT, 2147483647)

#define QL_PREFERENCE_TEXT_DEFAULTS(ROW)                                              \
    ROW(QLIE_SCRIPT_EDITOR_FONT_DEFREGSTR, L"Consolas:10")                            \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_SPAN_B_DEFREGSTR, L"255,255,255")                    \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_SPAN_DEFREGSTR, L"0,128,128")                        \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_COMMENT_B_DEFREGSTR, L"255,255,255")                 \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_COMMENT_DEFREGSTR, L"128,128,128")                   \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_ASK_B_DEFREGSTR, L"255,255,255")                     \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_ASK_DEFREGSTR, L"190,150,0")                         \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_INSERT_B_DEFREGSTR, L"255,255,255")                  \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_INSERT_DEFREGSTR, L"152,0,200")                      \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_IF_B_DEFREGSTR, L"255,255,255")                      \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_IF_DEFREGSTR, L"0,128,0")                            \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_REPEAT_B_DEFREGSTR, L"255,255,255")                  \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_REPEAT_DEFREGSTR, L"180,0,0")                        \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_VARIABLE_B_DEFREGSTR, L"255,255,255")                \
    ROW(QLIE_TEXT_TEMPLATE_COLOR_VARIABLE_DEFREGSTR, L"0,0,255")                      \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_UNRECOGNIZED_DEFREGSTR, L"0,0,0:false:false")        \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_COMMENTS_DEFREGSTR, L"0,128,0:false:false")          \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_OPERATORS_DEFREGSTR, L"0,0,0:false:false")           \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_PLACEHOLDERS_DEFREGSTR, L"255,0,0:false:false")      \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_OTHER_VALUES_DEFREGSTR, L"0,0,128:false:false")      \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_TEXT_VALUES_DEFREGSTR, L"128,0,0:false:false")       \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_LOCALS_DEFREGSTR, L"0,0,255:true:false")             \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_COMPONENTS_DEFREGSTR, L"0,0,255:false:false")        \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_EXPRESSION_KEYWORDS_DEFREGSTR, L"0,0,0:false:false") \
    ROW(QLIE_SCRIPT_EDITOR_COLOR_INSTRUCTION_KEYWORDS_DEFREGSTR, L"0,0,0:true:false") \
    ROW(QLIEDEF_INTERVIEW_LOCALE, L"en-US")
