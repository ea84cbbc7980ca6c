// The library's general exceptions. Messages are copied into a fixed buffer so
// that throwing never needs the heap (qz_sw_out_of_memory must work when the
// heap is exhausted).
#ifndef VARNICE_WIDEC_QZ_EXCEPTION_H_
#define VARNICE_WIDEC_QZ_EXCEPTION_H_

#include <exception>

#include "varnice/varnice_export.h"

class VARNICE_API qz_exception : public std::exception {
 public:
  explicit qz_exception(const char* message = "qz_exception");
  qz_exception(const qz_exception&) = default;
  qz_exception& operator=(const qz_exception&) = default;
  ~qz_exception() override;
  const char* what() const noexcept override;

 private:
  char message_[256];
};

// A broken precondition: the caller asked for something that cannot be.
class VARNICE_API qz_logic_error : public qz_exception {
 public:
  explicit qz_logic_error(const char* message = "logic error");
  ~qz_logic_error() override;
};

// An index or position outside the object.
class VARNICE_API qz_out_of_range : public qz_logic_error {
 public:
  explicit qz_out_of_range(const char* message = "out of range");
  ~qz_out_of_range() override;
};

// Memory ran out.
class VARNICE_API qz_sw_out_of_memory : public qz_exception {
 public:
  explicit qz_sw_out_of_memory(const char* message = "out of memory");
  ~qz_sw_out_of_memory() override;
};

#endif  // VARNICE_WIDEC_QZ_EXCEPTION_H_
