// Calls the engines beside it, for tests that look on from outside, and exits with the engine's code:
//   zip_host add ARCHIVE ITEMS [LEVEL [COMMENT]] | delete ARCHIVE ITEMS | extract ARCHIVE ITEMS FOLDER
//   zip_host ask ARCHIVE ITEM TIMES: exits with 0 when the item was there each time, else with the first code
//   or 254
#include <cstdlib>
#include <string_view>

#include "tests/zip/engine_calls.h"

// Wild cards are the engines' to expand.
extern "C" {
int _dowildcard = 0;
}

int main(int count, char** arguments) {
    const std::string_view what = arguments[1];
    if (what == "ask") {
        for (int times = std::atoi(arguments[4]); times > 0; --times) {
            UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_COUNT_MATCHING, arguments[2], arguments[3], nullptr);
            if (const int code = Dunzip(command)) return code;
            if (command.returnCount != 1) return 254;
        }
        return 0;
    }
    if (what == "extract") {
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_EXTRACT, arguments[2], arguments[3], arguments[4]);
        command.overWriteFlag = 1;
        return Dunzip(command);
    }
    ZIPCMDSTRUCT command = ZipCommand(what == "add" ? ZIP_ADD : ZIP_DELETE, arguments[2], arguments[3]);
    command.recurseFlag = 1;
    if (count > 4) command.compFactor = std::atoi(arguments[4]);
    command.addCommentFlag = count > 5;
    command.lpszComment = arguments[count - 1];
    return Dzip(command);
}
