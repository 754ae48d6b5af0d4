#pragma once

#include "names/cmd_line.h"
#include "platform/export.h"

// The running program's own command line without the program's name, for the parsers of cmdline/: the file
// and the switches as the user, a shortcut or an association gave them, quotes included. Empty when there is
// nothing but the name. Any thread.
QL_API RWWString GetOwnCommandLine();

// Starts the program of a command line in a window of the given show state (SW_SHOW...), and waits, without a
// limit, until it is ready for input. The program receives its quoted path, one blank (always) and the
// switches. It inherits the environment and the current directory, no handles. False when it could not be
// started. Any thread.
QL_API bool LaunchApplication(const QLCmdLine& cmdLine, unsigned short showCommand);
