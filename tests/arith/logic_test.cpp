// Bitwise operations and shifts: every form against its scalar definition
// over lengths to 70 and beyond at every placement, every shift count around
// the element width, and the check orders of the count cases.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

using zettest::GuardedRegion;
using zettest::Placement;

// One form on raw bytes: the elements are read and written with memcpy so
// the vectors may sit at any byte address.
struct Form {
    std::string name;
    std::size_t elem;
    std::function<ZetStatus(const void* a, const void* b, void* d, int len)> call;  // d may come preloaded
    std::function<std::uint32_t(std::uint32_t a, std::uint32_t b)> ref;          // on element values
    bool preload;                                                                  // d starts as b (in place)
};

template <class T> std::uint32_t get(const void* p, std::size_t i) {
    T v;
    std::memcpy(&v, static_cast<const char*>(p) + i * sizeof(T), sizeof v);
    return static_cast<std::uint32_t>(v);
}

// The exports by element type, spelled out once.
#define BITWISE_FORMS(T, C)                                                                                              \
    {                                                                                                                    \
        {"And_" #T, sizeof(Zet##T), [](const void* a, const void* b, void* d, int n) { return zetsAnd_##T((const Zet##T*)a, (const Zet##T*)b, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t y) { return x & y; }, false}, \
        {"And_" #T "_I", sizeof(Zet##T), [](const void* a, const void*, void* d, int n) { return zetsAnd_##T##_I((const Zet##T*)a, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t y) { return x & y; }, true}, \
        {"Or_" #T, sizeof(Zet##T), [](const void* a, const void* b, void* d, int n) { return zetsOr_##T((const Zet##T*)a, (const Zet##T*)b, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t y) { return x | y; }, false}, \
        {"Or_" #T "_I", sizeof(Zet##T), [](const void* a, const void*, void* d, int n) { return zetsOr_##T##_I((const Zet##T*)a, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t y) { return x | y; }, true}, \
        {"Xor_" #T, sizeof(Zet##T), [](const void* a, const void* b, void* d, int n) { return zetsXor_##T((const Zet##T*)a, (const Zet##T*)b, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t y) { return x ^ y; }, false}, \
        {"Xor_" #T "_I", sizeof(Zet##T), [](const void* a, const void*, void* d, int n) { return zetsXor_##T##_I((const Zet##T*)a, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t y) { return x ^ y; }, true}, \
        {"AndC_" #T, sizeof(Zet##T), [](const void* a, const void*, void* d, int n) { return zetsAndC_##T((const Zet##T*)a, C, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t) { return x & (C); }, false}, \
        {"OrC_" #T "_I", sizeof(Zet##T), [](const void* a, const void*, void* d, int n) { std::memcpy(d, a, n * sizeof(Zet##T)); return zetsOrC_##T##_I(C, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t) { return x | (C); }, false}, \
        {"XorC_" #T, sizeof(Zet##T), [](const void* a, const void*, void* d, int n) { return zetsXorC_##T((const Zet##T*)a, C, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t) { return x ^ (C); }, false}, \
        {"Not_" #T, sizeof(Zet##T), [](const void* a, const void*, void* d, int n) { return zetsNot_##T((const Zet##T*)a, (Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t) { return ~x; }, false}, \
        {"Not_" #T "_I", sizeof(Zet##T), [](const void* a, const void*, void* d, int n) { std::memcpy(d, a, n * sizeof(Zet##T)); return zetsNot_##T##_I((Zet##T*)d, n); }, [](std::uint32_t x, std::uint32_t) { return ~x; }, false}, \
    }

const std::vector<Form>& allBitwise() {
    static const std::vector<Form> all = [] {
        std::vector<Form> v;
        for (const auto& list : {std::vector<Form> BITWISE_FORMS(8u, Zet8u(0xA5)), std::vector<Form> BITWISE_FORMS(16u, Zet16u(0x5AC3)),
                                 std::vector<Form> BITWISE_FORMS(32u, Zet32u(0x9E3779B9u))})
            v.insert(v.end(), list.begin(), list.end());
        return v;
    }();
    return all;
}

std::uint32_t elementOf(const void* p, std::size_t elem, std::size_t i) {
    return elem == 1 ? get<Zet8u>(p, i) : elem == 2 ? get<Zet16u>(p, i) : get<Zet32u>(p, i);
}

TEST(Bitwise, EveryFormAtEveryLengthAndPlacement) {
    std::mt19937_64 rng(50);
    GuardedRegion ra(4200 * 4), rb(4200 * 4), rd(4200 * 4);
    for (const Form& f : allBitwise()) {
        const std::uint32_t mask = f.elem == 4 ? 0xFFFFFFFFu : (1u << (8 * f.elem)) - 1;
        for (int len : zettest::kernelLengths()) {
            const std::size_t bytes = len * f.elem;
            for (const Placement& p : zettest::allPlacements()) {
                if (len > 300 && p.kind == Placement::Offset && p.offset % 8) continue;  // long vectors: fewer offsets
                auto* a = zettest::place<unsigned char>(ra, p, bytes);
                auto* b = zettest::place<unsigned char>(rb, Placement{Placement::Head, 0}, bytes);
                auto* d = zettest::place<unsigned char>(rd, p.kind == Placement::Tail ? Placement{Placement::Head, 0} : Placement{Placement::Tail, 0}, bytes);
                zettest::fillBytes(a, bytes, rng);
                zettest::fillBytes(b, bytes, rng);
                if (f.preload) std::memcpy(d, b, bytes);
                ASSERT_EQ(f.call(a, b, d, len), zetStsOk) << f.name;
                for (int i = 0; i < len; ++i) {
                    const std::uint32_t want = f.ref(elementOf(a, f.elem, i), elementOf(b, f.elem, i)) & mask;
                    ASSERT_EQ(elementOf(d, f.elem, i), want) << f.name << " len " << len << " " << p.name() << " at " << i;
                }
            }
        }
    }
}

// Shifts: every count from -1 to beyond the width, against the definition.
template <class T, bool Left>
void checkShift(ZetStatus (*fn)(const T*, int, T*, int), ZetStatus (*fnI)(int, T*, int), const char* name) {
    std::mt19937_64 rng(51);
    constexpr int kWidth = 8 * sizeof(T);
    for (int len : {1, 2, 3, 7, 8, 15, 16, 17, 31, 32, 33, 63, 64, 65, 129, 1000}) {
        GuardedRegion rs(len * sizeof(T)), rd(len * sizeof(T));
        T* s = rs.tail<T>(len);
        T* d = rd.tail<T>(len);
        for (int i = 0; i < len; ++i) {
            std::uint64_t r = rng();
            std::memcpy(&s[i], &r, sizeof(T));
        }
        for (int count = -1; count <= kWidth + 3; ++count) {
            std::memset(d, 0x77, len * sizeof(T));
            const ZetStatus st = fn(s, count, d, len);
            if (count < 0) {
                ASSERT_EQ(st, zetStsShiftErr) << name;
                continue;
            }
            ASSERT_EQ(st, zetStsOk) << name << " count " << count;
            for (int i = 0; i < len; ++i) {
                T want;
                if (Left) want = count >= kWidth ? T(0) : static_cast<T>(static_cast<std::uint64_t>(s[i]) << count);
                else if (std::is_signed_v<T>) want = static_cast<T>(static_cast<long long>(s[i]) >> std::min(count, kWidth - 1));
                else want = count >= kWidth ? T(0) : static_cast<T>(static_cast<std::uint64_t>(s[i]) >> count);
                ASSERT_EQ(d[i], want) << name << " count " << count << " len " << len << " at " << i;
            }
            std::vector<T> inPlace(s, s + len), out(d, d + len);
            ASSERT_EQ(fnI(count, inPlace.data(), len), zetStsOk);
            ASSERT_EQ(inPlace, out) << name << "_I count " << count;
        }
    }
}

TEST(Shift, EveryCountAroundTheWidth) {
    checkShift<Zet8u, true>(zetsLShiftC_8u, zetsLShiftC_8u_I, "LShiftC_8u");
    checkShift<Zet16u, true>(zetsLShiftC_16u, zetsLShiftC_16u_I, "LShiftC_16u");
    checkShift<Zet16s, true>(zetsLShiftC_16s, zetsLShiftC_16s_I, "LShiftC_16s");
    checkShift<Zet32s, true>(zetsLShiftC_32s, zetsLShiftC_32s_I, "LShiftC_32s");
    checkShift<Zet8u, false>(zetsRShiftC_8u, zetsRShiftC_8u_I, "RShiftC_8u");
    checkShift<Zet16u, false>(zetsRShiftC_16u, zetsRShiftC_16u_I, "RShiftC_16u");
    checkShift<Zet16s, false>(zetsRShiftC_16s, zetsRShiftC_16s_I, "RShiftC_16s");
    checkShift<Zet32s, false>(zetsRShiftC_32s, zetsRShiftC_32s_I, "RShiftC_32s");
}

// The order of the checks follows the case of the count.
TEST(LogicStatus, CountCasesAndConstantShortcuts) {
    Zet16u s[2] = {1, 2}, d[2] = {9, 9};
    // Count 0 is the copy: its checks (src, dst, len).
    EXPECT_EQ(zetsRShiftC_16u(nullptr, 0, d, 2), zetStsNullPtrErr);
    EXPECT_EQ(zetsRShiftC_16u(s, 0, d, 0), zetStsSizeErr);
    EXPECT_EQ(zetsRShiftC_16u(s, 0, d, 2), zetStsOk);
    EXPECT_EQ(d[1], 2);
    // At or above the width: src is tested, then the zeroing's checks.
    EXPECT_EQ(zetsRShiftC_16u(nullptr, 16, d, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsRShiftC_16u(s, 16, nullptr, 2), zetStsNullPtrErr);
    EXPECT_EQ(zetsRShiftC_16u(s, 16, d, 0), zetStsSizeErr);
    EXPECT_EQ(zetsRShiftC_16u(s, 16, d, 2), zetStsOk);
    EXPECT_EQ(d[0], 0);
    // A negative count comes last.
    EXPECT_EQ(zetsRShiftC_16u(nullptr, -1, d, 2), zetStsNullPtrErr);
    EXPECT_EQ(zetsRShiftC_16u(s, -1, d, 0), zetStsSizeErr);
    EXPECT_EQ(zetsRShiftC_16u(s, -1, d, 2), zetStsShiftErr);
    Zet8u v[3] = {1, 2, 3};
    EXPECT_EQ(zetsLShiftC_8u_I(-1, v, 3), zetStsShiftErr);
    EXPECT_EQ(zetsLShiftC_8u_I(-1, nullptr, 3), zetStsNullPtrErr);
    EXPECT_EQ(zetsLShiftC_8u_I(9, nullptr, 3), zetStsNullPtrErr);
    EXPECT_EQ(zetsLShiftC_8u_I(9, v, -1), zetStsSizeErr);
    // Arithmetic shifts at or above the width give the sign.
    const Zet16s sv[2] = {-1, 1};
    Zet16s sd[2];
    EXPECT_EQ(zetsRShiftC_16s(sv, 20, sd, 2), zetStsOk);
    EXPECT_EQ(sd[0], -1);
    EXPECT_EQ(sd[1], 0);
    // AndC with 0 accepts a null source and clears; any other constant checks it.
    Zet8u z[4] = {5, 6, 7, 8};
    EXPECT_EQ(zetsAndC_8u(nullptr, 0, z, 4), zetStsOk);
    for (Zet8u x : z) EXPECT_EQ(x, 0);
    EXPECT_EQ(zetsAndC_8u(nullptr, 0, nullptr, 4), zetStsNullPtrErr);
    EXPECT_EQ(zetsAndC_8u(nullptr, 0, z, 0), zetStsSizeErr);
    EXPECT_EQ(zetsAndC_8u(nullptr, 1, z, 4), zetStsNullPtrErr);
    EXPECT_EQ(zetsAndC_32u(nullptr, 0, reinterpret_cast<Zet32u*>(z), 1), zetStsOk);
    // Not has the checks of XorC.
    EXPECT_EQ(zetsNot_8u(nullptr, z, 0), zetStsNullPtrErr);
    EXPECT_EQ(zetsNot_16u_I(reinterpret_cast<Zet16u*>(z), 0), zetStsSizeErr);
}

}  // namespace
