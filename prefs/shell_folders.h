#pragma once

#include <string>

namespace ql {

// The user's documents folder and the one that all users share, made when missing. Empty when the shell has
// none.
std::wstring PersonalDocumentsFolder();
std::wstring PublicDocumentsFolder();

}  // namespace ql
