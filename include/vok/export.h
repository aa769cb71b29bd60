/* Export and linkage macros shared by every public header of vok-lite. */
#ifndef VOK_EXPORT_H
#define VOK_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#define VOK_API __attribute__((visibility("default")))
#else
#define VOK_API
#endif

#ifdef __cplusplus
#define VOK_BEGIN_DECLS extern "C" {
#define VOK_END_DECLS }
#else
#define VOK_BEGIN_DECLS
#define VOK_END_DECLS
#endif

#endif
