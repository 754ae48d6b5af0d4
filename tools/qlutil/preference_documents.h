#pragma once

#include "tools/qlutil/command.h"

// The commands between the user's preferences and settings documents.
Answer ExportPreferences(const Arguments& arguments);
Answer ImportPreferences(const Arguments& arguments);
Answer DiffPreferences(const Arguments& arguments);
