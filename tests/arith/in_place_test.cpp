// Every in-place form gives what its out-of-place twin gives (the twins are
// checked against the formulas elsewhere), with srcDst holding the left
// operand, and the same status.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace {

struct Pair {
    std::string name;
    std::size_t elem;
    // out(a, b, d, n): the out-of-place form; in(a, sd, n): the in-place form with sd = b on entry.
    std::function<ZetStatus(const void*, const void*, void*, int)> out;
    std::function<ZetStatus(const void*, void*, int)> in;
};

#define V(T) (const Zet##T*)
#define M(T) (Zet##T*)
// Two vectors: OP_T_Sfs(a, b, d, n, s) and OP_T_ISfs(a, sd, n, s).
#define TWO_SFS(OP, T, S)                                                                                         \
    Pair{#OP "_" #T "_ISfs", sizeof(Zet##T),                                                                      \
         [](const void* a, const void* b, void* d, int n) { return zets##OP##_##T##_Sfs(V(T)(a), V(T)(b), M(T)(d), n, S); }, \
         [](const void* a, void* sd, int n) { return zets##OP##_##T##_ISfs(V(T)(a), M(T)(sd), n, S); }}
// A constant: OP_T_Sfs(a, c, d, n, s) and OP_T_ISfs(c, sd, n, s); sd = a on entry.
#define CONST_SFS(OP, T, C, S)                                                                                    \
    Pair{#OP "_" #T "_ISfs", sizeof(Zet##T),                                                                      \
         [](const void*, const void* b, void* d, int n) { return zets##OP##_##T##_Sfs(V(T)(b), C, M(T)(d), n, S); }, \
         [](const void*, void* sd, int n) { return zets##OP##_##T##_ISfs(C, M(T)(sd), n, S); }}
#define TWO_I(OP, T)                                                                                              \
    Pair{#OP "_" #T "_I", sizeof(Zet##T),                                                                         \
         [](const void* a, const void* b, void* d, int n) { return zets##OP##_##T(V(T)(a), V(T)(b), M(T)(d), n); }, \
         [](const void* a, void* sd, int n) { return zets##OP##_##T##_I(V(T)(a), M(T)(sd), n); }}
#define CONST_I(OP, T, C)                                                                                         \
    Pair{#OP "_" #T "_I", sizeof(Zet##T),                                                                         \
         [](const void*, const void* b, void* d, int n) { return zets##OP##_##T(V(T)(b), C, M(T)(d), n); },         \
         [](const void*, void* sd, int n) { return zets##OP##_##T##_I(C, M(T)(sd), n); }}
// The unscaled in-place 16s forms against the scaled form with scale 0.
#define CONST_I0(OP, T, C)                                                                                        \
    Pair{#OP "_" #T "_I", sizeof(Zet##T),                                                                         \
         [](const void*, const void* b, void* d, int n) { return zets##OP##_##T##_Sfs(V(T)(b), C, M(T)(d), n, 0); }, \
         [](const void*, void* sd, int n) { return zets##OP##_##T##_I(C, M(T)(sd), n); }}
#define ONE_I(OP, T)                                                                                              \
    Pair{#OP "_" #T "_I", sizeof(Zet##T),                                                                         \
         [](const void*, const void* b, void* d, int n) { return zets##OP##_##T(V(T)(b), M(T)(d), n); },            \
         [](const void*, void* sd, int n) { return zets##OP##_##T##_I(M(T)(sd), n); }}
#define ONE_SFS(OP, T, S)                                                                                         \
    Pair{#OP "_" #T "_ISfs", sizeof(Zet##T),                                                                      \
         [](const void*, const void* b, void* d, int n) { return zets##OP##_##T##_Sfs(V(T)(b), M(T)(d), n, S); },   \
         [](const void*, void* sd, int n) { return zets##OP##_##T##_ISfs(M(T)(sd), n, S); }}

const Zet16sc k16sc = {-3, 7};
const Zet32sc k32sc = {-300000, 7};

std::vector<Pair> pairs() {
    return {
        TWO_SFS(Add, 16sc, 2), TWO_SFS(Sub, 16sc, -1), TWO_SFS(Mul, 16sc, 5), TWO_SFS(Add, 32sc, 1), TWO_SFS(Sub, 32sc, 0),
        TWO_SFS(Mul, 32sc, 9), TWO_SFS(Add, 8u, 1), TWO_SFS(Sub, 16u, 2), TWO_SFS(Mul, 32s, 12), TWO_SFS(Div, 8u, -2),
        TWO_SFS(Div, 16u, 3), TWO_SFS(Div, 16s, 1), TWO_SFS(Div, 16sc, 4), TWO_SFS(Div, 32s, -3),
        CONST_SFS(AddC, 16sc, k16sc, 1), CONST_SFS(SubC, 16sc, k16sc, 0), CONST_SFS(SubCRev, 16sc, k16sc, 2),
        CONST_SFS(MulC, 16sc, k16sc, 3), CONST_SFS(AddC, 32sc, k32sc, 1), CONST_SFS(SubC, 32sc, k32sc, -2),
        CONST_SFS(SubCRev, 32sc, k32sc, 0), CONST_SFS(MulC, 32sc, k32sc, 17), CONST_SFS(DivC, 8u, Zet8u(7), -1),
        CONST_SFS(DivC, 16u, Zet16u(300), 2), CONST_SFS(DivC, 16s, Zet16s(-9), 1), CONST_SFS(DivC, 16sc, k16sc, 0),
        CONST_SFS(MulC, 16u, Zet16u(3), 1), CONST_SFS(MulC, 8u, Zet8u(3), 1), ONE_SFS(Sqr, 16sc, 7), ONE_SFS(Sqr, 16u, 3),
        TWO_I(Add, 16s), TWO_I(Sub, 16s), TWO_I(Mul, 16s), TWO_I(Add, 32u), TWO_I(And, 8u), TWO_I(Or, 16u), TWO_I(Xor, 32u),
        CONST_I0(AddC, 16s, Zet16s(-32000)), CONST_I0(SubC, 16s, Zet16s(32000)), CONST_I0(MulC, 16s, Zet16s(-3)),
        CONST_I(AndC, 8u, Zet8u(0x3C)), CONST_I(AndC, 16u, Zet16u(0)), CONST_I(AndC, 32u, Zet32u(0xFFFFFFFFu)),
        CONST_I(OrC, 8u, Zet8u(0x81)), CONST_I(OrC, 32u, Zet32u(0)), CONST_I(XorC, 16u, Zet16u(0xF00F)),
        CONST_I(XorC, 32u, Zet32u(7)), CONST_I(XorC, 8u, Zet8u(0x55)), CONST_I(OrC, 16u, Zet16u(0x8001)),
        Pair{"Div_Round_16u_ISfs", 2,
             [](const void* a, const void* b, void* d, int n) { return zetsDiv_Round_16u_Sfs(V(16u)(a), V(16u)(b), M(16u)(d), n, 1, 1); },
             [](const void* a, void* sd, int n) { return zetsDiv_Round_16u_ISfs(V(16u)(a), M(16u)(sd), n, 1, 1); }}, CONST_I(DivCRev, 16u, Zet16u(60000)), ONE_I(Abs, 16s), ONE_I(Abs, 32s),
        ONE_I(Not, 16u),
        Pair{"Div_Round_8u_ISfs", 1,
             [](const void* a, const void* b, void* d, int n) { return zetsDiv_Round_8u_Sfs(V(8u)(a), V(8u)(b), M(8u)(d), n, 2, -1); },
             [](const void* a, void* sd, int n) { return zetsDiv_Round_8u_ISfs(V(8u)(a), M(8u)(sd), n, 2, -1); }},
        Pair{"Div_Round_16s_ISfs", 2,
             [](const void* a, const void* b, void* d, int n) { return zetsDiv_Round_16s_Sfs(V(16s)(a), V(16s)(b), M(16s)(d), n, 0, 2); },
             [](const void* a, void* sd, int n) { return zetsDiv_Round_16s_ISfs(V(16s)(a), M(16s)(sd), n, 0, 2); }},
    };
}

TEST(InPlace, EveryFormMatchesItsOutOfPlaceTwin) {
    std::mt19937_64 rng(60);
    for (const Pair& p : pairs()) {
        for (int len : {1, 2, 7, 16, 17, 33, 100}) {
            const std::size_t bytes = len * p.elem;
            std::vector<unsigned char> a(bytes), b(bytes), out(bytes), in(bytes);
            zettest::fillBytes(a.data(), bytes, rng);
            zettest::fillBytes(b.data(), bytes, rng);
            if (len > 3) std::memset(a.data(), 0, p.elem);  // a zero divisor where one divides
            const ZetStatus so = p.out(a.data(), b.data(), out.data(), len);
            in = b;
            const ZetStatus si = p.in(a.data(), in.data(), len);
            ASSERT_EQ(si, so) << p.name << " len " << len;
            ASSERT_EQ(std::memcmp(in.data(), out.data(), bytes), 0) << p.name << " len " << len;
        }
    }
}

}  // namespace
