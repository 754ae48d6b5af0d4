#pragma once

// The library's open flags in the terms of the C run time.
namespace ql {

int AccessMode(unsigned short flags) noexcept;      // _O_..., always binary
int SharingMode(unsigned short flags) noexcept;     // _SH_...
int PermissionMode(unsigned short flags) noexcept;  // _S_..., for a file that is created

// A descriptor of the C run time, or -1 with the reason in errno.
int OpenFile(const wchar_t* path, int access, int sharing, int permission) noexcept;

// Whether it could be opened; it is closed again. False with the reason in errno.
bool OpenAndClose(const wchar_t* path, int access, int sharing, int permission) noexcept;

// Makes an empty file. False with the reason in errno: EEXIST when there is one already, which stays as it
// is.
bool CreateNewFile(const wchar_t* path) noexcept;

}  // namespace ql
