// The real FFT in its three spectrum layouts, out of place and in place.
#include "protocol.hpp"

namespace {

using zetfuzz::Form;

// N reals, or the N + 2 of a CCS spectrum (and of an in-place CCS transform).
template <class R> std::size_t reals(int order, int) { return (std::size_t{1} << order) * sizeof(R); }
template <class R> std::size_t ccsIn(int order, int slot) { return reals<R>(order, 0) + (slot == 0 ? 2 * sizeof(R) : 0); }
template <class R> std::size_t ccsOut(int order, int slot) { return reals<R>(order, 0) + (slot == 1 ? 2 * sizeof(R) : 0); }
template <class R> std::size_t ccsBoth(int order, int) { return reals<R>(order, 0) + 2 * sizeof(R); }

#define ZF_INIT(SUF)                                                                              \
    [](int n, int f, int h, Zet8u* s, Zet8u* i, void** o) {                                       \
        ZetsFFTSpec_R_##SUF* p = nullptr;                                                         \
        const ZetStatus st = zetsFFTInit_R_##SUF(&p, n, f, h, s, i);                              \
        *o = p;                                                                                   \
        return st;                                                                                \
    }
#define ZF_TWO(NAME, R, SUF, BYTES)                                                               \
    {#NAME, 2, BYTES<R>, [](Zet8u* const* v, const void* o, Zet8u* w) {                           \
         return NAME((const R*)v[0], (R*)v[1], static_cast<const ZetsFFTSpec_R_##SUF*>(o), w); }}
#define ZF_ONE(NAME, R, SUF, BYTES)                                                               \
    {#NAME, 1, BYTES<R>, [](Zet8u* const* v, const void* o, Zet8u* w) {                           \
         return NAME((R*)v[0], static_cast<const ZetsFFTSpec_R_##SUF*>(o), w); }}

const std::vector<Form> kForms = {
    {"R_32f", 0, 14, zetsFFTGetSize_R_32f, ZF_INIT(32f),
     {ZF_TWO(zetsFFTFwd_RToCCS_32f, Zet32f, 32f, ccsOut), ZF_TWO(zetsFFTInv_CCSToR_32f, Zet32f, 32f, ccsIn),
      ZF_ONE(zetsFFTFwd_RToCCS_32f_I, Zet32f, 32f, ccsBoth), ZF_TWO(zetsFFTFwd_RToPack_32f, Zet32f, 32f, reals),
      ZF_ONE(zetsFFTInv_PackToR_32f_I, Zet32f, 32f, reals), ZF_TWO(zetsFFTInv_PermToR_32f, Zet32f, 32f, reals),
      ZF_ONE(zetsFFTFwd_RToPerm_32f_I, Zet32f, 32f, reals)}},
    {"R_64f", 0, 13, zetsFFTGetSize_R_64f, ZF_INIT(64f),
     {ZF_TWO(zetsFFTFwd_RToCCS_64f, Zet64f, 64f, ccsOut), ZF_ONE(zetsFFTInv_CCSToR_64f_I, Zet64f, 64f, ccsBoth),
      ZF_TWO(zetsFFTFwd_RToPerm_64f, Zet64f, 64f, reals), ZF_ONE(zetsFFTInv_PermToR_64f_I, Zet64f, 64f, reals),
      ZF_TWO(zetsFFTInv_PackToR_64f, Zet64f, 64f, reals)}},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return zetfuzz::exercise(kForms, data, size);
}
