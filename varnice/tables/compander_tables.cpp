// Entries are {low, kind, next}; offset and multiplier start at zero and are
// computed by the Compander. Every sub-table starts at byte 0 and ends with a
// terminator at 256. The bracketed numbers are entry indices, which `next`
// refers to.
#include "varnice/tables/compander_tables.h"

namespace {

constexpr std::int32_t F = CompanderEntry::kFinal;
constexpr std::int32_t L = CompanderEntry::kLead;
constexpr std::int32_t X = CompanderEntry::kInvalid;
constexpr std::int32_t kEnd = 256;

}  // namespace

CompanderEntry latin_compander_table[] = {
    {0x00, F, 0}, {kEnd, X, 0},
};

CompanderEntry sjis_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x80, X, 0}, {0x81, L, 8}, {0xA0, X, 0}, {0xA1, F, 0}, {0xE0, L, 8},
    {0xEB, X, 0}, {kEnd, X, 0},
    // [8] trail byte
    {0x00, X, 0}, {0x40, F, 0}, {0x7F, X, 0}, {0x80, F, 0}, {0xFD, X, 0}, {kEnd, X, 0},
};

CompanderEntry cp932_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x80, X, 0}, {0x81, L, 12}, {0xA0, X, 0}, {0xA1, F, 0}, {0xE0, L, 12},
    {0xEB, X, 0}, {0xED, L, 12}, {0xEF, X, 0}, {0xFA, L, 12}, {0xFD, X, 0}, {kEnd, X, 0},
    // [12] trail byte
    {0x00, X, 0}, {0x40, F, 0}, {0x7F, X, 0}, {0x80, F, 0}, {0xFD, X, 0}, {kEnd, X, 0},
};

CompanderEntry gb_2312_80_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0xA1, L, 4}, {0xFF, F, 0}, {kEnd, X, 0},
    // [4] trail byte
    {0x00, X, 0}, {0xA1, F, 0}, {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry euc_kr_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0xA1, L, 4}, {0xFF, F, 0}, {kEnd, X, 0},
    // [4] trail byte
    {0x00, X, 0}, {0xA1, F, 0}, {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry big_5_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x81, L, 4}, {0xFF, F, 0}, {kEnd, X, 0},
    // [4] trail byte
    {0x00, X, 0}, {0x40, F, 0}, {0x7F, X, 0}, {0xA1, F, 0}, {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry ks_c_5601_1987_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x81, L, 4}, {0xFF, F, 0}, {kEnd, X, 0},
    // [4] trail byte
    {0x00, X, 0}, {0x41, F, 0}, {0x5B, X, 0}, {0x61, F, 0}, {0x7B, X, 0}, {0x81, F, 0},
    {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry cp949_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x81, L, 5}, {0xC7, L, 13}, {0xFF, F, 0}, {kEnd, X, 0},
    // [5] trail byte after 0x81-0xC6
    {0x00, X, 0}, {0x41, F, 0}, {0x5B, X, 0}, {0x61, F, 0}, {0x7B, X, 0}, {0x81, F, 0},
    {0xFF, X, 0}, {kEnd, X, 0},
    // [13] trail byte after 0xC7-0xFE
    {0x00, X, 0}, {0xA1, F, 0}, {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry ks_c_5601_1992_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x84, L, 8}, {0xD4, F, 0}, {0xD8, L, 8}, {0xDF, F, 0}, {0xE0, L, 8},
    {0xFA, F, 0}, {kEnd, X, 0},
    // [8] trail byte
    {0x00, X, 0}, {0x41, F, 0}, {0x7F, X, 0}, {0x81, F, 0}, {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry jeuc_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x80, X, 0}, {0x8E, L, 10}, {0x8F, L, 14}, {0x90, X, 0}, {0xA1, L, 24},
    {0xA9, X, 0}, {0xB0, L, 24}, {0xF5, X, 0}, {kEnd, X, 0},
    // [10] after 0x8E: half-width katakana
    {0x00, X, 0}, {0xA1, F, 0}, {0xE0, X, 0}, {kEnd, X, 0},
    // [14] after 0x8F: first byte of the supplementary set
    {0x00, X, 0}, {0xA2, L, 24}, {0xA3, X, 0}, {0xA6, L, 24}, {0xA8, X, 0}, {0xA9, L, 24},
    {0xAC, X, 0}, {0xB0, L, 24}, {0xEE, X, 0}, {kEnd, X, 0},
    // [24] last byte of a two- or three-byte character
    {0x00, X, 0}, {0xA1, F, 0}, {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry cns11643_1986_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x80, X, 0}, {0x8E, L, 9}, {0x8F, X, 0}, {0xA1, L, 19}, {0xA7, X, 0},
    {0xC2, L, 19}, {0xFE, X, 0}, {kEnd, X, 0},
    // [9] after 0x8E: plane byte
    {0x00, X, 0}, {0xA1, L, 15}, {0xA3, X, 0}, {0xAE, L, 15}, {0xAF, X, 0}, {kEnd, X, 0},
    // [15] first byte within the plane
    {0x00, X, 0}, {0xA1, L, 19}, {0xFF, X, 0}, {kEnd, X, 0},
    // [19] last byte
    {0x00, X, 0}, {0xA1, F, 0}, {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry cns11643_1992_compander_table[] = {
    // [0] first byte
    {0x00, F, 0}, {0x80, X, 0}, {0x8E, L, 9}, {0x8F, X, 0}, {0xA1, L, 17}, {0xAA, X, 0},
    {0xC2, L, 17}, {0xFE, X, 0}, {kEnd, X, 0},
    // [9] after 0x8E: plane byte
    {0x00, X, 0}, {0xA1, L, 13}, {0xA8, X, 0}, {kEnd, X, 0},
    // [13] first byte within the plane
    {0x00, X, 0}, {0xA1, L, 17}, {0xFF, X, 0}, {kEnd, X, 0},
    // [17] last byte
    {0x00, X, 0}, {0xA1, F, 0}, {0xFF, X, 0}, {kEnd, X, 0},
};

CompanderEntry jis_x_0208_compander_table[] = {
    // [0] first byte
    {0x00, X, 0}, {0x21, L, 4}, {0x7F, X, 0}, {kEnd, X, 0},
    // [4] second byte
    {0x00, X, 0}, {0x21, F, 0}, {0x7F, X, 0}, {kEnd, X, 0},
};

CompanderEntry iso_2022_kr_compander_table[] = {
    // [0] first byte
    {0x00, X, 0}, {0x21, L, 4}, {0x7F, X, 0}, {kEnd, X, 0},
    // [4] second byte
    {0x00, X, 0}, {0x21, F, 0}, {0x7F, X, 0}, {kEnd, X, 0},
};
