// The largest orders, 25 to 28 single and 25 to 27 double: gigabytes per transform, so they run apart from the main
// suite (ctest -L long).
#include "kit.hpp"

namespace tkit {
namespace {

class Huge : public ::testing::TestWithParam<int> {};
TEST_P(Huge, Properties) {
    for (const char* name : {"FFT_C_32fc", "FFT_C_32f", "FFT_C_64fc", "FFT_C_64f"})
        if (GetParam() <= (form(name).dbl() ? 27 : 28)) checkProperties(form(name), GetParam(), kFlags[GetParam() % 4]);
}
INSTANTIATE_TEST_SUITE_P(FFT, Huge, ::testing::Range(25, 29));

}  // namespace
}  // namespace tkit
