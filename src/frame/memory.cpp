// Allocation exports: a count check per element size over zetcore. A count
// outside the range gives NULL without asking zetcore.
#include "zetcore.h"
#include "zetsp.h"

namespace {

// Plain forms: the byte count must stay a positive signed 32-bit value.
template <class T, long long E>
T* allocPlain(int len) {
    if (len < 1 || static_cast<long long>(len) > 0x7FFFFFFFLL / E) return nullptr;
    return static_cast<T*>(zetMalloc(static_cast<int>(len * E)));
}

// _L forms: the count limit is the largest whose byte count fits 64 bits
// unsigned (and at most the signed maximum). A byte count that lands above
// the signed range reaches zetcore negative and is refused there.
template <class T, long long E>
T* allocLong(long long len) {
    constexpr unsigned long long kFit = ~0ULL / static_cast<unsigned long long>(E);
    constexpr long long kMax = kFit > 0x7FFFFFFFFFFFFFFFULL ? 0x7FFFFFFFFFFFFFFFLL : static_cast<long long>(kFit);
    if (len < 1 || len > kMax) return nullptr;
    return static_cast<T*>(zetMalloc_L(static_cast<long long>(static_cast<unsigned long long>(len) * E)));
}

}  // namespace

#define ZET_MALLOC(T, E)                                                    \
    Zet##T* zetsMalloc_##T(int len) { return allocPlain<Zet##T, E>(len); } \
    Zet##T* zetsMalloc_##T##_L(long long len) { return allocLong<Zet##T, E>(len); }

ZET_MALLOC(8u, 1)
ZET_MALLOC(8s, 1)
ZET_MALLOC(16u, 2)
ZET_MALLOC(16s, 2)
ZET_MALLOC(8sc, 2)
ZET_MALLOC(32u, 4)
ZET_MALLOC(32s, 4)
ZET_MALLOC(32f, 4)
ZET_MALLOC(16sc, 4)
ZET_MALLOC(64s, 8)
ZET_MALLOC(64f, 8)
ZET_MALLOC(32fc, 8)
ZET_MALLOC(32sc, 8)
ZET_MALLOC(64fc, 16)
ZET_MALLOC(64sc, 16)

void zetsFree(void* ptr) { zetFree(ptr); }
