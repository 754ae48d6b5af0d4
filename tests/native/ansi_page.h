#pragma once

namespace fake {

// The ANSI code page by its name in iconv; null is 1252.
struct Page {
    const char* name = nullptr;
    unsigned mostBytesOfACharacter = 1;
};
inline Page g_page;

// For the life of the object the ANSI code page is another one.
struct AnsiPage {
    AnsiPage(const char* name, unsigned mostBytesOfACharacter) { g_page = {name, mostBytesOfACharacter}; }
    ~AnsiPage() { g_page = {}; }
    AnsiPage& operator=(AnsiPage&&) = delete;
};

}  // namespace fake
