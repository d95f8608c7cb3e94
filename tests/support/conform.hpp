// The conformance harness: one table row per operation and type list. A row
// names the exports, the scalar reference that states the formula once, the
// comparison, the input domain and the extra arguments; the harness deduces
// each export's parameter types from its pointer and runs, per export:
//   - every pointer null in turn, then lengths 0, -1 and the most negative,
//     with the outputs' bytes checked untouched after each error;
//   - lengths 1..70 and the block edges at every placement against guard
//     pages, compared with the reference element by element, with the bytes
//     around each output checked untouched;
//   - for scaled forms, a sweep of scale factors on one vector.
//
// Each export's parameters are described by a shape string, one letter each:
//   s  a source vector of `len` elements     d  a destination vector
//   o  a source vector that may be NULL (read as zeros), so not nulled
//   b  a source-destination vector (in place: it holds the reference's last
//      vector operand on entry)             r  one result element (reductions)
//   n  the length (int or long long)        N  the length, checked before the pointers
//   k  a fixed argument from the row
//   f  the scale factor, swept
// Element-wise rows: ref(sources and old b values..., k values..., f) returns
// the value of each d and b (a tuple when more than one). Reductions (shape
// with r): ref(const source pointers..., long long n, k..., f) returns the
// values of the r parameters (a tuple when more than one).
#pragma once

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "zetsp.h"
#include "zettest.hpp"

