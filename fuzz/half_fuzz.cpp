// Half precision: the FFT and DFT through single precision in the work
// buffer, and the direct DFT of fixed lengths, which has no object.
#include "protocol.hpp"

namespace {

using zetfuzz::Block;
using zetfuzz::Form;

std::size_t halves(int n, int) { return static_cast<std::size_t>(n) * sizeof(Zet16fc); }
std::size_t orderHalves(int order, int) { return (std::size_t{1} << order) * sizeof(Zet16fc); }

const std::vector<Form> kForms = {
    {"FFT_C_16fc", 0, 13, zetsFFTGetSize_C_16fc,
     [](int n, int f, int h, Zet8u* s, Zet8u* i, void** o) {
         ZetsFFTSpec_C_16fc* p = nullptr;
         const ZetStatus st = zetsFFTInit_C_16fc(&p, n, f, h, s, i);
         *o = p;
         return st;
     },
     {{"zetsFFTFwd_CToC_16fc", 2, orderHalves,
       [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTFwd_CToC_16fc((const Zet16fc*)v[0], (Zet16fc*)v[1], (const ZetsFFTSpec_C_16fc*)o, w);
       }},
      {"zetsFFTInv_CToC_16fc", 2, orderHalves, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsFFTInv_CToC_16fc((const Zet16fc*)v[0], (Zet16fc*)v[1], (const ZetsFFTSpec_C_16fc*)o, w);
       }}}},
    // The DFT's object lies at the very start of its buffer.
    {"DFT_C_16fc", 1, 5000, zetsDFTGetSize_C_16fc,
     [](int n, int f, int h, Zet8u* s, Zet8u* i, void** o) {
         *o = s;
         return zetsDFTInit_C_16fc(n, f, h, reinterpret_cast<ZetsDFTSpec_C_16fc*>(s), i);
     },
     {{"zetsDFTFwd_CToC_16fc", 2, halves,
       [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsDFTFwd_CToC_16fc((const Zet16fc*)v[0], (Zet16fc*)v[1], (const ZetsDFTSpec_C_16fc*)o, w);
       }},
      {"zetsDFTInv_CToC_16fc", 2, halves, [](Zet8u* const* v, const void* o, Zet8u* w) {
           return zetsDFTInv_CToC_16fc((const Zet16fc*)v[0], (Zet16fc*)v[1], (const ZetsDFTSpec_C_16fc*)o, w);
       }}}},
};

// The direct forms: a listed length runs, any other is refused with nothing written.
int direct(FuzzedDataProvider& in) {
    static const int kSome[] = {4, 12, 20, 60, 100, 324, 1000, 1024, 2916, 4096};
    const int n = in.ConsumeBool() ? kSome[in.ConsumeIntegralInRange(0, 9)] : in.ConsumeIntegralInRange(-8, 5000);
    const bool inv = in.ConsumeBool(), inPlace = in.ConsumeBool();
    const std::size_t bytes = n > 0 ? halves(n, 0) : 0;
    Block src(bytes), dst(bytes), work(n > 0 ? static_cast<std::size_t>(16) * n + 32 : 0);
    zetfuzz::fillVector(in, src.get(), bytes);
    Zet16fc* d = reinterpret_cast<Zet16fc*>(inPlace ? src.get() : dst.get());
    const auto* s = reinterpret_cast<const Zet16fc*>(src.get());
    const auto before = src.snapshot();
    const auto dstBefore = dst.snapshot();
    const ZetStatus st = inv ? zetsDFTInv_Direct_CToC_16fc(s, d, n, work.get())
                             : zetsDFTFwd_Direct_CToC_16fc(s, d, n, work.get());
    if (st < 0 && (!src.same(before) || !dst.same(dstBefore))) zetfuzz::fail("direct DFT", "wrote on an error", st);
    return 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 0 && data[0] % 4 == 0) {
        FuzzedDataProvider in(data + 1, size - 1);
        return direct(in);
    }
    return zetfuzz::exercise(kForms, data, size);
}
