#include "conform.hpp"

#include <cstdio>

namespace conform {

std::vector<RowBase*>& registry() {
    static std::vector<RowBase*> rows;
    return rows;
}
void keep(std::unique_ptr<RowBase> row) {
    static std::vector<std::unique_ptr<RowBase>> owned;
    registry().push_back(row.get());
    owned.push_back(std::move(row));
}

// Both signs, the rounding boundaries of each lane width, and the ends.
std::vector<int> standardScales() {
    return {INT_MIN, -70, -64, -63, -33, -32, -31, -17, -16, -15, -8, -1, 0, 1, 2, 3, 7, 15, 16, 17,
            30, 31, 32, 33, 62, 63, 64, 65, 126, 127, 128, INT_MAX};
}

namespace detail {

std::mt19937_64& rng() {
    static thread_local std::mt19937_64 r(20261123);
    return r;
}

namespace {

template <class U>
void fillInts(U* p, std::size_t n) {
    // Both readings of each width: 0, +-1, the signed and unsigned extremes and their neighbours.
    const U top = U(U(1) << (sizeof(U) * 8 - 1));
    const U edges[] = {0, 1, U(~U(0)), U(top - 1), top, U(top + 1), U(top - 2), U(~U(0) - 1), 2};
    auto& r = rng();
    for (std::size_t i = 0; i < n; ++i) {
        const U v = r() % 5 == 0 ? edges[r() % (sizeof edges / sizeof edges[0])] : static_cast<U>(r());
        std::memcpy(p + i, &v, sizeof v);
    }
}

template <class T>
void fillReal(T* p, std::size_t n, Dom dom) {
    zettest::fillFloats(p, n, rng(), dom == Dom::Plain ? 0 : 5);
    if (dom == Dom::Finite)
        for (std::size_t i = 0; i < n; ++i)
            if (!std::isfinite(p[i])) p[i] = static_cast<T>(i % 7) - T(3.25);
}

template <class T>
::testing::AssertionResult partMatch(T g, T w, Cmp c) {
    using zettest::bitsOf;
    bool ok;
    if constexpr (std::is_floating_point_v<T>) {
        switch (c.kind) {
            case Cmp::Bits: ok = bitsOf(g) == bitsOf(w); break;
            case Cmp::AnyNaN: ok = bitsOf(g) == bitsOf(w) || (std::isnan(g) && std::isnan(w)); break;
            case Cmp::Ulps: ok = zettest::ulpDistance(g, w) <= static_cast<std::uint64_t>(c.tol); break;
            case Cmp::Rel:
                ok = (std::isnan(g) && std::isnan(w)) || g == w || std::fabs(double(g) - double(w)) <= c.tol * std::fabs(double(w));
                break;
            default: ok = (std::isnan(g) && std::isnan(w)) || g == w || std::fabs(double(g) - double(w)) <= c.tol;
        }
    } else {
        ok = c.kind == Cmp::Abs ? std::fabs(double(g) - double(w)) <= c.tol : g == w;
    }
    if (ok) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << hex(&g, sizeof g) << " want " << hex(&w, sizeof w);
}

}  // namespace

void fillElems(void* p, std::size_t count, std::size_t partBytes, bool isFloat, Dom dom) {
    if (isFloat && partBytes == 4) return fillReal(static_cast<float*>(p), count, dom);
    if (isFloat) return fillReal(static_cast<double*>(p), count, dom);
    switch (partBytes) {
        case 1: return fillInts(static_cast<std::uint8_t*>(p), count);
        case 2: return fillInts(static_cast<std::uint16_t*>(p), count);
        case 4: return fillInts(static_cast<std::uint32_t*>(p), count);
        default: return fillInts(static_cast<std::uint64_t*>(p), count);
    }
}

void fill(unsigned char* p, std::size_t bytes, unsigned char seed) {
    for (std::size_t i = 0; i < bytes; ++i) p[i] = static_cast<unsigned char>(0xA5 ^ (seed * 29 + i * 7));
}
bool untouched(const unsigned char* p, std::size_t bytes, unsigned char seed) {
    for (std::size_t i = 0; i < bytes; ++i)
        if (p[i] != static_cast<unsigned char>(0xA5 ^ (seed * 29 + i * 7))) return false;
    return true;
}

::testing::AssertionResult partsMatch(const void* got, const void* want, int parts, std::size_t partBytes,
                                      bool isFloat, Cmp cmp) {
    const auto* g = static_cast<const unsigned char*>(got);
    const auto* w = static_cast<const unsigned char*>(want);
    for (int q = 0; q < parts; ++q, g += partBytes, w += partBytes) {
        ::testing::AssertionResult r = ::testing::AssertionSuccess();
        if (isFloat && partBytes == 4) r = partMatch(load<float>(g), load<float>(w), cmp);
        else if (isFloat) r = partMatch(load<double>(g), load<double>(w), cmp);
        else if (partBytes == 1) r = partMatch(load<std::int8_t>(g), load<std::int8_t>(w), cmp);
        else if (partBytes == 2) r = partMatch(load<std::int16_t>(g), load<std::int16_t>(w), cmp);
        else if (partBytes == 4) r = partMatch(load<std::int32_t>(g), load<std::int32_t>(w), cmp);
        else r = partMatch(load<std::int64_t>(g), load<std::int64_t>(w), cmp);
        if (!r) return ::testing::AssertionFailure() << (parts > 1 ? (q ? "im " : "re ") : "") << r.message();
    }
    return ::testing::AssertionSuccess();
}

std::string hex(const void* p, std::size_t bytes) {
    std::string s = "0x";
    char b[4];
    for (std::size_t i = bytes; i-- > 0;) {
        std::snprintf(b, sizeof b, "%02x", static_cast<const unsigned char*>(p)[i]);
        s += b;
    }
    return s;
}

}  // namespace detail

namespace {

class Conform : public ::testing::TestWithParam<RowBase*> {};
TEST_P(Conform, MatchesReference) { GetParam()->run(); }
INSTANTIATE_TEST_SUITE_P(Rows, Conform, ::testing::ValuesIn(registry()),
                         [](const ::testing::TestParamInfo<RowBase*>& i) { return i.param->name; });
// Executables without rows still link this file.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Conform);

}  // namespace

}  // namespace conform
