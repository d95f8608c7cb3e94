/* The public headers as a strict C99 client sees them. */
#include <stdio.h>
#include <string.h>

#include "zetcore.h"
#include "zetsp.h"

#define CHECK(cond)                                              \
    do {                                                         \
        if (!(cond)) {                                           \
            fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #cond); \
            return 1;                                            \
        }                                                        \
    } while (0)

int main(void) {
    Zet32fc c = {1.0f, -2.0f};
    Zet32fc* v = zetsMalloc_32fc(4);
    Zet32f a[3] = {1.0f, 2.0f, 3.0f}, b[3] = {0.5f, 0.5f, -4.0f}, d[3];
    const ZetLibVersion* ver = zetsGetLibVersion();

    CHECK(sizeof(Zet16sc) == 4 && sizeof(Zet32fc) == 8 && sizeof(Zet64fc) == 16 && sizeof(Zet64sc) == 16);
    CHECK(sizeof(ZetStatus) == 4 && zetStsNullPtrErr == -8 && zetStsDivByZeroWarn == 2);
    CHECK(ZET_SCALE_NONE == 8 && zetDt64fc == 20 && zetRoundNearestAway == 2);
    CHECK(strcmp(ver->name, "zetSP AVX2 (r7)") == 0);
    CHECK(v != NULL);
    CHECK(zetsSet_32fc(c, v, 4) == zetStsOk);
    CHECK(v[3].re == 1.0f && v[3].im == -2.0f);
    zetsFree(v);
    CHECK(zetsAdd_32f(a, b, d, 3) == zetStsOk);
    CHECK(d[0] == 1.5f && d[2] == -1.0f);
    CHECK(zetsAbs_32f(d, d, 3) == zetStsOk && d[2] == 1.0f);
    CHECK(zetsAdd_32f(a, NULL, d, 0) == zetStsNullPtrErr);
    CHECK(zetAlignPtr((void*)0x41, 64) == (void*)0x80);
    printf("C99 client ok\n");
    return 0;
}
