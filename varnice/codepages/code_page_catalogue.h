// The catalogue of code pages: the table-driven pages and ISO-2022-JP, each
// with its number, names, MIME name, code page, ASCII flag and tables, are
// listed once, in data/codepages/catalogue.txt. tools/gen/gen_codepages.py
// writes from it the tables (generated/<page>.cpp), the factories
// (ExternalEncoding::ShiftJIS() and the others) and the function below
// (generated/code_page_catalogue.cpp).
#ifndef VARNICE_CODEPAGES_CODE_PAGE_CATALOGUE_H_
#define VARNICE_CODEPAGES_CODE_PAGE_CATALOGUE_H_

namespace varnice::internal {

// Makes every code page and ISO-2022-JP, in the order of their numbers, so
// that the registry lists them in that order.
void CreateCodePages();

}  // namespace varnice::internal

#endif  // VARNICE_CODEPAGES_CODE_PAGE_CATALOGUE_H_
