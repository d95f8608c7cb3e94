// The largest orders, 25 to 28 single and 25 to 27 double: gigabytes per
// transform, so they run apart from the main suite. The reference is the
// structured signal's exact transform, evaluated point by point rather than
// stored; the way back and the in-place transform use no reference at all.
#define ZETSP_FFT_HELPERS_ONLY
#include "fft_test.cpp"

namespace fftcheck {
namespace {

template <class Tr> void checkHugeOrder(int order) {
    using R = typename Tr::R;
    const std::size_t n = std::size_t{1} << order;
    const int flag = kFlags[order % 4];
    const double tol = bound(Tr::dbl, order);
    SCOPED_TRACE(std::string(Tr::name) + " order " + std::to_string(order) + " flag " + std::to_string(flag));
    Fft<Tr> f(order, flag);
    ASSERT_EQ(f.status, zetStsOk);
    const Sizes e = expectedSizes<Tr>(order, flag);
    EXPECT_TRUE(f.specSize == e.spec && f.initSize == e.init && f.workSize == e.work);

    const Structured st(order, 400 + order);
    Signal<R> src(n, Tr::split), y(n, Tr::split);
    for (std::size_t k = 0; k < n; ++k) src.set(k, st.time(k));
    const std::uint64_t srcPrint = src.fingerprint();
    Report rep(std::string(Tr::name) + " order " + std::to_string(order));

    ASSERT_EQ(apply(f, Dir::Fwd, &src, y, f.work), zetStsOk);
    EXPECT_EQ(src.fingerprint(), srcPrint) << "source changed";
    const double err = relError(n, of(y), [&](std::size_t k) { return st.spectrum(Dir::Fwd, k); },
                                factor(flag, Dir::Fwd, order));
    EXPECT_LE(err, tol) << "fwd";
    rep.note("fwd", err);
    const std::uint64_t outPrint = y.fingerprint();

    // Back in place: with the forward transform exact, this checks the inverse.
    ASSERT_EQ(apply(f, Dir::Inv, nullptr, y, f.work), zetStsOk);
    const double rt = relError(n, of(y), of(src), roundTrip(flag, order));
    EXPECT_LE(rt, 2 * tol) << "round trip";
    rep.note("round trip", rt);

    ASSERT_EQ(apply(f, Dir::Fwd, nullptr, src, f.work), zetStsOk);
    EXPECT_EQ(src.fingerprint(), outPrint) << "in place differs from out of place";
}

class HugeSingle : public ::testing::TestWithParam<int> {};
TEST_P(HugeSingle, Interleaved) { checkHugeOrder<F32fc>(GetParam()); }
TEST_P(HugeSingle, Split) { checkHugeOrder<F32f>(GetParam()); }
INSTANTIATE_TEST_SUITE_P(FFT, HugeSingle, ::testing::Range(25, 29));

class HugeDouble : public ::testing::TestWithParam<int> {};
TEST_P(HugeDouble, Interleaved) { checkHugeOrder<F64fc>(GetParam()); }
TEST_P(HugeDouble, Split) { checkHugeOrder<F64f>(GetParam()); }
INSTANTIATE_TEST_SUITE_P(FFT, HugeDouble, ::testing::Range(25, 28));

}  // namespace
}  // namespace fftcheck
