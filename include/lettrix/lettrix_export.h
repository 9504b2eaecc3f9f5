/* Export, import and calling-convention macros of the Lettrix interface. The only public header that
 * knows which operating system it is on. */
#ifndef LETTRIX_EXPORT_H
#define LETTRIX_EXPORT_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#  if defined(LETTRIX_STATIC)
#    define LETTRIX_API
#  elif defined(LETTRIX_BUILDING)
#    define LETTRIX_API __declspec(dllexport)
#  else
#    define LETTRIX_API __declspec(dllimport)
#  endif
#  define LETTRIX_CALL __cdecl
/* The 32-bit Windows interface keeps the Win32 integer types in its class methods. */
typedef unsigned long LettrixColorWord;
typedef long LettrixLong;
#else
#  if defined(LETTRIX_BUILDING) && !defined(LETTRIX_STATIC)
#    define LETTRIX_API __attribute__((visibility("default")))
#  else
#    define LETTRIX_API
#  endif
#  define LETTRIX_CALL
/* On LP64 systems long is 64 bits; the class methods keep the 32-bit widths of the Windows interface. */
typedef uint32_t LettrixColorWord;
typedef int32_t LettrixLong;
/* Windows callers allocate outline blocks with kernel32's GlobalAlloc; elsewhere the library offers
 * the same calls under its own prefix. */
#  define LETTRIX_HAS_GLOBAL_MEMORY 1
#endif

#endif
