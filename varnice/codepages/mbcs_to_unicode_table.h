// MBCStoUnicodeTable: the byte state machine that decodes a table-driven code
// page. One column per byte value; the action for (state, byte) says which
// UTF-16 code unit to emit and where to go next. State 0 reads the first byte
// of a character.
//
// Stored code pages are byte tries over constant action arrays: a lead byte
// leads to a state of its own whose row holds the codes that begin with it.
// Tables can also be built or patched at run time with Assign, CreateState and
// CreateModeSwitch; the first edit copies constant actions (copy on write).
#ifndef VARNICE_CODEPAGES_MBCS_TO_UNICODE_TABLE_H_
#define VARNICE_CODEPAGES_MBCS_TO_UNICODE_TABLE_H_

#include "varnice/tables/finite_state_machine_action.h"
#include "varnice/tables/simple_finite_state_machine.h"
#include "varnice/varnice_export.h"

class VARNICE_API MBCStoUnicodeTable : public SimpleFiniteStateMachine<unsigned char, unsigned short> {
 public:
  // Reserved outputs; every other output is a code unit to emit.
  static constexpr unsigned short kNoOutput = 0xFFFF;  // a lead byte or a mode switch
  static constexpr unsigned short kInvalid = 0xFFFD;   // no character uses this byte here

  // One state in which every byte is invalid.
  MBCStoUnicodeTable();
  // Uses actions (states rows of inputs actions) in place until edited.
  MBCStoUnicodeTable(unsigned int inputs, unsigned short states,
                     FiniteStateMachineAction<unsigned short> const* actions);
  MBCStoUnicodeTable(MBCStoUnicodeTable const& other);
  ~MBCStoUnicodeTable() override;

  // Maps code (its big-endian bytes without leading zero bytes), read from
  // state start, to unicode, creating states for new lead bytes. Remapping an
  // already mapped code is reported on standard error and done anyway.
  void Assign(unsigned long code, unsigned short unicode, unsigned short start);
  // Appends a state in which every byte is invalid and stays in that state;
  // returns its number.
  unsigned short CreateState();
  // As Assign, but the code's last byte produces nothing and moves the
  // machine to state mode: a shift or escape sequence.
  void CreateModeSwitch(unsigned short start, unsigned long code, unsigned short mode);
  // The code unit of code read from state start; false when a non-final byte
  // is not a lead byte or the final byte has no character.
  bool Lookup(unsigned long code, unsigned short& unicode, unsigned short start) const;

 private:
  // Walks code's bytes but the last from start, giving invalid lead bytes a
  // new state; returns the state that reads the last byte.
  unsigned short WalkCreating(unsigned long code, unsigned short start);
  // Sets the last byte's action, reporting a remap of a mapped code.
  void SetFinal(unsigned long code, unsigned short state, unsigned short output,
                unsigned short next);
};

#endif  // VARNICE_CODEPAGES_MBCS_TO_UNICODE_TABLE_H_
