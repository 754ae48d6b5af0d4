#include "tools/qlutil/log_reader.h"

#include <algorithm>
#include <charconv>
#include <cwctype>
#include <utility>

#include "platform/win32.h"

namespace {

constexpr std::size_t kChunk = 256 * 1024;
// Of a longer text the rest is left out.
constexpr std::size_t kLongestText = 1024 * 1024;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kSeparator = "*****************************************************";
constexpr std::string_view kHeader = "#Software: ";

// How an entry's time is written; 0 stands for a digit.
constexpr std::string_view kTimeForm = "[00/00/00 00:00:00][";

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool HasForm(std::string_view text, std::string_view form) {
    const auto fits = [](char c, char wanted) { return wanted == '0' ? IsDigit(c) : c == wanted; };
    return text.size() >= form.size() && std::equal(form.begin(), form.end(), text.begin(),
                                                    [&](char wanted, char c) { return fits(c, wanted); });
}

int TwoDigits(std::string_view text, std::size_t at) {
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

std::int64_t TimeOf(std::string_view line) {
    enum : std::size_t { kMonth = 1, kDay = 4, kYear = 7, kHour = 10, kMinute = 13, kSecond = 16 };
    std::int64_t time = 2000 + TwoDigits(line, kYear);
    for (const std::size_t part : {kMonth, kDay, kHour, kMinute, kSecond})
        time = time * 100 + TwoDigits(line, part);
    return time;
}

bool IsNumber(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

// "[time][thread][file:line]-text"; false when a line begins no entry. A time in the form of a host's own
// locale is none that can be compared: it stays with the text. The entry's own room is used again.
bool Parse(std::string_view line, ReadEntry& entry) {
    constexpr std::string_view kBetween = "][";
    const std::size_t timeEnd = line.find(kBetween);
    const std::size_t thread = timeEnd + kBetween.size(), threadEnd = line.find(kBetween, thread);
    if (!line.starts_with('[') || threadEnd == std::string_view::npos) return false;
    const std::string_view number = line.substr(thread, threadEnd - thread);
    const std::size_t placeStart = threadEnd + kBetween.size(), placeEnd = line.find("]-", placeStart);
    if (placeEnd == std::string_view::npos || !IsNumber(number)) return false;
    const std::string_view place = line.substr(placeStart, placeEnd - placeStart);
    const bool isTimeKnown = HasForm(line, kTimeForm);
    if (!isTimeKnown && !IsNumber(place.substr(place.rfind(':') + 1))) return false;
    entry.time = isTimeKnown ? TimeOf(line) : 0;
    entry.thread = number;
    entry.place = place;
    entry.text = line.substr(placeEnd + 2);
    if (!isTimeKnown) entry.text.insert(0, std::string(line.substr(0, timeEnd + 1)) + ' ');
    return true;
}

void* OpenFor(DWORD access, const std::filesystem::path& path) {
    constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return ::CreateFileW(path.c_str(), access, kShare, nullptr, OPEN_EXISTING, 0, nullptr);
}

}  // namespace

void LineReader::Closer::operator()(void* handle) const noexcept {
    if (handle != INVALID_HANDLE_VALUE) ::CloseHandle(handle);
}

bool LineReader::Open(const std::filesystem::path& path) {
    buffer_.clear();
    at_ = 0;
    position_ = 0;
    handle_.reset(OpenFor(GENERIC_READ, path));
    return handle_.get() != INVALID_HANDLE_VALUE;
}

bool LineReader::ReadMore() {
    buffer_.erase(0, std::exchange(at_, 0));
    const std::size_t before = buffer_.size();
    buffer_.resize(before + kChunk);
    DWORD count = 0;
    ::ReadFile(handle_.get(), buffer_.data() + before, kChunk, &count, nullptr);
    buffer_.resize(before + count);
    position_ += count;
    return count > 0;
}

bool LineReader::Next(std::string& line, bool takesUnended) {
    std::size_t searched = at_;
    std::size_t end = buffer_.find('\n', searched);
    while (end == std::string::npos) {
        searched = buffer_.size() - at_;
        if (searched > kLongestText || !ReadMore()) break;
        end = buffer_.find('\n', searched);
    }
    const bool isWhole = end != std::string::npos;
    if (!isWhole && buffer_.size() - at_ <= kLongestText && (!takesUnended || at_ == buffer_.size()))
        return false;
    if (!isWhole) end = buffer_.size();
    line.assign(buffer_, at_, end - at_);
    if (line.ends_with('\r')) line.pop_back();
    at_ = isWhole ? end + 1 : end;
    return true;
}

bool LineReader::IsAt(const std::filesystem::path& path) const {
    // Nobody who has it open can refuse this access.
    const std::unique_ptr<void, Closer> other(OpenFor(FILE_READ_ATTRIBUTES, path));
    BY_HANDLE_FILE_INFORMATION own = {}, found = {};
    // Where files are not told apart they count as where they were.
    if (!::GetFileInformationByHandle(handle_.get(), &own)) return other.get() != INVALID_HANDLE_VALUE;
    return ::GetFileInformationByHandle(other.get(), &found) && own.nFileIndexHigh == found.nFileIndexHigh &&
           own.nFileIndexLow == found.nFileIndexLow && own.dwVolumeSerialNumber == found.dwVolumeSerialNumber;
}

bool LineReader::IsCut() const {
    LARGE_INTEGER size;
    return ::GetFileSizeEx(handle_.get(), &size) && size.QuadPart < position_;
}

LogReader::LogReader(std::filesystem::path file, bool follows) : main_(std::move(file)), follows_(follows) {
    OpenOldest();
}

std::filesystem::path LogReader::PathOf(int number) const {
    std::filesystem::path path = main_;
    return number == kMain
               ? path
               : path.replace_filename(main_.stem().wstring() + std::to_wstring(number) + L".bak");
}

// Of the files that there are, ascending: backups may have gaps between their numbers.
std::vector<int> LogReader::Numbers() const {
    std::vector<int> numbers;
    std::error_code error;
    const std::filesystem::path folder = main_.has_parent_path() ? main_.parent_path() : L".";
    const std::wstring stem = main_.stem().wstring();
    for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end;
         at.increment(error)) {
        const std::wstring name = at->path().stem().wstring();
        if (at->path().extension() != L".bak" || !name.starts_with(stem) || name.size() > stem.size() + 6)
            continue;
        const std::wstring number = name.substr(stem.size());
        if (number.empty() || !std::all_of(number.begin(), number.end(), std::iswdigit)) continue;
        if (std::to_wstring(std::stoi(number)) == number) numbers.push_back(std::stoi(number));
    }
    if (std::filesystem::exists(main_, error)) numbers.push_back(kMain);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::optional<int> LogReader::NextBelow(int number) const {
    if (number == kMain) return std::nullopt;
    std::error_code error;
    if (std::filesystem::exists(PathOf(number - 1), error)) return number - 1;
    const std::vector<int> numbers = Numbers();
    const auto found = std::lower_bound(numbers.begin(), numbers.end(), number);
    return found == numbers.begin() ? std::nullopt : std::optional(*std::prev(found));
}

void LogReader::Take(LineReader file, int number) {
    reader_ = std::move(file);
    number_ = number;
    within_ = Within::kStart;
    isOpen_ = true;
}

// The file of that number or, where that one cannot be opened, of the nearest below that can. The log closes
// a file to others for the moment in which it sets its time.
std::optional<int> LogReader::OpenFrom(std::optional<int> number, LineReader& file) const {
    constexpr int kMostPauses = 1000;  // of a millisecond
    for (int pauses = 0; number && !file.Open(PathOf(*number)); ++pauses) {
        if (::GetLastError() == ERROR_SHARING_VIOLATION && pauses < kMostPauses) {
            ::Sleep(1);
        } else {
            number = NextBelow(*number);
        }
    }
    return number;
}

void LogReader::OpenOldest() {
    isOpen_ = false;
    std::vector<int> numbers = Numbers(), former;
    for (int look = 0; look < kLooks && numbers != former; ++look) {
        LineReader oldest;
        const auto number = OpenFrom(numbers.empty() ? std::nullopt : std::optional(numbers.back()), oldest);
        if (!number) return;
        Take(std::move(oldest), *number);
        former = std::exchange(numbers, Numbers());
    }
}

// Each roll-over moves it up. False when it is there no more.
bool LogReader::FindOpen() {
    if (reader_.IsAt(PathOf(number_))) return true;
    for (int look = 0; look < kLooks; ++look) {
        for (const int number : Numbers()) {
            if (number <= number_ || !reader_.IsAt(PathOf(number))) continue;
            number_ = number;
            return true;
        }
    }
    return false;
}

// Goes over to the file that came behind the one that is open, which is a backup; false when there is none
// (yet). A roll-over moves the older ones first: as long as the one that is open has not moved, its nearest
// below comes next, if that is still the nearest after it was opened.
bool LogReader::OpenNewer() {
    for (;;) {  // again only when the log has rolled over meanwhile
        if (!FindOpen()) {
            OpenOldest();
            return isOpen_;
        }
        const std::optional<int> nearest = NextBelow(number_);
        LineReader newer;
        const std::optional<int> number = OpenFrom(nearest, newer);
        if (!number) return false;
        if (!newer.IsAt(PathOf(*number)) || NextBelow(number_) != nearest || !reader_.IsAt(PathOf(number_)))
            continue;
        Take(std::move(newer), *number);
        return true;
    }
}

bool LogReader::NextLine() {
    while (isOpen_) {
        const bool isGrowing = follows_ && number_ == kMain;
        if (reader_.Next(line_, !isGrowing)) return true;
        if (number_ == kMain || !OpenNewer()) return false;
    }
    return false;
}

// Whether the line is of an entry; a header and the lines between entries are of none.
bool LogReader::IsEntry() {
    if (within_ == Within::kStart) {
        if (line_.starts_with(kByteOrderMark)) line_.erase(0, kByteOrderMark.size());
        within_ = line_.starts_with(kHeader) ? Within::kHeader : Within::kEntries;
    }
    const bool wasEntries = within_ == Within::kEntries;
    if (line_ == kSeparator) within_ = Within::kEntries;
    return wasEntries && line_ != kSeparator;
}

bool LogReader::Next(ReadEntry& entry) {
    while (NextLine()) {
        if (!IsEntry()) continue;
        if (Parse(line_, begun_)) {
            begun_.file = &main_;
            std::swap(begun_, pending_);
            if (!std::exchange(isPending_, true)) continue;
            std::swap(begun_, entry);
            return true;
        }
        if (!isPending_) {
            pending_ = {0, {}, {}, line_, &main_, 0};
            isPending_ = true;
        } else if (pending_.text.size() < kLongestText) {
            pending_.text += '\n' + line_;
        }
    }
    if (!std::exchange(isPending_, false)) return false;
    std::swap(pending_, entry);
    return true;
}

void LogReader::Continue() {
    if (!isOpen_ || !FindOpen()) return OpenOldest();
    if (reader_.IsCut() && reader_.Open(PathOf(number_))) within_ = Within::kStart;
}

const ReadEntry* MergedLogs::Next() {
    if (next_) next_->isRead = false;
    next_ = nullptr;
    for (const std::unique_ptr<Log>& log : logs_) {
        if (!log->isRead && log->reader.Next(log->first)) {
            log->isRead = true;
            log->time = std::max(log->time, log->first.time);
            log->first.order = log->time;
        }
        if (log->isRead && (!next_ || log->time < next_->time)) next_ = log.get();
    }
    return next_ ? &next_->first : nullptr;
}

void MergedLogs::Continue() {
    for (const std::unique_ptr<Log>& log : logs_) log->reader.Continue();
}
