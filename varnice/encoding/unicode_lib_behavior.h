// UnicodeLibBehavior: the policy every converting stage consults when a
// character cannot be converted, plus a few library-wide switches.
//
// By default a byte sequence that has no Unicode character becomes U+FFFD,
// and a character that an external encoding cannot represent becomes the
// configured external substitute, else the encoding's substitute byte (0x1A).
// Subclass and override the Handle... operations to change the policy: call
// the problem's InsertOutput (write a substitute), InsertInput (convert a
// replacement instead), neither (drop the input), or throw (stop the
// conversion; the exception leaves the converter's read or write call).
#ifndef VARNICE_ENCODING_UNICODE_LIB_BEHAVIOR_H_
#define VARNICE_ENCODING_UNICODE_LIB_BEHAVIOR_H_

#include "varnice/encoding/conversion_problem.h"
#include "varnice/varnice_export.h"
#include "varnice/widec/qz_string.h"

class VARNICE_API UnicodeLibBehavior {
 public:
  constexpr UnicodeLibBehavior() noexcept
      : displayAutoDetectMessages_(false), forcedDirectMapping_(), externalSubstitute_(nullptr) {}
  UnicodeLibBehavior(const UnicodeLibBehavior& other);
  // Copies *other; a null pointer gives the initial values.
  explicit UnicodeLibBehavior(const UnicodeLibBehavior* other);
  UnicodeLibBehavior& operator=(const UnicodeLibBehavior& other);
  virtual ~UnicodeLibBehavior();

  virtual void HandleExternalToInternalConversionProblem(ExternalToInternalConversionProblem& problem);
  virtual void HandleInternalToExternalConversionProblem(InternalToExternalConversionProblem& problem);
  // Each kind falls back on its direction's general handler.
  virtual void HandleIllegalByteRange(IllegalByteRange& problem);
  virtual void HandleNoCharacterDefinedForCodepoint(NoCharacterDefinedForCodepoint& problem);
  virtual void HandleCharacterNotInRepertoire(CharacterNotInRepertoire& problem);

  // Whether automatic detection reports its reasoning on standard error.
  virtual bool DisplayAutoDetectMessages() const;
  virtual bool SetDisplayAutoDetectMessages(bool display);  // returns the old value

  // Characters (given as bytes) that the code-page converters map straight
  // through as the same code point, in both directions.
  virtual bool HasForcedDirectMapping() const;
  virtual qz_string ForcedDirectMapping() const;
  virtual qz_string SetForcedDirectMapping(qz_string characters);  // returns the old set
  virtual qz_string SetForcedDirectMapping(const char* characters);  // null clears
  virtual qz_string SetForcedDirectMapping();                        // backslash and tilde
  virtual qz_string ClearForcedDirectMapping();

  // The bytes written for an unrepresentable character; null for none (the
  // encoding's own substitute byte is used then). The text is copied.
  virtual void SetExternalSubstitute(const char* substitute);
  const char* ExternalSubstitute() const { return externalSubstitute_; }

  // The process-wide default behaviour, which actors capture when they are
  // constructed. Set it before converting on several threads.
  static UnicodeLibBehavior* GetDefaultBehavior();
  // Installs a new default; returns the previous one (the initial object the
  // first time).
  static UnicodeLibBehavior* SetDefaultBehavior(UnicodeLibBehavior* behavior);
  static UnicodeLibBehavior* SetDefaultBehavior(UnicodeLibBehavior& behavior);

  static UnicodeLibBehavior gInitialDefaultBehavior;
  static UnicodeLibBehavior* gGlobalDefaultBehavior;

 private:
  bool displayAutoDetectMessages_;
  qz_string forcedDirectMapping_;
  char* externalSubstitute_;
};

#endif  // VARNICE_ENCODING_UNICODE_LIB_BEHAVIOR_H_
