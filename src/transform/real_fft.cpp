// The power-of-two real transform: a core of the real length that carries
// the complex tables of half the length and the recombination tables.
#include "transform/real_fft.hpp"

#include "transform/fft_core.hpp"

namespace zet::fft {

namespace {

template <class T> constexpr bool kDbl = sizeof(T) == 8;
// From this order the recombination tables take their two-level shape.
constexpr int kTwoLevelOrder = 19;

template <class T> T* alignUp(void* p) {
    return reinterpret_cast<T*>((reinterpret_cast<std::uintptr_t>(p) + 63) & ~std::uintptr_t{63});
}

// Bytes reserved per direction for the recombination table.
std::int64_t recombineBytes(bool dbl, int order) {
    const std::int64_t n = std::int64_t{1} << order;
    if (order >= kTwoLevelOrder)
        return dbl ? (std::int64_t{16} << (order - 12)) + 16447 : (std::int64_t{8} << (order - 12)) + 8255;
    return dbl ? ((((4 * n) & ~std::int64_t{15}) + 63) & 0x3FFFFFC0) : ((((2 * n) & ~std::int64_t{7}) + 63) & 0x3FFFFFC0);
}

// Where the recombination tables start: behind the complex tables of
// order - 1 when there are any.
std::int64_t recombineOffset(bool dbl, int order) { return order >= 8 ? coreSizes(dbl, order - 1).spec : 256; }

template <class T>
ZetStatus realInit(FFTCore* c, int order, int flag, Zet8u* initBuf, std::int32_t id) {
    const std::int64_t n = std::int64_t{1} << order;
    if (auto s = coreHeader(c, order, flag, n, id)) return s;
    if (order <= 4) return zetStsOk;
    Sine<T> sine;
    if (auto s = sineFor(order, initBuf, sine)) return s;
    // The half-length tables read the same sine table at twice the stride.
    if (order >= 8) coreTables<T>(c, order - 1, sine);
    Zet8u* base = reinterpret_cast<Zet8u*>(c) + recombineOffset(kDbl<T>, order);
    T* first = reinterpret_cast<T*>(base);
    T* second;
    if (order < kTwoLevelOrder) {
        second = reinterpret_cast<T*>(base + recombineBytes(kDbl<T>, order));
        buildRecombinePow2(first, second, order, sine);
    } else {
        second = alignUp<T>(first + 2 * 1024);
        buildRecombineTwoLevel(first, second, order, sine);
    }
    c->recombine[0] = first;
    c->recombine[1] = second;
    return zetStsOk;
}

template <class T, bool Inv>
void recombineCore(const FFTCore* c, T* z, int order) {
    const std::int64_t h = (std::int64_t{1} << order) / 2;
    if (order >= kTwoLevelOrder) {
        recombineTwoLevel<T, Inv>(z, h, static_cast<const T*>(c->recombine[0]), static_cast<const T*>(c->recombine[1]));
    } else if (order >= 5) {
        recombine<T, Inv>(z, h, static_cast<const T*>(c->recombine[Inv ? 1 : 0]));
    } else {
        // The codelet sizes keep no tables: at most four entries, from the
        // static sine table.
        T fwd[8], inv[8];
        buildRecombinePow2(fwd, inv, order, Sine<T>{sineTable1024(T()), 10});
        recombine<T, Inv>(z, h, Inv ? inv : fwd);
    }
}

// The checked arguments of a real compute entry.
template <class T> struct RealCall {
    const T* src;
    T* dst;
    const FFTCore* c;
    T* work;
    ZetStatus status;
    RealCall(const void* s, void* d, const void* core, Zet8u* w)
        : src(static_cast<const T*>(s)), dst(static_cast<T*>(d)), c(static_cast<const FFTCore*>(core)) {
        status = coreChecks(c, kDbl<T> ? kCoreR64f : kCoreR32f, 7, !src || !dst, w);
        work = reinterpret_cast<T*>(w);
    }
    std::int64_t n() const { return std::int64_t{1} << c->order; }
    T scale() const { return kDbl<T> ? static_cast<T>(c->scale64) : static_cast<T>(c->scale32); }
};

template <class T, Layout F>
ZetStatus realForward(const void* srcV, void* dstV, const void* coreV, Zet8u* work) {
    const RealCall<T> a(srcV, dstV, coreV, work);
    if (a.status) return a.status;
    const int order = a.c->order;
    if (order == 0) {
        a.dst[0] = a.c->scaleForward ? a.src[0] * a.scale() : a.src[0];
    } else {
        // The factor goes in before the recombination, with the half transform.
        complexPass<T, false>(a.c, order - 1, a.src, a.dst, a.work, a.c->scaleForward != 0, a.scale());
        recombineCore<T, false>(a.c, a.dst, order);
    }
    permTo(F, a.dst, a.n());
    return zetStsOk;
}

template <class T, Layout F>
ZetStatus realInverse(const void* srcV, void* dstV, const void* coreV, Zet8u* work) {
    const RealCall<T> a(srcV, dstV, coreV, work);
    if (a.status) return a.status;
    const int order = a.c->order;
    if (order == 0) {
        a.dst[0] = a.c->scaleInverse ? a.src[0] * a.scale() : a.src[0];
        return zetStsOk;
    }
    toPerm(F, a.src, a.dst, a.n());
    recombineCore<T, true>(a.c, a.dst, order);
    complexPass<T, true>(a.c, order - 1, a.dst, a.dst, a.work, a.c->scaleInverse != 0, a.scale());
    return zetStsOk;
}

template <class T>
const RealEntries kEntries{{
    reinterpret_cast<void*>(&realForward<T, Layout::CCS>), reinterpret_cast<void*>(&realInverse<T, Layout::CCS>),
    reinterpret_cast<void*>(&realForward<T, Layout::Pack>), reinterpret_cast<void*>(&realInverse<T, Layout::Pack>),
    reinterpret_cast<void*>(&realForward<T, Layout::Perm>), reinterpret_cast<void*>(&realInverse<T, Layout::Perm>),
}};

}  // namespace

CoreSizes realCoreSizes(bool dbl, int order) {
    if (order <= 4) return {208, 0, 0};
    const std::int64_t t = recombineBytes(dbl, order);
    if (order <= 7) return {2 * t + 256, 0, 0};
    const CoreSizes half = coreSizes(dbl, order - 1);
    const std::int64_t n = std::int64_t{1} << order;
    const std::int64_t sine = dbl ? ((((2 * n) & ~std::int64_t{7}) + 71) & ~std::int64_t{63})
                                  : (((n & ~std::int64_t{3}) + 67) & ~std::int64_t{63});
    return {half.spec + 2 * t, order >= 11 ? sine + 64 : 0, half.work + 64};
}

ZetStatus realCoreInit32(FFTCore* c, int order, int flag, Zet8u* initBuf) { return realInit<float>(c, order, flag, initBuf, kCoreR32f); }
ZetStatus realCoreInit64(FFTCore* c, int order, int flag, Zet8u* initBuf) { return realInit<double>(c, order, flag, initBuf, kCoreR64f); }

const RealEntries& realEntries(bool dbl) { return dbl ? kEntries<double> : kEntries<float>; }

}  // namespace zet::fft
