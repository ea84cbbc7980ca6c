// ISO2022Subencoding: one of the encodings an ISO-2022 encoding switches
// between, and the escape sequence that selects it. Lists of them end with a
// record whose two fields are null.
#ifndef VARNICE_CODEPAGES_ISO2022_SUBENCODING_H_
#define VARNICE_CODEPAGES_ISO2022_SUBENCODING_H_

class ExternalEncoding;

struct ISO2022Subencoding {
  // Only the first 3 bytes are used.
  char const* escape;
  ExternalEncoding const* encoding;
};

#endif  // VARNICE_CODEPAGES_ISO2022_SUBENCODING_H_
