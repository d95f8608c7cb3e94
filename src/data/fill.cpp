// Set and Zero. Zero has no streaming path and switches to the string store
// above 2 MiB (32 KiB for bytes); Set streams past the largest cache. The
// asymmetry is deliberate.
#include <cstring>

#include "bytes.hpp"
#include "short_moves.hpp"
#include "frame/checks.hpp"
#include "frame/chunk.hpp"
#include "frame/simd.hpp"
#include "zetcore.h"

namespace zet::data {

using u8 = std::uint8_t;

ZetStatus zero8u(void* dst, int len) {
    if (auto st = checkArgs(len, dst)) return st;
    auto* d = static_cast<u8*>(dst);
    if (len <= 256) zeroShort(d, static_cast<std::size_t>(len));
    else if (len <= 32768) zeroWide(d, static_cast<std::uint32_t>(len));
    else zeroLarge(d, static_cast<std::uint32_t>(len));
    return zetStsOk;
}

// The byte count is formed in 32 bits: at 4 GiB it wraps (to 0 for 2^30
// floats, where the wide kernel clears a single byte); the _L forms exist
// for such sizes.
template <std::size_t E>
ZetStatus zeroElems(void* dst, int len) {
    if constexpr (E == 1) return zero8u(dst, len);
    if (auto st = checkArgs(len, dst)) return st;
    auto* d = static_cast<u8*>(dst);
    const std::uint32_t bytes = static_cast<std::uint32_t>(len) * static_cast<std::uint32_t>(E);
    if (bytes <= 256u) zeroShort(d, bytes);
    else if (bytes <= 2097152u) zeroWide(d, bytes);
    else zeroLarge(d, bytes);
    return zetStsOk;
}

template <std::size_t E>
ZetStatus zeroElemsL(void* dst, long long len) {
    auto* d = static_cast<u8*>(dst);
    return chunked<E>(len, [&](long long off, int n) {
        return zeroElems<E>(d ? d + off * static_cast<long long>(E) : d, n);
    });
}

namespace {

// Whether a fill above 2 MiB streams past the cache, by element size.
template <std::size_t E>
bool fillStreams(const u8* d, long long len) {
    int cache = 0;
    if constexpr (E == 1) {
        if (len <= 2097152) return false;
        return zetGetMaxCacheSizeB(&cache) == 0 && cache > 0 && len > cache;
    } else if constexpr (E == 2 || E == 4) {
        if (len < 2097153 / static_cast<long long>(E) + 1 || simd::addr(d) % E) return false;
        return zetGetMaxCacheSizeB(&cache) == 0 && cache > 0 && len * static_cast<long long>(E) > cache;
    } else {
        // 8-byte elements, and 16-byte patterns taken as pairs of them.
        constexpr long long kPairs = E / 8;
        if (len * kPairs < 262145 || simd::addr(d) % 8) return false;
        return zetGetMaxCacheSizeB(&cache) == 0 && len * kPairs > cache / 8;
    }
}

}  // namespace

// Above 256 bytes: the route is chosen on the byte count formed in 32 bits
// (compared unsigned), but every one of the len elements is written.
template <std::size_t E>
[[gnu::noinline]] void setBulk(__m256i v, u8* d, int len) {
    const std::uint32_t bytes = static_cast<std::uint32_t>(len) * static_cast<std::uint32_t>(E);
    if (bytes > 2097152u && fillStreams<E>(d, len)) fillStream<E>(d, v, static_cast<std::size_t>(len));
    else fillPlain<E>(d, v, static_cast<std::size_t>(len));
}

template <std::size_t E>
ZetStatus setElems(__m256i v, void* dst, int len) {
    if (auto st = checkArgs(len, dst)) return st;
    auto* d = static_cast<u8*>(dst);
    const long long bytes = static_cast<long long>(len) * static_cast<long long>(E);
    if (bytes <= 256 && simd::addr(d) % (E < 8 ? E : 8) == 0) fillShort(d, v, static_cast<std::size_t>(bytes));
    else setBulk<E>(v, d, len);
    return zetStsOk;
}

template ZetStatus zeroElems<1>(void*, int);
template ZetStatus zeroElems<2>(void*, int);
template ZetStatus zeroElems<4>(void*, int);
template ZetStatus zeroElems<8>(void*, int);
template ZetStatus zeroElems<16>(void*, int);
template ZetStatus zeroElemsL<4>(void*, long long);
template ZetStatus zeroElemsL<8>(void*, long long);
template ZetStatus zeroElemsL<16>(void*, long long);
template ZetStatus setElems<1>(__m256i, void*, int);
template ZetStatus setElems<2>(__m256i, void*, int);
template ZetStatus setElems<4>(__m256i, void*, int);
template ZetStatus setElems<8>(__m256i, void*, int);
template ZetStatus setElems<16>(__m256i, void*, int);

}  // namespace zet::data

using namespace zet::data;

#define ZET_SET_ZERO(T, E)                                                                                       \
    ZetStatus zetsSet_##T(Zet##T val, Zet##T* d, int len) { return setElems<E>(broadcastValue(val), d, len); } \
    ZetStatus zetsZero_##T(Zet##T* d, int len) { return zeroElems<E>(d, len); }

ZetStatus zetsSet_8u(Zet8u val, Zet8u* d, int len) { return setElems<1>(broadcastValue(val), d, len); }
ZetStatus zetsZero_8u(Zet8u* d, int len) { return zero8u(d, len); }
ZET_SET_ZERO(16s, 2)
ZET_SET_ZERO(16sc, 4)
ZET_SET_ZERO(32s, 4)
ZET_SET_ZERO(32f, 4)
ZET_SET_ZERO(32sc, 8)
ZET_SET_ZERO(32fc, 8)
ZET_SET_ZERO(64s, 8)
ZET_SET_ZERO(64f, 8)
ZET_SET_ZERO(64sc, 16)
ZET_SET_ZERO(64fc, 16)

ZetStatus zetsZero_32f_L(Zet32f* d, long long len) { return zeroElemsL<4>(d, len); }
ZetStatus zetsZero_32fc_L(Zet32fc* d, long long len) { return zeroElemsL<8>(d, len); }
ZetStatus zetsZero_64f_L(Zet64f* d, long long len) { return zeroElemsL<8>(d, len); }
ZetStatus zetsZero_64fc_L(Zet64fc* d, long long len) { return zeroElemsL<16>(d, len); }
