#pragma once

// Marks what the library exports. QL_UTIL_BUILD is defined only while the library itself is compiled;
// QL_UTIL_STATIC where its sources are linked in directly.
#if !defined(_WIN32) || defined(QL_UTIL_STATIC)
#define QL_API
#elif defined(QL_UTIL_BUILD)
#define QL_API __declspec(dllexport)
#else
#define QL_API __declspec(dllimport)
#endif
