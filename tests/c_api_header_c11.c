/* Compiled once for each C header of the library (FILTERS_C_HEADER names it)
 * as strict C11 with every warning an error: each header must stand on its
 * own in a plain C translation unit. */
#include FILTERS_C_HEADER

typedef int filters_c_header_is_self_contained;
