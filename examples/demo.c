/* A first look at zetSP: the version record, library-owned buffers, and a
 * few vector operations with their statuses. */
#include <math.h>
#include <stdio.h>

#include "zetsp.h"

static int report(const char* what, ZetStatus st) {
    printf("  %-34s status %d%s\n", what, st, st < 0 ? " (error)" : st > 0 ? " (warning)" : "");
    return st < 0;
}

int main(void) {
    const ZetLibVersion* v = zetsGetLibVersion();
    printf("%s, version %s, built %s (target %s)\n", v->name, v->version, v->buildDate, v->targetCpu);

    enum { N = 8 };
    Zet32f* a = zetsMalloc_32f(N);
    Zet32f* b = zetsMalloc_32f(N);
    Zet32f* sum = zetsMalloc_32f(N);
    if (!a || !b || !sum) return 1;

    int failed = 0;
    printf("vector work on %d samples:\n", N);
    failed |= report("zetsSet_32f(0.25, b)", zetsSet_32f(0.25f, b, N));
    for (int i = 0; i < N; ++i) a[i] = (Zet32f)(i - 4);
    failed |= report("zetsAdd_32f(a, b, sum)", zetsAdd_32f(a, b, sum, N));
    failed |= report("zetsAbs_32f(sum, sum)", zetsAbs_32f(sum, sum, N));
    printf("  |a + 0.25| =");
    for (int i = 0; i < N; ++i) printf(" %.2f", sum[i]);
    printf("\n");

    failed |= report("zetsMove_32f(a, a + 1), overlapping", zetsMove_32f(a, a + 1, N - 1));
    printf("  a shifted up by one =");
    for (int i = 0; i < N; ++i) printf(" %.0f", a[i]);
    printf("\n");

    {
        /* Fixed point: the exact sum scaled by 2^-1, ties to even, saturated. */
        const Zet16s x[4] = {1, 3, 32767, -32768}, y[4] = {0, 0, 32767, -1};
        Zet16s q[4];
        failed |= report("zetsAdd_16s_Sfs(x, y, q, scale 1)", zetsAdd_16s_Sfs(x, y, q, 4, 1));
        printf("  (x + y) / 2 = %d %d %d %d\n", q[0], q[1], q[2], q[3]);
        /* A zero divisor is a warning: every element is still written. */
        const Zet32f num[3] = {1.0f, 2.0f, 3.0f}, den[3] = {2.0f, 0.0f, 4.0f};
        Zet32f r[3];
        report("zetsDiv_32f(den, num, r)", zetsDiv_32f(den, num, r, 3));
        printf("  num / den = %g %g %g\n", r[0], r[1], r[2]);
    }

    {
        /* A 16-point transform of a tone at bin 3: all its energy lands there. */
        enum { ORDER = 4, LEN = 1 << ORDER };
        int specSize, initSize, workSize;
        failed |= report("zetsFFTGetSize_C_32fc(order 4, ZET_SCALE_INV)",
                         zetsFFTGetSize_C_32fc(ORDER, ZET_SCALE_INV, zetHintAccurate, &specSize, &initSize, &workSize));
        Zet8u* specBuf = zetsMalloc_8u(specSize);
        Zet8u* work = zetsMalloc_8u(workSize > 0 ? workSize : 1);
        ZetsFFTSpec_C_32fc* spec = NULL;
        failed |= report("zetsFFTInit_C_32fc", zetsFFTInit_C_32fc(&spec, ORDER, ZET_SCALE_INV, zetHintAccurate, specBuf, NULL));
        Zet32fc x[LEN], X[LEN];
        for (int n = 0; n < LEN; ++n) {
            x[n].re = (Zet32f)cos(2.0 * 3.141592653589793 * 3 * n / LEN);
            x[n].im = (Zet32f)sin(2.0 * 3.141592653589793 * 3 * n / LEN);
        }
        failed |= report("zetsFFTFwd_CToC_32fc", zetsFFTFwd_CToC_32fc(x, X, spec, work));
        printf("  |X[k]| =");
        for (int k = 0; k < LEN; ++k) printf(" %.1f", sqrt(X[k].re * X[k].re + X[k].im * X[k].im));
        printf("\n");
        failed |= report("zetsFFTInv_CToC_32fc_I (scaled by 1/N)", zetsFFTInv_CToC_32fc_I(X, spec, work));
        printf("  x[1] back = %.4f %+.4fi (was %.4f %+.4fi)\n", X[1].re, X[1].im, x[1].re, x[1].im);
        zetsFree(specBuf);
        zetsFree(work);
    }

    printf("statuses are the contract: a length of 0 is an error, a null pointer wins over it:\n");
    report("zetsAdd_32f(..., len 0)", zetsAdd_32f(a, b, sum, 0));
    report("zetsAdd_32f(NULL, ..., len 0)", zetsAdd_32f(NULL, b, sum, 0));

    zetsFree(a);
    zetsFree(b);
    zetsFree(sum);
    return failed;
}
