#pragma once

namespace ql {

// Shows an error to the user. The one place of the library that does, so that tests can watch it.
using ErrorBox = void (*)(const wchar_t* title, const wchar_t* text);

// Shows the message through the present box: a task-modal system box unless one was set.
void ShowErrorBox(const wchar_t* title, const wchar_t* text);

// Replaces the box for the whole process and returns the former one; null restores the system's. Thread-safe.
ErrorBox SetErrorBox(ErrorBox box) noexcept;

// Shows the message of an object that is not where it was, unless `expected` is its address (the low 32 bits
// of it where addresses have more).
void CheckObject(const void* object, unsigned long expected);

}  // namespace ql
