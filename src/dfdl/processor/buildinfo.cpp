#include <dfdl/dfdl.h>

namespace {

constexpr int VERSION[] = {1, 1, 2, 0};  // version, release, modification, fix

}  // namespace

const char* DFDL_getBuildVersion(void) { return "1.1.2.0"; }
const char* DFDL_getBuildStream(void) { return "dfdl112"; }
const char* DFDL_getBuildID(void) { return "20160509-1143"; }
const char* DFDL_getBuildPlatform(void) { return "linux_x86"; }
const char* DFDL_getBuildType(void) { return "production"; }
int DFDL_getBuildBits(void) { return 64; }

void DFDL_getBuildVRMF(int* version, int* release, int* modification, int* fix) {
    *version = VERSION[0];
    *release = VERSION[1];
    *modification = VERSION[2];
    *fix = VERSION[3];
}
