#include <algorithm>
#include <cmath>
#include <limits>

#include "prefs/interview_globals.h"
#include "text/decimal.h"
#include "tools/qlutil/command.h"
#include "values/date.h"
#include "values/number_format.h"

namespace {

std::wstring Quoted(std::wstring_view word) {
    return L"\"" + std::wstring(word) + L"\"";
}

double RequireNumber(std::wstring_view word, std::wstring_view what) {
    if (word == L"inf") return std::numeric_limits<double>::infinity();
    const Decimal number = ReadDecimal(word);
    if (number.isValid && number.length == word.size()) return number.value;
    throw WrongCall(std::wstring(what) + L" must be a number, not " + Quoted(word));
}

struct DateFields {
    unsigned day = 0;
    unsigned month = 0;
    unsigned year = 0;
};

DateFields RequireFields(std::wstring_view word) {
    DateFields fields;
    unsigned* const inOrder[] = {&fields.day, &fields.month, &fields.year};
    std::wstring_view rest = word;
    for (unsigned* const field : inOrder) {
        const bool isLast = field == &fields.year;
        const std::size_t end = isLast ? rest.size() : std::min(rest.find(L'-'), rest.size());
        const std::optional<int> number = ToInt(rest.substr(0, end));
        if (!number || *number < 0)
            throw WrongCall(L"a date is DAY-MONTH-YEAR in numbers, not " + Quoted(word));
        *field = static_cast<unsigned>(*number);
        rest.remove_prefix(isLast ? end : std::min(end + 1, rest.size()));
    }
    return fields;
}

CDate DateOf(const DateFields& fields) {
    return {fields.day, fields.month, fields.year};
}

DateUnit RequireUnit(std::wstring_view word) {
    if (word == L"days") return DATE_UNIT_DAYS;
    if (word == L"months") return DATE_UNIT_MONTHS;
    if (word == L"years") return DATE_UNIT_YEARS;
    throw WrongCall(L"the unit must be days, months or years, not " + Quoted(word));
}

constexpr const wchar_t* kDayNames[] = {L"Sunday",   L"Monday", L"Tuesday", L"Wednesday",
                                        L"Thursday", L"Friday", L"Saturday"};
constexpr unsigned kMonths = 12;

// Why day, month and year form no date, in the order in which they are read.
std::wstring WhyNoDate(const DateFields& fields) {
    const auto& [day, month, year] = fields;
    const std::wstring order = L"; a date is read as day, month, year";
    if (year < RWDate::kFirstYear || year > RWDate::kLastYear) {
        return L"the year " + std::to_wstring(year) + L" is not one of " +
               std::to_wstring(RWDate::kFirstYear) + L" to " + std::to_wstring(RWDate::kLastYear) + order;
    }
    if (month < 1 || month > kMonths) return L"there is no month " + std::to_wstring(month) + order;
    return L"month " + std::to_wstring(month) + L" of " + std::to_wstring(year) + L" has days 1 to " +
           std::to_wstring(RWDate::daysInMonth(month, static_cast<int>(year))) + order;
}

// The reason stands for a date that is not valid.
Answer Describe(const CDate& date, const std::wstring& what, const std::wstring& reason) {
    const bool isDay = date.DayNumber() != 0;
    Record record = {
        {L"valid", date.IsValid()},
        {L"isNull", date.IsNull()},
        {L"day", date.Day()},
        {L"month", date.Month()},
        {L"year", date.Year()},
        {L"dayOfWeek", date.DayOfWeek()},
        {L"dayName", isDay ? Node(kDayNames[date.DayOfWeek() - 1]) : Node(nullptr)},
        {L"monthStr", date.MonthStr()},
        {L"dayNumber", static_cast<unsigned long>(date.DayNumber())},
        {L"reason", date.IsValid() ? Node(nullptr) : Node(RWWString(reason))},
    };
    if (date.IsValid()) return record;
    return Answer(std::move(record),
                  what + (date.IsNull() ? L" is the null date: " : L" is not a date: ") + reason);
}

Answer DateInfo(const Arguments& arguments) {
    const DateFields fields = RequireFields(arguments[0]);
    const CDate date = DateOf(fields);
    return Describe(date, std::wstring(arguments[0]),
                    date.IsNull() ? L"1 January 10000 stands for an unanswered date" : WhyNoDate(fields));
}

Answer DateAdd(const Arguments& arguments) {
    const Number amount = RequireNumber(arguments[1], L"AMOUNT");
    const DateFields fields = RequireFields(arguments[0]);
    const CDate date = DateOf(fields);
    const CDate sum = date.Add(amount, RequireUnit(arguments[2]));
    const std::wstring reason = date.IsValid()  ? L"it lies outside the years 1582 to 9999"
                                : date.IsNull() ? L"so is " + std::wstring(arguments[0])
                                                : WhyNoDate(fields);
    return Describe(sum,
                    L"the sum of " + std::wstring(arguments[0]) + L" and " + std::wstring(arguments[1]) +
                        L' ' + std::wstring(arguments[2]),
                    reason);
}

Answer DateDiff(const Arguments& arguments) {
    const DateFields fields[] = {RequireFields(arguments[0]), RequireFields(arguments[1])};
    const CDate dates[] = {DateOf(fields[0]), DateOf(fields[1])};
    Record record = {{L"result", dates[0].Difference(dates[1], RequireUnit(arguments[2])).GetDouble()}};
    for (std::size_t i = 0; i < std::size(dates); ++i) {
        if (dates[i].DayNumber() == 0) {
            return Answer(std::move(record),
                          std::wstring(arguments[i]) + L" is not a date: " + WhyNoDate(fields[i]));
        }
    }
    return record;
}

// The one character of a switch, 0 for an empty one.
wchar_t Character(const Arguments& arguments, const wchar_t* name, wchar_t otherwise) {
    const auto value = arguments.Value(name);
    if (!value) return otherwise;
    if (value->size() > 1) throw WrongCall(L"--" + std::wstring(name) + L" takes one character or none");
    return value->empty() ? L'\0' : value->front();
}

Answer NumberFormat(const Arguments& arguments) {
    const double value = RequireNumber(arguments[0], L"VALUE");
    const int places = RequireInt(arguments[1], L"PLACES");
    if (places < 0 || places > std::numeric_limits<short>::max())
        throw WrongCall(L"PLACES must be 0 to 32767");
    const tagQL_FLOATFORMAT format = {
        Character(arguments, L"symbol", arguments.Has(L"currency") ? L'$' : L'\0'),
        Character(arguments, L"decimal", L'.'),
        Character(arguments, L"group", arguments.Has(L"thousands") ? L',' : L'\0'),
    };
    std::wstring buffer(FloatFormatBufferChars(static_cast<short>(places)), L'\0');
    return Record{
        {L"result", FloatFormatStringExt(value, buffer.data(), &format, static_cast<short>(places))}};
}

// A number is printed with five decimals at most: a result of more places is a text.
constexpr int kPrintedPlaces = 5;
constexpr int kMostFudgePlaces = 8;

Answer NumberFudge(const Arguments& arguments) {
    const double value = RequireNumber(arguments[0], L"VALUE");
    const int places = RequireInt(arguments[1], L"PLACES");
    const double fudged = FudgeDouble(value, places, arguments.Has(L"round"));
    if (places <= kPrintedPlaces || std::trunc(fudged) == fudged) return Record{{L"result", fudged}};
    wchar_t digits[FloatFormatBufferChars(kMostFudgePlaces)];
    return Record{{L"result", FloatFormatString(fudged, digits, false, false,
                                                static_cast<short>(std::min(places, kMostFudgePlaces)))}};
}

Answer Globals(const Arguments&) {
    CDate today;
    CQlGlobals::GetLocalDate(&today);
    return Record{
        {L"monthFirst", CQlGlobals::IsMonthFirst()},
        {L"country", CQlGlobals::GetCountry()},
        {L"unansweredFormat", static_cast<int>(CQlGlobals::GetUnansValDefFormat())},
        {L"maxWhileCount", CQlGlobals::GetMaxWhileCount()},
        {L"maxRecursionDepth", CQlGlobals::GetMaxRecursionDepth()},
        {L"today", RWWString(std::to_wstring(today.Day()) + L'-' + std::to_wstring(today.Month()) + L'-' +
                             std::to_wstring(today.Year()))},
    };
}

constexpr SwitchRow kFormatSwitches[] = {
    {L"thousands"}, {L"currency"}, {L"symbol", true}, {L"decimal", true}, {L"group", true}};
constexpr SwitchRow kFudgeSwitches[] = {{L"round"}};

constexpr Command kCommands[] = {
    {L"date info",
     L"D-M-Y",
     L"What the library knows about a date, and why it is none; read as day, month, year.",
     {},
     1,
     1,
     DateInfo},
    {L"date add",
     L"D-M-Y AMOUNT days|months|years",
     L"The date so many units later, or earlier.",
     {},
     3,
     3,
     DateAdd},
    {L"date diff",
     L"D-M-Y D-M-Y days|months|years",
     L"How many whole units lie between two dates.",
     {},
     3,
     3,
     DateDiff},
    {L"number format", L"VALUE PLACES [--thousands] [--currency] [--symbol C] [--decimal C] [--group C]",
     L"VALUE with so many decimals; an empty --symbol, --decimal or --group means none.", kFormatSwitches, 2,
     2, NumberFormat},
    {L"number fudge", L"VALUE PLACES [--round]",
     L"VALUE cut, or rounded, to 0 to 8 decimals, forgiving the error of binary fractions; more than 5 "
     L"decimals are a "
     L"text.",
     kFudgeSwitches, 2, 2, NumberFudge},
    {L"globals",
     L"",
     L"What holds for a whole interview, today's date as D-M-Y among it.",
     {},
     0,
     0,
     Globals},
};

}  // namespace

std::span<const Command> ValueCommands() {
    return kCommands;
}
