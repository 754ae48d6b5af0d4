#include "text/string_table.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/failure.h"
#include "rw/collectable.h"
#include "rw/virtual_streams.h"
#include "text/ansi_text.h"
#include "text/characters.h"

namespace {

constexpr int kMaxCapacityHint = 1 << 16;

// Gives an item of the text to the collection, at that index; false when memory ends.
template <class Item, class Text>
bool Give(RWOrdered& collection, std::size_t index, Text&& text) {
    return ql::FailureIfThrown(false, [&] {
        auto item = std::make_unique<Item>(std::forward<Text>(text));
        if (!collection.insertAt(index, item.get())) return false;
        static_cast<void>(item.release());
        return true;
    });
}

bool GiveEntry(RWOrdered& table, std::size_t index, std::wstring_view text) {
    return Give<RWCollectableWString>(table, index, text);
}

// A collection that owns its items.
class OwningCollection : public RWOrdered {
  public:
    OwningCollection() = default;
    OwningCollection(const OwningCollection&) = delete;
    OwningCollection& operator=(const OwningCollection&) = delete;
    ~OwningCollection() override { clearAndDestroy(); }
};

// Adds the narrow texts that a table is stored as; false when memory ends.
bool Narrow(const QLStringTable& table, RWOrdered& texts) {
    RWOrderedIterator next(table.GetTable());
    while (const auto* entry = static_cast<const RWCollectableWString*>(next())) {
        RWCString text = RWTStringToRWCString(*entry);
        if (text.empty() && !entry->empty()) return false;
        if (!Give<RWCollectableString>(texts, texts.entries(), std::move(text))) return false;
    }
    return true;
}

// Adds the wide texts of narrow ones; false when memory ends.
bool Widen(const RWOrdered& texts, QLStringTable& table) {
    RWOrderedIterator next(texts);
    while (const auto* text = static_cast<const RWCollectableString*>(next())) {
        const RWWString entry = AnsiToRWWString(text->data());
        if (entry.empty() && *text->data() != '\0') return false;
        if (!table.AppendString(entry)) return false;
    }
    return true;
}

}  // namespace

// In the library for whoever needs its address.
constexpr unsigned int QLStringTable::kMaxPaddedEntries;

QLStringTable::QLStringTable() = default;

QLStringTable::QLStringTable(int capacity)
    : table_(static_cast<std::size_t>(std::clamp(capacity, 0, kMaxCapacityHint))) {}

QLStringTable::QLStringTable(const QLStringTable& other) noexcept : QLStringTable() {
    *this = other;
}

QLStringTable& QLStringTable::operator=(const QLStringTable& other) noexcept {
    OwningCollection copy;
    for (unsigned int i = 0; i < other.NumEntries(); ++i) {
        if (!GiveEntry(copy, i, other.Entry(i))) return *this;
    }
    table_.swap(copy);
    return *this;
}

QLStringTable::~QLStringTable() {
    ClearEntries();
}

bool QLStringTable::AppendString(ql::TextView text) {
    return GiveEntry(table_, table_.entries(), text);
}

bool QLStringTable::PrependString(ql::TextView text) {
    return GiveEntry(table_, 0, text);
}

bool QLStringTable::InsertString(ql::TextView text, unsigned int index) {
    const unsigned int former = NumEntries();
    if (PadTo(index) && GiveEntry(table_, index, text)) return true;
    CutTo(former);
    return false;
}

void QLStringTable::DeleteEntry(unsigned int index) {
    delete table_.removeAt(index);
}

void QLStringTable::ClearEntries() {
    table_.clearAndDestroy();
}

unsigned int QLStringTable::NumEntries() const {
    return static_cast<unsigned int>(table_.entries());
}

int QLStringTable::Index(const RWWString& text, bool ignoreCase) const {
    const unsigned int count = NumEntries();
    for (unsigned int i = 0; i < count; ++i) {
        const RWWString& entry = Entry(i);
        if (ignoreCase ? ql::EqualIgnoringCase(entry, text) : entry == text) return static_cast<int>(i);
    }
    return -1;
}

RWWString& QLStringTable::operator[](int index) const {
    const auto wanted = static_cast<unsigned int>(index);
    const unsigned int former = NumEntries();
    if (index >= 0 && PadTo(wanted + 1)) return Entry(wanted);
    CutTo(former);
    outside_.clear();
    return outside_;
}

RWWString QLStringTable::operator()(int index) const {
    const auto wanted = static_cast<unsigned int>(index);
    if (wanted >= NumEntries()) return {};
    return ql::FailureIfThrown(RWWString(), [&]() -> RWWString { return Entry(wanted); });
}

void QLStringTable::AppendToString(RWWString& out) const {
    const std::size_t former = out.length();
    const bool isWhole = ql::Completes([&] {
        for (unsigned int i = 0; i < NumEntries(); ++i) out.append(Entry(i)).append(L'~');
    });
    if (!isWhole) out.resize(former);
}

bool QLStringTable::operator==(const QLStringTable& other) const {
    return table_ == other.table_;
}

void QLStringTable::saveOn(RWFile& file) const {
    RWFileOstream stream(file);
    saveOn(stream);
}

void QLStringTable::saveOn(RWvostream& stream) const {
    OwningCollection texts;
    if (!Narrow(*this, texts)) return stream.fail();
    texts.saveGuts(stream);
    stream.flush();
}

void QLStringTable::restoreFrom(RWFile& file) {
    RWFileIstream stream(file);
    restoreFrom(stream);
}

void QLStringTable::restoreFrom(RWvistream& stream) {
    OwningCollection texts;
    texts.restoreGuts(stream);
    if (!Widen(texts, *this)) stream.fail();
}

unsigned long QLStringTable::binaryStoreSize() const {
    OwningCollection texts;
    return Narrow(*this, texts) ? static_cast<unsigned long>(texts.binaryStoreSize()) : 0;
}

RWWString& QLStringTable::Entry(unsigned int index) const {
    return *static_cast<RWCollectableWString*>(table_[index]);
}

// Adds empty entries until there are as many as wanted; when it answers false, some may have been added.
bool QLStringTable::PadTo(unsigned int count) const {
    if (count > std::max(NumEntries(), kMaxPaddedEntries)) return false;
    while (NumEntries() < count) {
        if (!GiveEntry(table_, table_.entries(), {})) return false;
    }
    return true;
}

void QLStringTable::CutTo(unsigned int count) const {
    while (NumEntries() > count) delete table_.removeAt(NumEntries() - 1);
}