namespace conform {

// ---- element traits: every element type is a run of 1 or 2 parts ------------------
template <class T> struct Parts { using P = T; static constexpr int n = 1; };
#define CONFORM_COMPLEX(C, R) template <> struct Parts<C> { using P = R; static constexpr int n = 2; };
CONFORM_COMPLEX(Zet16sc, Zet16s)
CONFORM_COMPLEX(Zet32sc, Zet32s)
CONFORM_COMPLEX(Zet64sc, Zet64s)
CONFORM_COMPLEX(Zet32fc, Zet32f)
CONFORM_COMPLEX(Zet64fc, Zet64f)
#undef CONFORM_COMPLEX
template <class T> using PartOf = typename Parts<T>::P;
template <class T> constexpr bool kComplex = Parts<T>::n == 2;
template <class T> constexpr bool kFloat = std::is_floating_point_v<PartOf<T>>;

// ---- comparisons and domains ---------------------------------------------------------
struct Cmp {
    enum Kind { Bits, AnyNaN, Ulps, Rel, Abs } kind = Bits;
    double tol = 0;
};
inline Cmp bits() { return {Cmp::Bits, 0}; }          // every bit, NaN payloads too
inline Cmp anyNaN() { return {Cmp::AnyNaN, 0}; }      // every bit, but any NaN for a NaN
inline Cmp ulps(double n) { return {Cmp::Ulps, n}; }  // within n ulp; NaN for NaN
inline Cmp rel(double r) { return {Cmp::Rel, r}; }    // |got - want| <= r * |want|; integers exact
inline Cmp absTol(double a) { return {Cmp::Abs, a}; }

// Floating inputs: Any mixes in every special value, Finite leaves out NaN and
// the infinities, Plain has ordinary values of moderate magnitude only.
// Integer inputs are random bits with the extremes and their neighbours mixed in.
enum class Dom { Any, Finite, Plain };

// A row's fixed argument, converted to whatever the parameter is.
struct K {
    double re = 0, im = 0;
    long long bits = 0;
    bool exact = false;  // an integer given as such, not through a double
    K(double r, double i = 0) : re(r), im(i) {}
    K(int v) : re(v), bits(v), exact(true) {}
    K(long long v) : re(static_cast<double>(v)), bits(v), exact(true) {}
    template <class T> T as() const {
        if constexpr (kComplex<T>) return T{K(re).as<PartOf<T>>(), K(im).as<PartOf<T>>()};
        else if constexpr (std::is_floating_point_v<T>) return static_cast<T>(re);
        else return exact ? static_cast<T>(bits) : static_cast<T>(std::llround(re));
    }
};

// ---- rows ------------------------------------------------------------------------------
struct Opts {
    Cmp cmp = bits();
    Dom dom = Dom::Any;
    std::vector<K> k;           // the k arguments, in parameter order
    std::vector<int> scales;    // scale factors; empty: the standard sweep
    int minLen = 1;             // shorter lengths are refused with zetStsSizeErr
    ZetStatus warn = zetStsOk;  // the warning when `warnIf` holds for some element (or the vector)
};

struct NoWarn {
    template <class... A> bool operator()(A&&...) const { return false; }
};

// A reference, its options and an optional warning predicate (same arguments
// as the reference).
template <class Ref, class Pred = NoWarn>
struct Op {
    Ref ref;
    Opts o;
    Pred pred{};
    Op cmp(Cmp c) const { Op r = *this; r.o.cmp = c; return r; }
    Op dom(Dom d) const { Op r = *this; r.o.dom = d; return r; }
    Op k(std::vector<K> v) const { Op r = *this; r.o.k = std::move(v); return r; }
    Op scales(std::vector<int> v) const { Op r = *this; r.o.scales = std::move(v); return r; }
    Op minLen(int n) const { Op r = *this; r.o.minLen = n; return r; }
    template <class P> Op<Ref, P> warnIf(ZetStatus w, P p) const {
        Op<Ref, P> r{ref, o, p};
        r.o.warn = w;
        return r;
    }
};
template <class Ref> Op<Ref> op(Ref r) { return Op<Ref>{r, {}}; }

class RowBase {
public:
    explicit RowBase(std::string n) : name(std::move(n)) {}
    virtual ~RowBase() = default;
    virtual void run() = 0;
    std::string name;
};
std::vector<RowBase*>& registry();
void keep(std::unique_ptr<RowBase> row);  // owns the row for the program's life and registers it
std::vector<int> standardScales();

// Shape strings as template arguments, so every role is known at compile time.
template <std::size_t N>
struct Shape {
    char c[N]{};
    constexpr Shape(const char (&s)[N]) { for (std::size_t i = 0; i < N; ++i) c[i] = s[i]; }
    constexpr char operator[](std::size_t i) const { return c[i]; }
    constexpr int count(char x) const { int m = 0; for (std::size_t i = 0; i + 1 < N; ++i) m += c[i] == x; return m; }
    constexpr std::size_t size() const { return N - 1; }
};

template <class F> struct Sig;
template <class... A> struct Sig<ZetStatus (*)(A...)> {
    using Args = std::tuple<A...>;
    static constexpr std::size_t arity = sizeof...(A);
};
template <class F, std::size_t I> using Arg = std::tuple_element_t<I, typename Sig<F>::Args>;
template <class F, std::size_t I> using Elem = std::remove_cv_t<std::remove_pointer_t<Arg<F, I>>>;

namespace detail {

std::mt19937_64& rng();
void fillElems(void* p, std::size_t count, std::size_t partBytes, bool isFloat, Dom dom);
void fill(unsigned char* p, std::size_t bytes, unsigned char seed);  // the canary pattern
bool untouched(const unsigned char* p, std::size_t bytes, unsigned char seed);
::testing::AssertionResult partsMatch(const void* got, const void* want, int parts, std::size_t partBytes,
                                      bool isFloat, Cmp cmp);
std::string hex(const void* p, std::size_t bytes);

template <class T> void fillInput(T* p, std::size_t n, Dom dom) {
    fillElems(p, n * Parts<T>::n, sizeof(PartOf<T>), kFloat<T>, dom);
}
template <class T> ::testing::AssertionResult match(const T& got, const T& want, Cmp c) {
    return partsMatch(&got, &want, Parts<T>::n, sizeof(PartOf<T>), kFloat<T>, c);
}
template <class T> auto asTuple(T&& v) {
    if constexpr (requires { std::tuple_size<std::remove_cvref_t<T>>::value; }) return std::forward<T>(v);
    else return std::make_tuple(std::forward<T>(v));
}
template <class T> T load(const void* p) { T v; std::memcpy(static_cast<void*>(&v), p, sizeof v); return v; }

}  // namespace detail

// One export under one Op.
template <auto S, class Fn, class O>
class Row final : public RowBase {
    static constexpr std::size_t N = Sig<Fn>::arity;
    static_assert(S.size() == N, "one shape letter per parameter");
    static constexpr bool kReduce = S.count('r') > 0;
    static constexpr std::size_t kSlack = 64;  // canary bytes checked on each side of an output

public:
    Row(Fn f, const char* name, O op) : RowBase(name), fn_(f), op_(std::move(op)) {}

