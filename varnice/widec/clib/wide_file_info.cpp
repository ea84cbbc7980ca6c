// The wide file functions of qz_wchar.h and the per-file records behind them.
#include "varnice/widec/clib/wide_file_info.h"

#include <cstdio>

#include "varnice/widec/clib/qz_wchar.h"

qz_vector<qz_auto_ptr<WideFileInfo>> WideFileInfo::sFileTable;

WideFileInfo* WideFileInfo::FindFile(std::FILE* file) {
  for (const qz_auto_ptr<WideFileInfo>& info : sFileTable) {
    if (info->fFile == file) return info.get();
  }
  qz_auto_ptr<WideFileInfo> info(new WideFileInfo(file));
  WideFileInfo* record = info.get();
  sFileTable.push_back(std::move(info));
  return record;
}

extern "C" {

qz_wint_t qz_fgetwc(FILE* file) {
  WideFileInfo* info = WideFileInfo::FindFile(file);
  if (info->fHasPushedBack) {
    info->fHasPushedBack = false;
    return info->fPushedBack;
  }
  unsigned short unit;
  if (std::fread(&unit, sizeof unit, 1, file) != 1) return QZ_WEOF;
  return unit;
}

qz_wint_t qz_getwc(FILE* file) { return qz_fgetwc(file); }

qz_wint_t qz_getwchar(void) { return qz_fgetwc(stdin); }

qz_wint_t qz_ungetwc(qz_wint_t c, FILE* file) {
  WideFileInfo* info = WideFileInfo::FindFile(file);
  if (c == QZ_WEOF || info->fHasPushedBack) return QZ_WEOF;
  info->fPushedBack = static_cast<unsigned short>(c);
  info->fHasPushedBack = true;
  std::clearerr(file);
  return c;
}

unsigned short* qz_fgetws(unsigned short* buf, int n, FILE* file) {
  if (n <= 0) return buf;
  unsigned short* p = buf;
  for (int left = n; left > 1; --left) {
    const qz_wint_t c = qz_fgetwc(file);
    if (c == QZ_WEOF) {
      *p = 0;
      // Kept on purpose: end of file with nothing read still returns buf
      // (holding ""); only a read error returns null.
      return std::ferror(file) ? nullptr : buf;
    }
    *p++ = static_cast<unsigned short>(c);
    if (c == 0x000A) break;
  }
  *p = 0;
  return buf;
}

qz_wint_t qz_fputwc(qz_wint_t c, FILE* file) {
  WideFileInfo::FindFile(file);
  // Kept on purpose: a written character takes 4 bytes, though reads take 2.
  static_assert(sizeof(qz_wint_t) == 4);
  const qz_wint_t value = c;
  return std::fwrite(&value, sizeof value, 1, file) == 1 ? c : QZ_WEOF;
}

qz_wint_t qz_putwc(qz_wint_t c, FILE* file) { return qz_fputwc(c, file); }

qz_wint_t qz_putwchar(qz_wint_t c) { return qz_fputwc(c, stdout); }

int qz_fputws(const unsigned short* s, FILE* file) {
  WideFileInfo::FindFile(file);
  const size_t n = qz_wcslen(s);
  if (std::fwrite(s, sizeof *s, n, file) != n) return -1;
  return static_cast<int>(n);
}

int qz_fwide(FILE* file, int mode) {
  WideFileInfo* info = WideFileInfo::FindFile(file);
  if (mode != 0) {
    info->fWide = mode > 0;
    info->fHasPushedBack = false;
  }
  // Kept on purpose: never 0, so a file not yet oriented answers -1.
  return info->fWide ? 1 : -1;
}

}  // extern "C"
