#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <tests/support/client.h>
#include <tests/support/fixtures.h>
#include <vector>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

std::string saved(Object& object, std::string_view root) {
    auto document = std::make_shared<xml::Document>();
    document->createRoot(root);
    callOnDocument(object, "SaveToXMLNode", document);
    return document->toText();
}

/// Each document as its class writes it again, also after an error: what stood before the fault stays. New
/// preferences within a document are shown as "(pref)".
TEST(Documents, AreWrittenAsTheyWereRead) {
    const auto collections = library();
    const Ref<Object> fresh = client::create("Preferences");
    const std::string preferences = saved(*fresh, "pref");
    for (const auto& [name, text, expected, error] : rows<4>("documents.round_trips")) {
        SCOPED_TRACE(name + ": " + text);
        const bool isAlone = name.ends_with('-'); // without other collections
        const Ref<Object> object = client::create(name.substr(0, name.size() - isAlone));
        const auto document = std::make_shared<xml::Document>(parsed(text));
        const std::string fault = raised([&] {
            callOnDocument(*object, "LoadFromXMLNode", document,
                           isAlone ? std::vector<Ref<Object>>() : collections);
        });
        EXPECT_EQ(fault, error.empty() ? "nothing" : error);
        std::string result = saved(*object, document->root().name());
        if (const size_t at = result.find(preferences); at != std::string::npos && at != 0)
            result.replace(at, preferences.size(), "(pref)");
        EXPECT_EQ(result, expected);
    }
}

} // namespace
} // namespace norvakavlor
