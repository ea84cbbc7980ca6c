#include "varnice/encoding/unicode_lib_behavior.h"

#include <cstring>
#include <new>

#include "varnice/encoding/actors/unicode_lib_actor.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/widec/qz_exception.h"

namespace {

char* CopyOf(const char* text) {
  if (text == nullptr) return nullptr;
  const std::size_t n = std::strlen(text) + 1;
  char* copy = new (std::nothrow) char[n];
  if (copy == nullptr) throw qz_sw_out_of_memory();
  std::memcpy(copy, text, n);
  return copy;
}

}  // namespace

// Constant-initialised, so it is usable from any other static initialiser.
constinit UnicodeLibBehavior UnicodeLibBehavior::gInitialDefaultBehavior;
constinit UnicodeLibBehavior* UnicodeLibBehavior::gGlobalDefaultBehavior = nullptr;

UnicodeLibBehavior::UnicodeLibBehavior(const UnicodeLibBehavior& other)
    : displayAutoDetectMessages_(other.displayAutoDetectMessages_),
      forcedDirectMapping_(other.forcedDirectMapping_),
      externalSubstitute_(CopyOf(other.externalSubstitute_)) {}

UnicodeLibBehavior::UnicodeLibBehavior(const UnicodeLibBehavior* other) : UnicodeLibBehavior() {
  if (other != nullptr) *this = *other;
}

UnicodeLibBehavior& UnicodeLibBehavior::operator=(const UnicodeLibBehavior& other) {
  if (this != &other) {
    char* substitute = CopyOf(other.externalSubstitute_);
    delete[] externalSubstitute_;
    externalSubstitute_ = substitute;
    displayAutoDetectMessages_ = other.displayAutoDetectMessages_;
    forcedDirectMapping_ = other.forcedDirectMapping_;
  }
  return *this;
}

UnicodeLibBehavior::~UnicodeLibBehavior() { delete[] externalSubstitute_; }

void UnicodeLibBehavior::HandleExternalToInternalConversionProblem(
    ExternalToInternalConversionProblem& problem) {
  static const unsigned short kReplacementCharacter = 0xFFFD;
  problem.InsertOutput(&kReplacementCharacter, &kReplacementCharacter + 1);
}

void UnicodeLibBehavior::HandleInternalToExternalConversionProblem(
    InternalToExternalConversionProblem& problem) {
  if (externalSubstitute_ != nullptr) {
    problem.InsertOutput(externalSubstitute_, nullptr);
    return;
  }
  const char substitute = problem.target.SubstituteChar();
  problem.InsertOutput(&substitute, &substitute + 1);
}

void UnicodeLibBehavior::HandleIllegalByteRange(IllegalByteRange& problem) {
  HandleExternalToInternalConversionProblem(problem);
}

void UnicodeLibBehavior::HandleNoCharacterDefinedForCodepoint(NoCharacterDefinedForCodepoint& problem) {
  HandleExternalToInternalConversionProblem(problem);
}

void UnicodeLibBehavior::HandleCharacterNotInRepertoire(CharacterNotInRepertoire& problem) {
  HandleInternalToExternalConversionProblem(problem);
}

bool UnicodeLibBehavior::DisplayAutoDetectMessages() const { return displayAutoDetectMessages_; }

bool UnicodeLibBehavior::SetDisplayAutoDetectMessages(bool display) {
  const bool old = displayAutoDetectMessages_;
  displayAutoDetectMessages_ = display;
  return old;
}

bool UnicodeLibBehavior::HasForcedDirectMapping() const { return !forcedDirectMapping_.empty(); }

qz_string UnicodeLibBehavior::ForcedDirectMapping() const { return forcedDirectMapping_; }

qz_string UnicodeLibBehavior::SetForcedDirectMapping(qz_string characters) {
  qz_string old = forcedDirectMapping_;
  forcedDirectMapping_ = characters;
  return old;
}

qz_string UnicodeLibBehavior::SetForcedDirectMapping(const char* characters) {
  return SetForcedDirectMapping(characters != nullptr ? qz_string(characters) : qz_string());
}

qz_string UnicodeLibBehavior::SetForcedDirectMapping() { return SetForcedDirectMapping("\\~"); }

qz_string UnicodeLibBehavior::ClearForcedDirectMapping() {
  return SetForcedDirectMapping(static_cast<const char*>(nullptr));
}

void UnicodeLibBehavior::SetExternalSubstitute(const char* substitute) {
  char* copy = CopyOf(substitute);
  delete[] externalSubstitute_;
  externalSubstitute_ = copy;
}

UnicodeLibBehavior* UnicodeLibBehavior::GetDefaultBehavior() {
  if (gGlobalDefaultBehavior == nullptr) gGlobalDefaultBehavior = &gInitialDefaultBehavior;
  return gGlobalDefaultBehavior;
}

UnicodeLibBehavior* UnicodeLibBehavior::SetDefaultBehavior(UnicodeLibBehavior* behavior) {
  UnicodeLibBehavior* old = GetDefaultBehavior();
  gGlobalDefaultBehavior = behavior;
  return old;
}

UnicodeLibBehavior* UnicodeLibBehavior::SetDefaultBehavior(UnicodeLibBehavior& behavior) {
  return SetDefaultBehavior(&behavior);
}

// Every stage captures the default current when it is made.
UnicodeLibActor::UnicodeLibActor() : behavior_(UnicodeLibBehavior::GetDefaultBehavior()) {}
UnicodeLibActor::UnicodeLibActor(UnicodeLibBehavior* behavior)
    : behavior_(behavior != nullptr ? behavior : UnicodeLibBehavior::GetDefaultBehavior()) {}
UnicodeLibActor::UnicodeLibActor(const UnicodeLibActor* other)
    : behavior_(other != nullptr ? other->behavior_ : UnicodeLibBehavior::GetDefaultBehavior()) {}
