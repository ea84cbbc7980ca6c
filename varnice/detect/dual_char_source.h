// DualCharSource: reads one byte source to its end, then another. Detection
// uses it to replay the bytes it examined ahead of the rest of the input.
// Ranges are lent straight from the source being read (no copy).
#ifndef VARNICE_DETECT_DUAL_CHAR_SOURCE_H_
#define VARNICE_DETECT_DUAL_CHAR_SOURCE_H_

#include "varnice/stream/char_source.h"
#include "varnice/varnice_export.h"

class VARNICE_API DualCharSource : public virtual CharSource {
 public:
  // Neither source is owned; both must outlive this one. The behaviour is
  // the first source's.
  DualCharSource(CharSource& first, CharSource& second);
  ~DualCharSource() override;
  bool FillBuffer() override;

 private:
  // Hands back what was consumed of the source being read and borrows its
  // next range; false when it has no more.
  bool Borrow(CharSource& source);

  CharSource* first_;
  CharSource* second_;
  int phase_ = 0;  // 0 reading the first, 1 reading the second, 2 finished
};

#endif  // VARNICE_DETECT_DUAL_CHAR_SOURCE_H_
