// The DFT of any length: interleaved, split and real forms.
#include "protocol.hpp"

namespace {

using zetfuzz::Form;

template <class E> std::size_t elems(int n, int) { return static_cast<std::size_t>(n) * sizeof(E); }
template <class R> std::size_t ccsOut(int n, int slot) { return (slot == 1 ? 2 * (n / 2 + 1) : n) * sizeof(R); }
template <class R> std::size_t ccsIn(int n, int slot) { return (slot == 0 ? 2 * (n / 2 + 1) : n) * sizeof(R); }

// The object lies in the caller's buffer at its first 64-byte boundary, so the
// object's own address serves as the buffer argument as well.
inline void* at64(Zet8u* p) {
    return reinterpret_cast<void*>((reinterpret_cast<std::uintptr_t>(p) + 63) & ~std::uintptr_t{63});
}

#define ZF_INIT(SUF)                                                                              \
    [](int n, int f, int h, Zet8u* s, Zet8u* i, void** o) {                                       \
        *o = at64(s);                                                                             \
        return zetsDFTInit_##SUF(n, f, h, reinterpret_cast<ZetsDFTSpec_##SUF*>(s), i);            \
    }
#define ZF_TWO(NAME, E, SUF, BYTES)                                                               \
    {#NAME, 2, BYTES<E>, [](Zet8u* const* v, const void* o, Zet8u* w) {                           \
         return NAME((const E*)v[0], (E*)v[1], static_cast<const ZetsDFTSpec_##SUF*>(o), w); }}
#define ZF_SPLIT(NAME, R, SUF)                                                                    \
    {#NAME, 4, elems<R>, [](Zet8u* const* v, const void* o, Zet8u* w) {                           \
         return NAME((const R*)v[0], (const R*)v[1], (R*)v[2], (R*)v[3],                         \
                     static_cast<const ZetsDFTSpec_##SUF*>(o), w); }}

const std::vector<Form> kForms = {
    {"C_32fc", 1, 5000, zetsDFTGetSize_C_32fc, ZF_INIT(C_32fc),
     {ZF_TWO(zetsDFTFwd_CToC_32fc, Zet32fc, C_32fc, elems), ZF_TWO(zetsDFTInv_CToC_32fc, Zet32fc, C_32fc, elems)}},
    {"C_64fc", 1, 5000, zetsDFTGetSize_C_64fc, ZF_INIT(C_64fc),
     {ZF_TWO(zetsDFTFwd_CToC_64fc, Zet64fc, C_64fc, elems), ZF_TWO(zetsDFTInv_CToC_64fc, Zet64fc, C_64fc, elems)}},
    {"C_32f", 1, 5000, zetsDFTGetSize_C_32f, ZF_INIT(C_32f),
     {ZF_SPLIT(zetsDFTFwd_CToC_32f, Zet32f, C_32f), ZF_SPLIT(zetsDFTInv_CToC_32f, Zet32f, C_32f)}},
    {"C_64f", 1, 5000, zetsDFTGetSize_C_64f, ZF_INIT(C_64f),
     {ZF_SPLIT(zetsDFTFwd_CToC_64f, Zet64f, C_64f), ZF_SPLIT(zetsDFTInv_CToC_64f, Zet64f, C_64f)}},
    {"R_32f", 1, 5000, zetsDFTGetSize_R_32f, ZF_INIT(R_32f),
     {ZF_TWO(zetsDFTFwd_RToCCS_32f, Zet32f, R_32f, ccsOut), ZF_TWO(zetsDFTInv_CCSToR_32f, Zet32f, R_32f, ccsIn),
      ZF_TWO(zetsDFTFwd_RToPack_32f, Zet32f, R_32f, elems), ZF_TWO(zetsDFTInv_PermToR_32f, Zet32f, R_32f, elems)}},
    {"R_64f", 1, 5000, zetsDFTGetSize_R_64f, ZF_INIT(R_64f),
     {ZF_TWO(zetsDFTFwd_RToPerm_64f, Zet64f, R_64f, elems), ZF_TWO(zetsDFTInv_PackToR_64f, Zet64f, R_64f, elems),
      ZF_TWO(zetsDFTFwd_RToCCS_64f, Zet64f, R_64f, ccsOut), ZF_TWO(zetsDFTInv_CCSToR_64f, Zet64f, R_64f, ccsIn)}},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return zetfuzz::exercise(kForms, data, size);
}
