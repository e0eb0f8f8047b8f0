#include <chrono>
#include <gtest/gtest.h>
#include <norvakavlor/platform/message_box.h>
#include <norvakavlor/platform/registry.h>
#include <norvakavlor/platform/settings.h>
#include <norvakavlor/platform/xml_parser.h>
#include <string>
#include <thread>
#include <windows.h>

#include <objbase.h>

/// What the platform's own stores hold and its hosts do.
namespace norvakavlor::platform {
namespace {

/// Script hosts have COM ready on their thread; so has this program, for the platform's own objects.
class ComReady : public ::testing::Environment {
public:
    void SetUp() override { ASSERT_TRUE(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))); }
    void TearDown() override { ::CoUninitialize(); }
};
const auto* const comReady = ::testing::AddGlobalTestEnvironment(new ComReady); // GoogleTest owns it

constexpr uint32_t kCurrentUser = 0x80000001;

TEST(RegistryWindows, OnlyPlainStringsAreRead) {
    const char* const path = "Software\\Norvalis\\Kavlor\\Own tests of kinds";
    HKEY key = nullptr;
    ASSERT_EQ(::RegCreateKeyA(HKEY_CURRENT_USER, path, &key), ERROR_SUCCESS);
    const struct {
        const char* name;
        DWORD kind;
        std::string bytes;
        const char* read;
    } cases[] = {{"plain", REG_SZ, std::string("text\0", 5), "text"},
                 {"without an end", REG_SZ, "text", "text"},
                 {"behind the end", REG_SZ, std::string("text\0more\0", 10), "text"},
                 {"western", REG_SZ, std::string("\xE9\x80\0", 3), "\u00E9\u20AC"},
                 {"nothing", REG_SZ, "", ""},
                 {"number", REG_DWORD, std::string("1\0\0\0", 4), ""},
                 {"expanded", REG_EXPAND_SZ, std::string("%PATH%\0", 7), ""},
                 {"list", REG_MULTI_SZ, std::string("a\0b\0\0", 5), ""},
                 {"bytes", REG_BINARY, "text", ""}};
    for (const auto& c : cases) {
        ::RegSetValueExA(key, c.name, 0, c.kind, reinterpret_cast<const BYTE*>(c.bytes.data()),
                         static_cast<DWORD>(c.bytes.size()));
        EXPECT_EQ(readRegistry(kCurrentUser, path, c.name), c.read) << c.name;
    }
    ::RegCloseKey(key);
    ::RegDeleteKeyA(HKEY_CURRENT_USER, path);
}

TEST(SettingsWindows, LongAndForeignTextsComeBack) {
    for (const std::string& value : {std::string(5000, 'x'), std::string("\u4E2D\u6587 \U0001F600")}) {
        writeSetting("Own tests", "\u00DCber", "key", value);
        EXPECT_EQ(readSetting("Own tests", "\u00DCber", "key"), value);
    }
    deleteSetting("Own tests", "\u00DCber", "key");
}

TEST(MessageBoxWindows, WithoutAScreenNobodyWaits) {
    const auto start = std::chrono::steady_clock::now();
    showMessage("A test's text, which may be in the event log now.", "NorvaKavlor");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(XmlParserWindows, ParsesInEveryKindOfApartment) {
    for (const int kind : {-1, int{COINIT_APARTMENTTHREADED}, int{COINIT_MULTITHREADED}}) {
        bool parsed = false;
        std::thread host([&] {
            const bool entered = kind >= 0 && SUCCEEDED(::CoInitializeEx(nullptr, static_cast<DWORD>(kind)));
            parsed = parseXml("<a>text</a>").has_value();
            if (entered)
                ::CoUninitialize();
        });
        host.join();
        EXPECT_TRUE(parsed) << kind;
    }
}

TEST(XmlParserWindows, NamesAreGivenAsTheyStood) {
    // Letters that stand in for colons, and what they must not be taken for.
    const std::string text = "<\uD7A3:a xmlns:\uD7A3=\"u\" xmlns=\"v\" \uD7A2=\"xmlns:x='y'\">"
                             "<xmlns/><?p:i d?>\uD7A1:<![CDATA[]]><!--a:b--><xmlnsx xmlnsy=\"\"/></\uD7A3:a>";
    ParseError error;
    const auto document = parseXml(text, &error);
    ASSERT_TRUE(document) << error.reason;
    EXPECT_EQ(document->toText(), text);
}

} // namespace
} // namespace norvakavlor::platform
