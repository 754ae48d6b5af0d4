#pragma once

#include <string>

// Why the system refused a file, in words for who asked: "in use by another program". The code is the
// system's.
std::wstring ReasonOf(unsigned long error);

// What opening a file that is there comes to, with this access and sharing: the system's error, 0 when it
// opens.
unsigned long ErrorOfOpening(const wchar_t* path, unsigned long access, unsigned long share);

// Why another call could not open the file, by what opening it comes to afterwards: where nothing is in the
// way by now, "in use by another program until now".
std::wstring WhyNotOpened(unsigned long error);
