#include "varnice/capi/direct_code_page.h"

#include <algorithm>
#include <cstring>
#include <typeinfo>

#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/codepages/mbcs_engine.h"
#include "varnice/encoding/unicode_lib_behavior.h"

namespace varnice::internal {

DirectCodePage DirectCodePage::Of(const ExternalEncoding* encoding) {
  DirectCodePage cp;
  if (encoding == nullptr || typeid(*encoding) != typeid(MBCSEncoding)) return cp;
  cp.page = static_cast<const MBCSEncoding*>(encoding);
  cp.plane = dynamic_cast<const CodePagePlaneTable*>(&cp.page->FromUnicodeTable());
  cp.delta = dynamic_cast<const CodePageDeltaTable*>(&cp.page->FromUnicodeTable());
  return cp;
}

const UnicodeLibBehavior* PlainDefaultBehavior() {
  const UnicodeLibBehavior* behavior = UnicodeLibBehavior::GetDefaultBehavior();
  return typeid(*behavior) == typeid(UnicodeLibBehavior) ? behavior : nullptr;
}

long DecodeDirect(const DirectCodePage& cp, const UnicodeLibBehavior& behavior, const char* src, long length,
                  unsigned short* dst, long room) {
  const MBCSEncoding& page = *cp.page;
  // As the page's converter: ASCII-based pages honour the forced mapping.
  const PassThrough pass(page.IsBasedOnASCII(), behavior);
  // Read per call, as the converter does: a table may be edited at run time.
  const MBCSAction* actions = page.ToUnicodeTable().Actions();
  unsigned short state = 0;
  auto* in = reinterpret_cast<const unsigned char*>(src);
  auto* const inEnd = in + length;
  unsigned short* out = dst;
  unsigned short* const outEnd = dst + room;
  // Each undecodable byte becomes U+FFFD in place. A character cut off by the
  // end of the text is dropped (state is simply abandoned), as the
  // converter's Finish drops it.
  while (DecodeMBCS(actions, state, pass, in, inEnd, out, outEnd) == kNoCharacterDefined && out != outEnd) {
    *out++ = 0xFFFD;
  }
  return out - dst;
}

long EncodeDirect(const DirectCodePage& cp, const UnicodeLibBehavior& behavior, const unsigned short* src,
                  long length, char* dst, long room) {
  const MBCSEncoding& page = *cp.page;
  const PassThrough pass(page.IsBasedOnASCII(), behavior);
  const char* substitute = behavior.ExternalSubstitute();
  char substituteByte = 0;
  long substituteLength = 1;
  if (substitute != nullptr) {
    substituteLength = static_cast<long>(std::strlen(substitute));
  } else {
    substituteByte = page.SubstituteChar();
    substitute = &substituteByte;
  }

  const unsigned short* in = src;
  const unsigned short* const inEnd = src + length;
  char* out = dst;
  char* const limit = dst + room;
  // Copies what fits; false when the substitute was cut, which ends the text.
  auto putSubstitute = [&] {
    const long n = std::min<long>(substituteLength, limit - out);
    std::memcpy(out, substitute, static_cast<std::size_t>(n));
    out += n;
    return n == substituteLength;
  };

  const FromUnicodeFinder finder(page.FromUnicodeTable(), cp.plane, cp.delta);
  finder.With([&](const auto& find) {
    for (;;) {
      // While four bytes of room remain any character fits, so the engine's
      // tight loop runs with no budget to ask.
      const int result = EncodeMBCS(find, pass, in, inEnd, out, limit, true, [](long) { return false; },
                                    finder.Identity());
      if (result == kInputUsedUp) return 0;
      if (result == kNotInTargetRepertoire) {
        if (!putSubstitute()) return 0;
        continue;
      }
      // The last few bytes: character by character, ending at the first
      // that does not fit whole, since a truncated text never resumes with a
      // later, shorter character.
      while (in != inEnd) {
        const unsigned short u = *in;
        if (pass && u <= 0xFF && pass.Has(static_cast<unsigned char>(u))) {
          if (out == limit) return 0;
          *out++ = static_cast<char>(u);
          ++in;
          continue;
        }
        ++in;
        unsigned long code;
        if (!find(u, code)) {
          if (!putSubstitute()) return 0;
          continue;
        }
        const int n = CodeLength(code);
        if (n > limit - out) return 0;
        WriteBigEndian(code, n, out);
      }
      return 0;
    }
  });
  return out - dst;
}

}  // namespace varnice::internal
