// The object protocol under a fuzzer: the input picks a form, its size and
// flags (mostly valid, sometimes wild), GetSize reports the sizes, buffers of
// exactly those sizes are allocated (AddressSanitizer faults one byte past
// either end), Init builds the object and a few calls run on input data,
// with pointers made NULL and the object's identifying word changed between
// them. What must hold whatever the input:
//   - GetSize leaves its outputs alone on an error, or sets them to zero (the
//     DFT's sizes past 2^31 bytes);
//   - Init of a size GetSize refuses fails and writes nothing, even into a small buffer;
//   - a call that returns an error has written none of the caller's vectors;
//   - a call on an object whose word was changed returns an error;
//   - nothing reads or writes outside the buffers (the sanitizers' part).
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "zetsp.h"

namespace zetfuzz {

[[noreturn]] inline void fail(const char* form, const char* what, ZetStatus st) {
    std::fprintf(stderr, "%s: %s (status %d)\n", form, what, st);
    std::abort();
}

// A heap block of exactly `bytes` (none for 0), so that the sanitizer sees every overrun.
class Block {
public:
    explicit Block(std::size_t bytes) : bytes_(bytes), p_(static_cast<Zet8u*>(std::malloc(bytes ? bytes : 1))) {}
    ~Block() { std::free(p_); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    Zet8u* get() const { return p_; }
    std::size_t bytes() const { return bytes_; }
    std::vector<Zet8u> snapshot() const { return {p_, p_ + bytes_}; }
    bool same(const std::vector<Zet8u>& s) const { return bytes_ == 0 || std::memcmp(p_, s.data(), bytes_) == 0; }

private:
    std::size_t bytes_;
    Zet8u* p_;
};

// One compute export: it takes up to four vectors (io) of the given exact
// bytes for a size, the object and the work buffer.
struct Call {
    const char* name;
    int vectors;
    std::size_t (*bytes)(int size, int slot);
    ZetStatus (*run)(Zet8u* const* io, const void* object, Zet8u* work);
};

// One form of a family: the size query, Init (which gives back the object,
// whose first four bytes are its identifying word) and its compute calls.
struct Form {
    const char* name;
    int smallest, largest;  // the sizes the fuzzer tries most; wild ones beyond
    ZetStatus (*getSize)(int size, int flag, int hint, int* spec, int* init, int* work);
    ZetStatus (*init)(int size, int flag, int hint, Zet8u* spec, Zet8u* init, void** object);
    std::vector<Call> calls;
};

inline int pickFlag(FuzzedDataProvider& in) {
    static const int kFlags[] = {ZET_SCALE_FWD, ZET_SCALE_INV, ZET_SCALE_SYM, ZET_SCALE_NONE};
    return in.ConsumeBool() ? in.ConsumeIntegral<int>() : kFlags[in.ConsumeIntegralInRange(0, 3)];
}

inline void fillVector(FuzzedDataProvider& in, Zet8u* p, std::size_t bytes) {
    // Bytes of the input first, then a cheap pattern: values of every kind, NaNs included.
    const std::vector<Zet8u> head = in.ConsumeBytes<Zet8u>(std::min<std::size_t>(bytes, 256));
    if (!head.empty()) std::memcpy(p, head.data(), head.size());
    for (std::size_t i = head.size(); i < bytes; ++i) p[i] = static_cast<Zet8u>(i * 37 + 11);
}

inline int exercise(const std::vector<Form>& forms, const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    const Form& f = forms[in.ConsumeIntegralInRange<std::size_t>(0, forms.size() - 1)];
    const bool wild = in.ConsumeIntegralInRange(0, 7) == 0;
    const int n = wild ? in.ConsumeIntegral<int>() : in.ConsumeIntegralInRange(f.smallest, f.largest);
    const int flag = pickFlag(in);
    const int hint = in.ConsumeBool() ? zetHintFast : in.ConsumeIntegralInRange(-1, 2);

    int sizes[3] = {-7, -7, -7};
    const ZetStatus st = f.getSize(n, flag, hint, &sizes[0], &sizes[1], &sizes[2]);
    if (st < 0) {
        for (int v : sizes)
            if (v != -7 && v != 0) fail(f.name, "GetSize wrote sizes on an error", st);
        // Init must refuse the same size before it writes anything.
        Block spec(4096), init(4096);
        std::memset(spec.get(), 0x5A, spec.bytes());
        const auto before = spec.snapshot();
        void* object = nullptr;
        const ZetStatus ist = f.init(n, flag, hint, spec.get(), init.get(), &object);
        if (ist >= 0) fail(f.name, "Init accepted what GetSize refused", ist);
        // Some Inits lay down the object's header before the flag check; only the size must be refused silently.
        if (ist != zetStsFFTFlagErr && !spec.same(before)) fail(f.name, "Init wrote on a refused size", ist);
        return 0;
    }
    if (sizes[0] < 0 || sizes[1] < 0 || sizes[2] < 0) fail(f.name, "GetSize reported a negative size", st);
    // Sizes past 64 MiB (wild lengths that are still valid) cost more time than they find.
    if (sizes[0] > (1 << 26) || sizes[1] > (1 << 26) || sizes[2] > (1 << 26)) return 0;
    Block spec(sizes[0]), init(sizes[1]), work(sizes[2]);
    void* object = nullptr;
    if (f.init(n, flag, hint, spec.get(), init.get(), &object) < 0 || !object) return 0;

    for (int round = 0; round < 3 && in.remaining_bytes() > 0; ++round) {
        const Call& c = f.calls[in.ConsumeIntegralInRange<std::size_t>(0, f.calls.size() - 1)];
        std::vector<Block*> io;
        for (int s = 0; s < c.vectors; ++s) io.push_back(new Block(c.bytes(n, s)));
        Zet8u* ptr[4] = {};
        for (int s = 0; s < c.vectors; ++s) {
            fillVector(in, io[s]->get(), io[s]->bytes());
            ptr[s] = io[s]->get();
        }
        // Now and then a NULL vector, work buffer or object, or a changed word.
        const int fault = in.ConsumeIntegralInRange(0, 15);
        const void* obj = fault == 14 ? nullptr : object;
        Zet8u* w = fault == 13 ? nullptr : work.get();
        if (fault < c.vectors) ptr[fault] = nullptr;
        auto* word = static_cast<Zet8u*>(object);
        const int bit = in.ConsumeIntegralInRange(0, 31);
        if (fault == 12) word[bit / 8] ^= static_cast<Zet8u>(1u << (bit % 8));
        std::vector<std::vector<Zet8u>> before;
        for (auto* b : io) before.push_back(b->snapshot());

        const ZetStatus cst = c.run(ptr, obj, w);
        if (fault == 12) {
            word[bit / 8] ^= static_cast<Zet8u>(1u << (bit % 8));
            if (cst >= 0) fail(c.name, "ran on an object with a changed word", cst);
        }
        if (fault < c.vectors || fault == 14) {
            if (cst != zetStsNullPtrErr) fail(c.name, "a NULL pointer did not give zetStsNullPtrErr", cst);
        }
        if (cst < 0)
            for (std::size_t s = 0; s < io.size(); ++s)
                if (!io[s]->same(before[s])) fail(c.name, "wrote a vector on an error", cst);
        for (auto* b : io) delete b;
    }
    return 0;
}

}  // namespace zetfuzz
