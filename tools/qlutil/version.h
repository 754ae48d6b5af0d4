#pragma once

// What this program was built from and for.
struct Version {
    const wchar_t* number;  // "1.0.0"
    int bits;               // of a pointer: 32 or 64
    const wchar_t* build;   // the state of the sources, "unknown" when they lay in no repository
};

Version OwnVersion() noexcept;
