// Test support: guard-page buffers, placements, inputs with special values,
// bit-exact and ULP comparisons.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace zettest {

// A region of read-write pages between two inaccessible pages. Data placed
// with tail() ends exactly where the upper guard begins; data placed with
// head() starts right after the lower guard. Any read or write past either
// end faults at once.
class GuardedRegion {
public:
    explicit GuardedRegion(std::size_t bytes);
    ~GuardedRegion();
    GuardedRegion(const GuardedRegion&) = delete;
    GuardedRegion& operator=(const GuardedRegion&) = delete;

    std::size_t capacity() const { return usable_; }
    unsigned char* begin() const { return base_; }
    unsigned char* end() const { return base_ + usable_; }

    template <class T> T* tail(std::size_t count) const { return reinterpret_cast<T*>(end() - count * sizeof(T)); }
    template <class T> T* head() const { return reinterpret_cast<T*>(begin()); }
    // `offset` bytes past a 64-byte boundary inside the region, away from the guards.
    template <class T> T* at(std::size_t offset) const { return reinterpret_cast<T*>(begin() + 64 + offset); }

private:
    unsigned char* map_ = nullptr;
    std::size_t mapped_ = 0;
    unsigned char* base_ = nullptr;
    std::size_t usable_ = 0;
};

// Where a vector sits: against the upper guard, against the lower guard, or
// at a byte offset (0..63) from a 64-byte boundary.
struct Placement {
    enum Kind { Tail, Head, Offset } kind;
    std::size_t offset;
    std::string name() const;
};
// Tail, Head, then the offsets that keep the element size's alignment, and a few that do not.
std::vector<Placement> placementsFor(std::size_t elemBytes);

template <class T>
T* place(const GuardedRegion& r, const Placement& p, std::size_t count) {
    switch (p.kind) {
        case Placement::Tail: return r.tail<T>(count);
        case Placement::Head: return r.head<T>();
        default: return r.at<T>(p.offset);
    }
}

// Lengths for kernel comparisons: every length 1..70, then sizes around
// vector and block boundaries further up.
std::vector<int> kernelLengths();

// ---- inputs -----------------------------------------------------------------
// Floating inputs (p must be aligned to T; place data at odd addresses with
// memcpy): ordinary values of mixed magnitude and sign, interleaved
// with specials (+-0, +-inf, quiet and signalling NaNs with payloads and
// either sign, denormals, the extremes) at a rate of about one in `specialEvery`.
void fillFloats(float* p, std::size_t n, std::mt19937_64& rng, int specialEvery = 5);
void fillFloats(double* p, std::size_t n, std::mt19937_64& rng, int specialEvery = 5);
void fillBytes(void* p, std::size_t n, std::mt19937_64& rng);

// ---- comparisons --------------------------------------------------------------
template <class T>
std::uint64_t bitsOf(T v) {
    if constexpr (sizeof(T) == 4) { std::uint32_t b; std::memcpy(&b, &v, 4); return b; }
    else { std::uint64_t b; std::memcpy(&b, &v, 8); return b; }
}
template <class T>
T fromBits(std::uint64_t b) {
    T v;
    if constexpr (sizeof(T) == 4) { const auto w = static_cast<std::uint32_t>(b); std::memcpy(&v, &w, 4); }
    else std::memcpy(&v, &b, 8);
    return v;
}

// Index of the first element whose bits differ, or -1.
template <class T>
long long firstBitMismatch(const T* a, const T* b, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i)
        if (std::memcmp(&a[i], &b[i], sizeof(T)) != 0) return static_cast<long long>(i);
    return -1;
}

// Distance in units in the last place; NaNs compare equal to NaNs only.
std::uint64_t ulpDistance(float a, float b);
std::uint64_t ulpDistance(double a, double b);

// Hex rendering of a value's bits for failure messages.
template <class T>
std::string hexBits(T v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, sizeof(T) == 4 ? "0x%08llx" : "0x%016llx",
                  static_cast<unsigned long long>(bitsOf(v)));
    return buf;
}

}  // namespace zettest
