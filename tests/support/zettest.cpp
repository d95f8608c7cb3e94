#include "zettest.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace zettest {

namespace {
std::size_t pageSize() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }
}  // namespace

GuardedRegion::GuardedRegion(std::size_t bytes) {
    const std::size_t page = pageSize();
    usable_ = (bytes + 128 + page - 1) / page * page;  // room for at() offsets too
    mapped_ = usable_ + 2 * page;
    void* m = mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (m == MAP_FAILED) std::abort();
    map_ = static_cast<unsigned char*>(m);
    base_ = map_ + page;
    if (mprotect(base_, usable_, PROT_READ | PROT_WRITE) != 0) std::abort();
}

GuardedRegion::~GuardedRegion() { munmap(map_, mapped_); }

std::string Placement::name() const {
    switch (kind) {
        case Tail: return "tail";
        case Head: return "head";
        default: return "offset" + std::to_string(offset);
    }
}

std::vector<Placement> placementsFor(std::size_t elemBytes) {
    std::vector<Placement> v{{Placement::Tail, 0}, {Placement::Head, 0}};
    for (std::size_t o = 0; o < 64; o += elemBytes) v.push_back({Placement::Offset, o});
    for (std::size_t o : {1, 3, 6, 13, 31}) if (o % elemBytes) v.push_back({Placement::Offset, o});
    return v;
}

std::vector<int> kernelLengths() {
    std::vector<int> v;
    for (int n = 1; n <= 70; ++n) v.push_back(n);
    for (int n : {95, 96, 97, 127, 128, 129, 255, 256, 257, 511, 1000, 1023, 1024, 1025, 4099}) v.push_back(n);
    return v;
}

namespace {

template <class T>
std::vector<T> specials() {
    using L = std::numeric_limits<T>;
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    constexpr int kMant = L::digits - 1;
    const Bits sign = Bits{1} << (sizeof(T) * 8 - 1);
    const Bits expAll = ((Bits{1} << (sizeof(T) * 8 - 1 - kMant)) - 1) << kMant;
    const Bits quiet = Bits{1} << (kMant - 1);
    std::vector<T> v = {T(0), -T(0), L::infinity(), -L::infinity(), L::max(), -L::max(), L::min(), -L::min(),
                        L::denorm_min(), -L::denorm_min(), L::min() / 3, -L::min() * T(0.75), T(1), T(-1),
                        L::epsilon(), T(0.5)};
    for (Bits payload : {Bits{0}, Bits{1}, Bits{0x5A5}, quiet - 1}) {
        v.push_back(fromBits<T>(expAll | quiet | payload));         // quiet NaN
        v.push_back(fromBits<T>(sign | expAll | quiet | payload));  // negative quiet NaN
        if (payload) {
            v.push_back(fromBits<T>(expAll | payload));         // signalling NaN
            v.push_back(fromBits<T>(sign | expAll | payload));  // negative signalling NaN
        }
    }
    return v;
}

template <class T>
void fillFloatsT(T* p, std::size_t n, std::mt19937_64& rng, int specialEvery) {
    static const std::vector<T> sp = specials<T>();
    std::uniform_real_distribution<double> mant(-1.0, 1.0);
    std::uniform_int_distribution<int> ex(-20, 20);
    for (std::size_t i = 0; i < n; ++i) {
        if (specialEvery > 0 && rng() % static_cast<unsigned>(specialEvery) == 0) p[i] = sp[rng() % sp.size()];
        else p[i] = static_cast<T>(std::ldexp(mant(rng), ex(rng)));
    }
}

}  // namespace

void fillFloats(float* p, std::size_t n, std::mt19937_64& rng, int specialEvery) { fillFloatsT(p, n, rng, specialEvery); }
void fillFloats(double* p, std::size_t n, std::mt19937_64& rng, int specialEvery) { fillFloatsT(p, n, rng, specialEvery); }

void fillBytes(void* p, std::size_t n, std::mt19937_64& rng) {
    auto* b = static_cast<unsigned char*>(p);
    for (std::size_t i = 0; i < n; ++i) b[i] = static_cast<unsigned char>(rng());
}

namespace {
template <class T>
std::uint64_t ulpT(T a, T b) {
    if (std::isnan(a) || std::isnan(b)) return (std::isnan(a) && std::isnan(b)) ? 0 : ~std::uint64_t{0};
    if (a == b) return 0;
    // Map the sign-magnitude encoding onto a monotonic unsigned line.
    const std::uint64_t top = std::uint64_t{1} << (sizeof(T) * 8 - 1);
    auto key = [top](T v) {
        const std::uint64_t bits = bitsOf(v);
        return (bits & top) ? top - (bits & (top - 1)) : top + bits;
    };
    const std::uint64_t ka = key(a), kb = key(b);
    return ka > kb ? ka - kb : kb - ka;
}
}  // namespace

std::uint64_t ulpDistance(float a, float b) { return ulpT(a, b); }
std::uint64_t ulpDistance(double a, double b) { return ulpT(a, b); }

}  // namespace zettest
