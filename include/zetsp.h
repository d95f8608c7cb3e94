/*
 * zetSP: signal-processing primitives for x86-64 with AVX2 and FMA.
 *
 * Every operation takes caller-owned vectors, never allocates, and returns a
 * ZetStatus: 0 success, negative an error (nothing was written), positive a
 * warning (all results were written). Arguments are checked in one order:
 * pointers left to right (zetStsNullPtrErr), then the length (below 1 gives
 * zetStsSizeErr), then the family's own arguments.
 *
 * Naming: zets<Operation>_<types>[_I][_Sfs][_L]. _I works in place, _Sfs
 * scales an integer result by 2^-scale (round half to even, saturate), _L
 * takes a 64-bit length. In two-vector operations the second vector is the
 * left operand: zetsSub_32f computes src2 - src1.
 *
 * The header compiles as C99 and as C++.
 */
#ifndef ZETSP_H
#define ZETSP_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define ZETAPI __attribute__((visibility("default")))
#else
#define ZETAPI
#endif

/* ---- Element types ------------------------------------------------------ */

typedef unsigned char      Zet8u;
typedef signed char        Zet8s;
typedef unsigned short     Zet16u;
typedef signed short       Zet16s;
typedef unsigned int       Zet32u;
typedef signed int         Zet32s;
typedef unsigned long long Zet64u;
typedef signed long long   Zet64s;
typedef unsigned short     Zet16f; /* IEEE 754 binary16, as its bit pattern */
typedef float              Zet32f;
typedef double             Zet64f;

/* Complex pairs: real part first, nothing between the parts. */
typedef struct { Zet8s  re; Zet8s  im; } Zet8sc; /* allocation type only */
typedef struct { Zet16s re; Zet16s im; } Zet16sc;
typedef struct { Zet32s re; Zet32s im; } Zet32sc;
typedef struct { Zet64s re; Zet64s im; } Zet64sc;
typedef struct { Zet16f re; Zet16f im; } Zet16fc;
typedef struct { Zet32f re; Zet32f im; } Zet32fc;
typedef struct { Zet64f re; Zet64f im; } Zet64fc;

/* ---- Status values ------------------------------------------------------ */

typedef int ZetStatus;

enum {
    /* errors */
    zetStsIIRFilterLenErr    = -234,
    zetStsLengthLimitErr     = -232,
    zetStsAlgTypeErr         = -228,
    zetStsRoundModeValueErr  = -213,
    zetStsIIRGenPassbandErr  = -209,
    zetStsIIRGenFreqErr      = -208,
    zetStsIIRGenOrderErr     = -206,
    zetStsSparseArgErr       = -194,
    zetStsDataTypeErr        = -59,
    zetStsChannelCountErr    = -53,
    zetStsToneMagnErr        = -46,
    zetStsToneFreqErr        = -45,
    zetStsTonePhaseErr       = -44,
    zetStsTriangleMagnErr    = -43,
    zetStsTriangleFreqErr    = -42,
    zetStsTrianglePhaseErr   = -41,
    zetStsTriangleAsymErr    = -40,
    zetStsKaiserRangeErr     = -39,
    zetStsJaehneErr          = -38,
    zetStsWtOffsetErr        = -35,
    zetStsWindowLenErr       = -33,
    zetStsShiftErr           = -32,
    zetStsSampleFactorErr    = -31,
    zetStsSamplePhaseErr     = -30,
    zetStsFIRMRFactorErr     = -29,
    zetStsFIRMRPhaseErr      = -28,
    zetStsRelFreqErr         = -27,
    zetStsFIRLenErr          = -26,
    zetStsIIROrderErr        = -25,
    zetStsNegThreshErr       = -20,
    zetStsThreshRangeErr     = -19,
    zetStsFFTFlagErr         = -18,
    zetStsFFTOrderErr        = -17,
    zetStsRangeErr           = -16,
    zetStsRoundModeErr       = -14,
    zetStsSpecMismatchErr    = -13,
    zetStsDivByZeroErr       = -10,
    zetStsMemErr             = -9,
    zetStsNullPtrErr         = -8,
    zetStsBadModeErr         = -7,
    zetStsSizeErr            = -6,
    zetStsBadArgErr          = -5,
    zetStsSizeOverflowErr    = -4,
    zetStsUnsupportedErr     = -2,
    zetStsGeneralErr         = -1,
    /* success */
    zetStsOk                 = 0,
    /* warnings: the operation ran to the end */
    zetStsDivByZeroWarn      = 2,
    zetStsNegSqrtWarn        = 3,
    zetStsEvenMaskWarn       = 5,
    zetStsLogZeroWarn        = 7,
    zetStsLogNegWarn         = 8,
    zetStsNonFiniteWarn      = 9,
    zetStsOverflowWarn       = 12,
    zetStsUnderflowWarn      = 17
};

/* ---- Shared enumerations (passed as plain int) -------------------------- */

/* ZetRoundMode */
typedef int ZetRoundMode;
enum {
    zetRoundTowardZero  = 0, /* truncation */
    zetRoundNearestEven = 1, /* ties to even */
    zetRoundNearestAway = 2  /* ties away from zero */
};

/* ZetHint: only the value 1 selects the fast route; anything else is accurate. */
typedef int ZetHint;
enum {
    zetHintAccurate = 0,
    zetHintFast     = 1
};

/* ZetDataType: odd values are real and integer types, the even value after a
 * type is its complex type. */
typedef int ZetDataType;
enum {
    zetDt8u   = 1,
    zetDt16u  = 5,
    zetDt16s  = 7,
    zetDt32u  = 9,
    zetDt32s  = 11,
    zetDt32f  = 13,
    zetDt32fc = 14,
    zetDt64u  = 15,
    zetDt64s  = 17,
    zetDt64f  = 19,
    zetDt64fc = 20
};

/* Normalisation flags of transforms. */
#define ZET_SCALE_FWD  1 /* forward scaled by 1/N */
#define ZET_SCALE_INV  2 /* inverse scaled by 1/N */
#define ZET_SCALE_SYM  4 /* both scaled by 1/sqrt(N) */
#define ZET_SCALE_NONE 8 /* no scaling */

/* ---- Opaque spec and state objects (laid out by the Init operations) ---- */

typedef struct ZetsFFTSpec_C_16fc      ZetsFFTSpec_C_16fc;
typedef struct ZetsFFTSpec_C_32fc      ZetsFFTSpec_C_32fc;
typedef struct ZetsFFTSpec_C_32f       ZetsFFTSpec_C_32f;
typedef struct ZetsFFTSpec_C_64fc      ZetsFFTSpec_C_64fc;
typedef struct ZetsFFTSpec_C_64f       ZetsFFTSpec_C_64f;
typedef struct ZetsFFTSpec_R_32f       ZetsFFTSpec_R_32f;
typedef struct ZetsFFTSpec_R_64f       ZetsFFTSpec_R_64f;
typedef struct ZetsDFTSpec_C_16fc      ZetsDFTSpec_C_16fc;
typedef struct ZetsDFTSpec_C_32fc      ZetsDFTSpec_C_32fc;
typedef struct ZetsDFTSpec_C_32f       ZetsDFTSpec_C_32f;
typedef struct ZetsDFTSpec_C_64fc      ZetsDFTSpec_C_64fc;
typedef struct ZetsDFTSpec_C_64f       ZetsDFTSpec_C_64f;
typedef struct ZetsDFTSpec_R_32f       ZetsDFTSpec_R_32f;
typedef struct ZetsDFTSpec_R_64f       ZetsDFTSpec_R_64f;
typedef struct ZetsHilbertSpec_32f32fc ZetsHilbertSpec_32f32fc;
typedef struct ZetsHilbertSpec_64f64fc ZetsHilbertSpec_64f64fc;
typedef struct ZetsDCTFwdSpec_32f      ZetsDCTFwdSpec_32f;
typedef struct ZetsDCTInvSpec_32f      ZetsDCTInvSpec_32f;
typedef struct ZetsDCTFwdSpec_64f      ZetsDCTFwdSpec_64f;
typedef struct ZetsDCTInvSpec_64f      ZetsDCTInvSpec_64f;
typedef struct ZetsFIRSpec             ZetsFIRSpec;
typedef struct ZetsFIRMRSpec           ZetsFIRMRSpec;
typedef struct ZetsFIRLMSState         ZetsFIRLMSState;
typedef struct ZetsFIRSparseState      ZetsFIRSparseState;
typedef struct ZetsIIRState            ZetsIIRState;
typedef struct ZetsIIRSparseState      ZetsIIRSparseState;
typedef struct ZetsResampleSpec        ZetsResampleSpec;
typedef struct ZetsResampleFixedSpec   ZetsResampleFixedSpec;
typedef struct ZetsRandUniState        ZetsRandUniState;
typedef struct ZetsRandGaussState      ZetsRandGaussState;
typedef struct ZetsWTFwdState          ZetsWTFwdState;
typedef struct ZetsWTInvState          ZetsWTInvState;

/* ==== Memory and version ================================================= */

/* Version record: constant, owned by the library. */
typedef struct {
    int         major;
    int         minor;
    int         majorBuild;
    int         build;
    char        targetCpu[4];
    const char* name;
    const char* version;
    const char* buildDate;
} ZetLibVersion;

ZETAPI const ZetLibVersion* zetsGetLibVersion(void);

/* Allocation of len elements, 64-byte aligned; NULL for a count outside the
 * type's range (1 up to what fits a signed byte count) or when memory runs out.
 * Release with zetsFree and nothing else. */
ZETAPI Zet8u*   zetsMalloc_8u(int len);
ZETAPI Zet8s*   zetsMalloc_8s(int len);
ZETAPI Zet16u*  zetsMalloc_16u(int len);
ZETAPI Zet16s*  zetsMalloc_16s(int len);
ZETAPI Zet8sc*  zetsMalloc_8sc(int len);
ZETAPI Zet32u*  zetsMalloc_32u(int len);
ZETAPI Zet32s*  zetsMalloc_32s(int len);
ZETAPI Zet32f*  zetsMalloc_32f(int len);
ZETAPI Zet16sc* zetsMalloc_16sc(int len);
ZETAPI Zet64s*  zetsMalloc_64s(int len);
ZETAPI Zet64f*  zetsMalloc_64f(int len);
ZETAPI Zet32fc* zetsMalloc_32fc(int len);
ZETAPI Zet32sc* zetsMalloc_32sc(int len);
ZETAPI Zet64fc* zetsMalloc_64fc(int len);
ZETAPI Zet64sc* zetsMalloc_64sc(int len);
ZETAPI Zet8u*   zetsMalloc_8u_L(long long len);
ZETAPI Zet8s*   zetsMalloc_8s_L(long long len);
ZETAPI Zet16u*  zetsMalloc_16u_L(long long len);
ZETAPI Zet16s*  zetsMalloc_16s_L(long long len);
ZETAPI Zet8sc*  zetsMalloc_8sc_L(long long len);
ZETAPI Zet32u*  zetsMalloc_32u_L(long long len);
ZETAPI Zet32s*  zetsMalloc_32s_L(long long len);
ZETAPI Zet32f*  zetsMalloc_32f_L(long long len);
ZETAPI Zet16sc* zetsMalloc_16sc_L(long long len);
ZETAPI Zet64s*  zetsMalloc_64s_L(long long len);
ZETAPI Zet64f*  zetsMalloc_64f_L(long long len);
ZETAPI Zet32fc* zetsMalloc_32fc_L(long long len);
ZETAPI Zet32sc* zetsMalloc_32sc_L(long long len);
ZETAPI Zet64fc* zetsMalloc_64fc_L(long long len);
ZETAPI Zet64sc* zetsMalloc_64sc_L(long long len);
ZETAPI void     zetsFree(void* ptr);

/* ==== Copy, move and fill ================================================ */

/* Copy: dst[i] = src[i]; the vectors must not overlap. */
ZETAPI ZetStatus zetsCopy_8u  (const Zet8u*   pSrc, Zet8u*   pDst, int len);
ZETAPI ZetStatus zetsCopy_16s (const Zet16s*  pSrc, Zet16s*  pDst, int len);
ZETAPI ZetStatus zetsCopy_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len);
ZETAPI ZetStatus zetsCopy_32s (const Zet32s*  pSrc, Zet32s*  pDst, int len);
ZETAPI ZetStatus zetsCopy_32f (const Zet32f*  pSrc, Zet32f*  pDst, int len);
ZETAPI ZetStatus zetsCopy_32sc(const Zet32sc* pSrc, Zet32sc* pDst, int len);
ZETAPI ZetStatus zetsCopy_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsCopy_64s (const Zet64s*  pSrc, Zet64s*  pDst, int len);
ZETAPI ZetStatus zetsCopy_64f (const Zet64f*  pSrc, Zet64f*  pDst, int len);
ZETAPI ZetStatus zetsCopy_64sc(const Zet64sc* pSrc, Zet64sc* pDst, int len);
ZETAPI ZetStatus zetsCopy_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsCopy_32f_L (const Zet32f*  pSrc, Zet32f*  pDst, long long len);
ZETAPI ZetStatus zetsCopy_32fc_L(const Zet32fc* pSrc, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsCopy_64f_L (const Zet64f*  pSrc, Zet64f*  pDst, long long len);
ZETAPI ZetStatus zetsCopy_64fc_L(const Zet64fc* pSrc, Zet64fc* pDst, long long len);

/* Move: as Copy, but correct for any overlap of src and dst. The byte count
 * len * sizeof(element) is formed in 32 bits. */
ZETAPI ZetStatus zetsMove_8u  (const Zet8u*   pSrc, Zet8u*   pDst, int len);
ZETAPI ZetStatus zetsMove_16s (const Zet16s*  pSrc, Zet16s*  pDst, int len);
ZETAPI ZetStatus zetsMove_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len);
ZETAPI ZetStatus zetsMove_32s (const Zet32s*  pSrc, Zet32s*  pDst, int len);
ZETAPI ZetStatus zetsMove_32f (const Zet32f*  pSrc, Zet32f*  pDst, int len);
ZETAPI ZetStatus zetsMove_32sc(const Zet32sc* pSrc, Zet32sc* pDst, int len);
ZETAPI ZetStatus zetsMove_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsMove_64s (const Zet64s*  pSrc, Zet64s*  pDst, int len);
ZETAPI ZetStatus zetsMove_64f (const Zet64f*  pSrc, Zet64f*  pDst, int len);
ZETAPI ZetStatus zetsMove_64sc(const Zet64sc* pSrc, Zet64sc* pDst, int len);
ZETAPI ZetStatus zetsMove_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len);

