#include "text/string_table.h"

#include <algorithm>
#include <memory>

#include "rw/collectable.h"
#include "text/ansi_text.h"
#include "text/characters.h"

namespace {

constexpr std::size_t kUsualCapacity = 10;
constexpr int kMaxCapacityHint = 1 << 16;

// Gives the item to the collection, at that index, unless the collection refuses it.
template <class Item, class Text>
bool Give(RWOrdered& collection, std::size_t index, Text text) {
    auto item = std::make_unique<Item>(std::move(text));
    if (!collection.insertAt(index, item.get())) return false;
    static_cast<void>(item.release());
    return true;
}

bool GiveEntry(RWOrdered& table, std::size_t index, RWWString text) {
    return Give<RWCollectableWString>(table, index, std::move(text));
}

// The narrow texts that a table is stored as, owned.
class NarrowTexts {
  public:
    NarrowTexts() = default;
    explicit NarrowTexts(const QLStringTable& table) : texts_(table.NumEntries()) {
        RWOrderedIterator next(table.GetTable());
        while (const auto* entry = static_cast<const RWCollectableWString*>(next())) {
            Give<RWCollectableString>(texts_, texts_.entries(), RWTStringToRWCString(*entry));
        }
    }
    NarrowTexts(const NarrowTexts&) = delete;
    NarrowTexts& operator=(const NarrowTexts&) = delete;
    ~NarrowTexts() { texts_.clearAndDestroy(); }

    RWOrdered* operator->() { return &texts_; }

    void AppendTo(QLStringTable& table) const {
        RWOrderedIterator next(texts_);
        while (const auto* text = static_cast<const RWCollectableString*>(next())) {
            table.AppendString(AnsiToRWWString(text->data()));
        }
    }

  private:
    RWOrdered texts_{kUsualCapacity};
};

}  // namespace

// In the library for whoever needs its address.
constexpr unsigned int QLStringTable::kMaxPaddedEntries;

QLStringTable::QLStringTable() : table_(kUsualCapacity) {}

QLStringTable::QLStringTable(int capacity)
    : table_(static_cast<std::size_t>(std::clamp(capacity, 0, kMaxCapacityHint))) {}

QLStringTable::QLStringTable(const QLStringTable& other) {
    CopyTable(other);
}

QLStringTable& QLStringTable::operator=(const QLStringTable& other) {
    if (this != &other) CopyTable(other);
    return *this;
}

QLStringTable::~QLStringTable() {
    ClearEntries();
}

bool QLStringTable::AppendString(RWWString text) {
    return GiveEntry(table_, table_.entries(), std::move(text));
}

bool QLStringTable::PrependString(RWWString text) {
    return GiveEntry(table_, 0, std::move(text));
}

bool QLStringTable::InsertString(const RWWString& text, unsigned int index) {
    return PadTo(index) && GiveEntry(table_, index, text);
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
    if (index >= 0 && PadTo(wanted + 1)) return Entry(wanted);
    outside_.clear();
    return outside_;
}

RWWString QLStringTable::operator()(int index) const {
    const auto wanted = static_cast<unsigned int>(index);
    return wanted < NumEntries() ? Entry(wanted) : RWWString();
}

void QLStringTable::AppendToString(RWWString& out) const {
    const unsigned int count = NumEntries();
    for (unsigned int i = 0; i < count; ++i) {
        out += Entry(i).view();
        out += L'~';
    }
}

bool QLStringTable::operator==(const QLStringTable& other) const {
    return table_ == other.table_;
}

void QLStringTable::saveOn(RWFile& file) const {
    NarrowTexts(*this)->saveGuts(file);
}

void QLStringTable::saveOn(RWvostream& stream) const {
    NarrowTexts(*this)->saveGuts(stream);
}

void QLStringTable::restoreFrom(RWFile& file) {
    NarrowTexts texts;
    texts->restoreGuts(file);
    texts.AppendTo(*this);
}

void QLStringTable::restoreFrom(RWvistream& stream) {
    NarrowTexts texts;
    texts->restoreGuts(stream);
    texts.AppendTo(*this);
}

unsigned long QLStringTable::binaryStoreSize() const {
    return static_cast<unsigned long>(NarrowTexts(*this)->binaryStoreSize());
}

RWWString& QLStringTable::Entry(unsigned int index) const {
    return *static_cast<RWCollectableWString*>(table_[index]);
}

// Adds empty entries until there are as many as wanted.
bool QLStringTable::PadTo(unsigned int count) const {
    if (count <= NumEntries()) return true;
    if (count > kMaxPaddedEntries) return false;
    while (NumEntries() < count) {
        if (!GiveEntry(table_, table_.entries(), RWWString())) return false;
    }
    return true;
}

void QLStringTable::CopyTable(const QLStringTable& other) {
    ClearEntries();
    const unsigned int count = other.NumEntries();
    for (unsigned int i = 0; i < count; ++i) AppendString(other.Entry(i));
}
