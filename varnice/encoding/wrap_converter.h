// Helper of the stream factories: a converting stream owns its block converter
// once constructed; if placing the stream fails, the converter must go too.
// Internal to the library.
#ifndef VARNICE_ENCODING_WRAP_CONVERTER_H_
#define VARNICE_ENCODING_WRAP_CONVERTER_H_

namespace varnice::internal {

// Returns make(converter); deletes the converter if make throws.
template <class Converter, class Make>
auto WrapConverter(Converter* converter, Make make) {
  try {
    return make(converter);
  } catch (...) {
    delete converter;
    throw;
  }
}

}  // namespace varnice::internal

#endif  // VARNICE_ENCODING_WRAP_CONVERTER_H_
