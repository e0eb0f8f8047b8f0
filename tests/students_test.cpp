#include "support/fixtures.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/students/student_order.h>
#include <norvakavlor/students/students.h>
#include <random>
#include <utility>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

Ref<Student> student(const std::string& id, const std::string& userName = "", const std::string& last = "") {
    auto result = New<Student>();
    result->StudentID = id;
    result->UserName = userName;
    result->LastName = last;
    return result;
}

TEST(Student, ValidatesCourseAndSection) {
    const Ref<Object> all = library().back();
    auto& courses = dynamic_cast<Courses&>(*all);
    for (const auto& [course, section, user, valid, number, description] : rows<6>("students.validated")) {
        SCOPED_TRACE(course + "/" + section + "/" + user);
        const auto someone = student("S1", user);
        someone->Course = course;
        someone->Section = section;
        int32_t code = -7;
        std::string text = "as it was";
        EXPECT_EQ(someone->Validate(&courses, code, text), valid == "true");
        EXPECT_EQ(std::to_string(code), number);
        EXPECT_EQ(text, description);
    }
    int32_t code = 0;
    std::string text;
    EXPECT_TRUE(student("S1")->Validate(nullptr, code, text));
    const auto enrolled = student("S1");
    enrolled->Course = "1";
    EXPECT_EQ(errorNumber([&] { enrolled->Validate(nullptr, code, text); }), 91);
}

/// A roster file of one student.
class Roster : public ::testing::Test {
protected:
    void SetUp() override {
        folder.write("r.xml",
                     "<students><student><id>B</id><name/><username>bob</username></student></students>");
    }
    TemporaryFolder folder;
    std::string file = folder.file("r.xml");
    Ref<Students> roster = New<Students>();
};

TEST_F(Roster, GivesUpAfterThreeWaits) {
    platform::setReadOnly(file, true);
    double now = 0;
    const ScopedClockSource clock({.secondsSinceMidnight = [&] { return now; },
                                   .uniformRandom = [] { return 0.2; },
                                   .seedRandom = [] {},
                                   .sleepFor = [&](std::chrono::milliseconds) { now += 0.005; }});
    EXPECT_FALSE(roster->AddStudent(file, student("", "new"), nullptr));
    EXPECT_NEAR(now, 3 * (3.0 - 2.75 * 0.2), 0.05);
    EXPECT_TRUE(platform::isReadOnly(file)) << "another's lock stays";
    EXPECT_EQ(errorNumber([&] { roster->Save(file, nullptr); }), 70);
    EXPECT_EQ(errorNumber([&] { roster->DeleteStudent(file, student("B", "bob").get(), nullptr); }), 70);
    EXPECT_TRUE(roster->ReplaceStudent(file, student("B"), nullptr)) << "its save's failure is passed over";
}

TEST_F(Roster, IsLetGoWhenItIsTooLargeToRead) {
    constexpr uint64_t kTooLarge = (64u << 20) + 1;
    std::filesystem::resize_file(file, kTooLarge);
    EXPECT_EQ(errorNumber([&] { roster->AddStudent(file, student(""), nullptr); }), 57);
    EXPECT_FALSE(platform::isReadOnly(file));
}

TEST_F(Roster, WaitsByTheTimeOfDayAsItStands) {
    struct GivenUp {};
    platform::setReadOnly(file, true);
    constexpr double kDay = 86400;
    double elapsed = kDay - 2;
    const auto timeOfDay = [&] { return std::fmod(elapsed, kDay); };
    const ScopedClockSource clock({.secondsSinceMidnight = timeOfDay,
                                   .uniformRandom = [] { return 0.5; },
                                   .seedRandom = [] {},
                                   .sleepFor =
                                       [&](std::chrono::milliseconds) {
                                           elapsed += 0.25;
                                           if (elapsed > 3 * kDay)
                                               throw GivenUp();
                                       }});
    // The first wait ends before midnight, the second would end after it.
    EXPECT_THROW(roster->AddStudent(file, student("", "new"), nullptr), GivenUp);
    platform::setReadOnly(file, false);
    const auto added = student("new", "new");
    EXPECT_TRUE(roster->AddStudent(file, added, nullptr)) << "a free roster wants no clock";
    EXPECT_EQ(roster->StudentMembers->Item("new"), added);
}

/// The order that a selection sort gives: the first of the smallest changes places with the one at hand.
void plainSelection(std::vector<Ref<Student>>& students) {
    for (size_t i = 0; i + 1 < students.size(); ++i) {
        size_t m = i;
        for (size_t j = i + 1; j < students.size(); ++j) {
            if (students[j]->LastName < students[m]->LastName)
                m = j;
        }
        std::swap(students[i], students[m]);
    }
}

TEST(StudentOrder, IsThatOfThePlainSelection) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::vector<Ref<Student>> students(random() % 24);
        for (size_t position = 0; position < students.size(); ++position) {
            students[position] =
                student(std::to_string(position), "", std::string(1, static_cast<char>('A' + random() % 5)));
        }
        auto expected = students;
        plainSelection(expected);
        selectionSort(students, StudentFields::named("LASTNAME", "", ""));
        ASSERT_EQ(students, expected) << "round " << round;
    }
}

TEST(StudentOrder, SortsAClientsArrayFromIndexOne) {
    const auto roster = New<Students>();
    auto values = std::make_shared<Array>();
    const auto middle = student("1", "", "\U00010400"); // two UTF-16 units that sort before U+E000
    const auto last = student("2", "", "\uE000");
    const auto zebra = student("3", "", "zebra");
    values->elements = {Value("index 0 is not looked at"), last, middle, zebra};
    roster->Selectionsort(values, "lastname", "", "");
    EXPECT_EQ(values->at(1).toObject(), Ref<Object>(zebra));
    EXPECT_EQ(values->at(2).toObject(), Ref<Object>(middle));
    EXPECT_EQ(values->at(3).toObject(), Ref<Object>(last));
    values->elements = {Value("index 0"), Value("one alone is not looked at")};
    EXPECT_EQ(errorNumber([&] { roster->Selectionsort(values, "email", "", ""); }), 0);
    values->elements = {Value(), Value("no student"), Value(student("1"))};
    EXPECT_EQ(errorNumber([&] { roster->Selectionsort(values, "lastname", "", ""); }), 13);
    values->elements = {Value(), Value::nothing(), Value(student("1"))};
    EXPECT_EQ(errorNumber([&] { roster->Selectionsort(values, "lastname", "", ""); }), 91);
}

} // namespace
} // namespace norvakavlor
