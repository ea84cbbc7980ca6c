// CharSource: a pull stream of bytes. A source lends the caller a range of its
// own data (no copy):
//
//   const char* b; const char* e;
//   while (source.GetBuffer(b, e)) {
//     const char* p = Consume(b, e);   // any prefix [b, p)
//     source.DoneWith(p);
//   }
//
// The range stays valid until the next FillBuffer or the source's destruction.
// A reader that consumes nothing gets the same range again; FillBuffer is only
// called once the range is used up.
#ifndef VARNICE_STREAM_CHAR_SOURCE_H_
#define VARNICE_STREAM_CHAR_SOURCE_H_

#include "varnice/encoding/actors/unicode_lib_actor.h"
#include "varnice/varnice_export.h"

class VARNICE_API CharSource : public virtual UnicodeLibActor {
 public:
  CharSource() = default;
  // A copy takes the other's behaviour but not its position: both pointers start null.
  CharSource(const CharSource& other);
  explicit CharSource(const UnicodeLibActor& actor);
  explicit CharSource(const UnicodeLibActor* actor);

  // Makes more data available; false at end of input.
  virtual bool FillBuffer() = 0;
  ~CharSource() override;

  // Lends [begin, end) of the unread data; false (arguments untouched) at end of input.
  bool GetBuffer(const char*& begin, const char*& end);
  bool GetBuffer(const unsigned char*& begin, const unsigned char*& end);
  // Everything before `p` is consumed; a null `p` changes nothing.
  void DoneWith(const char* p) {
    if (p != nullptr) position_ = p;
  }
  void DoneWith(const unsigned char* p) { DoneWith(reinterpret_cast<const char*>(p)); }

 protected:
  CharSource& operator=(const CharSource&) { return *this; }

  // Subclasses set the lent range from FillBuffer.
  const char* position_ = nullptr;
  const char* end_ = nullptr;
};

#endif  // VARNICE_STREAM_CHAR_SOURCE_H_