    void run() override {
        // Each row draws its own stream, so one row's data never depends on another's.
        detail::rng().seed(std::hash<std::string>{}(name));
        std::size_t most = 0;
        for (int n : zettest::kernelLengths()) most = std::max<std::size_t>(most, n);
        for (std::size_t i = 0; i < N; ++i) regions_.push_back(std::make_unique<zettest::GuardedRegion>(most * 16 + 256));
        checkStatuses();
        if (::testing::Test::HasFailure()) return;
        const auto scales = scaleList();
        std::size_t smallest = 16;
        each([&](auto I) { if constexpr (isVec(I)) smallest = std::min(smallest, sizeof(Elem<Fn, I>)); });
        int turn = 0;
        for (int len : zettest::kernelLengths()) {
            if (len < op_.o.minLen) continue;
            for (const auto& p : zettest::placementsFor(smallest)) {
                const int sf = S.count('f') ? scales[turn++ % scales.size()] : 0;
                if (!checkValues(len, p, sf)) return;
                if (len > 70 && p.kind == zettest::Placement::Offset && p.offset > 8) break;
            }
        }
        if (S.count('f'))
            for (int sf : scales)
                if (!checkValues(67, {zettest::Placement::Tail, 0}, sf)) return;
    }

private:
    template <std::size_t I> using A = Arg<Fn, I>;
    template <std::size_t I> using E = Elem<Fn, I>;
    static constexpr bool isSrc(std::size_t i) { return S[i] == 's' || S[i] == 'o'; }
    static constexpr bool isVec(std::size_t i) { return isSrc(i) || S[i] == 'd' || S[i] == 'b'; }
    static constexpr bool isOut(std::size_t i) { return S[i] == 'd' || S[i] == 'b' || S[i] == 'r'; }
    static constexpr bool isPtr(std::size_t i) { return isVec(i) || S[i] == 'r'; }

    template <class F> static void each(F&& f) {
        [&]<std::size_t... I>(std::index_sequence<I...>) { (f(std::integral_constant<std::size_t, I>{}), ...); }(
            std::make_index_sequence<N>{});
    }

    std::vector<int> scaleList() const { return op_.o.scales.empty() ? standardScales() : op_.o.scales; }

    // The arguments of one call: the placed pointers, the length, the scale.
    struct Call {
        void* ptr[N ? N : 1] = {};
        long long len = 0;     // passed
        long long placed = 0;  // elements each vector has
        int scale = 0;
        int nullAt = -1;  // the parameter passed as NULL
    };

    template <std::size_t I> A<I> arg(const Call& c) const {
        if constexpr (isPtr(I)) return c.nullAt == static_cast<int>(I) ? nullptr : static_cast<A<I>>(c.ptr[I]);
        else if constexpr (S[I] == 'n' || S[I] == 'N') return static_cast<A<I>>(c.len);
        else if constexpr (S[I] == 'f') return static_cast<A<I>>(c.scale);
        else {
            static_assert(S[I] == 'k', "unknown shape letter");
            return kArg<I>().template as<A<I>>();
        }
    }
    template <std::size_t I> const K& kArg() const {
        constexpr int j = [] { int m = 0; for (std::size_t i = 0; i < I; ++i) m += S[i] == 'k'; return m; }();
        return op_.o.k.at(j);
    }
    ZetStatus invoke(const Call& c) const {
        return [&]<std::size_t... I>(std::index_sequence<I...>) { return fn_(arg<I>(c)...); }(std::make_index_sequence<N>{});
    }

