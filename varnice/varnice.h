// The whole public interface of Varnice: the class interface and the C interface.
#ifndef VARNICE_VARNICE_H_
#define VARNICE_VARNICE_H_

#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/conversion_problem.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/encoding_variation_id.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/encoding/linear_allocator.h"
#include "varnice/encoding/qz_unicode_per_thread.h"
#include "varnice/encoding/text_encoding.h"
#include "varnice/encoding/text_encoding_id.h"
#include "varnice/encoding/unicode_lib_actor.h"
#include "varnice/encoding/unicode_lib_allocator.h"
#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/encoding/unicode_lib_director.h"
#include "varnice/encoding/unicode_library.h"
#include "varnice/stream/char16_sink.h"
#include "varnice/stream/char16_source.h"
#include "varnice/stream/char_sink.h"
#include "varnice/stream/char_source.h"
#include "varnice/widec/qz_exception.h"
#include "varnice/widec/qz_string.h"
#include "varnice/widec/qz_wstring.h"

#endif  // VARNICE_VARNICE_H_
