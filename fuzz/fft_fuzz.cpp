// The power-of-two complex FFT, interleaved and split, out of place and in place.
#include "protocol.hpp"

namespace {

using zetfuzz::Call;
using zetfuzz::Form;

template <class E> std::size_t interleaved(int order, int) { return (std::size_t{1} << order) * sizeof(E); }
template <class R> std::size_t plane(int order, int) { return (std::size_t{1} << order) * sizeof(R); }

#define ZF_INIT(SUF)                                                                              \
    [](int n, int f, int h, Zet8u* s, Zet8u* i, void** o) {                                       \
        ZetsFFTSpec_C_##SUF* p = nullptr;                                                         \
        const ZetStatus st = zetsFFTInit_C_##SUF(&p, n, f, h, s, i);                              \
        *o = p;                                                                                   \
        return st;                                                                                \
    }
#define ZF_SPEC(SUF) static_cast<const ZetsFFTSpec_C_##SUF*>(o)

const std::vector<Form> kForms = {
    {"C_32fc", 0, 14, zetsFFTGetSize_C_32fc, ZF_INIT(32fc),
     {{"zetsFFTFwd_CToC_32fc", 2, interleaved<Zet32fc>, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTFwd_CToC_32fc((const Zet32fc*)v[0], (Zet32fc*)v[1], ZF_SPEC(32fc), w); }},
      {"zetsFFTInv_CToC_32fc_I", 1, interleaved<Zet32fc>, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTInv_CToC_32fc_I((Zet32fc*)v[0], ZF_SPEC(32fc), w); }}}},
    {"C_64fc", 0, 13, zetsFFTGetSize_C_64fc, ZF_INIT(64fc),
     {{"zetsFFTInv_CToC_64fc", 2, interleaved<Zet64fc>, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTInv_CToC_64fc((const Zet64fc*)v[0], (Zet64fc*)v[1], ZF_SPEC(64fc), w); }},
      {"zetsFFTFwd_CToC_64fc_I", 1, interleaved<Zet64fc>, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTFwd_CToC_64fc_I((Zet64fc*)v[0], ZF_SPEC(64fc), w); }}}},
    {"C_32f", 0, 14, zetsFFTGetSize_C_32f, ZF_INIT(32f),
     {{"zetsFFTFwd_CToC_32f", 4, plane<Zet32f>, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTFwd_CToC_32f((const Zet32f*)v[0], (const Zet32f*)v[1], (Zet32f*)v[2], (Zet32f*)v[3],
                                      ZF_SPEC(32f), w); }},
      {"zetsFFTInv_CToC_32f_I", 2, plane<Zet32f>, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTInv_CToC_32f_I((Zet32f*)v[0], (Zet32f*)v[1], ZF_SPEC(32f), w); }}}},
    {"C_64f", 0, 13, zetsFFTGetSize_C_64f, ZF_INIT(64f),
     {{"zetsFFTInv_CToC_64f", 4, plane<Zet64f>, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTInv_CToC_64f((const Zet64f*)v[0], (const Zet64f*)v[1], (Zet64f*)v[2], (Zet64f*)v[3],
                                      ZF_SPEC(64f), w); }},
      {"zetsFFTFwd_CToC_64f_I", 2, plane<Zet64f>, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTFwd_CToC_64f_I((Zet64f*)v[0], (Zet64f*)v[1], ZF_SPEC(64f), w); }}}},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return zetfuzz::exercise(kForms, data, size);
}
