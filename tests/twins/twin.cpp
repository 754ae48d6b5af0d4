// twin write|read FOLDER: writes what the library stores as bytes, or holds what lies there against it.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "rw/file.h"
#include "text/string_table.h"
#include "values/date.h"
#include "values/number.h"

namespace {

constexpr std::wstring_view kTexts[] = {L"first", L"", L"a blank and a \u00e9", L"last"};

struct Stored {
    tagQL_DATE date;
    std::uint32_t dayNumber;
    double number;
};

QLStringTable Table() {
    QLStringTable table;
    for (const std::wstring_view text : kTexts) table.AppendString(RWWString(text));
    return table;
}

Stored Record() {
    const CDate day(29, 2, 2024);
    Stored record{.date = {}, .dayNumber = day.DayNumber(), .number = Number(1e100).GetDouble()};
    day.GetTBDate(&record.date);
    return record;
}

std::string Bytes(const Stored& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

bool Write(const std::filesystem::path& folder) {
    RWFile table((folder / "table").c_str(), L"w+b");
    Table().saveOn(table);
    std::ofstream record(folder / "record", std::ios::binary);
    return table.isValid() && (record << Bytes(Record())).flush();
}

bool Read(const std::filesystem::path& folder) {
    RWFile table((folder / "table").c_str(), L"rb");
    QLStringTable restored;
    restored.restoreFrom(table);
    std::ifstream record(folder / "record", std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(record), {});
    return restored == Table() && bytes == Bytes(Record());
}

}  // namespace

int wmain(int count, wchar_t** words) {
    if (count != 3) return 2;
    return (words[1] == std::wstring_view(L"write") ? Write(words[2]) : Read(words[2])) ? 0 : 1;
}
