#pragma once

#include "platform/export.h"

class CDate;

namespace Unanswered {

// How an unanswered variable is shown in a document, and the text of the preference.
enum Format : int {
    Nothing = 1,          // "Nothing"
    Asterisks = 2,        // "Asterisks"
    VariableStarred = 3,  // the name between three asterisks on each side; "*** Variable ***", also any other
    Underscores = 4,      // "Underscores"
    VariableBracketed = 5  // the name in square brackets; "[Variable]"
};

}  // namespace Unanswered

// Values of a whole interview. The preferences among them are those of the calling thread's settings store
// (settings/settings_store.h), which reads the registry when it has none of its own; their texts are compared
// without regard to case. The setters change that store alone, never the registry, and do nothing while there
// is no store. Safe on any thread; the class has no state.
class QL_API CQlGlobals {
  public:
    // "Date Detection" of the section "Interview": whether typed dates begin with the month. Only the text
    // "Day Month Year" says no.
    static bool IsMonthFirst();
    static void SetIsMonthFirst(bool isMonthFirst);  // in the store alone

    // "Country" of the section "Provider": the number that the text begins with; 1 when there is none or it
    // is 0.
    static int GetCountry();

    // "Unanswered Variable" of the section "Assembly". Kept on purpose: VariableStarred, and any value that
    // is no format, is written as the empty text, which is read as VariableStarred again.
    static Unanswered::Format GetUnansValDefFormat();
    static void SetUnansValDefFormat(Unanswered::Format format);

    // Sets the format that the text stands for; an empty, null or unknown text changes nothing.
    static void SetUnansValDefFormatFromPrefString(const wchar_t* text);

    // The store forgets its format, so that the next reading asks the registry.
    static void ClearUnansValDefFormat();

    // After so many rounds a loop of an interview is stopped, and at such a depth a script's recursion:
    // 2147483647 both.
    static int GetMaxWhileCount() noexcept;
    static int GetMaxRecursionDepth() noexcept;

    static void GetLocalDate(CDate* date);  // today by the local clock; nothing is written to null
};
