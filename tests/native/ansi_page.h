#pragma once

namespace fake {

// For the life of the object the ANSI code page is another one than 1252, by its name in iconv.
class AnsiPage {
  public:
    AnsiPage(const char* name, unsigned mostBytesOfACharacter);
    ~AnsiPage();
    AnsiPage(const AnsiPage&) = delete;
    AnsiPage& operator=(const AnsiPage&) = delete;
};

}  // namespace fake
