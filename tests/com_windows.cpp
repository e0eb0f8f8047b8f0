#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

namespace {

/// Script hosts have COM ready on their thread; so has this program, for the platform's own objects.
class ComReady : public ::testing::Environment {
public:
    void SetUp() override { ASSERT_TRUE(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))); }
    void TearDown() override { ::CoUninitialize(); }
};

const auto* const comReady = ::testing::AddGlobalTestEnvironment(new ComReady); // GoogleTest owns it

} // namespace
