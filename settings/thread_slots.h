#pragma once

#include "platform/export.h"

// Values of which each thread has its own: 64 slots on top of a single one of the operating system. The slots
// are for values that a program allocates once at start and keeps. Every function may be called at any time,
// from any thread.

// What TlsmAlloc answers when there is no slot, and no slot's number: all bits set.
inline constexpr unsigned long kTlsmNoSlot = 0xffffffff;

QL_API bool TlsmInitialize();  // false when it is initialised already, or the system has nothing left
QL_API bool
TlsmUninitialize();  // false when it was not initialised; every thread's values are out of reach after it

// Each thread that uses slots: its 64 values, all null. Initialising again makes them null again. A thread
// must be uninitialised before it ends and before TlsmUninitialize, else its values' memory (not what they
// point to, which is never the manager's) is lost.
QL_API bool TlsmInitializeThread();
QL_API void TlsmUninitializeThread();
QL_API bool TlsmIsThreadInitialized();

// The next slot, 0 first in the process; kTlsmNoSlot after the 64th and when not initialised. Kept on
// purpose: TlsmUninitialize does not make it begin again, TlsmFree alone does.
QL_API unsigned long TlsmAlloc();

// Kept on purpose: which slots are in use is not recorded, and freeing any slot makes TlsmAlloc begin again
// at 0, also with slots that others still use. False when not initialised or slot is 64 or more.
QL_API bool TlsmFree(unsigned long slot);

// The calling thread's value. False, or null, when not initialised, when the thread is not, and when slot is
// 64 or more.
QL_API bool TlsmSetValue(unsigned long slot, void* value);
QL_API void* TlsmGetValue(unsigned long slot);
