/*
 * zetcore: the core services beneath zetSP.
 *
 * Aligned memory, the processor's cache size and half-precision capability,
 * and the flush-to-zero / denormals-are-zero bits of the calling thread's
 * floating-point control word. Every service may be called from any thread
 * at any time; none needs an initialisation call.
 */
#ifndef ZETCORE_H
#define ZETCORE_H

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define ZETCORE_API __attribute__((visibility("default")))
#else
#define ZETCORE_API
#endif

/* Feature mask of ownGetFeature: the processor converts half precision itself. */
#define ZET_FEATURE_F16C 0x4000ULL

/* Memory: 64-byte aligned blocks; a byte count below 1 gives NULL. */
ZETCORE_API void* zetMalloc(int length);
ZETCORE_API void* zetMalloc_L(long long length);
ZETCORE_API void  zetFree(void* ptr);
/* First address at or above ptr that is a multiple of alignBytes (a power of two). */
ZETCORE_API void* zetAlignPtr(void* ptr, int alignBytes);

/* Largest cache of the processor in bytes; returns 0 on success, non-zero if no size is known. */
ZETCORE_API int   zetGetMaxCacheSizeB(int* pSizeByte);

/* Floating-point control word of the calling thread; value non-zero turns the mode on.
 * zetSetFlushToZero stores the previous exception mask bits in *pUMask when it is not NULL.
 * Both return 0. */
ZETCORE_API int   zetSetFlushToZero(int value, unsigned int* pUMask);
ZETCORE_API int   zetSetDenormAreZeros(int value);

/* Non-zero when the processor has every feature of the mask (only ZET_FEATURE_F16C is known). */
ZETCORE_API int   ownGetFeature(unsigned long long featureMask);

#ifdef __cplusplus
}
#endif

#endif /* ZETCORE_H */
