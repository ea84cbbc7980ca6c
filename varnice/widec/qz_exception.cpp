#include "varnice/widec/qz_exception.h"

#include <cstring>

qz_exception::qz_exception(const char* message) {
  std::strncpy(message_, message ? message : "", sizeof message_ - 1);
  message_[sizeof message_ - 1] = '\0';
}
qz_exception::~qz_exception() = default;
const char* qz_exception::what() const noexcept { return message_; }

qz_logic_error::qz_logic_error(const char* message) : qz_exception(message) {}
qz_logic_error::~qz_logic_error() = default;

qz_out_of_range::qz_out_of_range(const char* message) : qz_logic_error(message) {}
qz_out_of_range::~qz_out_of_range() = default;

qz_sw_out_of_memory::qz_sw_out_of_memory(const char* message) : qz_exception(message) {}
qz_sw_out_of_memory::~qz_sw_out_of_memory() = default;