    // Places every vector for `len` elements, inputs filled, outputs patterned.
    Call place(long long len, const zettest::Placement& p, int sf) {
        Call c;
        c.len = c.placed = len;
        c.scale = sf;
        each([&](auto I) {
            if constexpr (isPtr(I)) {
                const std::size_t count = S[I] == 'r' ? 1 : static_cast<std::size_t>(len);
                const auto at = S[I] == 'r' ? zettest::Placement{zettest::Placement::Tail, 0} : p;
                auto* q = zettest::place<unsigned char>(*regions_[I], at, count * sizeof(E<I>));
                c.ptr[I] = q;
                if constexpr (isSrc(I) || S[I] == 'b') {
                    staged_[I].resize(count * sizeof(E<I>));
                    detail::fillInput(reinterpret_cast<E<I>*>(staged_[I].data()), count, op_.o.dom);
                    std::memcpy(q, staged_[I].data(), staged_[I].size());
                }
                if constexpr (isOut(I)) patternAround(q, count * sizeof(E<I>), I, S[I] != 'b');
            }
        });
        return c;
    }
    // The bytes just before and after an output, and the output itself unless it is an input.
    void patternAround(unsigned char* q, std::size_t bytes, std::size_t i, bool inner) {
        const auto& r = *regions_[i];
        const std::size_t lo = std::min<std::size_t>(kSlack, q - r.begin());
        const std::size_t hi = std::min<std::size_t>(kSlack, r.end() - (q + bytes));
        detail::fill(q - lo, lo, static_cast<unsigned char>(i));
        detail::fill(q + bytes, hi, static_cast<unsigned char>(i + 1));
        if (inner) detail::fill(q, bytes, static_cast<unsigned char>(i + 2));
    }
    ::testing::AssertionResult aroundIntact(const Call& c, bool inner) const {
        ::testing::AssertionResult ok = ::testing::AssertionSuccess();
        each([&](auto I) {
            if constexpr (isOut(I)) {
                if (!ok) return;
                const auto& r = *regions_[I];
                const auto* q = static_cast<const unsigned char*>(c.ptr[I]);
                const std::size_t bytes = (S[I] == 'r' ? 1 : static_cast<std::size_t>(c.placed)) * sizeof(E<I>);
                const std::size_t lo = std::min<std::size_t>(kSlack, q - r.begin());
                const std::size_t hi = std::min<std::size_t>(kSlack, r.end() - (q + bytes));
                if (!detail::untouched(q - lo, lo, static_cast<unsigned char>(I)))
                    ok = ::testing::AssertionFailure() << "wrote before parameter " << I;
                else if (!detail::untouched(q + bytes, hi, static_cast<unsigned char>(I + 1)))
                    ok = ::testing::AssertionFailure() << "wrote past the end of parameter " << I;
                else if (inner && S[I] != 'b' && !detail::untouched(q, bytes, static_cast<unsigned char>(I + 2)))
                    ok = ::testing::AssertionFailure() << "wrote parameter " << I << " on an error";
                else if (inner && S[I] == 'b' && std::memcmp(q, staged_[I].data(), bytes) != 0)
                    ok = ::testing::AssertionFailure() << "changed parameter " << I << " on an error";
            }
        });
        return ok;
    }

    void expectError(Call c, ZetStatus want, const std::string& what) {
        const ZetStatus got = invoke(c);
        EXPECT_EQ(got, want) << name << ": " << what;
        EXPECT_TRUE(aroundIntact(c, true)) << name << ": " << what;
    }

    void checkStatuses() {
        const zettest::Placement mid{zettest::Placement::Offset, 0};
        Call c = place(8, mid, 0);
        each([&](auto I) {
            if constexpr (isPtr(I) && S[I] != 'o') {
                Call d = c;
                d.nullAt = static_cast<int>(I);
                expectError(d, zetStsNullPtrErr, "parameter " + std::to_string(I) + " null");
            }
        });
        using Len = A<[] { std::size_t i = 0; while (S[i] != 'n' && S[i] != 'N') ++i; return i; }()>;
        std::vector<long long> bad = {0, -1, static_cast<long long>(std::numeric_limits<Len>::min())};
        for (int n = 1; n < op_.o.minLen; ++n) bad.push_back(n);
        for (long long len : bad) {
            Call d = place(8, mid, 0);
            d.len = len;
            expectError(d, zetStsSizeErr, "length " + std::to_string(len));
        }
        Call d = place(8, mid, 0);
        d.len = 0;
        each([&](auto I) { if constexpr (isPtr(I) && S[I] != 'o') if (d.nullAt < 0) d.nullAt = static_cast<int>(I); });
        expectError(d, S.count('N') ? zetStsSizeErr : zetStsNullPtrErr, "null pointer with length 0");
    }

