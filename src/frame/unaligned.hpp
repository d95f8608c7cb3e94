// Element access at any byte address. Vectors need not be aligned to their
// element type; scalar loops read and write through these so that neither the
// language nor the compiler's vectorizer may assume that they are.
#pragma once

#include <cstring>

namespace zet {

template <class T>
inline T ld(const T* p, long long i) {
    T v;
    std::memcpy(&v, reinterpret_cast<const unsigned char*>(p) + i * static_cast<long long>(sizeof(T)), sizeof(T));
    return v;
}

template <class T>
inline void st(T* p, long long i, T v) {
    std::memcpy(reinterpret_cast<unsigned char*>(p) + i * static_cast<long long>(sizeof(T)), &v, sizeof(T));
}

}  // namespace zet
