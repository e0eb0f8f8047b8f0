// Adding to a stored roster: read, add, write back, with the file's read-only attribute as the lock.

#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/platform/clock.h>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/runtime/convert.h>
#include <norvakavlor/runtime/error.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/students/students.h>

#include <chrono>
#include <optional>
#include <utility>

namespace norvakavlor {
namespace {

constexpr const char* kSource = "students:AddStudent";

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
        throw objectError(errCode, kSource, errDesc);
    if (!loadForUpdate(filename, courses))
        return false;

    const auto refuse = [&](const std::string& description) {
        saveAndRelease(filename, courses);
        throw objectError(635, kSource, description);
    };
    if (idByUserName_.contains(student->UserName))
        refuse("Duplicate Username - " + student->UserName);
    // A number stays used when the insertion then fails.
    if (student->StudentID.empty())
        student->StudentID = nextStudentID();
    if (Exists(student->StudentID))
        refuse("Duplicate User ID - " + student->StudentID);
    StudentMembers->Add(student, student->StudentID);
    addToIndex(*student);
    saveAndRelease(filename, courses);
    return true;
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

bool Students::loadForUpdate(const std::string& filename, Courses* courses) {
    clear();
    if (IsURL(filename))
        return loadForUpdateFromServer(filename, courses);
    if (!lockRosterFile(filename, courses))
        return false;
    // From here on the lock is set; a roster that does not parse keeps it, so that nobody writes over what is
    // there.
    const auto document = readLocalDocument(filename);
    return document && parseRosterDocument(document->root(), courses);
}

bool Students::loadForUpdateFromServer(const std::string& filename, Courses* courses) {
    const auto request = [&](std::optional<xml::Document>& document) {
        return ignoringErrors(
            [&] { document = parseReply(askServer(updateURL(kLoadEndpoint, filename)), "students"); });
    };
    std::optional<xml::Document> document;
    // A connection that was lost says nothing about the roster: saving an empty one now could wipe it.
    if (!request(document))
        return false;
    if (!document) {
        Save(filename, courses);
        if (!request(document))
            return false;
    }
    return document && parseRosterDocument(document->root(), courses);
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

void Students::saveAndRelease(const std::string& filename, Courses* courses) const {
    const xml::Document document = rosterDocument(courses);
    if (IsURL(filename)) {
        sendDocument(updateURL(kSaveEndpoint, filename), document);
    } else {
        platform::replaceLockedDocument(filename, document.toText());
    }
}

} // namespace norvakavlor
