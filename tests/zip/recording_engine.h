#pragma once

#include "zip/zip_records.h"

// What the recording engines were called with last, and what they are to answer. Each engine has one, which
// its function "Recorded" gives.
struct Recording {
    int calls;
    int answer;
    int count;            // for returnCount
    char comment[70000];  // for lpszReturnString; and what lpszComment was
    ZIPINFO info;
    ZIPCMDSTRUCT zip;
    UNZIPCMDSTRUCT unzip;
    char archive[300], items[600], place[300];  // the place: temporary path or destination
};
using RecordedProc = Recording* (*)();
