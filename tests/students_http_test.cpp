#include "support/fixtures.h"
#include "support/servers.h"

#include <gmock/gmock.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/students/students.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto kTransportError = static_cast<int32_t>(platform::kTransportErrorNumber);
using Lines = std::vector<std::string>;

/// A server that answers every request, also a save, with this roster.
std::string rosterServer() {
    return misbehaving("reply/%3Cstudents autoStudentID='6'%3E%3Cstudent%3E%3Cid%3EB%3C%2Fid%3E%3Cname%2F%3E"
                       "%3Cusername%3Ebob%3C%2Fusername%3E%3C%2Fstudent%3E%3C%2Fstudents%3E");
}
constexpr const char* kRoster =
    "|<students autoStudentID='6'><student><id>B</id><name/><username>bob</username></student></students>";

Ref<Student> student(const std::string& id, const std::string& userName) {
    auto result = New<Student>();
    result->StudentID = id;
    result->UserName = userName;
    return result;
}

class StudentsOverHttp : public ::testing::Test {
protected:
    void SetUp() override { receivedRequests(); }
    void TearDown() override { LoginGlobals::StoreValidationString(""); }

    /// The requests since the last call: method, and the address from the endpoint's name on.
    Lines requests() {
        Lines lines;
        for (const std::string& request : receivedRequests()) {
            const std::string line = requestLine(request);
            lines.push_back(line.substr(0, line.find(' ') + 1) +
                            line.substr(line.find_last_of('/', line.find('?')) + 1));
            lastBody = request.substr(request.find("\r\n\r\n") + 4);
        }
        return lines;
    }

    Ref<Students> roster = New<Students>();
    std::string lastBody;
    RecordedMessages messages;
};

TEST_F(StudentsOverHttp, AnInsertionWritesItsOwnUrls) {
    const struct {
        const char* validation;
        const char* tail;
    } cases[] = {{"", "&"}, {"LoginKey=k", "&LoginKey=k"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tail);
        LoginGlobals::StoreValidationString(c.validation);
        const auto added = student("", "dora");
        EXPECT_TRUE(roster->AddStudent(rosterServer() + "?site=3/r.xml", added, nullptr));
        EXPECT_EQ(added->StudentID, "SID00007");
        const std::string target = "KavlorObject.asp?ObjName=Students&FileName=r.xml" + std::string(c.tail);
        EXPECT_THAT(requests(), ElementsAre("POST Load" + target, "POST Save" + target));
        EXPECT_EQ(lastBody,
                  "<students autoStudentID=\"7\"><student><id>B</id><name><first></first><last></last></name>"
                  "<username>bob</username></student><student><id>SID00007</id><name><first></first><last>"
                  "</last></name><username>dora</username></student></students>");
    }
    EXPECT_THAT(messages.all(), ElementsAre(kRoster, kRoster)) << "whatever a save is answered is shown";
}

TEST_F(StudentsOverHttp, ARefusedInsertionIsWrittenBackAllTheSame) {
    const struct {
        Ref<Student> student;
        const char* error;
    } cases[] = {
        {student("", "bob"), "object 635|students:AddStudent|Duplicate Username - bob"},
        {student("b", "dora"), "object 635|students:AddStudent|Duplicate User ID - b"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(raised([&] { roster->AddStudent(rosterServer() + "r.xml", c.student, nullptr); }), c.error);
        EXPECT_EQ(requests().size(), 2u);
        EXPECT_THAT(lastBody, ::testing::StartsWith("<students autoStudentID=\"6\"><student><id>B</id>"));
        EXPECT_THAT(lastBody, Not(::testing::HasSubstr("dora")));
    }
}

TEST_F(StudentsOverHttp, ARosterThatDoesNotParseIsSavedOnceAndAskedForAgain) {
    LoginGlobals::StoreValidationString("V=1");
    EXPECT_FALSE(roster->AddStudent(misbehaving("empty") + "?site=3/r.xml", student("", "dora"), nullptr));
    const std::string load = "POST LoadKavlorObject.asp?ObjName=Students&FileName=r.xml&V=1";
    EXPECT_THAT(
        requests(),
        ElementsAre(load, "POST SaveKavlorObject.asp?ObjName=Students&FileName=r.xml&site=3&V=1", load));
    EXPECT_THAT(messages.all(), IsEmpty());
}

TEST_F(StudentsOverHttp, ALostConnectionSavesNothing) {
    for (const char* manner : {"hang-up", "cut-off", "wrong-length"}) {
        SCOPED_TRACE(manner);
        EXPECT_FALSE(roster->AddStudent(misbehaving(manner) + "r.xml", student("", "dora"), nullptr));
        EXPECT_THAT(requests(), ElementsAre("POST LoadKavlorObject.asp?ObjName=Students&FileName=r.xml&"));
    }
    EXPECT_FALSE(roster->AddStudent(refusingServer() + "r.xml", student("", "dora"), nullptr));
    EXPECT_FALSE(roster->Load(refusingServer() + "r.xml", nullptr));
}

TEST_F(StudentsOverHttp, ADeletionNamesTheStudentAndNoExtraQuery) {
    const auto bob = student("B", "bob");
    const auto load = [&] { roster->Load(rosterServer() + "r.xml", nullptr); };
    load();
    EXPECT_FALSE(roster->DeleteStudent(misbehaving("reply/not now") + "r.xml", bob, nullptr));
    EXPECT_EQ(errorNumber([&] { roster->DeleteStudent(refusingServer() + "r.xml", bob, nullptr); }),
              kTransportError);
    EXPECT_THAT(messages.all(), ElementsAre("|not now"));
    EXPECT_TRUE(roster->MatchUserName("bob")) << "refused: nothing has changed";
    requests();

    EXPECT_TRUE(roster->DeleteStudent(misbehaving("empty") + "?site=3/r.xml", bob, nullptr));
    EXPECT_TRUE(roster->StudentMembers->empty());
    EXPECT_FALSE(roster->MatchUserName("bob"));
    EXPECT_THAT(requests(),
                ElementsAre("POST DeleteKavlorObject.asp?ObjName=Student&FileName=r.xml&StudentID=B"));

    load();
    requests();
    LoginGlobals::StoreValidationString("V=1");
    EXPECT_TRUE(roster->DeleteStudent(misbehaving("empty") + "r.xml", student("", ""), nullptr));
    EXPECT_THAT(requests(), ElementsAre("POST DeleteKavlorObject.asp?ObjName=Student&FileName=r.xml&V=1"));
    EXPECT_TRUE(roster->MatchUserName("bob"));
}

} // namespace
} // namespace norvakavlor
