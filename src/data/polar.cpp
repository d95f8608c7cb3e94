// Magnitude, phase, power spectrum and the polar forms of complex vectors.
//
// Each operation is one kernel per precision (polar_math.hpp) run by one
// loop over any source layout (polar_lanes.hpp). Binary32 and binary64
// vectors are computed in their own precision; 16-bit vectors are widened
// to binary64, where their squares and sums are exact, and rounded once at
// the end, to binary32 or by the scale rule. The binary32 polar-to-Cartesian
// forms run the binary64 kernel too. CartToPolar calls the Magnitude and
// Phase kernels on the same registers, so its results are theirs bit for bit.
#include "data/polar_lanes.hpp"

namespace zet::polar {
namespace {

struct Magnitude {
    template <class At> auto operator()(const At& at) const { return magnitude(at); }
};
struct Phase {
    template <class At> auto operator()(const At& at) const { return phase(at); }
};
struct Power {
    template <class At> auto operator()(const At& at) const { return power(at.load()); }
};
struct ToPolar {
    template <class At> auto operator()(const At& at) const { return Pair{magnitude(at), phase(at)}; }
};
struct ToCartesian {
    template <class At> auto operator()(const At& at) const { return polarToCart(at); }
};

// Sources and destinations by argument type; T is the computing precision.
template <class C> auto partsOf(const C* p) { return reinterpret_cast<const decltype(C::re)*>(p); }
template <class C> auto partsOf(C* p) { return reinterpret_cast<decltype(C::re)*>(p); }

template <class T, class C> Interleaved<T, decltype(C::re)> in(const C* p) { return {partsOf(p)}; }
template <class T, class E> Planes<T, E> in(const E* re, const E* im) { return {re, im}; }
template <class T, class E> RealOut<T, E> out(E* p) { return {p}; }
template <class T, class E> PlanesOut<T, E> out(E* a, E* b) { return {a, b}; }
template <class T, class C> InterleavedOut<T, decltype(C::re)> outPairs(C* p) { return {partsOf(p)}; }
inline Scaled16Out out(Zet16s* p, int scale) { return {p, Scaled16Out::factorOf(scale)}; }

}  // namespace
}  // namespace zet::polar

using namespace zet::polar;

// ---- exports ---------------------------------------------------------------------------------
#define ZET_CARTESIAN(NAME, OP)                                                                                    \
    ZetStatus zets##NAME##_32fc(const Zet32fc* s, Zet32f* d, int n) { return run(n, OP{}, in<float>(s), out<float>(d)); } \
    ZetStatus zets##NAME##_64fc(const Zet64fc* s, Zet64f* d, int n) { return run(n, OP{}, in<double>(s), out<double>(d)); } \
    ZetStatus zets##NAME##_32f(const Zet32f* re, const Zet32f* im, Zet32f* d, int n) {                             \
        return run(n, OP{}, in<float>(re, im), out<float>(d));                                                     \
    }                                                                                                              \
    ZetStatus zets##NAME##_64f(const Zet64f* re, const Zet64f* im, Zet64f* d, int n) {                             \
        return run(n, OP{}, in<double>(re, im), out<double>(d));                                                   \
    }                                                                                                              \
    ZetStatus zets##NAME##_16sc32f(const Zet16sc* s, Zet32f* d, int n) { return run(n, OP{}, in<double>(s), out<double>(d)); } \
    ZetStatus zets##NAME##_16s32f(const Zet16s* re, const Zet16s* im, Zet32f* d, int n) {                          \
        return run(n, OP{}, in<double>(re, im), out<double>(d));                                                   \
    }                                                                                                              \
    ZetStatus zets##NAME##_16sc_Sfs(const Zet16sc* s, Zet16s* d, int n, int sf) { return run(n, OP{}, in<double>(s), out(d, sf)); } \
    ZetStatus zets##NAME##_16s_Sfs(const Zet16s* re, const Zet16s* im, Zet16s* d, int n, int sf) {                 \
        return run(n, OP{}, in<double>(re, im), out(d, sf));                                                       \
    }

ZET_CARTESIAN(Magnitude, Magnitude)
ZET_CARTESIAN(Phase, Phase)
ZET_CARTESIAN(PowerSpectr, Power)

ZetStatus zetsCartToPolar_32fc(const Zet32fc* s, Zet32f* m, Zet32f* p, int n) { return run(n, ToPolar{}, in<float>(s), out<float>(m, p)); }
ZetStatus zetsCartToPolar_64fc(const Zet64fc* s, Zet64f* m, Zet64f* p, int n) { return run(n, ToPolar{}, in<double>(s), out<double>(m, p)); }
ZetStatus zetsCartToPolar_32f(const Zet32f* re, const Zet32f* im, Zet32f* m, Zet32f* p, int n) {
    return run(n, ToPolar{}, in<float>(re, im), out<float>(m, p));
}
ZetStatus zetsCartToPolar_64f(const Zet64f* re, const Zet64f* im, Zet64f* m, Zet64f* p, int n) {
    return run(n, ToPolar{}, in<double>(re, im), out<double>(m, p));
}

ZetStatus zetsPolarToCart_32fc(const Zet32f* m, const Zet32f* p, Zet32fc* d, int n) { return run(n, ToCartesian{}, in<double>(m, p), outPairs<double>(d)); }
ZetStatus zetsPolarToCart_64fc(const Zet64f* m, const Zet64f* p, Zet64fc* d, int n) { return run(n, ToCartesian{}, in<double>(m, p), outPairs<double>(d)); }
ZetStatus zetsPolarToCart_32f(const Zet32f* m, const Zet32f* p, Zet32f* re, Zet32f* im, int n) {
    return run(n, ToCartesian{}, in<double>(m, p), out<double>(re, im));
}
ZetStatus zetsPolarToCart_64f(const Zet64f* m, const Zet64f* p, Zet64f* re, Zet64f* im, int n) {
    return run(n, ToCartesian{}, in<double>(m, p), out<double>(re, im));
}
