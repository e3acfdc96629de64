// The mark of calls that the audio thread makes.
#pragma once

// Stands behind the parameter list (and behind const and noexcept) of each declaration that the
// audio thread calls. Where the compiler knows the attribute, the real-time sanitizer reports any
// allocation, lock or system call that such a function reaches. The declaration is enough: the
// definition and an override inherit the mark. Only the specialization of a function template has
// to repeat it, since it would match no template otherwise.
#if defined(__has_cpp_attribute)
#if __has_cpp_attribute(clang::nonblocking)
#define LATHE_REALTIME [[clang::nonblocking]]
#endif
#endif
#if !defined(LATHE_REALTIME)
#define LATHE_REALTIME
#endif
