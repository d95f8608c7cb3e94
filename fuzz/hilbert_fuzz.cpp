// The Hilbert transform: a real sequence to its analytic signal.
#include "protocol.hpp"

namespace {

using zetfuzz::Form;

// The object lies at the buffer's first 16-byte boundary.
inline void* at16(Zet8u* p) {
    return reinterpret_cast<void*>((reinterpret_cast<std::uintptr_t>(p) + 15) & ~std::uintptr_t{15});
}

#define ZF_FORM(R, C, SUF)                                                                                       \
    {"Hilbert_" #SUF, 1, 5000,                                                                                   \
     [](int n, int, int h, int* s, int* i, int* w) { /* Init's scratch is a work buffer */                      \
         const ZetStatus st = zetsHilbertGetSize_##SUF(n, h, s, w);                                              \
         if (st >= 0) *i = *w;                                                                                   \
         return st;                                                                                              \
     },                                                                                                          \
     [](int n, int, int h, Zet8u* s, Zet8u* i, void** o) {                                                       \
         *o = at16(s);                                                                                           \
         return zetsHilbertInit_##SUF(n, h, reinterpret_cast<ZetsHilbertSpec_##SUF*>(s), i);                     \
     },                                                                                                          \
     {{"zetsHilbert_" #SUF, 2, [](int n, int slot) { return static_cast<std::size_t>(n) * (slot ? sizeof(C) : sizeof(R)); }, \
       [](Zet8u* const* v, const void* o, Zet8u* w) {                                                           \
           return zetsHilbert_##SUF((const R*)v[0], (C*)v[1], static_cast<const ZetsHilbertSpec_##SUF*>(o), w); }}}}

const std::vector<Form> kForms = {ZF_FORM(Zet32f, Zet32fc, 32f32fc), ZF_FORM(Zet64f, Zet64fc, 64f64fc)};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return zetfuzz::exercise(kForms, data, size);
}
