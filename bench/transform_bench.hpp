// What the transform benchmarks against FFTW share: our transform object and
// work buffer for one size, FFTW's calls for each precision, random input,
// the error measure that accepts both results before timing, and the cache
// that keeps one size's set-up (FFTW_MEASURE planning takes seconds at large
// sizes) while the runner calls its benchmark again.
#pragma once

#include "bench_util.hpp"
#include "fftw_traits.hpp"

#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace zetbench {

// Buffer refuses zero bytes; a work size of zero still needs a valid pointer.
inline std::size_t atLeastOne(int bytes) { return bytes > 0 ? static_cast<std::size_t>(bytes) : 1; }

using GetSizeFn = ZetStatus (*)(int, int, ZetHint, int*, int*, int*);

// Our side of one size: the object buffer (the transform object in it) and a
// work buffer. setUp() gives an empty string on success, else what went wrong.
template <class Spec>
struct OurSpec {
    std::optional<Buffer> specBuf, work;
    Spec* spec = nullptr;

    // Init that returns the object it laid out in the buffer (the FFT).
    std::string setUp(int size, GetSizeFn getSize, ZetStatus (*init)(Spec**, int, int, ZetHint, Zet8u*, Zet8u*)) {
        return allocate(size, getSize,
                        [&](Zet8u* s, Zet8u* i) { return init(&spec, size, ZET_SCALE_NONE, zetHintAccurate, s, i); });
    }
    // Init into the buffer that every call is then given as is (the DFT).
    std::string setUp(int size, GetSizeFn getSize, ZetStatus (*init)(int, int, ZetHint, Spec*, Zet8u*)) {
        return allocate(size, getSize, [&](Zet8u* s, Zet8u* i) {
            spec = reinterpret_cast<Spec*>(s);
            return init(size, ZET_SCALE_NONE, zetHintAccurate, spec, i);
        });
    }

private:
    template <class Init>
    std::string allocate(int size, GetSizeFn getSize, Init init) {
        int specSize = 0, initSize = 0, workSize = 0;
        if (getSize(size, ZET_SCALE_NONE, zetHintAccurate, &specSize, &initSize, &workSize) != zetStsOk)
            return "our GetSize failed";
        specBuf.emplace(atLeastOne(specSize));
        work.emplace(atLeastOne(workSize));
        Buffer initBuf(atLeastOne(initSize));
        if (!*specBuf || !*work || !initBuf) return "out of memory";
        if (init(specBuf->as(), initBuf.as()) != zetStsOk) return "our Init failed";
        return {};
    }
};

// Transform input: values in [-1, 1).
template <class T>
void fillRandom(T* p, std::size_t count, unsigned seed) {
    fillUniform(p, count, seed, T(-1), T(1));
}

// sqrt(sum |ours - peer|^2 / sum |peer|^2), over real and imaginary parts
// alike, wherever they are stored.
struct RmsError {
    double diff = 0.0, norm = 0.0;

    void add(double o, double p) {
        diff += (o - p) * (o - p);
        norm += p * p;
    }
    template <class T>
    void add(const T* ours, const T* peer, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) add(static_cast<double>(ours[i]), static_cast<double>(peer[i]));
    }
    double relative() const { return norm > 0.0 ? std::sqrt(diff / norm) : std::sqrt(diff); }
};

inline std::string disagreement(double err, double tol) {
    char msg[96];
    std::snprintf(msg, sizeof msg, "ours and FFTW disagree: relative RMS %.3g above %.0e", err, tol);
    return msg;
}

// The set-up of the last size asked for, by its key() (an order or a
// length). The previous one is released first, so that two large ones
// never coexist.
template <class Setup>
Setup& setUpFor(long key) {
    static std::unique_ptr<Setup> cached;
    if (!cached || cached->key() != key) {
        cached.reset();
        cached = std::make_unique<Setup>(key);
    }
    return *cached;
}

}  // namespace zetbench
