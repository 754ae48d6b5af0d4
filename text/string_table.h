#pragma once

#include "platform/export.h"
#include "rw/ordered.h"
#include "rw/wide_string.h"

class RWFile;
class RWvistream;
class RWvostream;

// An ordered list of texts that it owns, addressed by zero-based index; quick to change at both ends. As
// thread-safe as the standard containers, but note that operator[] may change a constant table. When memory
// ends, a change is refused as a whole and a text that was asked for is empty; a copy has no entries.
class QL_API QLStringTable {
  public:
    // Adding past the end pads a table up to this many entries, and is refused beyond.
    static constexpr unsigned int kMaxPaddedEntries = 1u << 24;

    QLStringTable();
    explicit QLStringTable(int capacity);                           // a sizing hint, not a limit
    QLStringTable(const QLStringTable& other) noexcept;             // of every entry
    QLStringTable& operator=(const QLStringTable& other) noexcept;  // unchanged when memory ends
    virtual ~QLStringTable();

    // Each adds a copy of the text; null is the empty text. False only when memory ends.
    bool AppendString(ql::TextView text);
    bool PrependString(ql::TextView text);

    // Later entries move up. An index past the end first pads the table with empty entries, on purpose, so
    // that the text lands exactly there; one above kMaxPaddedEntries and past the end changes nothing and
    // answers false.
    bool InsertString(ql::TextView text, unsigned int index);

    void DeleteEntry(unsigned int index);  // an index past the end removes nothing
    void ClearEntries();                   // removes all

    unsigned int NumEntries() const;  // indices are below it

    // The collection of RWCollectableWString, owned by the table and valid as long as it.
    const RWOrdered& GetTable() const { return table_; }

    // The first entry equal to text, or -1.
    int Index(const RWWString& text, bool ignoreCase) const;

    // The entry, valid until it is removed. An index past the end grows the table with empty entries up to
    // it, on purpose and even when the table is constant. A negative index, one from kMaxPaddedEntries on, or
    // one that memory has no room for, gives an empty text of the caller's to use that belongs to no entry,
    // valid until the next such call.
    RWWString& operator[](int index) const;

    // A copy of the entry, empty for an index outside the table; never grows it.
    RWWString operator()(int index) const;

    // Appends every entry and a "~" after each, also after the last.
    void AppendToString(RWWString& out) const;

    // As many entries, pairwise the same unit by unit.
    bool operator==(const QLStringTable& other) const;

    // The persistent form is narrow: a 32-bit little-endian count, then for each entry a 32-bit length and
    // its bytes in the ANSI code page. What that code page cannot hold comes back as its best fit or "?", and
    // a text that holds a zero unit comes back up to it. Restoring does not clear: it appends to the entries
    // that are there, on purpose, and of a form that ends too early, or that is more than memory holds, it
    // takes the first whole texts. A stream that was not written or read to the end, for whatever reason, is
    // not good: it is flushed. What was written to a file is told by its Flush.
    void saveOn(RWFile& file) const;
    void saveOn(RWvostream& stream) const;
    void restoreFrom(RWFile& file);
    void restoreFrom(RWvistream& stream);
    unsigned long binaryStoreSize() const;  // bytes that saveOn writes; 0 when memory ends

  private:
    RWWString& Entry(unsigned int index) const;
    bool PadTo(unsigned int count) const;
    void CutTo(unsigned int count) const;

    // operator[] grows a constant table.
    mutable RWOrdered table_;
    mutable RWWString outside_;
};
