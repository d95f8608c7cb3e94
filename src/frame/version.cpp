// The version record: one constant object in read-only data.
#include "zetsp.h"

namespace {

constexpr ZetLibVersion kVersion = {
    2026,
    0,
    0,
    static_cast<int>(0xA7AD6EBCu),
    {'r', '7', '\0', '\0'},
    "zetSP AVX2 (r7)",
    "2026.0.0 (r0xa7ad6ebc)",
    "Mar 27 2026",
};

}  // namespace

const ZetLibVersion* zetsGetLibVersion(void) { return &kVersion; }
