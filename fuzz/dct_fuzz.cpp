// The orthonormal DCT and its inverse, out of place and in place.
#include "protocol.hpp"

namespace {

using zetfuzz::Form;

template <class R> std::size_t reals(int n, int) { return static_cast<std::size_t>(n) * sizeof(R); }
inline void* at64(Zet8u* p) {
    return reinterpret_cast<void*>((reinterpret_cast<std::uintptr_t>(p) + 63) & ~std::uintptr_t{63});
}

// GetSize and Init take no flag; the object lies at the buffer's first 64-byte boundary.
#define ZF_FORM(DIR, R, SUF)                                                                                     \
    {"DCT" #DIR "_" #SUF, 1, 5000,                                                                               \
     [](int n, int, int h, int* s, int* i, int* w) { return zetsDCT##DIR##GetSize_##SUF(n, h, s, i, w); },       \
     [](int n, int, int h, Zet8u* s, Zet8u* i, void** o) {                                                       \
         *o = at64(s);                                                                                           \
         return zetsDCT##DIR##Init_##SUF(n, h, reinterpret_cast<ZetsDCT##DIR##Spec_##SUF*>(s), i);               \
     },                                                                                                          \
     {{"zetsDCT" #DIR "_" #SUF, 2, reals<R>, [](Zet8u* const* v, const void* o, Zet8u* w) {                      \
           return zetsDCT##DIR##_##SUF((const R*)v[0], (R*)v[1], static_cast<const ZetsDCT##DIR##Spec_##SUF*>(o), w); }}, \
      {"zetsDCT" #DIR "_" #SUF "_I", 1, reals<R>, [](Zet8u* const* v, const void* o, Zet8u* w) {                 \
           return zetsDCT##DIR##_##SUF##_I((R*)v[0], static_cast<const ZetsDCT##DIR##Spec_##SUF*>(o), w); }}}}

// Exports reached here: zetsDCTFwdGetSize_32f zetsDCTInvGetSize_32f zetsDCTFwdGetSize_64f zetsDCTInvGetSize_64f.
const std::vector<Form> kForms = {ZF_FORM(Fwd, Zet32f, 32f), ZF_FORM(Inv, Zet32f, 32f), ZF_FORM(Fwd, Zet64f, 64f),
                                  ZF_FORM(Inv, Zet64f, 64f)};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return zetfuzz::exercise(kForms, data, size);
}
