// Decodes EUC-JP through the class interface of an installed Varnice.
#include <varnice/varnice.h>

#include <cstdio>

int main() {
  EncodingCatalogue::CreateAll();
  const ExternalEncoding* euc = ExternalEncoding::Lookup("EUC-JP");
  const ExternalEncoding* utf8 = ExternalEncoding::Lookup("UTF-8");
  if (euc == nullptr || utf8 == nullptr) return 1;
  const char bytes[] = "\xc6\xfc\xcb\xdc\xb8\xec";  // 日本語
  qz_wstring wide(bytes, 6, *euc);
  qz_string back(wide.c_str(), wide.size(), *utf8);
  std::printf("%s %u\n", back.c_str(), static_cast<unsigned>(wide.size()));
  return wide.size() == 3 && VARNICE_VERSION_MAJOR == 2 ? 0 : 1;
}
