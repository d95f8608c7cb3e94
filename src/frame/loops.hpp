// Element-wise loop shapes. The plain vector loop has no alignment peel and
// only unaligned accesses: four, then two wide registers per round while they
// fill (four keep both load ports busy on vectors that sit in L1), then half
// registers, then single elements through the same operation, so a result
// never depends on where its element sits.
#pragma once

#include "simd.hpp"

namespace zet::loops {

using simd::Reg;

// op(x) is called with wide and half registers of T.
template <class T, class Op>
inline void map1(const T* src, T* dst, long long n, Op op) {
    constexpr int W = Reg<T>::kWide, H = Reg<T>::kHalf;
    for (; n >= 4 * W; n -= 4 * W, src += 4 * W, dst += 4 * W) {
        const auto a0 = op(simd::loadWide(src));
        const auto a1 = op(simd::loadWide(src + W));
        const auto a2 = op(simd::loadWide(src + 2 * W));
        const auto a3 = op(simd::loadWide(src + 3 * W));
        simd::store(dst, a0);
        simd::store(dst + W, a1);
        simd::store(dst + 2 * W, a2);
        simd::store(dst + 3 * W, a3);
    }
    for (; n >= 2 * W; n -= 2 * W, src += 2 * W, dst += 2 * W) {
        const auto a0 = op(simd::loadWide(src));
        const auto a1 = op(simd::loadWide(src + W));
        simd::store(dst, a0);
        simd::store(dst + W, a1);
    }
    for (; n >= H; n -= H, src += H, dst += H) simd::store(dst, op(simd::loadHalf(src)));
    for (; n > 0; --n, ++src, ++dst) simd::storeOne(dst, op(simd::loadOne(src)));
}

// op(a, b) with a from src1 and b from src2.
template <class T, class Op>
inline void map2(const T* src1, const T* src2, T* dst, long long n, Op op) {
    constexpr int W = Reg<T>::kWide, H = Reg<T>::kHalf;
    for (; n >= 4 * W; n -= 4 * W, src1 += 4 * W, src2 += 4 * W, dst += 4 * W) {
        const auto r0 = op(simd::loadWide(src1), simd::loadWide(src2));
        const auto r1 = op(simd::loadWide(src1 + W), simd::loadWide(src2 + W));
        const auto r2 = op(simd::loadWide(src1 + 2 * W), simd::loadWide(src2 + 2 * W));
        const auto r3 = op(simd::loadWide(src1 + 3 * W), simd::loadWide(src2 + 3 * W));
        simd::store(dst, r0);
        simd::store(dst + W, r1);
        simd::store(dst + 2 * W, r2);
        simd::store(dst + 3 * W, r3);
    }
    for (; n >= 2 * W; n -= 2 * W, src1 += 2 * W, src2 += 2 * W, dst += 2 * W) {
        const auto r0 = op(simd::loadWide(src1), simd::loadWide(src2));
        const auto r1 = op(simd::loadWide(src1 + W), simd::loadWide(src2 + W));
        simd::store(dst, r0);
        simd::store(dst + W, r1);
    }
    for (; n >= H; n -= H, src1 += H, src2 += H, dst += H)
        simd::store(dst, op(simd::loadHalf(src1), simd::loadHalf(src2)));
    for (; n > 0; --n, ++src1, ++src2, ++dst)
        simd::storeOne(dst, op(simd::loadOne(src1), simd::loadOne(src2)));
}

}  // namespace zet::loops