    // Element values of the sources (and old b) at index i, then the k and f arguments.
    auto refArgs(const Call& c, std::size_t i) const {
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return std::tuple_cat(vecArg<I>(i)..., fixedArg<I>(c)...);
        }(std::make_index_sequence<N>{});
    }
    template <std::size_t I> auto vecArg(std::size_t i) const {
        if constexpr (isSrc(I) || S[I] == 'b')
            return std::make_tuple(detail::load<E<I>>(staged_[I].data() + i * sizeof(E<I>)));
        else return std::tuple<>{};
    }
    template <std::size_t I> auto fixedArg(const Call& c) const {
        if constexpr (S[I] == 'k' || S[I] == 'f') return std::make_tuple(arg<I>(c));
        else return std::tuple<>{};
    }
    // Reductions: the source vectors as aligned copies, the length, then k and f.
    auto reduceArgs(const Call& c) const {
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return std::tuple_cat(srcPtr<I>()..., std::make_tuple(c.len), fixedArg<I>(c)...);
        }(std::make_index_sequence<N>{});
    }
    template <std::size_t I> auto srcPtr() const {
        if constexpr (isSrc(I)) {
            aligned_[I].resize(staged_[I].size() / sizeof(E<I>) + 1);
            std::memcpy(static_cast<void*>(aligned_[I].data()), staged_[I].data(), staged_[I].size());
            return std::make_tuple(reinterpret_cast<const E<I>*>(aligned_[I].data()));
        } else return std::tuple<>{};
    }

    // Runs one call and compares every output with the reference.
    bool checkValues(int len, const zettest::Placement& p, int sf) {
        const Call c = place(len, p, sf);
        const ZetStatus got = invoke(c);
        const std::string where = name + " len " + std::to_string(len) + " at " + p.name() + " scale " +
                                  std::to_string(sf);
        bool warn = false;
        ::testing::AssertionResult ok = aroundIntact(c, false);
        if constexpr (kReduce) {
            auto args = reduceArgs(c);
            const auto want = detail::asTuple(std::apply(op_.ref, args));
            warn = std::apply(op_.pred, args);
            compareOuts<'r'>(c, 0, want, ok);
        } else {
            for (std::size_t i = 0; i < static_cast<std::size_t>(len) && ok; ++i) {
                auto args = refArgs(c, i);
                const auto want = detail::asTuple(std::apply(op_.ref, args));
                warn = warn || std::apply(op_.pred, args);
                compareOuts<'d'>(c, i, want, ok);
            }
        }
        const ZetStatus expect = warn ? op_.o.warn : zetStsOk;
        if (ok && got != expect) ok = ::testing::AssertionFailure() << "status " << got << ", want " << expect;
        EXPECT_TRUE(ok) << where;
        return static_cast<bool>(ok);
    }
    // How many outputs of the kind stand before parameter i.
    template <char Kind> static constexpr std::size_t outOrdinal(std::size_t i) {
        std::size_t m = 0;
        for (std::size_t q = 0; q < i; ++q) m += Kind == 'r' ? S[q] == 'r' : (S[q] == 'd' || S[q] == 'b');
        return m;
    }
    // Compares output element i of every d/b (or each r) with the reference's values in order.
    template <char Kind, class Want>
    void compareOuts(const Call& c, std::size_t i, const Want& want, ::testing::AssertionResult& ok) const {
        each([&](auto I) {
            constexpr bool mine = Kind == 'r' ? S[I] == 'r' : (S[I] == 'd' || S[I] == 'b');
            if constexpr (mine) {
                constexpr std::size_t w = outOrdinal<Kind>(decltype(I)::value);
                static_assert(w < std::tuple_size_v<Want>, "the reference returns a value per output");
                const auto g = detail::load<E<I>>(static_cast<const unsigned char*>(c.ptr[I]) + i * sizeof(E<I>));
                const E<I> v = static_cast<E<I>>(std::get<w>(want));
                if (ok) {
                    auto m = detail::match(g, v, op_.o.cmp);
                    if (!m) {
                        ok = ::testing::AssertionFailure() << "parameter " << I << " element " << i << ": "
                                                           << m.message() << inputsAt(i);
                    }
                }
            }
        });
    }
    std::string inputsAt(std::size_t i) const {
        std::string s;
        if constexpr (kReduce) return s;
        each([&](auto I) {
            if constexpr (isSrc(I) || S[I] == 'b') s += " in " + detail::hex(staged_[I].data() + i * sizeof(E<I>), sizeof(E<I>));
        });
        return s;
    }

    Fn fn_;
    O op_;
    std::vector<std::unique_ptr<zettest::GuardedRegion>> regions_;
    std::vector<unsigned char> staged_[N ? N : 1];
    mutable std::vector<std::max_align_t> aligned_[N ? N : 1];
};

template <auto S, class Fn> struct Entry { Fn fn; const char* name; };
template <Shape S, class Fn> Entry<S, Fn> entry(Fn f, const char* name) { return {f, name}; }

// Registers one row per export; kept alive for the program's life.
template <class O, auto... S, class... Fn>
bool rows(const O& op, Entry<S, Fn>... e) {
    (keep(std::make_unique<Row<S, Fn, O>>(e.fn, e.name, op)), ...);
    return true;
}

}  // namespace conform

// One export of a row: its name and its shape.
#define Z(fn, shape) ::conform::entry<shape>(&fn, #fn)
// A row at namespace scope: CONFORM(tag, op, Z(...), Z(...), ...).
#define CONFORM(tag, ...) [[maybe_unused]] static const bool conform_##tag = ::conform::rows(__VA_ARGS__)
