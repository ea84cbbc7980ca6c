/* The version of the Varnice headers, for compile-time checks:
 *
 *   #if VARNICE_VERSION_NUMBER >= 20100
 *
 * UnicodeLibrary::VersionString() and VarniceVersionString() report the
 * version of the library actually loaded. Plain C. The build checks that these
 * numbers match the project version. */
#ifndef VARNICE_VERSION_H_
#define VARNICE_VERSION_H_

#define VARNICE_VERSION_MAJOR 2
#define VARNICE_VERSION_MINOR 1
#define VARNICE_VERSION_PATCH 0
#define VARNICE_VERSION_STRING "2.1.0"
/* major * 10000 + minor * 100 + patch */
#define VARNICE_VERSION_NUMBER \
  (VARNICE_VERSION_MAJOR * 10000 + VARNICE_VERSION_MINOR * 100 + VARNICE_VERSION_PATCH)

#endif /* VARNICE_VERSION_H_ */
