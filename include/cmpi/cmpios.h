/*
 * cmpios.h - platform glue for the CMPI 1.0 headers.
 *
 * Everything here that ends up inside a function table (thread, key, mutex
 * and condition handle types) is part of the binary interface between the
 * broker and provider libraries built elsewhere, so the definitions for a
 * platform must not change once providers exist for it.
 *
 * Usable from C89, C99, C11 and C++.
 */

#ifndef _CMPIOS_H_
#define _CMPIOS_H_

/*
 * Provider makefiles traditionally pass one CMPI_PLATFORM_* symbol on the
 * command line. We do not insist on it: when none is given, the platform
 * is recognised from the compiler's own predefined macros.
 */
#if !defined(CMPI_PLATFORM_LINUX_GENERIC_GNU) && \
    !defined(CMPI_PLATFORM_HPUX_ACC) && \
    !defined(CMPI_PLATFORM_WIN32_IX86_MSVC) && \
    !defined(CMPI_PLATFORM_SOLARIS_SPARC_GNU) && \
    !defined(CMPI_PLATFORM_SOLARIS_SPARC_CC) && \
    !defined(CMPI_PLATFORM_AIX_RS_IBMCXX) && \
    !defined(CMPI_PLATFORM_ZOS_ZSERIES_IBM) && \
    !defined(CMPI_PLATFORM_TRU64_ALPHA_DECCXX) && \
    !defined(CMPI_PLATFORM_OS400_ISERIES_IBM) && \
    !defined(CMPI_PLATFORM_DARWIN_PPC_GNU) && \
    !defined(CMPI_PLATFORM_VMS_ALPHA_DECCXX) && \
    !defined(CMPI_PLATFORM_VMS_IA64_DECCXX)
#  if defined(__linux__) || defined(__linux) || defined(__gnu_linux__)
#    define CMPI_PLATFORM_LINUX_GENERIC_GNU 1
#  elif defined(_WIN32) && defined(_MSC_VER)
#    define CMPI_PLATFORM_WIN32_IX86_MSVC 1
#  else
#    error "cmpios.h: unknown platform; define one of the CMPI_PLATFORM_* symbols"
#  endif
#endif

/* size_t and NULL are used by the function tables and the macros. */
#include <stdlib.h>

/* Handles passed through the OS encapsulation services (CMPIBrokerExtFT).
 * The broker owns what they point to; providers treat them as opaque. */
#define CMPI_THREAD_TYPE        void *
#define CMPI_MUTEX_TYPE         void *
#define CMPI_COND_TYPE          void *

#if defined(CMPI_PLATFORM_WIN32_IX86_MSVC)
#  define CMPI_THREAD_RETURN      unsigned
#  define CMPI_THREAD_CDECL       __stdcall
#  define CMPI_THREAD_KEY_TYPE    unsigned long int
#  ifndef HAVE_STRUCT_TIMESPEC
#    define HAVE_STRUCT_TIMESPEC
struct timespec
{
    long tv_sec;
    long tv_nsec;
};
#  endif
#elif defined(CMPI_PLATFORM_LINUX_GENERIC_GNU) || \
      defined(CMPI_PLATFORM_ZOS_ZSERIES_IBM)
/* Thread keys are handed straight to pthread_key_create() by the broker,
 * so the key type is the native one. No calling-convention decoration is
 * needed (or even accepted by GCC on x86-64) for thread entry points. */
#  include <pthread.h>
#  define CMPI_THREAD_RETURN      void *
#  define CMPI_THREAD_CDECL
#  define CMPI_THREAD_KEY_TYPE    pthread_key_t
#else
#  define CMPI_THREAD_RETURN      void *
#  define CMPI_THREAD_CDECL
#  define CMPI_THREAD_KEY_TYPE    unsigned long int
#endif

/*
 * CMPI_EXPORT marks symbols the broker has to find with dlsym(): the
 * <name>_Create_<kind>MI factory functions. Provider libraries are often
 * built with -fvisibility=hidden, so GCC needs the explicit attribute.
 */
#if defined(CMPI_PLATFORM_WIN32_IX86_MSVC)
#  define CMPI_EXPORT __declspec(dllexport)
#  define CMPI_IMPORT __declspec(dllimport)
#elif defined(__GNUC__) && (__GNUC__ >= 4)
#  define CMPI_EXPORT __attribute__((visibility("default")))
#  define CMPI_IMPORT __attribute__((visibility("default")))
#else
#  define CMPI_EXPORT
#  define CMPI_IMPORT
#endif

/* Factory functions are looked up by their unmangled names, so C++
 * providers have to give them C linkage. */
#ifdef __cplusplus
#  define CMPI_EXTERN_C extern "C" CMPI_EXPORT
#else
#  define CMPI_EXTERN_C CMPI_EXPORT
#endif

#endif /* _CMPIOS_H_ */
