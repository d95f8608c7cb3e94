// Bulk movement at the byte level, shared by every family. Other families
// call the checked implementations (copy8u, zero8u and the element forms), so
// a zero-length or wrapped byte count reports exactly as the exports do.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "zetsp.h"

namespace zet::data {

// ---- unchecked kernels (count >= 1 unless stated) ----
void copySmall(const std::uint8_t* src, std::uint8_t* dst, std::size_t n);  // n < 32768
void copyLarge(const std::uint8_t* src, std::uint8_t* dst, std::size_t n);  // n > 32767
void moveBytes(const std::uint8_t* src, std::uint8_t* dst, std::size_t n);
// Wide zero kernel: like the other short kernels it assumes a count of at least
// one, so a count of 0 reaches the last rung and clears one byte.
void zeroWide(std::uint8_t* dst, std::uint32_t n);
void zeroLarge(std::uint8_t* dst, std::uint32_t n);
// Fill len elements of E bytes (1, 2, 4, 8 or 16) with the pattern register,
// which holds the element value repeated (see broadcastValue).
template <std::size_t E> void fillPlain(std::uint8_t* dst, __m256i pattern, std::size_t len);
template <std::size_t E> void fillStream(std::uint8_t* dst, __m256i pattern, std::size_t len);

// ---- checked implementations behind the exports ----
ZetStatus copy8u(const void* src, void* dst, int len);
ZetStatus move8u(const void* src, void* dst, int len);
ZetStatus zero8u(void* dst, int len);
template <std::size_t E> ZetStatus copyElems(const void* src, void* dst, int len);
template <std::size_t E> ZetStatus moveElems(const void* src, void* dst, int len);
template <std::size_t E> ZetStatus zeroElems(void* dst, int len);
template <std::size_t E> ZetStatus setElems(__m256i pattern, void* dst, int len);
template <std::size_t E> ZetStatus copyElemsL(const void* src, void* dst, long long len);
template <std::size_t E> ZetStatus zeroElemsL(void* dst, long long len);

}  // namespace zet::data
