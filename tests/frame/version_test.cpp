#include <gtest/gtest.h>

#include <cstring>

#include "zetsp.h"

TEST(Version, RecordIsConstantAndExact) {
    const ZetLibVersion* v = zetsGetLibVersion();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v, zetsGetLibVersion());
    EXPECT_EQ(v->major, 2026);
    EXPECT_EQ(v->minor, 0);
    EXPECT_EQ(v->majorBuild, 0);
    EXPECT_EQ(static_cast<unsigned>(v->build), 0xA7AD6EBCu);
    EXPECT_EQ(std::memcmp(v->targetCpu, "r7\0\0", 4), 0);
    EXPECT_STREQ(v->name, "zetSP AVX2 (r7)");
    EXPECT_STREQ(v->version, "2026.0.0 (r0xa7ad6ebc)");
    EXPECT_STREQ(v->buildDate, "Mar 27 2026");
}
