#include "varnice/codepages/mbcs_to_unicode_table.h"

#include <cstdio>

namespace {

// The bytes of code, most significant first, without leading zero bytes (the
// code 0 is the single byte 0). Returns the count.
int CodeBytes(unsigned long code, unsigned char (&bytes)[4]) {
  int n = code > 0xFFFFFF ? 4 : code > 0xFFFF ? 3 : code > 0xFF ? 2 : 1;
  for (int i = 0; i < n; ++i) bytes[i] = static_cast<unsigned char>(code >> (8 * (n - 1 - i)));
  return n;
}

}  // namespace

MBCStoUnicodeTable::MBCStoUnicodeTable()
    : SimpleFiniteStateMachine<unsigned char, unsigned short>(256, 1, kInvalid) {}

MBCStoUnicodeTable::MBCStoUnicodeTable(unsigned int inputs, unsigned short states,
                                       FiniteStateMachineAction<unsigned short> const* actions)
    : SimpleFiniteStateMachine<unsigned char, unsigned short>(inputs, states, actions) {}

MBCStoUnicodeTable::MBCStoUnicodeTable(MBCStoUnicodeTable const& other) = default;

MBCStoUnicodeTable::~MBCStoUnicodeTable() = default;

unsigned short MBCStoUnicodeTable::CreateState() {
  return AddState(kInvalid, StateCount());
}

unsigned short MBCStoUnicodeTable::WalkCreating(unsigned long code, unsigned short start) {
  unsigned char bytes[4];
  int n = CodeBytes(code, bytes);
  unsigned short state = start;
  for (int i = 0; i < n - 1; ++i) {
    if (GetAction(state, bytes[i]).output == kInvalid) {
      // Kept verbatim: existing table-building scripts look for this line.
      if (bytes[i] == 1) std::fprintf(stderr, "Loser is 0x%08lX\n", code);
      unsigned short created = CreateState();
      InternalSetTransition(state, &bytes[i], 1, kNoOutput, created);
    }
    state = GetAction(state, bytes[i]).nextState;
  }
  return state;
}

void MBCStoUnicodeTable::SetFinal(unsigned long code, unsigned short state,
                                  unsigned short output, unsigned short next) {
  unsigned char bytes[4];
  unsigned char last = bytes[CodeBytes(code, bytes) - 1];
  unsigned short old = GetAction(state, last).output;
  if (old != kInvalid) {
    std::fprintf(stderr, "ERROR: foreign char 0x%08lX is already mapped to U+0x%04X\n", code, old);
    std::fprintf(stderr, "       It cannot be remapped to U+0x%04X\n", output);
  }
  InternalSetTransition(state, &last, 1, output, next);
}

void MBCStoUnicodeTable::Assign(unsigned long code, unsigned short unicode, unsigned short start) {
  SetFinal(code, WalkCreating(code, start), unicode, 0);
}

void MBCStoUnicodeTable::CreateModeSwitch(unsigned short start, unsigned long code,
                                          unsigned short mode) {
  SetFinal(code, WalkCreating(code, start), kNoOutput, mode);
}

bool MBCStoUnicodeTable::Lookup(unsigned long code, unsigned short& unicode,
                                unsigned short start) const {
  unsigned char bytes[4];
  int n = CodeBytes(code, bytes);
  unsigned short state = start;
  for (int i = 0; i < n - 1; ++i) {
    FiniteStateMachineAction<unsigned short> const& a = GetAction(state, bytes[i]);
    if (a.output != kNoOutput) return false;
    state = a.nextState;
  }
  unsigned short out = GetAction(state, bytes[n - 1]).output;
  if (out == kNoOutput || out == kInvalid) return false;
  unicode = out;
  return true;
}
