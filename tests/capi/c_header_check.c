/* Compiled as strict C99: fails to build if the C interface header stops being C. */
#include <string.h>

#include "varnice/capi/varnice_c.h"

int main(void) {
  return strcmp(VarniceVersionString(), "Version 2.1.0, 1999-05-10") == 0 ? 0 : 1;
}
