#include "varnice/encoding/qz_unicode_per_thread.h"

#include <pthread.h>

#include <new>

#include "varnice/widec/qz_exception.h"

namespace {

pthread_once_t gKeyOnce = PTHREAD_ONCE_INIT;
pthread_key_t gKey;

void FreeBlock(void* block) { delete static_cast<QZUnicodePerThread*>(block); }
void CreateKey() { pthread_key_create(&gKey, FreeBlock); }

}  // namespace

QZUnicodePerThread* QZUnicodePerThread::get() {
  pthread_once(&gKeyOnce, CreateKey);
  auto* block = static_cast<QZUnicodePerThread*>(pthread_getspecific(gKey));
  if (block == nullptr) {
    block = new (std::nothrow) QZUnicodePerThread();
    if (block == nullptr || pthread_setspecific(gKey, block) != 0) {
      delete block;
      throw qz_sw_out_of_memory();
    }
  }
  return block;
}
