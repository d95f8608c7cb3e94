// Core services: aligned memory, processor queries and the MXCSR mode bits.
#include "zetcore.h"

#include <cpuid.h>
#include <xmmintrin.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr std::size_t kAlign = 64;

void* alignedBlock(long long bytes) {
    if (bytes <= 0) return nullptr;
    void* p = nullptr;
    if (posix_memalign(&p, kAlign, static_cast<std::size_t>(bytes)) != 0) return nullptr;
    return p;
}

// Deterministic cache parameters: CPUID leaf 4 or, on processors without it,
// leaf 0x8000001D, which has the same layout. Each subleaf describes one cache
// until the type field reads 0.
long long largestCacheFromLeaf(unsigned leaf) {
    unsigned a, b, c, d;
    if (!__get_cpuid_count(leaf & 0x80000000u, 0, &a, &b, &c, &d) || a < leaf) return 0;
    long long best = 0;
    for (unsigned sub = 0; sub < 16; ++sub) {
        __cpuid_count(leaf, sub, a, b, c, d);
        if ((a & 0x1F) == 0) break;
        const long long ways = ((b >> 22) & 0x3FF) + 1;
        const long long parts = ((b >> 12) & 0x3FF) + 1;
        const long long line = (b & 0xFFF) + 1;
        const long long sets = static_cast<long long>(c) + 1;
        const long long size = ways * parts * line * sets;
        if (size > best) best = size;
    }
    return best;
}

long long largestCacheFromSysfs() {
    long long best = 0;
    for (int i = 0; i < 8; ++i) {
        char path[96];
        std::snprintf(path, sizeof path, "/sys/devices/system/cpu/cpu0/cache/index%d/size", i);
        std::FILE* f = std::fopen(path, "r");
        if (!f) continue;
        long long v = 0;
        char unit = 0;
        if (std::fscanf(f, "%lld%c", &v, &unit) >= 1) {
            if (unit == 'K') v <<= 10;
            else if (unit == 'M') v <<= 20;
            if (v > best) best = v;
        }
        std::fclose(f);
    }
    return best;
}

long long queryLargestCache() {
    long long size = largestCacheFromLeaf(4);
    if (size == 0) size = largestCacheFromLeaf(0x8000001Du);
    if (size == 0) size = largestCacheFromSysfs();
#ifdef _SC_LEVEL3_CACHE_SIZE
    if (size == 0) {
        const long l3 = sysconf(_SC_LEVEL3_CACHE_SIZE);
        const long l2 = sysconf(_SC_LEVEL2_CACHE_SIZE);
        size = l3 > 0 ? l3 : (l2 > 0 ? l2 : 0);
    }
#endif
    if (size > 0x7FFFFFFF) size = 0x7FFFFFFF;
    return size;
}

bool hasF16C() {
    unsigned a, b, c, d;
    if (!__get_cpuid(1, &a, &b, &c, &d)) return false;
    return (c & bit_F16C) != 0;
}

constexpr unsigned kMxcsrFtz = 1u << 15;
constexpr unsigned kMxcsrDaz = 1u << 6;
constexpr unsigned kMxcsrExceptionMasks = 0x1F80u;

}  // namespace

extern "C" {

void* zetMalloc(int length) { return alignedBlock(length); }

void* zetMalloc_L(long long length) { return alignedBlock(length); }

void zetFree(void* ptr) { std::free(ptr); }

void* zetAlignPtr(void* ptr, int alignBytes) {
    const auto a = static_cast<std::uintptr_t>(alignBytes > 0 ? alignBytes : 1);
    const auto p = reinterpret_cast<std::uintptr_t>(ptr);
    return reinterpret_cast<void*>((p + a - 1) & ~(a - 1));
}

int zetGetMaxCacheSizeB(int* pSizeByte) {
    // The processor does not change under us: ask once per process.
    static const long long cached = queryLargestCache();
    if (pSizeByte == nullptr) return -8;
    if (cached <= 0) {
        *pSizeByte = 0;
        return -1;
    }
    *pSizeByte = static_cast<int>(cached);
    return 0;
}

int zetSetFlushToZero(int value, unsigned int* pUMask) {
    unsigned csr = _mm_getcsr();
    if (pUMask) *pUMask = csr & kMxcsrExceptionMasks;
    csr = value ? (csr | kMxcsrFtz) : (csr & ~kMxcsrFtz);
    _mm_setcsr(csr);
    return 0;
}

int zetSetDenormAreZeros(int value) {
    unsigned csr = _mm_getcsr();
    csr = value ? (csr | kMxcsrDaz) : (csr & ~kMxcsrDaz);
    _mm_setcsr(csr);
    return 0;
}

int ownGetFeature(unsigned long long featureMask) {
    static const bool f16c = hasF16C();
    if (featureMask == 0) return 0;
    const unsigned long long known = f16c ? ZET_FEATURE_F16C : 0ULL;
    return (featureMask & ~known) == 0 ? 1 : 0;
}

}  // extern "C"
