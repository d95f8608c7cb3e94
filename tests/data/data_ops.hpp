// Type-erased tables of the copy, move, set and zero exports, so one test
// body walks every element size.
#pragma once

#include <cstddef>

#include "zetsp.h"

namespace dataops {

struct Unary {  // Copy and Move
    const char* name;
    std::size_t elem;
    ZetStatus (*fn)(const void*, void*, int);
};
struct UnaryL {
    const char* name;
    std::size_t elem;
    ZetStatus (*fn)(const void*, void*, long long);
};
struct Fill {  // Set: the value is passed as bytes of the element
    const char* name;
    std::size_t elem;
    ZetStatus (*fn)(const void* val, void*, int);
};
struct Zero {
    const char* name;
    std::size_t elem;
    ZetStatus (*fn)(void*, int);
};
struct ZeroL {
    const char* name;
    std::size_t elem;
    ZetStatus (*fn)(void*, long long);
};

#define ZT_UNARY(F, T) \
    {#F "_" #T, sizeof(Zet##T), [](const void* s, void* d, int n) { return F##_##T(static_cast<const Zet##T*>(s), static_cast<Zet##T*>(d), n); }}
#define ZT_UNARY_L(F, T)                                                                                   \
    {#F "_" #T "_L", sizeof(Zet##T), [](const void* s, void* d, long long n) {                             \
         return F##_##T##_L(static_cast<const Zet##T*>(s), static_cast<Zet##T*>(d), n);                    \
     }}
#define ZT_FILL(T)                                                                                          \
    {"zetsSet_" #T, sizeof(Zet##T), [](const void* v, void* d, int n) {                                     \
         Zet##T val;                                                                                        \
         __builtin_memcpy(&val, v, sizeof val);                                                             \
         return zetsSet_##T(val, static_cast<Zet##T*>(d), n);                                               \
     }}
#define ZT_ZERO(T) {"zetsZero_" #T, sizeof(Zet##T), [](void* d, int n) { return zetsZero_##T(static_cast<Zet##T*>(d), n); }}
#define ZT_ZERO_L(T) \
    {"zetsZero_" #T "_L", sizeof(Zet##T), [](void* d, long long n) { return zetsZero_##T##_L(static_cast<Zet##T*>(d), n); }}
#define ZT_ALL_TYPES(X, F) X(F, 8u), X(F, 16s), X(F, 16sc), X(F, 32s), X(F, 32f), X(F, 32sc), X(F, 32fc), X(F, 64s), X(F, 64f), X(F, 64sc), X(F, 64fc)

inline const Unary kCopy[] = {ZT_ALL_TYPES(ZT_UNARY, zetsCopy)};
inline const Unary kMove[] = {ZT_ALL_TYPES(ZT_UNARY, zetsMove)};
inline const UnaryL kCopyL[] = {ZT_UNARY_L(zetsCopy, 32f), ZT_UNARY_L(zetsCopy, 32fc), ZT_UNARY_L(zetsCopy, 64f),
                                ZT_UNARY_L(zetsCopy, 64fc)};
inline const Fill kSet[] = {ZT_FILL(8u),  ZT_FILL(16s), ZT_FILL(16sc), ZT_FILL(32s),  ZT_FILL(32f), ZT_FILL(32sc),
                            ZT_FILL(32fc), ZT_FILL(64s), ZT_FILL(64f), ZT_FILL(64sc), ZT_FILL(64fc)};
inline const Zero kZero[] = {ZT_ZERO(8u),  ZT_ZERO(16s), ZT_ZERO(16sc), ZT_ZERO(32s),  ZT_ZERO(32f), ZT_ZERO(32sc),
                             ZT_ZERO(32fc), ZT_ZERO(64s), ZT_ZERO(64f), ZT_ZERO(64sc), ZT_ZERO(64fc)};
inline const ZeroL kZeroL[] = {ZT_ZERO_L(32f), ZT_ZERO_L(32fc), ZT_ZERO_L(64f), ZT_ZERO_L(64fc)};

}  // namespace dataops
