#include "varnice/encoding/external_encoding_detector.h"

ExternalEncodingDetector::~ExternalEncodingDetector() = default;

void ExternalEncodingDetector::Finish(const char*, const char*) {}
