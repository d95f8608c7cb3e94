// Copy and Move: element forms reduce to byte counts over the shared kernels.
#include "bytes.hpp"
#include "short_moves.hpp"
#include "frame/checks.hpp"
#include "frame/chunk.hpp"

namespace zet::data {

using u8 = std::uint8_t;

ZetStatus copy8u(const void* src, void* dst, int len) {
    if (auto st = checkArgs(len, src, dst)) return st;
    const auto* s = static_cast<const u8*>(src);
    auto* d = static_cast<u8*>(dst);
    if (len <= 256) copyShort(s, d, static_cast<std::size_t>(len));
    else if (len > 32767) copyLarge(s, d, static_cast<std::size_t>(len));
    else copySmall(s, d, static_cast<std::size_t>(len));
    return zetStsOk;
}

// The byte kernel takes a signed 32-bit count, so a long vector goes in
// pieces of 0x7FFFFFE0 bytes while a whole 2 GiB or more remains.
template <std::size_t E>
ZetStatus copyElems(const void* src, void* dst, int len) {
    if constexpr (E == 1) return copy8u(src, dst, len);
    if (auto st = checkArgs(len, src, dst)) return st;
    const auto* s = static_cast<const u8*>(src);
    auto* d = static_cast<u8*>(dst);
    long long remaining = len;
    constexpr int kPiece = 0x7FFFFFE0;
    constexpr long long kLimit = 0x80000000LL / static_cast<long long>(E);
    while (remaining >= kLimit) {
        copy8u(s, d, kPiece);
        s += kPiece;
        d += kPiece;
        remaining -= kPiece / static_cast<long long>(E);
    }
    return copy8u(s, d, static_cast<int>(remaining * static_cast<long long>(E)));
}

template <std::size_t E>
ZetStatus copyElemsL(const void* src, void* dst, long long len) {
    const auto* s = static_cast<const u8*>(src);
    auto* d = static_cast<u8*>(dst);
    return chunked<E>(len, [&](long long off, int n) {
        return copyElems<E>(s ? s + off * static_cast<long long>(E) : s, d ? d + off * static_cast<long long>(E) : d, n);
    });
}

ZetStatus move8u(const void* src, void* dst, int len) {
    if (auto st = checkArgs(len, src, dst)) return st;
    if (len <= 256) copyShort(static_cast<const u8*>(src), static_cast<u8*>(dst), static_cast<std::size_t>(len));
    else moveBytes(static_cast<const u8*>(src), static_cast<u8*>(dst), static_cast<std::size_t>(len));
    return zetStsOk;
}

// The byte count is formed in 32 bits and read as signed: a count that wraps
// to zero or below is rejected by the byte form, any other wrap moves less.
template <std::size_t E>
ZetStatus moveElems(const void* src, void* dst, int len) {
    if (auto st = checkArgs(len, src, dst)) return st;
    return move8u(src, dst, static_cast<int>(static_cast<std::uint32_t>(len) * static_cast<std::uint32_t>(E)));
}

template ZetStatus copyElems<1>(const void*, void*, int);
template ZetStatus copyElems<2>(const void*, void*, int);
template ZetStatus copyElems<4>(const void*, void*, int);
template ZetStatus copyElems<8>(const void*, void*, int);
template ZetStatus copyElems<16>(const void*, void*, int);
template ZetStatus copyElemsL<4>(const void*, void*, long long);
template ZetStatus copyElemsL<8>(const void*, void*, long long);
template ZetStatus copyElemsL<16>(const void*, void*, long long);
template ZetStatus moveElems<2>(const void*, void*, int);
template ZetStatus moveElems<4>(const void*, void*, int);
template ZetStatus moveElems<8>(const void*, void*, int);
template ZetStatus moveElems<16>(const void*, void*, int);

}  // namespace zet::data

using namespace zet::data;

#define ZET_COPY_MOVE(T, E)                                                                                         \
    ZetStatus zetsCopy_##T(const Zet##T* s, Zet##T* d, int len) { return copyElems<E>(s, d, len); }               \
    ZetStatus zetsMove_##T(const Zet##T* s, Zet##T* d, int len) { return moveElems<E>(s, d, len); }

ZetStatus zetsCopy_8u(const Zet8u* s, Zet8u* d, int len) { return copy8u(s, d, len); }
ZetStatus zetsMove_8u(const Zet8u* s, Zet8u* d, int len) { return move8u(s, d, len); }
ZET_COPY_MOVE(16s, 2)
ZET_COPY_MOVE(16sc, 4)
ZET_COPY_MOVE(32s, 4)
ZET_COPY_MOVE(32f, 4)
ZET_COPY_MOVE(32sc, 8)
ZET_COPY_MOVE(32fc, 8)
ZET_COPY_MOVE(64s, 8)
ZET_COPY_MOVE(64f, 8)
ZET_COPY_MOVE(64sc, 16)
ZET_COPY_MOVE(64fc, 16)

ZetStatus zetsCopy_32f_L(const Zet32f* s, Zet32f* d, long long len) { return copyElemsL<4>(s, d, len); }
ZetStatus zetsCopy_32fc_L(const Zet32fc* s, Zet32fc* d, long long len) { return copyElemsL<8>(s, d, len); }
ZetStatus zetsCopy_64f_L(const Zet64f* s, Zet64f* d, long long len) { return copyElemsL<8>(s, d, len); }
ZetStatus zetsCopy_64fc_L(const Zet64fc* s, Zet64fc* d, long long len) { return copyElemsL<16>(s, d, len); }