/* Set: dst[i] = val. */
ZETAPI ZetStatus zetsSet_8u  (Zet8u   val, Zet8u*   pDst, int len);
ZETAPI ZetStatus zetsSet_16s (Zet16s  val, Zet16s*  pDst, int len);
ZETAPI ZetStatus zetsSet_16sc(Zet16sc val, Zet16sc* pDst, int len);
ZETAPI ZetStatus zetsSet_32s (Zet32s  val, Zet32s*  pDst, int len);
ZETAPI ZetStatus zetsSet_32f (Zet32f  val, Zet32f*  pDst, int len);
ZETAPI ZetStatus zetsSet_32sc(Zet32sc val, Zet32sc* pDst, int len);
ZETAPI ZetStatus zetsSet_32fc(Zet32fc val, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsSet_64s (Zet64s  val, Zet64s*  pDst, int len);
ZETAPI ZetStatus zetsSet_64f (Zet64f  val, Zet64f*  pDst, int len);
ZETAPI ZetStatus zetsSet_64sc(Zet64sc val, Zet64sc* pDst, int len);
ZETAPI ZetStatus zetsSet_64fc(Zet64fc val, Zet64fc* pDst, int len);

/* Zero: dst[i] = 0 (all bits clear). The byte count is formed in 32 bits:
 * lengths whose byte count reaches 4 GiB need the _L forms. */
ZETAPI ZetStatus zetsZero_8u  (Zet8u*   pDst, int len);
ZETAPI ZetStatus zetsZero_16s (Zet16s*  pDst, int len);
ZETAPI ZetStatus zetsZero_16sc(Zet16sc* pDst, int len);
ZETAPI ZetStatus zetsZero_32s (Zet32s*  pDst, int len);
ZETAPI ZetStatus zetsZero_32f (Zet32f*  pDst, int len);
ZETAPI ZetStatus zetsZero_32sc(Zet32sc* pDst, int len);
ZETAPI ZetStatus zetsZero_32fc(Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsZero_64s (Zet64s*  pDst, int len);
ZETAPI ZetStatus zetsZero_64f (Zet64f*  pDst, int len);
ZETAPI ZetStatus zetsZero_64sc(Zet64sc* pDst, int len);
ZETAPI ZetStatus zetsZero_64fc(Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsZero_32f_L (Zet32f*  pDst, long long len);
ZETAPI ZetStatus zetsZero_32fc_L(Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsZero_64f_L (Zet64f*  pDst, long long len);
ZETAPI ZetStatus zetsZero_64fc_L(Zet64fc* pDst, long long len);

/* ==== Floating-point arithmetic ========================================== */

/* Two vectors. Add: src2 + src1 (of two NaNs the one of src2 is delivered);
 * Sub: src2 - src1; Mul: src2 * src1, for complex types
 * re = fma(a.re, b.re, -round(a.im*b.im)), im = fma(a.re, b.im, round(a.im*b.re))
 * with a from src1 and b from src2. _I forms: srcDst = srcDst op src.
 * Complex Add and Sub check the length first. */
ZETAPI ZetStatus zetsAdd_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsAdd_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsAdd_32f_L(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsAdd_32f_I_L(const Zet32f* pSrc, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsAdd_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsAdd_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsAdd_64f_L(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsAdd_64f_I_L(const Zet64f* pSrc, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsAdd_32fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsAdd_32fc_I(const Zet32fc* pSrc, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsAdd_32fc_L(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsAdd_32fc_I_L(const Zet32fc* pSrc, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsAdd_64fc(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsAdd_64fc_I(const Zet64fc* pSrc, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsAdd_64fc_L(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsAdd_64fc_I_L(const Zet64fc* pSrc, Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsSub_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsSub_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsSub_32f_L(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsSub_32f_I_L(const Zet32f* pSrc, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSub_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsSub_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsSub_64f_L(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsSub_64f_I_L(const Zet64f* pSrc, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSub_32fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsSub_32fc_I(const Zet32fc* pSrc, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsSub_32fc_L(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsSub_32fc_I_L(const Zet32fc* pSrc, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsSub_64fc(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsSub_64fc_I(const Zet64fc* pSrc, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsSub_64fc_L(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsSub_64fc_I_L(const Zet64fc* pSrc, Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsMul_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMul_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsMul_32f_L(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsMul_32f_I_L(const Zet32f* pSrc, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsMul_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsMul_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsMul_64f_L(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsMul_64f_I_L(const Zet64f* pSrc, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsMul_32fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsMul_32fc_I(const Zet32fc* pSrc, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsMul_32fc_L(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsMul_32fc_I_L(const Zet32fc* pSrc, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsMul_64fc(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsMul_64fc_I(const Zet64fc* pSrc, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsMul_64fc_L(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsMul_64fc_I_L(const Zet64fc* pSrc, Zet64fc* pSrcDst, long long len);
/* Real times complex: dst = src1[i] * src2[i] part by part. */
ZETAPI ZetStatus zetsMul_32f32fc(const Zet32f* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsMul_32f32fc_I(const Zet32f* pSrc, Zet32fc* pSrcDst, int len);

/* A vector and a constant. AddC: src + val; SubC: src - val; SubCRev: val - src;
 * MulC: val * src, for complex types re = fma(val.re, a.re, -round(a.im*val.im)),
 * im = fma(val.re, a.im, round(a.re*val.im)).
 * Real constants: AddC/SubC with 0 copy (in place: return at once), MulC with 1
 * copies (in place: returns), MulC with 0 zeroes (+0 even for NaN elements).
 * The _L forms of MulC handle 0 and 1 in blocks of their own: with 0 the 32f
 * form and both in-place forms end as val * element. */
ZETAPI ZetStatus zetsAddC_32f(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsAddC_32f_I(Zet32f val, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsAddC_32f_L(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsAddC_32f_I_L(Zet32f val, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsAddC_64f(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsAddC_64f_I(Zet64f val, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsAddC_64f_L(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsAddC_64f_I_L(Zet64f val, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsAddC_32fc(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsAddC_32fc_I(Zet32fc val, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsAddC_32fc_L(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsAddC_32fc_I_L(Zet32fc val, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsAddC_64fc(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsAddC_64fc_I(Zet64fc val, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsAddC_64fc_L(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsAddC_64fc_I_L(Zet64fc val, Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsSubC_32f(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsSubC_32f_I(Zet32f val, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsSubC_32f_L(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsSubC_32f_I_L(Zet32f val, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSubC_64f(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsSubC_64f_I(Zet64f val, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsSubC_64f_L(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsSubC_64f_I_L(Zet64f val, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSubC_32fc(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsSubC_32fc_I(Zet32fc val, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsSubC_32fc_L(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsSubC_32fc_I_L(Zet32fc val, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsSubC_64fc(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsSubC_64fc_I(Zet64fc val, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsSubC_64fc_L(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsSubC_64fc_I_L(Zet64fc val, Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsSubCRev_32f(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsSubCRev_32f_I(Zet32f val, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsSubCRev_32f_L(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsSubCRev_32f_I_L(Zet32f val, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSubCRev_64f(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsSubCRev_64f_I(Zet64f val, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsSubCRev_64f_L(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsSubCRev_64f_I_L(Zet64f val, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSubCRev_32fc(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsSubCRev_32fc_I(Zet32fc val, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsSubCRev_32fc_L(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsSubCRev_32fc_I_L(Zet32fc val, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsSubCRev_64fc(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsSubCRev_64fc_I(Zet64fc val, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsSubCRev_64fc_L(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsSubCRev_64fc_I_L(Zet64fc val, Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsMulC_32f(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMulC_32f_I(Zet32f val, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsMulC_32f_L(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsMulC_32f_I_L(Zet32f val, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsMulC_64f(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsMulC_64f_I(Zet64f val, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsMulC_64f_L(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsMulC_64f_I_L(Zet64f val, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsMulC_32fc(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsMulC_32fc_I(Zet32fc val, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsMulC_32fc_L(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsMulC_32fc_I_L(Zet32fc val, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsMulC_64fc(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsMulC_64fc_I(Zet64fc val, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsMulC_64fc_L(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsMulC_64fc_I_L(Zet64fc val, Zet64fc* pSrcDst, long long len);

/* One vector. Abs: max(-src, src) by the processor's maximum: a NaN passes
 * through unchanged (sign included) and -0 stays -0. Sqr: src * src, for
 * complex types re = fma(a.re, a.re, -round(a.im*a.im)), im = a.re*(a.im + a.im). */
ZETAPI ZetStatus zetsAbs_32f(const Zet32f* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsAbs_32f_I(Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsAbs_32f_L(const Zet32f* pSrc, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsAbs_32f_I_L(Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsAbs_64f(const Zet64f* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsAbs_64f_I(Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsAbs_64f_L(const Zet64f* pSrc, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsAbs_64f_I_L(Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSqr_32f(const Zet32f* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsSqr_32f_I(Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsSqr_32f_L(const Zet32f* pSrc, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsSqr_32f_I_L(Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSqr_64f(const Zet64f* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsSqr_64f_I(Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsSqr_64f_L(const Zet64f* pSrc, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsSqr_64f_I_L(Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsSqr_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsSqr_32fc_I(Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsSqr_32fc_L(const Zet32fc* pSrc, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsSqr_32fc_I_L(Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsSqr_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsSqr_64fc_I(Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsSqr_64fc_L(const Zet64fc* pSrc, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsSqr_64fc_I_L(Zet64fc* pSrcDst, long long len);

/* Multiply-accumulate. AddProduct: srcDst += src1 * src2 with the product fused
 * (real: fma(b, a, d); complex: re = fma(a.re, b.re, d.re) - round(a.im*b.im),
 * im = fma(a.re, b.im, d.im) + round(a.im*b.re)). AddProductC: srcDst +=
 * val * src with every product rounded first: the two are deliberately different. */
ZETAPI ZetStatus zetsAddProduct_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsAddProduct_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsAddProduct_32fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsAddProduct_64fc(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsAddProductC_32f(const Zet32f* pSrc, Zet32f val, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsAddProductC_64f(const Zet64f* pSrc, Zet64f val, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsAddProductC_32fc(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsAddProductC_64fc(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pSrcDst, int len);

/* ==== Integer arithmetic with scale factors =============================
 * _Sfs: the exact result s times 2^-scale, rounded to nearest with ties to
 * even, saturated to the destination type. scale > 0 divides, < 0 multiplies;
 * any value is accepted. Sub: src2 - src1, SubC: src - val, SubCRev: val - src.
 * Complex Mul/MulC/Sqr: re = a.re*b.re - a.im*b.im, im = a.re*b.im + a.im*b.re
 * exactly, then the rule per part. Complex Add/Sub check the length first. */
ZETAPI ZetStatus zetsAdd_8u_Sfs(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_8u_ISfs(const Zet8u* pSrc, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_16u_Sfs(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_16u_ISfs(const Zet16u* pSrc, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_16s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_16s_ISfs(const Zet16s* pSrc, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_32s_Sfs(const Zet32s* pSrc1, const Zet32s* pSrc2, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_32s_ISfs(const Zet32s* pSrc, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_16sc_Sfs(const Zet16sc* pSrc1, const Zet16sc* pSrc2, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_16sc_ISfs(const Zet16sc* pSrc, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_32sc_Sfs(const Zet32sc* pSrc1, const Zet32sc* pSrc2, Zet32sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsAdd_32sc_ISfs(const Zet32sc* pSrc, Zet32sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSub_8u_Sfs(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsSub_8u_ISfs(const Zet8u* pSrc, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSub_16u_Sfs(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsSub_16u_ISfs(const Zet16u* pSrc, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSub_16s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsSub_16s_ISfs(const Zet16s* pSrc, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSub_32s_Sfs(const Zet32s* pSrc1, const Zet32s* pSrc2, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsSub_32s_ISfs(const Zet32s* pSrc, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSub_16sc_Sfs(const Zet16sc* pSrc1, const Zet16sc* pSrc2, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsSub_16sc_ISfs(const Zet16sc* pSrc, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSub_32sc_Sfs(const Zet32sc* pSrc1, const Zet32sc* pSrc2, Zet32sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsSub_32sc_ISfs(const Zet32sc* pSrc, Zet32sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMul_8u_Sfs(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsMul_8u_ISfs(const Zet8u* pSrc, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMul_16u_Sfs(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsMul_16u_ISfs(const Zet16u* pSrc, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMul_16s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsMul_16s_ISfs(const Zet16s* pSrc, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMul_32s_Sfs(const Zet32s* pSrc1, const Zet32s* pSrc2, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsMul_32s_ISfs(const Zet32s* pSrc, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMul_16sc_Sfs(const Zet16sc* pSrc1, const Zet16sc* pSrc2, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsMul_16sc_ISfs(const Zet16sc* pSrc, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMul_32sc_Sfs(const Zet32sc* pSrc1, const Zet32sc* pSrc2, Zet32sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsMul_32sc_ISfs(const Zet32sc* pSrc, Zet32sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_8u_Sfs(const Zet8u* pSrc, Zet8u val, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_8u_ISfs(Zet8u val, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_16u_Sfs(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_16u_ISfs(Zet16u val, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_16s_Sfs(const Zet16s* pSrc, Zet16s val, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_16s_ISfs(Zet16s val, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_32s_Sfs(const Zet32s* pSrc, Zet32s val, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_32s_ISfs(Zet32s val, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_16sc_Sfs(const Zet16sc* pSrc, Zet16sc val, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_16sc_ISfs(Zet16sc val, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_32sc_Sfs(const Zet32sc* pSrc, Zet32sc val, Zet32sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_32sc_ISfs(Zet32sc val, Zet32sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_8u_Sfs(const Zet8u* pSrc, Zet8u val, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_8u_ISfs(Zet8u val, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_16u_Sfs(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_16u_ISfs(Zet16u val, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_16s_Sfs(const Zet16s* pSrc, Zet16s val, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_16s_ISfs(Zet16s val, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_32s_Sfs(const Zet32s* pSrc, Zet32s val, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_32s_ISfs(Zet32s val, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_16sc_Sfs(const Zet16sc* pSrc, Zet16sc val, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_16sc_ISfs(Zet16sc val, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_32sc_Sfs(const Zet32sc* pSrc, Zet32sc val, Zet32sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubC_32sc_ISfs(Zet32sc val, Zet32sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_8u_Sfs(const Zet8u* pSrc, Zet8u val, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_8u_ISfs(Zet8u val, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_16u_Sfs(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_16u_ISfs(Zet16u val, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_16s_Sfs(const Zet16s* pSrc, Zet16s val, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_16s_ISfs(Zet16s val, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_32s_Sfs(const Zet32s* pSrc, Zet32s val, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_32s_ISfs(Zet32s val, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_16sc_Sfs(const Zet16sc* pSrc, Zet16sc val, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_16sc_ISfs(Zet16sc val, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_32sc_Sfs(const Zet32sc* pSrc, Zet32sc val, Zet32sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsSubCRev_32sc_ISfs(Zet32sc val, Zet32sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_8u_Sfs(const Zet8u* pSrc, Zet8u val, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_8u_ISfs(Zet8u val, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_16u_Sfs(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_16u_ISfs(Zet16u val, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_16s_Sfs(const Zet16s* pSrc, Zet16s val, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_16s_ISfs(Zet16s val, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_32s_Sfs(const Zet32s* pSrc, Zet32s val, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_32s_ISfs(Zet32s val, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_16sc_Sfs(const Zet16sc* pSrc, Zet16sc val, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_16sc_ISfs(Zet16sc val, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_32sc_Sfs(const Zet32sc* pSrc, Zet32sc val, Zet32sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_32sc_ISfs(Zet32sc val, Zet32sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSqr_8u_Sfs(const Zet8u* pSrc, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsSqr_8u_ISfs(Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSqr_16u_Sfs(const Zet16u* pSrc, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsSqr_16u_ISfs(Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSqr_16s_Sfs(const Zet16s* pSrc, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsSqr_16s_ISfs(Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsSqr_16sc_Sfs(const Zet16sc* pSrc, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsSqr_16sc_ISfs(Zet16sc* pSrcDst, int len, int scale);
/* srcDst = rule(srcDst + src1 * src2). */
ZETAPI ZetStatus zetsAddProduct_16s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAddProduct_32s_Sfs(const Zet32s* pSrc1, const Zet32s* pSrc2, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsAddProduct_16s32s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet32s* pSrcDst, int len, int scale);
/* 64-bit members of the rule, exact in 128 bits. */
ZETAPI ZetStatus zetsAdd_64s_Sfs(const Zet64s* pSrc1, const Zet64s* pSrc2, Zet64s* pDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_64s_Sfs(const Zet64s* pSrc, Zet64s val, Zet64s* pDst, int len, int scale);
ZETAPI ZetStatus zetsAddC_64u_Sfs(const Zet64u* pSrc, Zet64u val, Zet64u* pDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_64s_ISfs(Zet64s val, Zet64s* pSrcDst, int len, int scale);
/* 64-bit length; a constant of 0 zeroes in large blocks. */
ZETAPI ZetStatus zetsMulC_32s_Sfs_L(const Zet32s* pSrc, Zet32s val, Zet32s* pDst, long long len, int scale);
ZETAPI ZetStatus zetsMulC_32s_ISfs_L(Zet32s val, Zet32s* pSrcDst, long long len, int scale);
/* Unscaled: the _Sfs form with scale 0 (saturating). */
ZETAPI ZetStatus zetsAdd_16s(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsAdd_16s_I(const Zet16s* pSrc, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsSub_16s(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsSub_16s_I(const Zet16s* pSrc, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsMul_16s(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsMul_16s_I(const Zet16s* pSrc, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsAddC_16s_I(Zet16s val, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsSubC_16s_I(Zet16s val, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsMulC_16s_I(Zet16s val, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsAdd_16u(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len);
/* Saturating unsigned 32-bit addition: a + min(~a, b). */
ZETAPI ZetStatus zetsAdd_32u(const Zet32u* pSrc1, const Zet32u* pSrc2, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsAdd_32u_I(const Zet32u* pSrc, Zet32u* pSrcDst, int len);
/* Widening forms: exact results, no overflow; the 32f forms convert by the current rounding mode. */
ZETAPI ZetStatus zetsAdd_8u16u(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsMul_8u16u(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsAdd_16s32f(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsSub_16s32f(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMul_16s32f(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet32f* pDst, int len);
/* srcDst (32 bits) + src (16 bits), saturated. */
ZETAPI ZetStatus zetsAdd_16s32s_I(const Zet16s* pSrc, Zet32s* pSrcDst, int len);
ZETAPI ZetStatus zetsMul_16s32s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsMul_16u16s_Sfs(const Zet16u* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len, int scale);
/* Floating constants to integers: (src * val) * 2^-scale rounded by the current
 * rounding mode and saturated; a NaN gives the minimum. MulC_Low is the scale-0 form. */
ZETAPI ZetStatus zetsMulC_32f16s_Sfs(const Zet32f* pSrc, Zet32f val, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsMulC_Low_32f16s(const Zet32f* pSrc, Zet32f val, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsMulC_64f64s_ISfs(Zet64f val, Zet64s* pSrcDst, int len, int scale);
/* Saturating absolute value: the minimum of the type gives the maximum. */
ZETAPI ZetStatus zetsAbs_16s(const Zet16s* pSrc, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsAbs_16s_I(Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsAbs_32s(const Zet32s* pSrc, Zet32s* pDst, int len);
ZETAPI ZetStatus zetsAbs_32s_I(Zet32s* pSrcDst, int len);

/* ==== Division ==========================================================
 * Div: src2 / src1 (the first vector is the divisor), correctly rounded for
 * real types; complex: (b * conj(a)) / |a|^2 (32fc computed in double). A zero
 * divisor gives the IEEE value (inf or NaN; complex: each part of b over 0) and
 * zetStsDivByZeroWarn after all elements are written; the _L forms return the
 * status of their last chunk. DivC: src * (1/val), the reciprocal rounded once
 * and passed to MulC (so its special constants apply); a zero val is
 * zetStsDivByZeroErr with nothing written. DivCRev: val / src[i]. */
ZETAPI ZetStatus zetsDiv_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsDiv_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsDiv_32f_L(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsDiv_32f_I_L(const Zet32f* pSrc, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsDiv_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsDiv_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsDiv_64f_L(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsDiv_64f_I_L(const Zet64f* pSrc, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsDiv_32fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsDiv_32fc_I(const Zet32fc* pSrc, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsDiv_32fc_L(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsDiv_32fc_I_L(const Zet32fc* pSrc, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsDiv_64fc(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsDiv_64fc_I(const Zet64fc* pSrc, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsDiv_64fc_L(const Zet64fc* pSrc1, const Zet64fc* pSrc2, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsDiv_64fc_I_L(const Zet64fc* pSrc, Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsDivC_32f(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsDivC_32f_I(Zet32f val, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsDivC_32f_L(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsDivC_32f_I_L(Zet32f val, Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsDivC_64f(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsDivC_64f_I(Zet64f val, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsDivC_64f_L(const Zet64f* pSrc, Zet64f val, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsDivC_64f_I_L(Zet64f val, Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsDivC_32fc(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsDivC_32fc_I(Zet32fc val, Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsDivC_32fc_L(const Zet32fc* pSrc, Zet32fc val, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsDivC_32fc_I_L(Zet32fc val, Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsDivC_64fc(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsDivC_64fc_I(Zet64fc val, Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsDivC_64fc_L(const Zet64fc* pSrc, Zet64fc val, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsDivC_64fc_I_L(Zet64fc val, Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsDivCRev_32f(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsDivCRev_32f_I(Zet32f val, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsDivCRev_32f_L(const Zet32f* pSrc, Zet32f val, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsDivCRev_32f_I_L(Zet32f val, Zet32f* pSrcDst, long long len);
/* Integer division: the exact quotient times 2^-scale, rounded half to even
 * (Div_Round: by the ZetRoundMode, and zetStsRoundModeValueErr for a mode
 * outside 0..2 after the pointer and length checks), saturated. A zero divisor
 * gives the maximum for a positive dividend, the minimum for a negative one,
 * 0 for 0 (complex: per part of the dividend) and zetStsDivByZeroWarn.
 * Div_32s16s: a 32s dividend (src2) over a 16s divisor (src1) to 16s. */
ZETAPI ZetStatus zetsDiv_8u_Sfs(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_8u_ISfs(const Zet8u* pSrc, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_16u_Sfs(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_16u_ISfs(const Zet16u* pSrc, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_16s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_16s_ISfs(const Zet16s* pSrc, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_16sc_Sfs(const Zet16sc* pSrc1, const Zet16sc* pSrc2, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_16sc_ISfs(const Zet16sc* pSrc, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_32s_Sfs(const Zet32s* pSrc1, const Zet32s* pSrc2, Zet32s* pDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_32s_ISfs(const Zet32s* pSrc, Zet32s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_32s16s_Sfs(const Zet16s* pSrc1, const Zet32s* pSrc2, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsDiv_Round_8u_Sfs(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsDiv_Round_8u_ISfs(const Zet8u* pSrc, Zet8u* pSrcDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsDiv_Round_16u_Sfs(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsDiv_Round_16u_ISfs(const Zet16u* pSrc, Zet16u* pSrcDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsDiv_Round_16s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, Zet16s* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsDiv_Round_16s_ISfs(const Zet16s* pSrc, Zet16s* pSrcDst, int len, ZetRoundMode rndMode, int scale);
/* A zero val is zetStsDivByZeroErr; DivC_64s_ISfs treats it as a zero divisor (warning). */
ZETAPI ZetStatus zetsDivC_8u_Sfs(const Zet8u* pSrc, Zet8u val, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsDivC_8u_ISfs(Zet8u val, Zet8u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDivC_16u_Sfs(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len, int scale);
ZETAPI ZetStatus zetsDivC_16u_ISfs(Zet16u val, Zet16u* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDivC_16s_Sfs(const Zet16s* pSrc, Zet16s val, Zet16s* pDst, int len, int scale);
ZETAPI ZetStatus zetsDivC_16s_ISfs(Zet16s val, Zet16s* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDivC_16sc_Sfs(const Zet16sc* pSrc, Zet16sc val, Zet16sc* pDst, int len, int scale);
ZETAPI ZetStatus zetsDivC_16sc_ISfs(Zet16sc val, Zet16sc* pSrcDst, int len, int scale);
ZETAPI ZetStatus zetsDivC_64s_ISfs(Zet64s val, Zet64s* pSrcDst, int len, int scale);
/* val / src[i], rounded half to even; zero elements warn. */
ZETAPI ZetStatus zetsDivCRev_16u(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsDivCRev_16u_I(Zet16u val, Zet16u* pSrcDst, int len);

/* ==== Logical operations and shifts =======================================
 * And, Or, Xor of two vectors or with a constant, Not (XorC with all ones, and
 * its checks). AndC with 0 checks only dst and len (a null src is accepted) and
 * clears dst. Shifts by val bits: 0 copies; a count at or above the element
 * width clears dst (after testing src), except the arithmetic RShiftC of
 * signed types, which fills each element with its sign; a negative count is
 * zetStsShiftErr after the pointer and length checks. */
ZETAPI ZetStatus zetsAnd_8u(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsAnd_8u_I(const Zet8u* pSrc, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsAnd_16u(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsAnd_16u_I(const Zet16u* pSrc, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsAnd_32u(const Zet32u* pSrc1, const Zet32u* pSrc2, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsAnd_32u_I(const Zet32u* pSrc, Zet32u* pSrcDst, int len);
ZETAPI ZetStatus zetsOr_8u(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsOr_8u_I(const Zet8u* pSrc, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsOr_16u(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsOr_16u_I(const Zet16u* pSrc, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsOr_32u(const Zet32u* pSrc1, const Zet32u* pSrc2, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsOr_32u_I(const Zet32u* pSrc, Zet32u* pSrcDst, int len);
ZETAPI ZetStatus zetsXor_8u(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsXor_8u_I(const Zet8u* pSrc, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsXor_16u(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsXor_16u_I(const Zet16u* pSrc, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsXor_32u(const Zet32u* pSrc1, const Zet32u* pSrc2, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsXor_32u_I(const Zet32u* pSrc, Zet32u* pSrcDst, int len);
ZETAPI ZetStatus zetsAndC_8u(const Zet8u* pSrc, Zet8u val, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsAndC_8u_I(Zet8u val, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsAndC_16u(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsAndC_16u_I(Zet16u val, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsAndC_32u(const Zet32u* pSrc, Zet32u val, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsAndC_32u_I(Zet32u val, Zet32u* pSrcDst, int len);
ZETAPI ZetStatus zetsOrC_8u(const Zet8u* pSrc, Zet8u val, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsOrC_8u_I(Zet8u val, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsOrC_16u(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsOrC_16u_I(Zet16u val, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsOrC_32u(const Zet32u* pSrc, Zet32u val, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsOrC_32u_I(Zet32u val, Zet32u* pSrcDst, int len);
ZETAPI ZetStatus zetsXorC_8u(const Zet8u* pSrc, Zet8u val, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsXorC_8u_I(Zet8u val, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsXorC_16u(const Zet16u* pSrc, Zet16u val, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsXorC_16u_I(Zet16u val, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsXorC_32u(const Zet32u* pSrc, Zet32u val, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsXorC_32u_I(Zet32u val, Zet32u* pSrcDst, int len);
ZETAPI ZetStatus zetsNot_8u(const Zet8u* pSrc, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsNot_8u_I(Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsNot_16u(const Zet16u* pSrc, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsNot_16u_I(Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsNot_32u(const Zet32u* pSrc, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsNot_32u_I(Zet32u* pSrcDst, int len);
ZETAPI ZetStatus zetsLShiftC_8u(const Zet8u* pSrc, int val, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsLShiftC_8u_I(int val, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsLShiftC_16u(const Zet16u* pSrc, int val, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsLShiftC_16u_I(int val, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsLShiftC_16s(const Zet16s* pSrc, int val, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsLShiftC_16s_I(int val, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsLShiftC_32s(const Zet32s* pSrc, int val, Zet32s* pDst, int len);
ZETAPI ZetStatus zetsLShiftC_32s_I(int val, Zet32s* pSrcDst, int len);
ZETAPI ZetStatus zetsRShiftC_8u(const Zet8u* pSrc, int val, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsRShiftC_8u_I(int val, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsRShiftC_16u(const Zet16u* pSrc, int val, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsRShiftC_16u_I(int val, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsRShiftC_16s(const Zet16s* pSrc, int val, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsRShiftC_16s_I(int val, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsRShiftC_32s(const Zet32s* pSrc, int val, Zet32s* pDst, int len);
ZETAPI ZetStatus zetsRShiftC_32s_I(int val, Zet32s* pSrcDst, int len);


/* ==== Format conversion ================================================== */

/* Half precision (Zet16f, IEEE binary16) to and from single. Processors that
 * convert half precision themselves do so; others take a bit-level route that
 * gives the same bits, whatever the thread's flush-to-zero and
 * denormals-are-zero settings. 16f32f is exact. 32f16f takes rndMode 0
 * (toward zero: finite values beyond the half range give the largest finite
 * half) or 1 (nearest even: from 65520 on, infinity); any other mode gives
 * zetStsRoundModeValueErr. A NaN comes out quiet with its top payload bits. */
ZETAPI ZetStatus zetsConvert_16f32f(const Zet16f* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsConvert_32f16f(const Zet32f* pSrc, Zet16f* pDst, int len, ZetRoundMode rndMode);

/* 16s16f rounds to half like 32f16f (rndMode 0 or 1, else
 * zetStsRoundModeValueErr). 16f16s_Sfs: the half times 2^-scale, truncated
 * (rndMode 0) or rounded to nearest even (1), saturated; other modes give
 * zetStsRoundModeValueErr. A NaN gives -32768. */
ZETAPI ZetStatus zetsConvert_16s16f(const Zet16s* pSrc, Zet16f* pDst, int len, ZetRoundMode rndMode);
ZETAPI ZetStatus zetsConvert_16f16s_Sfs(const Zet16f* pSrc, Zet16s* pDst, int len, ZetRoundMode rndMode, int scale);

/* Integer to integer. Widening extends with the sign or with zeros;
 * narrowing saturates (8s8u takes a negative value to 0). 24-bit elements
 * are three bytes, low byte first, passed as Zet8u arrays; len counts
 * elements. _Sfs: the value times 2^-scale rounded to nearest even and
 * saturated; 32s16s_Sfs and 64s32s_Sfs round by rndMode instead (0 toward
 * zero, 1 nearest even, any other value nearest with ties away from zero). */
ZETAPI ZetStatus zetsConvert_8s16s(const Zet8s* pSrc, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsConvert_16s32s(const Zet16s* pSrc, Zet32s* pDst, int len);
ZETAPI ZetStatus zetsConvert_24s32s(const Zet8u* pSrc, Zet32s* pDst, int len);
ZETAPI ZetStatus zetsConvert_24u32u(const Zet8u* pSrc, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsConvert_8s8u(const Zet8s* pSrc, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsConvert_32s16s(const Zet32s* pSrc, Zet16s* pDst, int len);
ZETAPI ZetStatus zetsConvert_8u8s_Sfs(const Zet8u* pSrc, Zet8s* pDst, int len, int scale);
ZETAPI ZetStatus zetsConvert_16s8s_Sfs(const Zet16s* pSrc, Zet8s* pDst, int len, int scale);
ZETAPI ZetStatus zetsConvert_32s24s_Sfs(const Zet32s* pSrc, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsConvert_32u24u_Sfs(const Zet32u* pSrc, Zet8u* pDst, int len, int scale);
ZETAPI ZetStatus zetsConvert_32s16s_Sfs(const Zet32s* pSrc, Zet16s* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_64s32s_Sfs(const Zet64s* pSrc, Zet32s* pDst, int len, ZetRoundMode rndMode, int scale);

/* Integer to floating, and between the floating types, under the thread's
 * rounding direction. _Sfs: the value times 2^-scale, rounded once. */
ZETAPI ZetStatus zetsConvert_8s32f(const Zet8s* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsConvert_8u32f(const Zet8u* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsConvert_16s32f(const Zet16s* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsConvert_16u32f(const Zet16u* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsConvert_24s32f(const Zet8u* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsConvert_24u32f(const Zet8u* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsConvert_32s32f(const Zet32s* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsConvert_32s64f(const Zet32s* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsConvert_64s64f(const Zet64s* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsConvert_16s32f_Sfs(const Zet16s* pSrc, Zet32f* pDst, int len, int scale);
ZETAPI ZetStatus zetsConvert_32s32f_Sfs(const Zet32s* pSrc, Zet32f* pDst, int len, int scale);
ZETAPI ZetStatus zetsConvert_16s64f_Sfs(const Zet16s* pSrc, Zet64f* pDst, int len, int scale);
ZETAPI ZetStatus zetsConvert_32s64f_Sfs(const Zet32s* pSrc, Zet64f* pDst, int len, int scale);
ZETAPI ZetStatus zetsConvert_32f64f(const Zet32f* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsConvert_64f32f(const Zet64f* pSrc, Zet32f* pDst, int len);

/* Floating to integer: the value times 2^-scale, limited from above,
 * rounded by rndMode (0 toward zero, 1 nearest even, any other value nearest
 * with ties away from zero) and saturated. NaN and -infinity give the
 * lowest value of the type (0 for unsigned types). The factor is built in
 * the exponent field of the source type and wraps for scales beyond its
 * range (binary32: scale 128 multiplies by -infinity, 256 by -1). The
 * thread's control word is changed for the call and restored.
 * 64f64s_Sfs takes only rndMode 2 (else zetStsRoundModeErr) and refuses only
 * a len of 0; a negative len converts nothing. */
ZETAPI ZetStatus zetsConvert_32f8s_Sfs(const Zet32f* pSrc, Zet8s* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_32f8u_Sfs(const Zet32f* pSrc, Zet8u* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_32f16s_Sfs(const Zet32f* pSrc, Zet16s* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_32f16u_Sfs(const Zet32f* pSrc, Zet16u* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_32f24s_Sfs(const Zet32f* pSrc, Zet8u* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_32f24u_Sfs(const Zet32f* pSrc, Zet8u* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_32f32s_Sfs(const Zet32f* pSrc, Zet32s* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_64f8s_Sfs(const Zet64f* pSrc, Zet8s* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_64f8u_Sfs(const Zet64f* pSrc, Zet8u* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_64f16s_Sfs(const Zet64f* pSrc, Zet16s* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_64f16u_Sfs(const Zet64f* pSrc, Zet16u* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_64f32s_Sfs(const Zet64f* pSrc, Zet32s* pDst, int len, ZetRoundMode rndMode, int scale);
ZETAPI ZetStatus zetsConvert_64f64s_Sfs(const Zet64f* pSrc, Zet64s* pDst, int len, ZetRoundMode rndMode, int scale);

/* ==== Thresholds ========================================================= */

/* Comparison codes of the zetsThreshold_<type> forms: 0 acts as LT, 4 as GT;
 * any other bit gives zetStsBadArgErr. */
typedef int ZetCmpOp;
enum {
    zetCmpLess    = 0,
    zetCmpGreater = 4
};

/* Real elements. LT: max(x, level), GT: min(x, level), the processor's
 * operations with x first, so a NaN element gives level. GTVal: x where
 * x <= level, else value (a NaN is replaced); LTVal: x where x >= level,
 * else value. LTValGTVal: valueLT where x < levelLT, valueGT where
 * x > levelGT, else x; levelLT above levelGT gives zetStsThreshRangeErr.
 * Integer forms follow the same rules. */
ZETAPI ZetStatus zetsThreshold_LT_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_LT_16s_I(Zet16s* pSrcDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_GT_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_GT_16s_I(Zet16s* pSrcDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_LT_32s(const Zet32s* pSrc, Zet32s* pDst, int len, Zet32s level);
ZETAPI ZetStatus zetsThreshold_LT_32s_I(Zet32s* pSrcDst, int len, Zet32s level);
ZETAPI ZetStatus zetsThreshold_GT_32s(const Zet32s* pSrc, Zet32s* pDst, int len, Zet32s level);
ZETAPI ZetStatus zetsThreshold_GT_32s_I(Zet32s* pSrcDst, int len, Zet32s level);
ZETAPI ZetStatus zetsThreshold_LT_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LT_32f_I(Zet32f* pSrcDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_GT_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_GT_32f_I(Zet32f* pSrcDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LT_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LT_64f_I(Zet64f* pSrcDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_GT_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_GT_64f_I(Zet64f* pSrcDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_16s_I(Zet16s* pSrcDst, int len, Zet16s level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_LTVal_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s level, Zet16s value);
ZETAPI ZetStatus zetsThreshold_LTVal_16s_I(Zet16s* pSrcDst, int len, Zet16s level, Zet16s value);
ZETAPI ZetStatus zetsThreshold_GTVal_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s level, Zet16s value);
ZETAPI ZetStatus zetsThreshold_GTVal_16s_I(Zet16s* pSrcDst, int len, Zet16s level, Zet16s value);
ZETAPI ZetStatus zetsThreshold_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_32f_I(Zet32f* pSrcDst, int len, Zet32f level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_LTVal_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level, Zet32f value);
ZETAPI ZetStatus zetsThreshold_LTVal_32f_I(Zet32f* pSrcDst, int len, Zet32f level, Zet32f value);
ZETAPI ZetStatus zetsThreshold_GTVal_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level, Zet32f value);
ZETAPI ZetStatus zetsThreshold_GTVal_32f_I(Zet32f* pSrcDst, int len, Zet32f level, Zet32f value);
ZETAPI ZetStatus zetsThreshold_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_64f_I(Zet64f* pSrcDst, int len, Zet64f level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_LTVal_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level, Zet64f value);
ZETAPI ZetStatus zetsThreshold_LTVal_64f_I(Zet64f* pSrcDst, int len, Zet64f level, Zet64f value);
ZETAPI ZetStatus zetsThreshold_GTVal_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level, Zet64f value);
ZETAPI ZetStatus zetsThreshold_GTVal_64f_I(Zet64f* pSrcDst, int len, Zet64f level, Zet64f value);
ZETAPI ZetStatus zetsThreshold_LTValGTVal_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s levelLT, Zet16s valueLT, Zet16s levelGT, Zet16s valueGT);
ZETAPI ZetStatus zetsThreshold_LTValGTVal_16s_I(Zet16s* pSrcDst, int len, Zet16s levelLT, Zet16s valueLT, Zet16s levelGT, Zet16s valueGT);
ZETAPI ZetStatus zetsThreshold_LTValGTVal_32s(const Zet32s* pSrc, Zet32s* pDst, int len, Zet32s levelLT, Zet32s valueLT, Zet32s levelGT, Zet32s valueGT);
ZETAPI ZetStatus zetsThreshold_LTValGTVal_32s_I(Zet32s* pSrcDst, int len, Zet32s levelLT, Zet32s valueLT, Zet32s levelGT, Zet32s valueGT);
ZETAPI ZetStatus zetsThreshold_LTValGTVal_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f levelLT, Zet32f valueLT, Zet32f levelGT, Zet32f valueGT);
ZETAPI ZetStatus zetsThreshold_LTValGTVal_32f_I(Zet32f* pSrcDst, int len, Zet32f levelLT, Zet32f valueLT, Zet32f levelGT, Zet32f valueGT);
ZETAPI ZetStatus zetsThreshold_LTValGTVal_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f levelLT, Zet64f valueLT, Zet64f levelGT, Zet64f valueGT);
ZETAPI ZetStatus zetsThreshold_LTValGTVal_64f_I(Zet64f* pSrcDst, int len, Zet64f levelLT, Zet64f valueLT, Zet64f levelGT, Zet64f valueGT);

/* Magnitudes. LTAbs: x with its magnitude raised to at least level, GTAbs:
 * lowered to at most level, the sign kept; on floats both compare the bit
 * patterns of the magnitude and the level as integers, so LTAbs keeps a NaN.
 * A negative level gives zetStsNegThreshErr. LTAbsVal: value where |x| <
 * level (compared as numbers; a NaN is kept), else x; its level is not
 * checked. The _L forms take a 64-bit length. */
ZETAPI ZetStatus zetsThreshold_LTAbs_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_LTAbs_16s_I(Zet16s* pSrcDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_GTAbs_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_GTAbs_16s_I(Zet16s* pSrcDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_LTAbsVal_16s(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s level, Zet16s value);
ZETAPI ZetStatus zetsThreshold_LTAbsVal_16s_I(Zet16s* pSrcDst, int len, Zet16s level, Zet16s value);
ZETAPI ZetStatus zetsThreshold_LTAbs_32s(const Zet32s* pSrc, Zet32s* pDst, int len, Zet32s level);
ZETAPI ZetStatus zetsThreshold_LTAbs_32s_I(Zet32s* pSrcDst, int len, Zet32s level);
ZETAPI ZetStatus zetsThreshold_GTAbs_32s(const Zet32s* pSrc, Zet32s* pDst, int len, Zet32s level);
ZETAPI ZetStatus zetsThreshold_GTAbs_32s_I(Zet32s* pSrcDst, int len, Zet32s level);
ZETAPI ZetStatus zetsThreshold_LTAbsVal_32s(const Zet32s* pSrc, Zet32s* pDst, int len, Zet32s level, Zet32s value);
ZETAPI ZetStatus zetsThreshold_LTAbsVal_32s_I(Zet32s* pSrcDst, int len, Zet32s level, Zet32s value);
ZETAPI ZetStatus zetsThreshold_LTAbs_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTAbs_32f_I(Zet32f* pSrcDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_GTAbs_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_GTAbs_32f_I(Zet32f* pSrcDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTAbsVal_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level, Zet32f value);
ZETAPI ZetStatus zetsThreshold_LTAbsVal_32f_I(Zet32f* pSrcDst, int len, Zet32f level, Zet32f value);
ZETAPI ZetStatus zetsThreshold_LTAbs_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LTAbs_64f_I(Zet64f* pSrcDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_GTAbs_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_GTAbs_64f_I(Zet64f* pSrcDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LTAbsVal_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level, Zet64f value);
ZETAPI ZetStatus zetsThreshold_LTAbsVal_64f_I(Zet64f* pSrcDst, int len, Zet64f level, Zet64f value);
ZETAPI ZetStatus zetsThreshold_LTAbs_32f_L(const Zet32f* pSrc, Zet32f* pDst, long long len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTAbs_32f_I_L(Zet32f* pSrcDst, long long len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTAbs_64f_L(const Zet64f* pSrc, Zet64f* pDst, long long len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LTAbs_64f_I_L(Zet64f* pSrcDst, long long len, Zet64f level);

/* Complex elements, against the magnitude; level is real, not negative
 * (zetStsNegThreshErr, checked after relOp). LT moves an element whose
 * magnitude is below level onto the circle of radius level along its own
 * direction (0 goes to level + 0i); GT moves one above it onto the circle.
 * An element with a NaN part is kept. GTVal: value in place of an element
 * whose magnitude is not at or below level (a NaN included); LTVal: not at
 * or above. 16sc results are rounded to nearest even. */
ZETAPI ZetStatus zetsThreshold_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len, Zet16s level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_16sc_I(Zet16sc* pSrcDst, int len, Zet16s level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_LT_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_LT_16sc_I(Zet16sc* pSrcDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_GT_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_GT_16sc_I(Zet16sc* pSrcDst, int len, Zet16s level);
ZETAPI ZetStatus zetsThreshold_LTVal_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len, Zet16s level, Zet16sc value);
ZETAPI ZetStatus zetsThreshold_LTVal_16sc_I(Zet16sc* pSrcDst, int len, Zet16s level, Zet16sc value);
ZETAPI ZetStatus zetsThreshold_GTVal_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len, Zet16s level, Zet16sc value);
ZETAPI ZetStatus zetsThreshold_GTVal_16sc_I(Zet16sc* pSrcDst, int len, Zet16s level, Zet16sc value);
ZETAPI ZetStatus zetsThreshold_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len, Zet32f level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_32fc_I(Zet32fc* pSrcDst, int len, Zet32f level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_LT_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LT_32fc_I(Zet32fc* pSrcDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_GT_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_GT_32fc_I(Zet32fc* pSrcDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTVal_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len, Zet32f level, Zet32fc value);
ZETAPI ZetStatus zetsThreshold_LTVal_32fc_I(Zet32fc* pSrcDst, int len, Zet32f level, Zet32fc value);
ZETAPI ZetStatus zetsThreshold_GTVal_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len, Zet32f level, Zet32fc value);
ZETAPI ZetStatus zetsThreshold_GTVal_32fc_I(Zet32fc* pSrcDst, int len, Zet32f level, Zet32fc value);
ZETAPI ZetStatus zetsThreshold_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len, Zet64f level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_64fc_I(Zet64fc* pSrcDst, int len, Zet64f level, ZetCmpOp relOp);
ZETAPI ZetStatus zetsThreshold_LT_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LT_64fc_I(Zet64fc* pSrcDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_GT_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_GT_64fc_I(Zet64fc* pSrcDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LTVal_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len, Zet64f level, Zet64fc value);
ZETAPI ZetStatus zetsThreshold_LTVal_64fc_I(Zet64fc* pSrcDst, int len, Zet64f level, Zet64fc value);
ZETAPI ZetStatus zetsThreshold_GTVal_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len, Zet64f level, Zet64fc value);
ZETAPI ZetStatus zetsThreshold_GTVal_64fc_I(Zet64fc* pSrcDst, int len, Zet64f level, Zet64fc value);

/* LTInv: 1/x after the LT rule on the magnitude (real: a magnitude below
 * level becomes level with the sign of x; complex: as LT above). A negative
 * level gives zetStsNegThreshErr. With level 0 a zero element gives an
 * infinity (complex: in the real part) and the call returns
 * zetStsDivByZeroWarn. */
ZETAPI ZetStatus zetsThreshold_LTInv_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTInv_32f_I(Zet32f* pSrcDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTInv_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTInv_32fc_I(Zet32fc* pSrcDst, int len, Zet32f level);
ZETAPI ZetStatus zetsThreshold_LTInv_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LTInv_64f_I(Zet64f* pSrcDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LTInv_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len, Zet64f level);
ZETAPI ZetStatus zetsThreshold_LTInv_64fc_I(Zet64fc* pSrcDst, int len, Zet64f level);

/* ==== Statistics: sums, moments, extrema, norms, dot products ============= */

/* ---- Sums and means ----
 * Floating sums accumulate in binary64: sixteen elements a round into four
 * 4-lane sums combined as (A + B) + (C + D), then four a round, then the upper
 * lanes onto the lower, then the last elements in order; one rounding to the
 * result at the end. A hint of 1 asks for the fast route instead: binary32
 * partial sums over aligned blocks, added in binary64. The plain forms share
 * the 64-bit-length core (pointers are checked before the length).
 * Mean: the plain form divides the binary64 total by len; the _L form divides
 * the rounded sum in the element's precision (the two can differ in the last
 * bit). Integer forms sum exactly in 64 bits, then multiply by 2^-scale in
 * binary64, hold the product to the result's range and round ties to even
 * (zetsSum_32s_Sfs at scale 0 saturates the exact total). */
ZETAPI ZetStatus zetsSum_32f   (const Zet32f*  pSrc, int len,       Zet32f*  pSum, ZetHint hint);
ZETAPI ZetStatus zetsSum_32f_L (const Zet32f*  pSrc, long long len, Zet32f*  pSum, ZetHint hint);
ZETAPI ZetStatus zetsSum_32fc  (const Zet32fc* pSrc, int len,       Zet32fc* pSum, ZetHint hint);
ZETAPI ZetStatus zetsSum_32fc_L(const Zet32fc* pSrc, long long len, Zet32fc* pSum, ZetHint hint);
ZETAPI ZetStatus zetsSum_64f   (const Zet64f*  pSrc, int len,       Zet64f*  pSum);
ZETAPI ZetStatus zetsSum_64f_L (const Zet64f*  pSrc, long long len, Zet64f*  pSum);
ZETAPI ZetStatus zetsSum_64fc  (const Zet64fc* pSrc, int len,       Zet64fc* pSum);
ZETAPI ZetStatus zetsSum_64fc_L(const Zet64fc* pSrc, long long len, Zet64fc* pSum);
ZETAPI ZetStatus zetsSum_16s_Sfs     (const Zet16s*  pSrc, int len, Zet16s*  pSum, int scale);
ZETAPI ZetStatus zetsSum_16sc_Sfs    (const Zet16sc* pSrc, int len, Zet16sc* pSum, int scale);
ZETAPI ZetStatus zetsSum_32s_Sfs     (const Zet32s*  pSrc, int len, Zet32s*  pSum, int scale);
ZETAPI ZetStatus zetsSum_16s32s_Sfs  (const Zet16s*  pSrc, int len, Zet32s*  pSum, int scale);
ZETAPI ZetStatus zetsSum_16sc32sc_Sfs(const Zet16sc* pSrc, int len, Zet32sc* pSum, int scale);
ZETAPI ZetStatus zetsMean_32f   (const Zet32f*  pSrc, int len,       Zet32f*  pMean, ZetHint hint);
ZETAPI ZetStatus zetsMean_32f_L (const Zet32f*  pSrc, long long len, Zet32f*  pMean, ZetHint hint);
ZETAPI ZetStatus zetsMean_32fc  (const Zet32fc* pSrc, int len,       Zet32fc* pMean, ZetHint hint);
ZETAPI ZetStatus zetsMean_32fc_L(const Zet32fc* pSrc, long long len, Zet32fc* pMean, ZetHint hint);
ZETAPI ZetStatus zetsMean_64f   (const Zet64f*  pSrc, int len,       Zet64f*  pMean);
ZETAPI ZetStatus zetsMean_64f_L (const Zet64f*  pSrc, long long len, Zet64f*  pMean);
ZETAPI ZetStatus zetsMean_64fc  (const Zet64fc* pSrc, int len,       Zet64fc* pMean);
ZETAPI ZetStatus zetsMean_64fc_L(const Zet64fc* pSrc, long long len, Zet64fc* pMean);
ZETAPI ZetStatus zetsMean_16s_Sfs (const Zet16s*  pSrc, int len, Zet16s*  pMean, int scale);
ZETAPI ZetStatus zetsMean_16sc_Sfs(const Zet16sc* pSrc, int len, Zet16sc* pMean, int scale);
ZETAPI ZetStatus zetsMean_32s_Sfs (const Zet32s*  pSrc, int len, Zet32s*  pMean, int scale);

/* ---- Standard deviation ----
 * The sample deviation sqrt((s2*n - s1*s1) / (n*(n-1))), the numerator held
 * at 0 from below; len below 2 gives zetStsSizeErr. Floating forms sum s1 and
 * s2 in binary64 in one pass; a hint of 1 takes a faster binary32 route.
 * Integer forms are exact up to the square root and scale like the sums. */
ZETAPI ZetStatus zetsStdDev_32f(const Zet32f* pSrc, int len, Zet32f* pStdDev, ZetHint hint);
ZETAPI ZetStatus zetsStdDev_64f(const Zet64f* pSrc, int len, Zet64f* pStdDev);
ZETAPI ZetStatus zetsStdDev_16s_Sfs   (const Zet16s* pSrc, int len, Zet16s* pStdDev, int scale);
ZETAPI ZetStatus zetsStdDev_16s32s_Sfs(const Zet16s* pSrc, int len, Zet32s* pStdDev, int scale);
ZETAPI ZetStatus zetsMeanStdDev_32f(const Zet32f* pSrc, int len, Zet32f* pMean, Zet32f* pStdDev, ZetHint hint);
ZETAPI ZetStatus zetsMeanStdDev_64f(const Zet64f* pSrc, int len, Zet64f* pMean, Zet64f* pStdDev);
ZETAPI ZetStatus zetsMeanStdDev_16s_Sfs   (const Zet16s* pSrc, int len, Zet16s* pMean, Zet16s* pStdDev, int scale);
ZETAPI ZetStatus zetsMeanStdDev_16s32s_Sfs(const Zet16s* pSrc, int len, Zet32s* pMean, Zet32s* pStdDev, int scale);

/* ---- Sliding window sums ----
 * pDst[i] = pSrc[i] + ... + pSrc[i + maskSize - 1] for i < len, rounded once:
 * pSrc holds len + maskSize - 1 elements. maskSize below 1 gives
 * zetStsWindowLenErr. */
ZETAPI ZetStatus zetsSumWindow_8u32f (const Zet8u*  pSrc, Zet32f* pDst, int len, int maskSize);
ZETAPI ZetStatus zetsSumWindow_16s32f(const Zet16s* pSrc, Zet32f* pDst, int len, int maskSize);

/* ---- Extrema ----
 * Max, Min: the processor's maximum (minimum) with the running value first,
 * so the result with NaN elements depends on where they fall. MaxAbs, MinAbs:
 * the same over magnitudes (the sign bit cleared; a 16s or 32s magnitude that
 * does not fit the type saturates). Indx forms also give the position of the
 * first occurrence: a later element replaces the candidate only if strictly
 * better, and a NaN first element is kept. MaxIndx and MinIndx accept a null
 * pIndx and then act as Max and Min. _L forms: pointers, then the length. */
ZETAPI ZetStatus zetsMax_16s(const Zet16s* pSrc, int len, Zet16s* pMax);
ZETAPI ZetStatus zetsMin_16s(const Zet16s* pSrc, int len, Zet16s* pMin);
ZETAPI ZetStatus zetsMaxAbs_16s(const Zet16s* pSrc, int len, Zet16s* pMax);
ZETAPI ZetStatus zetsMinAbs_16s(const Zet16s* pSrc, int len, Zet16s* pMin);
ZETAPI ZetStatus zetsMaxIndx_16s(const Zet16s* pSrc, int len, Zet16s* pMax, int* pIndx);
ZETAPI ZetStatus zetsMinIndx_16s(const Zet16s* pSrc, int len, Zet16s* pMin, int* pIndx);
ZETAPI ZetStatus zetsMaxAbsIndx_16s(const Zet16s* pSrc, int len, Zet16s* pMax, int* pIndx);
ZETAPI ZetStatus zetsMinAbsIndx_16s(const Zet16s* pSrc, int len, Zet16s* pMin, int* pIndx);
ZETAPI ZetStatus zetsMax_32s(const Zet32s* pSrc, int len, Zet32s* pMax);
ZETAPI ZetStatus zetsMin_32s(const Zet32s* pSrc, int len, Zet32s* pMin);
ZETAPI ZetStatus zetsMaxAbs_32s(const Zet32s* pSrc, int len, Zet32s* pMax);
ZETAPI ZetStatus zetsMinAbs_32s(const Zet32s* pSrc, int len, Zet32s* pMin);
ZETAPI ZetStatus zetsMaxIndx_32s(const Zet32s* pSrc, int len, Zet32s* pMax, int* pIndx);
ZETAPI ZetStatus zetsMinIndx_32s(const Zet32s* pSrc, int len, Zet32s* pMin, int* pIndx);
ZETAPI ZetStatus zetsMaxAbsIndx_32s(const Zet32s* pSrc, int len, Zet32s* pMax, int* pIndx);
ZETAPI ZetStatus zetsMinAbsIndx_32s(const Zet32s* pSrc, int len, Zet32s* pMin, int* pIndx);
ZETAPI ZetStatus zetsMax_32f(const Zet32f* pSrc, int len, Zet32f* pMax);
ZETAPI ZetStatus zetsMin_32f(const Zet32f* pSrc, int len, Zet32f* pMin);
ZETAPI ZetStatus zetsMaxAbs_32f(const Zet32f* pSrc, int len, Zet32f* pMax);
ZETAPI ZetStatus zetsMinAbs_32f(const Zet32f* pSrc, int len, Zet32f* pMin);
ZETAPI ZetStatus zetsMaxIndx_32f(const Zet32f* pSrc, int len, Zet32f* pMax, int* pIndx);
ZETAPI ZetStatus zetsMinIndx_32f(const Zet32f* pSrc, int len, Zet32f* pMin, int* pIndx);
ZETAPI ZetStatus zetsMaxAbsIndx_32f(const Zet32f* pSrc, int len, Zet32f* pMax, int* pIndx);
ZETAPI ZetStatus zetsMinAbsIndx_32f(const Zet32f* pSrc, int len, Zet32f* pMin, int* pIndx);
ZETAPI ZetStatus zetsMax_64f(const Zet64f* pSrc, int len, Zet64f* pMax);
ZETAPI ZetStatus zetsMin_64f(const Zet64f* pSrc, int len, Zet64f* pMin);
ZETAPI ZetStatus zetsMaxAbs_64f(const Zet64f* pSrc, int len, Zet64f* pMax);
ZETAPI ZetStatus zetsMinAbs_64f(const Zet64f* pSrc, int len, Zet64f* pMin);
ZETAPI ZetStatus zetsMaxIndx_64f(const Zet64f* pSrc, int len, Zet64f* pMax, int* pIndx);
ZETAPI ZetStatus zetsMinIndx_64f(const Zet64f* pSrc, int len, Zet64f* pMin, int* pIndx);
ZETAPI ZetStatus zetsMaxAbsIndx_64f(const Zet64f* pSrc, int len, Zet64f* pMax, int* pIndx);
ZETAPI ZetStatus zetsMinAbsIndx_64f(const Zet64f* pSrc, int len, Zet64f* pMin, int* pIndx);
ZETAPI ZetStatus zetsMax_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMax);
ZETAPI ZetStatus zetsMin_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMin);
ZETAPI ZetStatus zetsMaxAbs_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMax);
ZETAPI ZetStatus zetsMinAbs_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMin);
ZETAPI ZetStatus zetsMaxIndx_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMax, long long* pIndx);
ZETAPI ZetStatus zetsMinIndx_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMin, long long* pIndx);
ZETAPI ZetStatus zetsMaxAbsIndx_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMax, long long* pIndx);
ZETAPI ZetStatus zetsMinAbsIndx_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMin, long long* pIndx);
ZETAPI ZetStatus zetsMax_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMax);
ZETAPI ZetStatus zetsMin_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMin);
ZETAPI ZetStatus zetsMaxAbs_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMax);
ZETAPI ZetStatus zetsMinAbs_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMin);
ZETAPI ZetStatus zetsMaxIndx_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMax, long long* pIndx);
ZETAPI ZetStatus zetsMinIndx_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMin, long long* pIndx);
ZETAPI ZetStatus zetsMaxAbsIndx_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMax, long long* pIndx);
ZETAPI ZetStatus zetsMinAbsIndx_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMin, long long* pIndx);

/* Both ends: MinMax in one pass; MinMaxIndx then scans for the first element
 * equal to each (a position stays 0 when none is, as for a NaN). MinMaxIndx
 * checks src, pMin, pMax, pMinIndx, pMaxIndx in that order. */
ZETAPI ZetStatus zetsMinMax_8u(const Zet8u* pSrc, int len, Zet8u* pMin, Zet8u* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_8u(const Zet8u* pSrc, int len, Zet8u* pMin, int* pMinIndx, Zet8u* pMax, int* pMaxIndx);
ZETAPI ZetStatus zetsMinMax_16u(const Zet16u* pSrc, int len, Zet16u* pMin, Zet16u* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_16u(const Zet16u* pSrc, int len, Zet16u* pMin, int* pMinIndx, Zet16u* pMax, int* pMaxIndx);
ZETAPI ZetStatus zetsMinMax_16s(const Zet16s* pSrc, int len, Zet16s* pMin, Zet16s* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_16s(const Zet16s* pSrc, int len, Zet16s* pMin, int* pMinIndx, Zet16s* pMax, int* pMaxIndx);
ZETAPI ZetStatus zetsMinMax_32u(const Zet32u* pSrc, int len, Zet32u* pMin, Zet32u* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_32u(const Zet32u* pSrc, int len, Zet32u* pMin, int* pMinIndx, Zet32u* pMax, int* pMaxIndx);
ZETAPI ZetStatus zetsMinMax_32s(const Zet32s* pSrc, int len, Zet32s* pMin, Zet32s* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_32s(const Zet32s* pSrc, int len, Zet32s* pMin, int* pMinIndx, Zet32s* pMax, int* pMaxIndx);
ZETAPI ZetStatus zetsMinMax_32f(const Zet32f* pSrc, int len, Zet32f* pMin, Zet32f* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_32f(const Zet32f* pSrc, int len, Zet32f* pMin, int* pMinIndx, Zet32f* pMax, int* pMaxIndx);
ZETAPI ZetStatus zetsMinMax_64f(const Zet64f* pSrc, int len, Zet64f* pMin, Zet64f* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_64f(const Zet64f* pSrc, int len, Zet64f* pMin, int* pMinIndx, Zet64f* pMax, int* pMaxIndx);
ZETAPI ZetStatus zetsMinMax_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMin, Zet32f* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_32f_L(const Zet32f* pSrc, long long len, Zet32f* pMin, long long* pMinIndx, Zet32f* pMax, long long* pMaxIndx);
ZETAPI ZetStatus zetsMinMax_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMin, Zet64f* pMax);
ZETAPI ZetStatus zetsMinMaxIndx_64f_L(const Zet64f* pSrc, long long len, Zet64f* pMin, long long* pMinIndx, Zet64f* pMax, long long* pMaxIndx);

/* Element-wise: pDst[i] = the processor's maximum (minimum) of (pSrc1[i],
 * pSrc2[i]), which is pSrc2[i] unless pSrc1[i] is strictly greater (smaller):
 * a NaN in either gives pSrc2[i]. _I forms: pSrcDst takes pSrc2's place. The
 * out-of-place forms and the 64f _I forms refuse only len == 0 (a negative
 * len does nothing); the other _I forms refuse len below 1. */
ZETAPI ZetStatus zetsMaxEvery_8u(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsMinEvery_8u(const Zet8u* pSrc1, const Zet8u* pSrc2, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsMaxEvery_16u(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsMinEvery_16u(const Zet16u* pSrc1, const Zet16u* pSrc2, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsMaxEvery_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMinEvery_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMaxEvery_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsMinEvery_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsMaxEvery_8u_I(const Zet8u* pSrc, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsMinEvery_8u_I(const Zet8u* pSrc, Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsMaxEvery_16u_I(const Zet16u* pSrc, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsMinEvery_16u_I(const Zet16u* pSrc, Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsMaxEvery_16s_I(const Zet16s* pSrc, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsMinEvery_16s_I(const Zet16s* pSrc, Zet16s* pSrcDst, int len);
ZETAPI ZetStatus zetsMaxEvery_32s_I(const Zet32s* pSrc, Zet32s* pSrcDst, int len);
ZETAPI ZetStatus zetsMinEvery_32s_I(const Zet32s* pSrc, Zet32s* pSrcDst, int len);
ZETAPI ZetStatus zetsMaxEvery_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsMinEvery_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsMaxEvery_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsMinEvery_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);

/* Order: for floating data the biased exponent of the largest magnitude minus
 * 126 (1022 for 64f), 0 for a zero vector (1.0 gives 1, 0.5 gives 0). NaN and
 * infinity count as 0 and give zetStsNonFiniteWarn; the invalid-operation
 * flag is cleared if it was set. For 16s and 32s, the number of significant
 * bits of the largest magnitude. The length is checked before the pointers. */
ZETAPI ZetStatus zetsMaxOrder_16s(const Zet16s* pSrc, int len, int* pOrder);
ZETAPI ZetStatus zetsMaxOrder_32s(const Zet32s* pSrc, int len, int* pOrder);
ZETAPI ZetStatus zetsMaxOrder_32f(const Zet32f* pSrc, int len, int* pOrder);
ZETAPI ZetStatus zetsMaxOrder_64f(const Zet64f* pSrc, int len, int* pOrder);

/* ---- Norms ----
 * Inf: the largest magnitude; L1: the sum of magnitudes; L2: the root of the
 * sum of squared magnitudes; L2Sqr: that sum. NormDiff applies the same to
 * pSrc1[i] - pSrc2[i]. 32f: L1 and L2 accumulate in binary32 in two 4-lane
 * sums over blocks of 8; Norm_L2_32f folds them and roots in binary64,
 * NormDiff_L2_32f folds and roots in binary32 (the two can differ in the last
 * bit). 64f and complex L1, L2: binary64 (complex magnitudes sqrt(re^2 + im^2)).
 * 16s: exact sums; _Sfs results follow the scale rule, except L2_16s32s_Sfs,
 * which divides (scale > 0) or multiplies the binary64 root by
 * (int)(1 << (|scale| & 31)) and truncates toward zero, saturating.
 * _L forms: pointers, then the length, in one pass. */
ZETAPI ZetStatus zetsNorm_Inf_16s32f(const Zet16s* pSrc, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNorm_Inf_16s32s_Sfs(const Zet16s* pSrc, int len, Zet32s* pNorm, int scale);
ZETAPI ZetStatus zetsNorm_Inf_32f(const Zet32f* pSrc, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNorm_Inf_32fc32f(const Zet32fc* pSrc, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNorm_Inf_64f(const Zet64f* pSrc, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_Inf_64fc64f(const Zet64fc* pSrc, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L1_16s32f(const Zet16s* pSrc, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNorm_L1_16s32s_Sfs(const Zet16s* pSrc, int len, Zet32s* pNorm, int scale);
ZETAPI ZetStatus zetsNorm_L1_16s64s_Sfs(const Zet16s* pSrc, int len, Zet64s* pNorm, int scale);
ZETAPI ZetStatus zetsNorm_L1_32f(const Zet32f* pSrc, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNorm_L1_32fc64f(const Zet32fc* pSrc, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L1_64f(const Zet64f* pSrc, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L1_64fc64f(const Zet64fc* pSrc, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L2_16s32f(const Zet16s* pSrc, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNorm_L2_16s32s_Sfs(const Zet16s* pSrc, int len, Zet32s* pNorm, int scale);
ZETAPI ZetStatus zetsNorm_L2_32f(const Zet32f* pSrc, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNorm_L2_32fc64f(const Zet32fc* pSrc, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L2_64f(const Zet64f* pSrc, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L2_64fc64f(const Zet64fc* pSrc, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L2Sqr_16s64s_Sfs(const Zet16s* pSrc, int len, Zet64s* pNorm, int scale);
ZETAPI ZetStatus zetsNorm_L2_32f_L(const Zet32f* pSrc, long long len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNorm_L2_32fc64f_L(const Zet32fc* pSrc, long long len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L2_64f_L(const Zet64f* pSrc, long long len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNorm_L2_64fc64f_L(const Zet64fc* pSrc, long long len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_Inf_16s32f(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNormDiff_Inf_16s32s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet32s* pNorm, int scale);
ZETAPI ZetStatus zetsNormDiff_Inf_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNormDiff_Inf_32fc32f(const Zet32fc* pSrc1, const Zet32fc* pSrc2, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNormDiff_Inf_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_Inf_64fc64f(const Zet64fc* pSrc1, const Zet64fc* pSrc2, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L1_16s32f(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L1_16s32s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet32s* pNorm, int scale);
ZETAPI ZetStatus zetsNormDiff_L1_16s64s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet64s* pNorm, int scale);
ZETAPI ZetStatus zetsNormDiff_L1_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L1_32fc64f(const Zet32fc* pSrc1, const Zet32fc* pSrc2, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L1_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L1_64fc64f(const Zet64fc* pSrc1, const Zet64fc* pSrc2, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L2_16s32f(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L2_16s32s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet32s* pNorm, int scale);
ZETAPI ZetStatus zetsNormDiff_L2_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, int len, Zet32f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L2_32fc64f(const Zet32fc* pSrc1, const Zet32fc* pSrc2, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L2_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L2_64fc64f(const Zet64fc* pSrc1, const Zet64fc* pSrc2, int len, Zet64f* pNorm);
ZETAPI ZetStatus zetsNormDiff_L2Sqr_16s64s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet64s* pNorm, int scale);

/* ---- Dot products ----
 * The sum of pSrc1[i] * pSrc2[i], no conjugation. DotProd_32f: blocks of 32
 * into eight 4-lane sums a0..a7 (fused), folded as
 * (a0 + a2 + (a4 + a6)) + (a1 + a3 + (a5 + a7)), then groups of 4 and single
 * elements by separate multiply and add: the result depends on len, not on
 * alignment. 64f and the binary64 results: products and sums in binary64.
 * 32fc and 32f32fc: binary32 sums. Integer forms are exact; 16s32s_Sfs limits
 * scale to -31..31. _L forms: pointers, then the length, in one pass. */
ZETAPI ZetStatus zetsDotProd_16s32f(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet32f* pDp);
ZETAPI ZetStatus zetsDotProd_16s64s(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet64s* pDp);
ZETAPI ZetStatus zetsDotProd_16s32s_Sfs(const Zet16s* pSrc1, const Zet16s* pSrc2, int len, Zet32s* pDp, int scale);
ZETAPI ZetStatus zetsDotProd_32s_Sfs(const Zet32s* pSrc1, const Zet32s* pSrc2, int len, Zet32s* pDp, int scale);
ZETAPI ZetStatus zetsDotProd_16s32s32s_Sfs(const Zet16s* pSrc1, const Zet32s* pSrc2, int len, Zet32s* pDp, int scale);
ZETAPI ZetStatus zetsDotProd_16sc64sc(const Zet16sc* pSrc1, const Zet16sc* pSrc2, int len, Zet64sc* pDp);
ZETAPI ZetStatus zetsDotProd_16s16sc64sc(const Zet16s* pSrc1, const Zet16sc* pSrc2, int len, Zet64sc* pDp);
ZETAPI ZetStatus zetsDotProd_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, int len, Zet32f* pDp);
ZETAPI ZetStatus zetsDotProd_32f64f(const Zet32f* pSrc1, const Zet32f* pSrc2, int len, Zet64f* pDp);
ZETAPI ZetStatus zetsDotProd_32fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, int len, Zet32fc* pDp);
ZETAPI ZetStatus zetsDotProd_32fc64fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, int len, Zet64fc* pDp);
ZETAPI ZetStatus zetsDotProd_32f32fc(const Zet32f* pSrc1, const Zet32fc* pSrc2, int len, Zet32fc* pDp);
ZETAPI ZetStatus zetsDotProd_32f32fc64fc(const Zet32f* pSrc1, const Zet32fc* pSrc2, int len, Zet64fc* pDp);
ZETAPI ZetStatus zetsDotProd_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, int len, Zet64f* pDp);
ZETAPI ZetStatus zetsDotProd_64fc(const Zet64fc* pSrc1, const Zet64fc* pSrc2, int len, Zet64fc* pDp);
ZETAPI ZetStatus zetsDotProd_64f64fc(const Zet64f* pSrc1, const Zet64fc* pSrc2, int len, Zet64fc* pDp);
ZETAPI ZetStatus zetsDotProd_32f64f_L(const Zet32f* pSrc1, const Zet32f* pSrc2, long long len, Zet64f* pDp);
ZETAPI ZetStatus zetsDotProd_32fc64fc_L(const Zet32fc* pSrc1, const Zet32fc* pSrc2, long long len, Zet64fc* pDp);
ZETAPI ZetStatus zetsDotProd_32f32fc64fc_L(const Zet32f* pSrc1, const Zet32fc* pSrc2, long long len, Zet64fc* pDp);
ZETAPI ZetStatus zetsDotProd_64f_L(const Zet64f* pSrc1, const Zet64f* pSrc2, long long len, Zet64f* pDp);
ZETAPI ZetStatus zetsDotProd_64fc_L(const Zet64fc* pSrc1, const Zet64fc* pSrc2, long long len, Zet64fc* pDp);
ZETAPI ZetStatus zetsDotProd_64f64fc_L(const Zet64f* pSrc1, const Zet64fc* pSrc2, long long len, Zet64fc* pDp);

/* ---- Counting and zero crossings ---- */

/* CountInRange: the number of elements with lowerBound <= x <= upperBound
 * (a NaN is never counted); lowerBound above upperBound gives zetStsRangeErr
 * after the pointer and length checks. */
ZETAPI ZetStatus zetsCountInRange_16s(const Zet16s* pSrc, int len, int* pCounts, Zet16s lowerBound, Zet16s upperBound);
ZETAPI ZetStatus zetsCountInRange_32s(const Zet32s* pSrc, int len, int* pCounts, Zet32s lowerBound, Zet32s upperBound);
ZETAPI ZetStatus zetsCountInRange_32f(const Zet32f* pSrc, int len, int* pCounts, Zet32f lowerBound, Zet32f upperBound);
ZETAPI ZetStatus zetsCountInRange_64f(const Zet64f* pSrc, int len, int* pCounts, Zet64f lowerBound, Zet64f upperBound);

/* ZeroCrossing: the number of crossings between neighbours x[i-1], x[i]
 * (a count, not a rate: divide by len - 1 for one). The mode word:
 *   zetZCR   a change between x < 0 and x >= 0 (so -0 and NaN are not below);
 *   zetZCXor a change of the sign bit (so -0 counts as negative);
 *   zetZCC   |sgn x[i] - sgn x[i-1]| / 2 with sgn in {-1, 0, +1}: a step
 *            onto or off an exact zero counts one half (NaN counts as 0).
 * For integers zetZCR and zetZCXor agree. Checks: pointers, len < 1, then a
 * mode outside the set gives zetStsBadModeErr. */
typedef int ZetZCType;
enum {
    zetZCR   = 0,
    zetZCXor = 1,
    zetZCC   = 2
};
ZETAPI ZetStatus zetsZeroCrossing_16s32f(const Zet16s* pSrc, int len, Zet32f* pValZCR, ZetZCType zcType);
ZETAPI ZetStatus zetsZeroCrossing_32f(const Zet32f* pSrc, int len, Zet32f* pValZCR, ZetZCType zcType);

/* ==== Complex and polar utilities, reordering ============================= */

/* ---- Magnitude, phase and polar form ---- */

/* Magnitude: |z| = sqrt(re^2 + im^2), at most 1 ulp from the correctly
 * rounded result over the whole range (no spurious overflow or underflow); an
 * infinite part gives +inf even beside a NaN, otherwise a NaN gives NaN.
 * Phase: atan2(im, re) in [-pi, pi] within 2 ulp, with C's signed zeros and
 * infinities: atan2(+-0, -0) = +-pi, atan2(+-0, +0) = +-0, two infinite parts
 * give +-pi/4 or +-3pi/4; a NaN gives NaN.
 * PowerSpectr: re^2 + im^2 as fma(re, re, im * im): im * im rounded, then one
 * fused multiply-add.
 * The _32f and _64f forms take the parts as two planes, pSrcRe and pSrcIm.
 * 16-bit sources are computed in binary64, where squares and sums are exact
 * and the root is correctly rounded (the phase is the 64f one), then rounded
 * to binary32 (16s32f, 16sc32f: magnitude and power correctly rounded) or by
 * the scale rule (_Sfs: the result, the phase in radians, times
 * 2^-scaleFactor, rounded to nearest even and saturated; the power exactly so). */
ZETAPI ZetStatus zetsMagnitude_32fc(const Zet32fc* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMagnitude_64fc(const Zet64fc* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsMagnitude_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMagnitude_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsMagnitude_16sc32f(const Zet16sc* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMagnitude_16s32f(const Zet16s* pSrcRe, const Zet16s* pSrcIm, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMagnitude_16sc_Sfs(const Zet16sc* pSrc, Zet16s* pDst, int len, int scaleFactor);
ZETAPI ZetStatus zetsMagnitude_16s_Sfs(const Zet16s* pSrcRe, const Zet16s* pSrcIm, Zet16s* pDst, int len, int scaleFactor);
ZETAPI ZetStatus zetsPhase_32fc(const Zet32fc* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsPhase_64fc(const Zet64fc* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsPhase_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsPhase_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsPhase_16sc32f(const Zet16sc* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsPhase_16s32f(const Zet16s* pSrcRe, const Zet16s* pSrcIm, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsPhase_16sc_Sfs(const Zet16sc* pSrc, Zet16s* pDst, int len, int scaleFactor);
ZETAPI ZetStatus zetsPhase_16s_Sfs(const Zet16s* pSrcRe, const Zet16s* pSrcIm, Zet16s* pDst, int len, int scaleFactor);
ZETAPI ZetStatus zetsPowerSpectr_32fc(const Zet32fc* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsPowerSpectr_64fc(const Zet64fc* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsPowerSpectr_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsPowerSpectr_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsPowerSpectr_16sc32f(const Zet16sc* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsPowerSpectr_16s32f(const Zet16s* pSrcRe, const Zet16s* pSrcIm, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsPowerSpectr_16sc_Sfs(const Zet16sc* pSrc, Zet16s* pDst, int len, int scaleFactor);
ZETAPI ZetStatus zetsPowerSpectr_16s_Sfs(const Zet16s* pSrcRe, const Zet16s* pSrcIm, Zet16s* pDst, int len, int scaleFactor);

/* CartToPolar: Magnitude and Phase in one pass, bit for bit the same results.
 * PolarToCart: pSrcMagn[i] * cos(pSrcPhase[i]) and pSrcMagn[i] * sin(pSrcPhase[i]),
 * each product rounded once from a sine and cosine carried beyond the working
 * precision: within 1 ulp for |phase| <= 2^20 pi, and from the C library's
 * sine and cosine (product rounded after them) for larger finite phases. A
 * phase that is not finite gives NaN; an infinite magnitude gives the signed
 * infinity (or NaN where the sine or cosine is 0). The 32f forms compute in
 * binary64 and round the results to binary32 (within 1 ulp at any phase). */
ZETAPI ZetStatus zetsCartToPolar_32fc(const Zet32fc* pSrc, Zet32f* pDstMagn, Zet32f* pDstPhase, int len);
ZETAPI ZetStatus zetsCartToPolar_64fc(const Zet64fc* pSrc, Zet64f* pDstMagn, Zet64f* pDstPhase, int len);
ZETAPI ZetStatus zetsCartToPolar_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstMagn, Zet32f* pDstPhase, int len);
ZETAPI ZetStatus zetsCartToPolar_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64f* pDstMagn, Zet64f* pDstPhase, int len);
ZETAPI ZetStatus zetsPolarToCart_32fc(const Zet32f* pSrcMagn, const Zet32f* pSrcPhase, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsPolarToCart_64fc(const Zet64f* pSrcMagn, const Zet64f* pSrcPhase, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsPolarToCart_32f(const Zet32f* pSrcMagn, const Zet32f* pSrcPhase, Zet32f* pDstRe, Zet32f* pDstIm, int len);
ZETAPI ZetStatus zetsPolarToCart_64f(const Zet64f* pSrcMagn, const Zet64f* pSrcPhase, Zet64f* pDstRe, Zet64f* pDstIm, int len);

/* ---- Complex parts and conjugates ---- */

/* Conj: (re, -im). Floating forms flip the sign bit of the imaginary part
 * (NaN payloads kept); 16sc negates with saturation, so -32768 gives 32767.
 * ConjFlip: dst[len-1-i] = conj(src[i]), src and dst must not overlap unless
 * equal. */
ZETAPI ZetStatus zetsConj_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len);
ZETAPI ZetStatus zetsConj_16sc_I(Zet16sc* pSrcDst, int len);
ZETAPI ZetStatus zetsConj_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsConj_32fc_I(Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsConj_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsConj_64fc_I(Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsConjFlip_16sc(const Zet16sc* pSrc, Zet16sc* pDst, int len);
ZETAPI ZetStatus zetsConjFlip_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsConjFlip_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len);

/* Real, Imag: one part of each element. CplxToReal: both parts, to two
 * vectors. RealToCplx: pairs (pSrcRe[i], pSrcIm[i]); either source may be
 * NULL and then reads as zeros (both NULL gives zetStsNullPtrErr). */
ZETAPI ZetStatus zetsReal_16sc(const Zet16sc* pSrc, Zet16s* pDstRe, int len);
ZETAPI ZetStatus zetsReal_32fc(const Zet32fc* pSrc, Zet32f* pDstRe, int len);
ZETAPI ZetStatus zetsReal_64fc(const Zet64fc* pSrc, Zet64f* pDstRe, int len);
ZETAPI ZetStatus zetsImag_16sc(const Zet16sc* pSrc, Zet16s* pDstIm, int len);
ZETAPI ZetStatus zetsImag_32fc(const Zet32fc* pSrc, Zet32f* pDstIm, int len);
ZETAPI ZetStatus zetsImag_64fc(const Zet64fc* pSrc, Zet64f* pDstIm, int len);
ZETAPI ZetStatus zetsCplxToReal_16sc(const Zet16sc* pSrc, Zet16s* pDstRe, Zet16s* pDstIm, int len);
ZETAPI ZetStatus zetsCplxToReal_32fc(const Zet32fc* pSrc, Zet32f* pDstRe, Zet32f* pDstIm, int len);
ZETAPI ZetStatus zetsCplxToReal_64fc(const Zet64fc* pSrc, Zet64f* pDstRe, Zet64f* pDstIm, int len);
ZETAPI ZetStatus zetsRealToCplx_16s(const Zet16s* pSrcRe, const Zet16s* pSrcIm, Zet16sc* pDst, int len);
ZETAPI ZetStatus zetsRealToCplx_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsRealToCplx_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64fc* pDst, int len);

/* ---- Reordering and byte order ---- */

/* Flip: dst[len-1-i] = src[i]; pSrc equal to pDst works as the _I form,
 * other overlaps are not allowed. */
ZETAPI ZetStatus zetsFlip_8u(const Zet8u* pSrc, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsFlip_8u_I(Zet8u* pSrcDst, int len);
ZETAPI ZetStatus zetsFlip_16u(const Zet16u* pSrc, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsFlip_16u_I(Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsFlip_32f(const Zet32f* pSrc, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsFlip_32f_I(Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsFlip_64f(const Zet64f* pSrc, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsFlip_64f_I(Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsFlip_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsFlip_32fc_I(Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsFlip_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsFlip_64fc_I(Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsFlip_32f_L(const Zet32f* pSrc, Zet32f* pDst, long long len);
ZETAPI ZetStatus zetsFlip_32f_I_L(Zet32f* pSrcDst, long long len);
ZETAPI ZetStatus zetsFlip_64f_L(const Zet64f* pSrc, Zet64f* pDst, long long len);
ZETAPI ZetStatus zetsFlip_64f_I_L(Zet64f* pSrcDst, long long len);
ZETAPI ZetStatus zetsFlip_32fc_L(const Zet32fc* pSrc, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsFlip_32fc_I_L(Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsFlip_64fc_L(const Zet64fc* pSrc, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsFlip_64fc_I_L(Zet64fc* pSrcDst, long long len);

/* SwapBytes: the byte order of each element reversed. The 24u form works on
 * len packed 3-byte elements (3 * len bytes) and has no in-place form other
 * than pSrc equal to pDst, which it allows. */
ZETAPI ZetStatus zetsSwapBytes_16u(const Zet16u* pSrc, Zet16u* pDst, int len);
ZETAPI ZetStatus zetsSwapBytes_16u_I(Zet16u* pSrcDst, int len);
ZETAPI ZetStatus zetsSwapBytes_24u(const Zet8u* pSrc, Zet8u* pDst, int len);
ZETAPI ZetStatus zetsSwapBytes_32u(const Zet32u* pSrc, Zet32u* pDst, int len);
ZETAPI ZetStatus zetsSwapBytes_32u_I(Zet32u* pSrcDst, int len);
ZETAPI ZetStatus zetsSwapBytes_64u(const Zet64u* pSrc, Zet64u* pDst, int len);
ZETAPI ZetStatus zetsSwapBytes_64u_I(Zet64u* pSrcDst, int len);

/* CopyBE_1u, CopyLE_1u: copy len bits of a bit string, starting srcBitOffset
 * bits into pSrc, to dstBitOffset bits into pDst; destination bits outside
 * the copied range keep their values. Bit i of a string is in byte i / 8, as
 * the bit of weight 2^(7 - i % 8) in BE (first bit most significant) and
 * 2^(i % 8) in LE. Offsets may be any value >= 0 (a negative one gives
 * zetStsBadArgErr after the pointer and length checks); len counts bits. The
 * strings must not overlap. */
ZETAPI ZetStatus zetsCopyBE_1u(const Zet8u* pSrc, int srcBitOffset, Zet8u* pDst, int dstBitOffset, int len);
ZETAPI ZetStatus zetsCopyLE_1u(const Zet8u* pSrc, int srcBitOffset, Zet8u* pDst, int dstBitOffset, int len);

/* ---- Normalisation and NaN replacement ---- */

/* Normalize: dst = (src - vSub) / vDiv, the difference rounded and then
 * divided (a true division, no reciprocal). Complex forms subtract a complex
 * value and divide both parts by the real vDiv. 16-bit forms: the exact
 * (x - vSub) * 2^-scaleFactor / vDiv rounded to nearest with ties to even
 * and saturated. Checks: pointers, len < 1, then vDiv equal to 0 gives
 * zetStsDivByZeroErr. */
ZETAPI ZetStatus zetsNormalize_32f(const Zet32f* pSrc, Zet32f* pDst, int len, Zet32f vSub, Zet32f vDiv);
ZETAPI ZetStatus zetsNormalize_32f_I(Zet32f* pSrcDst, int len, Zet32f vSub, Zet32f vDiv);
ZETAPI ZetStatus zetsNormalize_64f(const Zet64f* pSrc, Zet64f* pDst, int len, Zet64f vSub, Zet64f vDiv);
ZETAPI ZetStatus zetsNormalize_64f_I(Zet64f* pSrcDst, int len, Zet64f vSub, Zet64f vDiv);
ZETAPI ZetStatus zetsNormalize_32fc(const Zet32fc* pSrc, Zet32fc* pDst, int len, Zet32fc vSub, Zet32f vDiv);
ZETAPI ZetStatus zetsNormalize_32fc_I(Zet32fc* pSrcDst, int len, Zet32fc vSub, Zet32f vDiv);
ZETAPI ZetStatus zetsNormalize_64fc(const Zet64fc* pSrc, Zet64fc* pDst, int len, Zet64fc vSub, Zet64f vDiv);
ZETAPI ZetStatus zetsNormalize_64fc_I(Zet64fc* pSrcDst, int len, Zet64fc vSub, Zet64f vDiv);
ZETAPI ZetStatus zetsNormalize_16s_Sfs(const Zet16s* pSrc, Zet16s* pDst, int len, Zet16s vSub, int vDiv, int scaleFactor);
ZETAPI ZetStatus zetsNormalize_16s_ISfs(Zet16s* pSrcDst, int len, Zet16s vSub, int vDiv, int scaleFactor);
ZETAPI ZetStatus zetsNormalize_16sc_Sfs(const Zet16sc* pSrc, Zet16sc* pDst, int len, Zet16sc vSub, int vDiv, int scaleFactor);
ZETAPI ZetStatus zetsNormalize_16sc_ISfs(Zet16sc* pSrcDst, int len, Zet16sc vSub, int vDiv, int scaleFactor);

/* ReplaceNAN: every NaN (quiet or signalling, any sign) replaced by value. */
ZETAPI ZetStatus zetsReplaceNAN_32f_I(Zet32f* pSrcDst, int len, Zet32f value);
ZETAPI ZetStatus zetsReplaceNAN_64f_I(Zet64f* pSrcDst, int len, Zet64f value);

/* ==== Fourier transforms ================================================= */

/* ---- Power-of-two FFT ----
 * Protocol: GetSize gives the byte counts of the transform object, the init
 * scratch and the work buffer; Init lays the object into the caller's buffer
 * at its first 64-byte boundary (keep the pointer Init returns); compute
 * operations take that object and a work buffer of the given size (raised
 * internally to a 64-byte boundary). Nothing is allocated by the library.
 * `flag` is one of ZET_SCALE_*; `hint` is accepted and not interpreted.
 * Orders: 0..28 single, 0..27 double. The object holds absolute pointers: it
 * cannot be copied. Any number of threads may share one object, each with its
 * own work buffer. */
ZETAPI ZetStatus zetsFFTGetSize_C_32fc(int order, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsFFTGetSize_C_32f(int order, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsFFTGetSize_C_64fc(int order, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsFFTGetSize_C_64f(int order, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsFFTInit_C_32fc(ZetsFFTSpec_C_32fc** ppSpec, int order, int flag, ZetHint hint, Zet8u* pSpecBuffer, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsFFTInit_C_32f(ZetsFFTSpec_C_32f** ppSpec, int order, int flag, ZetHint hint, Zet8u* pSpecBuffer, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsFFTInit_C_64fc(ZetsFFTSpec_C_64fc** ppSpec, int order, int flag, ZetHint hint, Zet8u* pSpecBuffer, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsFFTInit_C_64f(ZetsFFTSpec_C_64f** ppSpec, int order, int flag, ZetHint hint, Zet8u* pSpecBuffer, Zet8u* pInitBuffer);
/* Forward: X[k] = sum x[n] exp(-2 pi i nk/N); inverse with +i; each times its
 * scale factor. The _I forms work in place. Split forms take real and
 * imaginary parts in separate arrays. */
ZETAPI ZetStatus zetsFFTFwd_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst, const ZetsFFTSpec_C_32fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst, const ZetsFFTSpec_C_32fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_CToC_32fc_I(Zet32fc* pSrcDst, const ZetsFFTSpec_C_32fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_32fc_I(Zet32fc* pSrcDst, const ZetsFFTSpec_C_32fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe, Zet32f* pDstIm, const ZetsFFTSpec_C_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe, Zet32f* pDstIm, const ZetsFFTSpec_C_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_CToC_32f_I(Zet32f* pSrcDstRe, Zet32f* pSrcDstIm, const ZetsFFTSpec_C_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_32f_I(Zet32f* pSrcDstRe, Zet32f* pSrcDstIm, const ZetsFFTSpec_C_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_CToC_64fc(const Zet64fc* pSrc, Zet64fc* pDst, const ZetsFFTSpec_C_64fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_64fc(const Zet64fc* pSrc, Zet64fc* pDst, const ZetsFFTSpec_C_64fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_CToC_64fc_I(Zet64fc* pSrcDst, const ZetsFFTSpec_C_64fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_64fc_I(Zet64fc* pSrcDst, const ZetsFFTSpec_C_64fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_CToC_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64f* pDstRe, Zet64f* pDstIm, const ZetsFFTSpec_C_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64f* pDstRe, Zet64f* pDstIm, const ZetsFFTSpec_C_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_CToC_64f_I(Zet64f* pSrcDstRe, Zet64f* pSrcDstIm, const ZetsFFTSpec_C_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_64f_I(Zet64f* pSrcDstRe, Zet64f* pSrcDstIm, const ZetsFFTSpec_C_64f* pSpec, Zet8u* pWork);

/* ---- Real FFT (CCS, Pack and Perm layouts) ----
 * The transform of N = 2^order real samples, computed as a complex transform
 * of N/2 points plus a recombination. The spectrum X[k] = R[k] + i*I[k] is
 * conjugate-symmetric, so half of it is stored, in one of three layouts:
 *   CCS:  R0, 0, R1, I1, ..., R(N/2-1), I(N/2-1), R(N/2), 0   (N + 2 reals)
 *   Pack: R0, R1, I1, ..., R(N/2-1), I(N/2-1), R(N/2)         (N reals)
 *   Perm: R0, R(N/2), R1, I1, ..., R(N/2-1), I(N/2-1)         (N reals)
 * (N = 1: R0 alone, CCS R0, 0.) An in-place CCS forward transform needs room
 * for N + 2 reals. The protocol is that of the complex FFT: GetSize, Init
 * (orders up to 28 single, 27 double), then any number of calls with a work
 * buffer of the size given. A scaled forward transform scales before the
 * recombination, an inverse after its complex pass. */
ZETAPI ZetStatus zetsFFTGetSize_R_32f(int order, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsFFTGetSize_R_64f(int order, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsFFTInit_R_32f(ZetsFFTSpec_R_32f** ppSpec, int order, int flag, ZetHint hint, Zet8u* pSpecBuffer, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsFFTInit_R_64f(ZetsFFTSpec_R_64f** ppSpec, int order, int flag, ZetHint hint, Zet8u* pSpecBuffer, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsFFTFwd_RToCCS_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToCCS_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CCSToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CCSToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToCCS_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToCCS_64f_I(Zet64f* pSrcDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CCSToR_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CCSToR_64f_I(Zet64f* pSrcDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToPack_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToPack_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_PackToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_PackToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToPack_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToPack_64f_I(Zet64f* pSrcDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_PackToR_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_PackToR_64f_I(Zet64f* pSrcDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToPerm_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToPerm_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_PermToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_PermToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToPerm_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTFwd_RToPerm_64f_I(Zet64f* pSrcDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_PermToR_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_PermToR_64f_I(Zet64f* pSrcDst, const ZetsFFTSpec_R_64f* pSpec, Zet8u* pWork);

/* ---- Spectrum layouts: expansion and products ----
 * A real transform of len samples keeps half of its conjugate-symmetric
 * spectrum X[k] = R[k] + i I[k] as reals, in one of three layouts:
 *   CCS   R0, 0, R1, I1, ..., R(len/2), 0         len + 2 reals (odd len: len + 1,
 *                                                 ending in the last pair)
 *   Pack  R0, R1, I1, ..., R(len/2)               len reals (odd len: ends in a pair)
 *   Perm  R0, R(len/2), R1, I1, ...               len reals (odd len: as Pack)
 * Conj expands a packed spectrum (reals) into all len complex values, the
 * upper half as mirrored conjugates; the zero imaginary parts it writes are
 * +0. The _I forms take the packed input at the front of the complex array
 * and expand it in place, back to front. The 64-bit Conj forms check the
 * pointers before the length, as the others do. */
ZETAPI ZetStatus zetsConjCcs_32fc(const Zet32f* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsConjCcs_32fc_I(Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsConjCcs_32fc_L(const Zet32f* pSrc, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsConjCcs_32fc_I_L(Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsConjCcs_64fc(const Zet64f* pSrc, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsConjCcs_64fc_I(Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsConjCcs_64fc_L(const Zet64f* pSrc, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsConjCcs_64fc_I_L(Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsConjPack_32fc(const Zet32f* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsConjPack_32fc_I(Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsConjPack_32fc_L(const Zet32f* pSrc, Zet32fc* pDst, long long len);
ZETAPI ZetStatus zetsConjPack_32fc_I_L(Zet32fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsConjPack_64fc(const Zet64f* pSrc, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsConjPack_64fc_I(Zet64fc* pSrcDst, int len);
ZETAPI ZetStatus zetsConjPack_64fc_L(const Zet64f* pSrc, Zet64fc* pDst, long long len);
ZETAPI ZetStatus zetsConjPack_64fc_I_L(Zet64fc* pSrcDst, long long len);
ZETAPI ZetStatus zetsConjPerm_32fc(const Zet32f* pSrc, Zet32fc* pDst, int len);
ZETAPI ZetStatus zetsConjPerm_32fc_I(Zet32fc* pSrcDst, int len);
ZETAPI ZetStatus zetsConjPerm_64fc(const Zet64f* pSrc, Zet64fc* pDst, int len);
ZETAPI ZetStatus zetsConjPerm_64fc_I(Zet64fc* pSrcDst, int len);
/* Products of two spectra in Pack or Perm layout (len reals each): lanes that
 * hold a lone real multiply as reals, pairs as complex values with the
 * rounding of zetsMul_32fc (a from src1, b from src2). _I: srcDst = srcDst * src.
 * A call whose destination equals a source runs as the _I form on the other
 * source. MulPackConj_I: srcDst[k] = src[k] * conj(srcDst[k]), the array it
 * writes being the conjugated one. */
ZETAPI ZetStatus zetsMulPack_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMulPack_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsMulPack_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsMulPack_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsMulPerm_32f(const Zet32f* pSrc1, const Zet32f* pSrc2, Zet32f* pDst, int len);
ZETAPI ZetStatus zetsMulPerm_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsMulPerm_64f(const Zet64f* pSrc1, const Zet64f* pSrc2, Zet64f* pDst, int len);
ZETAPI ZetStatus zetsMulPerm_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);
ZETAPI ZetStatus zetsMulPackConj_32f_I(const Zet32f* pSrc, Zet32f* pSrcDst, int len);
ZETAPI ZetStatus zetsMulPackConj_64f_I(const Zet64f* pSrc, Zet64f* pSrcDst, int len);

/* ---- Arbitrary-length DFT ----
 * Any length from 1: up to 0x7FFFFFF single and 0x3FFFFFF double for lengths
 * that are not powers of two (powers of two up to the FFT's orders).
 * Protocol: GetSize gives the byte counts of the object buffer, the init
 * scratch (needed during Init only) and the work buffer; Init lays the
 * transform object at the buffer's first 64-byte boundary. Unlike the FFT,
 * the caller passes the same (unaligned) object buffer to every call. `flag`
 * is one of ZET_SCALE_*, applied as the FFT does; `hint` is accepted and not
 * interpreted. Forward: X[k] = sum x[n] exp(-2 pi i nk/N); inverse with +i.
 * pSrc may equal pDst. Real forms: RToCCS writes N + 2 reals (N + 1 for odd
 * N), RToPack and RToPerm N reals, in the layouts of the real FFT; the
 * inverse forms read the same layouts. */
ZETAPI ZetStatus zetsDFTGetSize_C_32fc(int length, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDFTGetSize_C_32f(int length, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDFTGetSize_C_64fc(int length, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDFTGetSize_C_64f(int length, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDFTGetSize_R_32f(int length, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDFTGetSize_R_64f(int length, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDFTInit_C_32fc(int length, int flag, ZetHint hint, ZetsDFTSpec_C_32fc* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDFTInit_C_32f(int length, int flag, ZetHint hint, ZetsDFTSpec_C_32f* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDFTInit_C_64fc(int length, int flag, ZetHint hint, ZetsDFTSpec_C_64fc* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDFTInit_C_64f(int length, int flag, ZetHint hint, ZetsDFTSpec_C_64f* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDFTInit_R_32f(int length, int flag, ZetHint hint, ZetsDFTSpec_R_32f* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDFTInit_R_64f(int length, int flag, ZetHint hint, ZetsDFTSpec_R_64f* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDFTFwd_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst, const ZetsDFTSpec_C_32fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst, const ZetsDFTSpec_C_32fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe, Zet32f* pDstIm, const ZetsDFTSpec_C_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe, Zet32f* pDstIm, const ZetsDFTSpec_C_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_CToC_64fc(const Zet64fc* pSrc, Zet64fc* pDst, const ZetsDFTSpec_C_64fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_CToC_64fc(const Zet64fc* pSrc, Zet64fc* pDst, const ZetsDFTSpec_C_64fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_CToC_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64f* pDstRe, Zet64f* pDstIm, const ZetsDFTSpec_C_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_CToC_64f(const Zet64f* pSrcRe, const Zet64f* pSrcIm, Zet64f* pDstRe, Zet64f* pDstIm, const ZetsDFTSpec_C_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_RToCCS_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_RToPack_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_RToPerm_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_CCSToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_PackToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_PermToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDFTSpec_R_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_RToCCS_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsDFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_RToPack_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsDFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_RToPerm_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsDFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_CCSToR_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsDFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_PackToR_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsDFTSpec_R_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_PermToR_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsDFTSpec_R_64f* pSpec, Zet8u* pWork);

/* ---- Half-precision transforms ----
 * The Zet16fc FFT has no kernels of its own: it widens the data into the work
 * buffer, runs the single-precision FFT there and rounds the result back to
 * nearest even. GetSize gives the C_32fc sizes with 20 bytes more spec and
 * 8 << order bytes more work; the flag is one of ZET_SCALE_*. Orders up to 27:
 * at 28 the work size passes what an int holds (zetStsLengthLimitErr).
 * The object lies at the very start of the object buffer (no alignment of its
 * own). pSrc may equal pDst. Thread state: zetsFFTInit_C_16fc, once its arguments passed the
 * checks, turns flush-to-zero and denormals-are-zero on for the calling
 * thread and leaves them on (even if building the inner transform fails):
 * later floating-point work of that thread, inside the library or not, treats
 * single-precision denormals as zero. No other transform touches it.
 * The Direct forms sum the DFT term by term in single precision, with no
 * object and no scaling (pSrc may equal pDst), in a work buffer of at least
 * 16 * length + 32 bytes (NULL gives zetStsNullPtrErr after the length
 * check), for the lengths
 * 4, 8, 12, 16, 24, 32, 36, 48, 60, 64, 72, 96, 108, 120, 128, 144, 180, 192,
 * 216, 240, 256, 288, 300, 324, 360, 384, 432, 480, 512, 540, 576, 600, 648,
 * 720, 768, 864, 900, 960, 972, 1024, 1080, 1152, 1200, 1296, 1440, 1500,
 * 1536, 1620, 1728, 1800, 1920, 1944, 2048, 2160, 2304, 2400, 2592, 2700,
 * 2880, 2916, 3000, 3072, 3240, 4096; any other gives zetStsSizeErr. */
ZETAPI ZetStatus zetsFFTGetSize_C_16fc(int order, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsFFTInit_C_16fc(ZetsFFTSpec_C_16fc** ppSpec, int order, int flag, ZetHint hint, Zet8u* pSpecBuffer, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsFFTFwd_CToC_16fc(const Zet16fc* pSrc, Zet16fc* pDst, const ZetsFFTSpec_C_16fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsFFTInv_CToC_16fc(const Zet16fc* pSrc, Zet16fc* pDst, const ZetsFFTSpec_C_16fc* pSpec, Zet8u* pWork);
/* The half-precision DFT of any length: the single-precision DFT between a
 * widening and a narrowing in the work buffer (GetSize adds 48 bytes to the
 * object and 16 bytes per value to the work). The object lies at the start of
 * the caller's buffer, which is passed again on every call. */
ZETAPI ZetStatus zetsDFTGetSize_C_16fc(int length, int flag, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDFTInit_C_16fc(int length, int flag, ZetHint hint, ZetsDFTSpec_C_16fc* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDFTFwd_CToC_16fc(const Zet16fc* pSrc, Zet16fc* pDst, const ZetsDFTSpec_C_16fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_CToC_16fc(const Zet16fc* pSrc, Zet16fc* pDst, const ZetsDFTSpec_C_16fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTFwd_Direct_CToC_16fc(const Zet16fc* pSrc, Zet16fc* pDst, int length, Zet8u* pWork);
ZETAPI ZetStatus zetsDFTInv_Direct_CToC_16fc(const Zet16fc* pSrc, Zet16fc* pDst, int length, Zet8u* pWork);

/* ---- Hilbert transform ----
 * The analytic signal x + i*H(x) of a real sequence of any length: a real
 * DFT, the positive frequencies doubled and the negative ones zeroed, an
 * inverse complex DFT. GetSize gives the object and work sizes; Init takes a
 * scratch buffer of at least the work size and the object buffer, which is
 * passed again on every call; every call needs the work buffer, even for
 * lengths 1 and 2, which are copied with zero imaginary parts. */
ZETAPI ZetStatus zetsHilbertGetSize_32f32fc(int length, ZetHint hint, int* pSpecSize, int* pWorkSize);
ZETAPI ZetStatus zetsHilbertGetSize_64f64fc(int length, ZetHint hint, int* pSpecSize, int* pWorkSize);
ZETAPI ZetStatus zetsHilbertInit_32f32fc(int length, ZetHint hint, ZetsHilbertSpec_32f32fc* pSpec, Zet8u* pBuffer);
ZETAPI ZetStatus zetsHilbertInit_64f64fc(int length, ZetHint hint, ZetsHilbertSpec_64f64fc* pSpec, Zet8u* pBuffer);
ZETAPI ZetStatus zetsHilbert_32f32fc(const Zet32f* pSrc, Zet32fc* pDst, const ZetsHilbertSpec_32f32fc* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsHilbert_64f64fc(const Zet64f* pSrc, Zet64fc* pDst, const ZetsHilbertSpec_64f64fc* pSpec, Zet8u* pWork);

/* ---- Discrete cosine transform ----
 * The orthonormal DCT-II (Fwd) and its inverse, the DCT-III (Inv), of any
 * length N >= 1:
 *   Fwd: y[k] = s(k) * sum_{n<N} x[n] cos(pi k (2n + 1) / 2N)
 *   Inv: x[n] = sum_{k<N} s(k) y[k] cos(pi k (2n + 1) / 2N)
 * with s(0) = sqrt(1/N) and s(k) = sqrt(2/N), so that Inv undoes Fwd and both
 * keep the energy (FFTW's unnormalised REDFT10 is 2/s(k) times Fwd). Built on
 * the real DFT of length N. Protocol as for the DFT: GetSize gives the object,
 * init scratch and work sizes; Init lays the object at the first 64-byte
 * boundary of the buffer, which the caller passes again on every call; every
 * call needs a work buffer of the size given. _I forms work in place. */
ZETAPI ZetStatus zetsDCTFwdGetSize_32f(int length, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDCTInvGetSize_32f(int length, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDCTFwdGetSize_64f(int length, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDCTInvGetSize_64f(int length, ZetHint hint, int* pSpecSize, int* pInitSize, int* pWorkSize);
ZETAPI ZetStatus zetsDCTFwdInit_32f(int length, ZetHint hint, ZetsDCTFwdSpec_32f* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDCTInvInit_32f(int length, ZetHint hint, ZetsDCTInvSpec_32f* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDCTFwdInit_64f(int length, ZetHint hint, ZetsDCTFwdSpec_64f* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDCTInvInit_64f(int length, ZetHint hint, ZetsDCTInvSpec_64f* pSpec, Zet8u* pInitBuffer);
ZETAPI ZetStatus zetsDCTFwd_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDCTFwdSpec_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDCTFwd_32f_I(Zet32f* pSrcDst, const ZetsDCTFwdSpec_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDCTFwd_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsDCTFwdSpec_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDCTFwd_64f_I(Zet64f* pSrcDst, const ZetsDCTFwdSpec_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDCTInv_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsDCTInvSpec_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDCTInv_32f_I(Zet32f* pSrcDst, const ZetsDCTInvSpec_32f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDCTInv_64f(const Zet64f* pSrc, Zet64f* pDst, const ZetsDCTInvSpec_64f* pSpec, Zet8u* pWork);
ZETAPI ZetStatus zetsDCTInv_64f_I(Zet64f* pSrcDst, const ZetsDCTInvSpec_64f* pSpec, Zet8u* pWork);

#ifdef __cplusplus
}
#endif

#endif /* ZETSP_H */
