// VARNICE_API marks the public interface. The library is built with hidden
// visibility, so only what carries this macro is exported from libvarnice.so.
#ifndef VARNICE_VARNICE_EXPORT_H_
#define VARNICE_VARNICE_EXPORT_H_

#if defined(VARNICE_BUILDING_LIBRARY)
#define VARNICE_API __attribute__((visibility("default")))
#else
#define VARNICE_API
#endif

#endif  // VARNICE_VARNICE_EXPORT_H_
