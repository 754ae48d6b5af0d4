#pragma once

#include "platform/export.h"
#include "rw/ordered.h"
#include "rw/wide_string.h"

class RWFile;
class RWvistream;
class RWvostream;

// An ordered list of texts that it owns, addressed by zero-based index. As thread-safe as the standard
// containers, but note that operator[] may change a constant table.
class QL_API QLStringTable {
  public:
    // Adding past the end pads a table up to this many entries, and is refused beyond.
    static constexpr unsigned int kMaxPaddedEntries = 1u << 24;

    QLStringTable();
    explicit QLStringTable(int capacity);  // a sizing hint, not a limit
    QLStringTable(const QLStringTable& other);
    QLStringTable& operator=(const QLStringTable& other);
    virtual ~QLStringTable();

    // Each adds a copy of the text; null is the empty text. False only when the collection refuses it.
    bool AppendString(RWWString text);
    bool PrependString(RWWString text);

    // Later entries move up. An index past the end first pads the table with empty entries, on purpose, so
    // that the text lands exactly there; one above kMaxPaddedEntries and past the end changes nothing and
    // answers false.
    bool InsertString(const RWWString& text, unsigned int index);

    void DeleteEntry(unsigned int index);  // an index past the end removes nothing
    void ClearEntries();

    unsigned int NumEntries() const;

    // The collection of RWCollectableWString, owned by the table and valid as long as it.
    const RWOrdered& GetTable() const { return table_; }

    // The first entry equal to text, or -1.
    int Index(const RWWString& text, bool ignoreCase) const;

    // The entry, valid until it is removed. An index past the end grows the table with empty entries up to
    // it, on purpose and even when the table is constant. A negative index, or one from kMaxPaddedEntries on,
    // gives an empty text of the caller's to use that belongs to no entry, valid until the next such call.
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
    // that are there, on purpose, and of a form that ends too early it takes the whole texts.
    void saveOn(RWFile& file) const;
    void saveOn(RWvostream& stream) const;
    void restoreFrom(RWFile& file);
    void restoreFrom(RWvistream& stream);
    unsigned long binaryStoreSize() const;  // bytes that saveOn writes

  private:
    RWWString& Entry(unsigned int index) const;
    bool PadTo(unsigned int count) const;
    void CopyTable(const QLStringTable& other);

    // operator[] grows a constant table.
    mutable RWOrdered table_;
    mutable RWWString outside_;
};
