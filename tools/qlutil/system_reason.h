#pragma once

#include <string>

// Why the system refused a file, in words for who asked: "in use by another program". The code is the
// system's.
std::wstring ReasonOf(unsigned long error);
