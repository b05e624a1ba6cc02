/* CMPI: platform macros for Linux with a GNU compatible compiler. */
#ifndef CMPIPL_H
#define CMPIPL_H

#ifndef CMPI_PLATFORM_LINUX_GENERIC_GNU
#define CMPI_PLATFORM_LINUX_GENERIC_GNU
#endif

#define CMPI_EXPORT __attribute__((visibility("default")))
#define CMPI_IMPORT __attribute__((visibility("default")))

#ifdef __cplusplus
#define CMPI_EXTERN_C extern "C" CMPI_EXPORT
#else
#define CMPI_EXTERN_C CMPI_EXPORT
#endif

#define CMPI_THREAD_TYPE void*
#define CMPI_THREAD_RETURN void*
#define CMPI_THREAD_CDECL
#define CMPI_THREAD_KEY_TYPE unsigned int
#define CMPI_MUTEX_TYPE void*
#define CMPI_COND_TYPE void*

#endif
