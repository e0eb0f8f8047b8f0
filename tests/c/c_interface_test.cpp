#include <array>
#include <atomic>
#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <mutex>
#include <norvakavlor/c/norvakavlor_c.h>
#include <norvakavlor/component/class_list.h>
#include <string>
#include <string_view>
#include <tests/support/probe.h>
#include <thread>
#include <utility>
#include <vector>

namespace norvakavlor {
namespace {

/// Counts the objects that are alive, may hold another one, and shows what happens during a call.
class Link final : public Object {
public:
    Link() { ++alive; }
    ~Link() override { --alive; }

    Ref<Object> Next;
    void Meanwhile() const { duringCall(); }

    static std::atomic<int> alive;
    static std::function<void()> duringCall;
    static const ClassInfo& classInfo() {
        static const ClassInfo info = describe<Link>("Link", "Counts.")
                                          .property("Next", &Link::Next, "Another one.")
                                          .method("Meanwhile", &Link::Meanwhile, {}, "Calls the test.");
        return info;
    }
};
std::atomic<int> Link::alive = 0;
std::function<void()> Link::duringCall;

nk_value none() { return {}; }
nk_value missing() { return {NK_MISSING}; }
nk_value integer(int32_t number) { return {NK_INTEGER, number}; }
nk_value text(std::string_view content) { return {NK_TEXT, 0, 0, content.data(), content.size()}; }
nk_value object(nk_object* handle) { return {NK_OBJECT, 0, 0, nullptr, 0, handle}; }
nk_value array(std::vector<nk_value>& elements, int32_t from = 0) {
    return {NK_ARRAY, from, 0, nullptr, elements.size(), nullptr, elements.data()};
}

nk_object* create(const char* name) {
    nk_object* made = nullptr;
    EXPECT_EQ(nk_create(name, &made), nullptr) << name;
    return made;
}

/// "number|source|description"; "" when all went well.
std::string told(nk_error* error) {
    if (!error)
        return "";
    const std::string all = std::to_string(nk_error_number(error)) + "|" + nk_error_source(error) + "|" +
                            nk_error_description(error) + nk_error_document(error) + nk_error_member(error);
    nk_error_free(error);
    return all;
}

/// What a value shows, which it clears.
std::string shown(nk_value& value) {
    std::string all = std::to_string(value.kind) + ":";
    if (value.kind == NK_ARRAY) {
        for (size_t index = 0; index < value.length; ++index)
            all += shown(value.elements[index]) + ",";
    } else if (value.text) {
        all += std::string(value.text, value.length);
    } else if (value.kind == NK_OBJECT) {
        all += value.object ? "object" : "Nothing";
    } else {
        all += value.kind == NK_NUMBER || value.kind == NK_DATE ? std::to_string(value.number)
                                                                : std::to_string(value.integer);
    }
    nk_value_clear(&value);
    return all;
}

std::string put(nk_object* on, const char* property, nk_value value) {
    return told(nk_put(on, property, &value, nullptr, 0));
}

std::string get(nk_object* on, const char* property) {
    nk_value value{};
    const std::string error = told(nk_get(on, property, &value));
    return error.empty() ? shown(value) : error;
}

TEST(CInterface, CarriesEveryKindOfValue) {
    const ScopedClass probes(&Probe::classInfo);
    nk_object* probe = create("norvakavlor.PROBE");
    std::vector<nk_value> inner{text("x"), none()};
    std::vector<nk_value> outer{integer(7), array(inner, 1)};
    const struct {
        const char* property;
        nk_value written;
        const char* read;
    } cases[] = {
        {"Text", text(std::string_view("a\0\xC3\xBC", 4)), nullptr},
        {"text", integer(-5), "6:-5"},
        {"Flag", {NK_BOOLEAN, 1}, "2:1"},
        {"Small", text("2.5"), "3:2"},
        {"Large", {NK_NUMBER, 0, 1e5}, "3:100000"},
        {"Large", {NK_NUMBER, 0, 1e300}, "6|NorvaKavlor|Overflow"},
        {"Large", {NK_NUMBER, 0, std::numeric_limits<double>::quiet_NaN()}, "6|NorvaKavlor|Overflow"},
        {"When", {NK_NUMBER, 0, -1e300}, "6|NorvaKavlor|Overflow"},
        {"Real", integer(3), "4:3.000000"},
        {"When", {NK_DATE, 0, 38060.75}, "5:38060.750000"},
        {"Anything", {NK_NULL}, "1:0"},
        {"Anything", none(), "0:0"},
        {"Anything", {NK_DECIMAL, 0, 1e19, "10000000000000000001", 20}, "9:10000000000000000001"},
        {"Anything", object(nullptr), "7:Nothing"},
        {"Anything", object(probe), "7:object"},
        {"Anything", array(outer), "8:3:7,8:6:x,0:0,,"},
        {"Anything", array(outer, 2147483647), "6|NorvaKavlor|Overflow"},
        {"Anything", {99}, "5|NorvaKavlor|Invalid procedure call or argument"},
        {"Book", object(probe), "13|NorvaKavlor|Type mismatch"},
        {"Books", object(probe), "438|NorvaKavlor|Object doesn't support this property or method"},
        {"Nowhere", none(), "438|NorvaKavlor|Object doesn't support this property or method"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.property + std::string(" = ") + std::to_string(c.written.kind));
        const std::string error = put(probe, c.property, c.written);
        EXPECT_EQ(error.empty() ? get(probe, c.property) : error,
                  c.read ? c.read : "6:" + std::string(c.written.text, c.written.length));
    }
    put(probe, "Anything", none());
    nk_object_release(probe);
}

TEST(CInterface, CallsAndRaises) {
    const ScopedClass probes(&Probe::classInfo);
    nk_object* probe = create("NorvaKavlor.Probe");
    std::vector<nk_value> ends{text("first"), text("middle"), text("last")};
    const struct {
        const char* method;
        std::vector<nk_value> arguments;
        const char* answer;
    } cases[] = {
        {"Join", {text("a"), text("b"), missing()}, "6:a|b|(none)"},
        {"Join", {text("a"), none(), text("c")}, "6:a||c"},
        {"Join", {text("a"), missing(), text("c")}, "449|NorvaKavlor|Argument not optional"},
        {"Join", {text("a")}, "449|NorvaKavlor|Argument not optional"},
        {"Join", std::vector<nk_value>(4),
         "450|NorvaKavlor|Wrong number of arguments or invalid property assignment"},
        {"Results", std::vector<nk_value>(4), "2:1 3:7 3:70000 6:result 4:2.500000"},
        {"SwapEnds", {array(ends)}, "0:0 8:6:last,6:middle,6:first,"},
        {"Raise", {integer(-3), text("me"), text("no \xC3\xBC")}, "-3|me|no \xC3\xBC"},
        {"RunOutOfMemory", {}, "7|NorvaKavlor|Out of memory"},
        {"Fail", {}, "51|NorvaKavlor|Internal error: a fault of the library"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.method);
        nk_value answer{};
        std::vector<nk_value> results(c.arguments.size());
        std::string all = told(nk_call(probe, c.method, c.arguments.data(), c.arguments.size(), &answer,
                                       results.data(), results.size()));
        if (all.empty()) {
            all = shown(answer);
            for (nk_value& result : results)
                all += result.kind == NK_EMPTY ? "" : " " + shown(result);
        }
        EXPECT_EQ(all, c.answer);
    }
    nk_object_release(probe);
}

TEST(CInterface, RefusesWhatIsNotThere) {
    nk_object* made = nullptr;
    EXPECT_EQ(told(nk_create("NorvaKavlor.Nobody", &made)),
              "429|NorvaKavlor|ActiveX component can't create object");
    EXPECT_EQ(told(nk_create(nullptr, &made)).substr(0, 3), "429");
    EXPECT_EQ(told(nk_create("NorvaKavlor.Exam", nullptr)).substr(0, 2), "5|");
    EXPECT_EQ(told(nk_parse("<a><b></a>", 10, &made)).substr(0, 53),
              "13|NorvaKavlor|The document does not parse: line 1, c");
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(get(nullptr, "Title").substr(0, 2), "91");
    nk_object* book = create("NorvaKavlor.TextBook");
    EXPECT_EQ(get(book, nullptr).substr(0, 3), "438");
    uint64_t mark = 0;
    int found = 0;
    nk_value element{};
    EXPECT_EQ(told(nk_next(book, &mark, &found, &element)).substr(0, 3), "438");
    nk_object_release(book);
    nk_object_release(nullptr);
    nk_error_free(nullptr);
    EXPECT_EQ(nk_error_number(nullptr), 0);
    EXPECT_STREQ(nk_error_document(nullptr), "");
    nk_value_clear(nullptr);
    nk_class_row row{};
    nk_parameter_row parameter{};
    EXPECT_EQ(nk_class(1000, &row) + nk_parameter(0, 1000, 0, &parameter) +
                  nk_parameter(1000, 0, 0, &parameter),
              0);
}

TEST(CInterface, FreesWhatIsReleasedDuringACallAtItsEnd) {
    const ScopedClass links(&Link::classInfo);
    nk_object* root = create("NorvaKavlor.Link");
    nk_object* other = create("NorvaKavlor.Link");
    nk_object* stranger = create("NorvaKavlor.Link");
    put(root, "Next", object(other)); // one group from now on
    put(root, "Next", none());
    EXPECT_NE(nk_object_identity(root), nk_object_identity(other));
    Link::duringCall = [&] {
        std::thread([&] { nk_object_release(stranger); }).join();
        EXPECT_EQ(Link::alive, 2) << "of another group: at once";
        std::thread([&] { nk_object_release(other); }).join();
        nk_object_release(root);
        EXPECT_EQ(Link::alive, 2);
    };
    nk_value answer{};
    EXPECT_EQ(told(nk_call(root, "Meanwhile", nullptr, 0, &answer, nullptr, 0)), "");
    EXPECT_EQ(Link::alive, 0);
}

/// Eight threads that use one another's objects and release one another's handles.
TEST(CInterface, ThreadsShareObjects) {
    const ScopedClass links(&Link::classInfo);
    nk_object* shared = create("NorvaKavlor.Link");
    std::mutex guard;
    std::deque<nk_object*> adrift;
    const auto work = [&](int seed) {
        for (int turn = 0; turn < 400; ++turn) {
            nk_object* own = create("NorvaKavlor.Link");
            nk_value next{};
            switch ((turn + seed) % 4) {
            case 0: // joins the shared group, in front of what was there
                EXPECT_EQ(told(nk_get(shared, "Next", &next)), "");
                EXPECT_EQ(put(own, "Next", next), "");
                EXPECT_EQ(put(shared, "Next", object(own)), "");
                break;
            case 1: // two groups that had nothing to do with the shared one
                next = object(create("NorvaKavlor.Link"));
                EXPECT_EQ(put(own, "Next", next), "");
                break;
            case 2:
                EXPECT_EQ(put(shared, "Next", none()), "");
                break;
            default:
                EXPECT_EQ(told(nk_object_share(shared, &next.object)), "");
                EXPECT_EQ(nk_object_identity(next.object), nk_object_identity(shared));
            }
            const std::lock_guard lock(guard);
            adrift.push_back(own);
            if (next.object)
                adrift.push_back(next.object);
            for (int count = 0; count < 2 && adrift.size() > 20; ++count) {
                nk_object_release(adrift.front());
                adrift.pop_front();
            }
        }
    };
    std::vector<std::thread> threads;
    for (int seed = 0; seed < 8; ++seed)
        threads.emplace_back(work, seed);
    for (std::thread& thread : threads)
        thread.join();
    for (nk_object* handle : adrift)
        nk_object_release(handle);
    nk_object_release(shared);
    EXPECT_EQ(Link::alive, 0);
}

/// A chain of groups, each in front of the last one, ends without a deep stack.
TEST(CInterface, JoinsGroupsInAnyOrder) {
    const ScopedClass links(&Link::classInfo);
    nk_object* first = create("NorvaKavlor.Link");
    nk_object* last = first;
    for (int count = 0; count < 200000; ++count) {
        nk_object* front = create("NorvaKavlor.Link");
        ASSERT_EQ(put(front, "Next", object(last)), "");
        if (last != first)
            nk_object_release(last);
        last = front;
    }
    nk_object_release(last);
    EXPECT_EQ(Link::alive, 1);
    nk_object_release(first);
    EXPECT_EQ(Link::alive, 0);
}

} // namespace
} // namespace norvakavlor
