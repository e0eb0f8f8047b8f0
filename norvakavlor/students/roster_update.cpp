// Adding to a stored roster: read, add, write back, with the file's read-only attribute as the lock.

#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/platform/clock.h>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/students/students.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>

#include <chrono>
#include <optional>
#include <utility>

namespace norvakavlor {
namespace {

constexpr const char* kRosterUpdateSource = "students:AddStudent";

/// Waits as many seconds as chance says between two bounds, the first of which goes with the chance of 0. It
/// goes by the time of day as it stands: a wait that would end after midnight does not end, as with every
/// client of a shared roster.
void randomWait(double low, double high) {
    const double end = platform::secondsSinceMidnight() + (high - low) * platform::uniformRandom() + low;
    while (platform::secondsSinceMidnight() < end)
        platform::sleepFor(std::chrono::milliseconds(5));
}

/// The urls of an insertion write the "&" before the validation string also when that is empty, and never
/// carry the extra query.
std::string updateURL(std::string_view endpoint, const std::string& location) {
    return URLBase(location).append(endpoint) + "?ObjName=Students&FileName=" + URLFileName(location) + "&" +
           LoginGlobals::GetValidationString();
}

void throwRefusal(const std::string& description) {
    if (!description.empty())
        throw objectError(635, kRosterUpdateSource, description);
}

/// The document whose lock is held; nothing when it does not parse. What cannot be read now is nobody's fault
/// and keeps no lock.
std::optional<xml::Document> readLocked(const std::string& filename, const platform::LockRelease& lock) {
    try {
        return parseLocalDocument(filename);
    } catch (const Error&) {
        lock.release();
        throw;
    }
}

/// What a server says about a roster.
enum class Answer { Roster, Missing, Blank, Unclear };

Answer answerWithoutRoster(const platform::HttpReply& reply) {
    constexpr int kNotFound = 404;
    if (reply.status == kNotFound)
        return Answer::Missing;
    const bool isSuccess = reply.status / 100 == 2;
    const bool isBlank = reply.text.find_first_not_of(" \t\r\n") == std::string::npos;
    return isSuccess && isBlank ? Answer::Blank : Answer::Unclear;
}

} // namespace

bool Students::AddStudent(const std::string& filename, const Ref<Student>& theStudent, Courses* courses) {
    if (!theStudent)
        throw runtimeError(RuntimeError::ObjectNotSet);
    // The caller's may be an item of this roster, which goes with it.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it holds on.
    const Ref<Student> student = theStudent;
    int32_t errCode = 0;
    std::string errDesc;
    if (!student->Validate(courses, errCode, errDesc))
        throw objectError(errCode, kRosterUpdateSource, errDesc);
    clear();
    return IsURL(filename) ? insertOnServer(filename, student, courses)
                           : insertLocally(filename, student, courses);
}

bool Students::insertOnServer(const std::string& filename, const Ref<Student>& student, Courses* courses) {
    if (!loadFromServer(filename, courses))
        return false;
    const std::string refused = insert(student);
    sendDocument(updateURL(kSaveEndpoint, filename), rosterDocument(courses));
    throwRefusal(refused);
    return true;
}

bool Students::insertLocally(const std::string& filename, const Ref<Student>& student, Courses* courses) {
    const platform::LockRelease lock(filename);
    if (!lockRosterFile(filename, courses))
        return false;
    std::string refused;
    std::string content;
    try {
        const auto document = readLocked(filename, lock);
        // One that does not parse keeps the lock, so that nobody writes over what is there.
        if (!document)
            return false;
        if (!isRoster(document)) {
            lock.release();
            return false;
        }
        parseRosterDocument(document->root(), courses);
        refused = insert(student);
        content = rosterDocument(courses).toText();
    } catch (const Error&) {
        // So does one whose content is at fault.
        throw;
    } catch (...) {
        // Memory ran out, which says nothing about the roster.
        lock.release();
        throw;
    }
    platform::replaceLockedDocument(lock, content);
    throwRefusal(refused);
    return true;
}

/// Adds a student to the roster that was loaded. The text of the error, when user name or ID is taken: the
/// roster is stored all the same then, as the counter may have gone on.
std::string Students::insert(const Ref<Student>& student) {
    if (idByUserName_.contains(student->UserName))
        return "Duplicate Username - " + student->UserName;
    // A number stays used when the insertion then fails.
    if (student->StudentID.empty())
        student->StudentID = nextStudentID();
    if (Exists(student->StudentID))
        return "Duplicate User ID - " + student->StudentID;
    StudentMembers->Add(student, student->StudentID);
    addToIndex(*student);
    return {};
}

std::string Students::nextStudentID() {
    autoStudentID_ = toInt16(autoStudentID_ + 1.0);
    // The zeros go by the size of the number and not to a width: a negative counter gives "SID0000-4".
    const char* zeros = autoStudentID_ < 10      ? "0000"
                        : autoStudentID_ < 100   ? "000"
                        : autoStudentID_ < 1000  ? "00"
                        : autoStudentID_ < 10000 ? "0"
                                                 : "";
    return "SID" + std::string(zeros) + std::to_string(autoStudentID_);
}

bool Students::loadFromServer(const std::string& filename, Courses* courses) {
    const std::string url = updateURL(kLoadEndpoint, filename);
    std::optional<xml::Document> document;
    const auto ask = [&] {
        platform::HttpReply reply;
        // A connection that was lost says nothing about the roster: saving an empty one now could wipe it.
        if (!ignoringErrors([&] { reply = askServer(url); }))
            return Answer::Unclear;
        document = parseReply(reply, "students");
        return isRoster(document) ? Answer::Roster : answerWithoutRoster(reply);
    };
    Answer answer = ask();
    // Some servers say so that there is none; once may be chance.
    if (answer == Answer::Blank) {
        answer = ask();
        if (answer == Answer::Blank)
            answer = Answer::Missing;
    }
    if (answer == Answer::Missing) {
        Save(filename, courses);
        answer = ask();
    }
    return answer == Answer::Roster && parseRosterDocument(document->root(), courses);
}

bool Students::lockRosterFile(const std::string& filename, Courses* courses) const {
    constexpr int kTries = 3;
    platform::seedRandom();
    bool wasMade = false;
    for (int tries = 0; tries < kTries;) {
        switch (platform::tryLockDocument(filename)) {
        case platform::LockResult::Taken:
            return true;
        case platform::LockResult::Missing:
            // Where a roster was just made and is not to be had, there will be none.
            if (std::exchange(wasMade, true))
                return false;
            platform::createDocument(filename, rosterDocument(courses).toText());
            break;
        case platform::LockResult::Held:
            wasMade = false;
            randomWait(3.0, 0.25); // the longer one first
            ++tries;
        }
    }
    return false;
}

} // namespace norvakavlor
