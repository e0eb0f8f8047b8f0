#include "school.h"

#include "console.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace norvakavlor::kavlor {
namespace {

std::optional<double> meanOf(const std::vector<double>& numbers) {
    if (numbers.empty())
        return std::nullopt;
    return std::accumulate(numbers.begin(), numbers.end(), 0.0) / static_cast<double>(numbers.size());
}

std::vector<double> averagesOf(const ClassResult& result) {
    std::vector<double> averages;
    for (const StudentResult& row : result.students) {
        if (row.average)
            averages.push_back(*row.average);
    }
    return averages;
}

/// Is a class among an exam's or lesson's assignments? A section is not named where the whole course is
/// meant.
bool isAssigned(const std::string& course, const std::string& section, const std::string& toCourse,
                const std::string& toSection) {
    return course == toCourse && (section == toSection || toSection.empty());
}

bool hasBegun(const Lesson& copy) {
    return std::any_of(copy.Tasks->begin(), copy.Tasks->end(),
                       [](const Ref<Task>& task) { return task->CompletionDate.isSet(); });
}

} // namespace

size_t LessonProgress::done() const {
    return static_cast<size_t>(
        std::count_if(copies.begin(), copies.end(), [](const auto& copy) { return copy.second; }));
}

size_t ClassResult::count(Standing standing) const {
    return static_cast<size_t>(std::count_if(students.begin(), students.end(), [&](const StudentResult& row) {
        return row.standing == standing;
    }));
}

std::optional<double> ClassResult::average() const { return meanOf(averagesOf(*this)); }

size_t ClassResult::below(double percentage) const {
    return static_cast<size_t>(std::count_if(students.begin(), students.end(), [&](const StudentResult& row) {
        return row.average && std::round(*row.average) < percentage;
    }));
}

School::School(const std::string& folder) : installation(folder) {
    installation.load();
    readExams();
    readLessons();
    readMenus();
    formClasses();
    faults.insert(faults.begin(), installation.faults.begin(), installation.faults.end());
    for (Fault& fault : faults)
        fault.document = installation.relative(fault.document);
}

void School::readExams() {
    struct Work {
        size_t exam;
        std::vector<AttemptFile> attempts;
    };
    std::vector<Work> work;
    size_t files = 0;
    for (const Installation::Folder& folder : installation.folders()) {
        for (const std::string& file : folder.files) {
            if (!isExamFile(file, static_cast<int32_t>(ExamTypes::ExamRaw)))
                continue;
            checkInterrupted();
            ExamResults results;
            results.load(folder.path + file, installation.questions.get(), faults);
            work.push_back({exams.size(), findAttempts(folder, file, *installation.students, faults)});
            files += work.back().attempts.size();
            exams.push_back(std::move(results));
        }
    }
    Progress progress("reading attempts", files);
    for (const Work& part : work) {
        ExamResults& results = exams[part.exam];
        countLatest(results, part.attempts, [&] { progress.step(); });
        faults.insert(faults.end(), results.leftOut.begin(), results.leftOut.end());
    }
}

void School::readLessons() {
    Progress progress("reading files for lessons", installation.fileCount());
    for (const Installation::Folder& folder : installation.folders()) {
        for (const std::string& file : folder.files) {
            progress.step();
            if (!isLessonFile(file, static_cast<int32_t>(LessonTypes::Raw)))
                continue;
            LessonProgress lesson{folder.path + file, New<Lesson>(), {}};
            loads(faults, lesson.path,
                  [&] { return lesson.lesson->Load(lesson.path, installation.tasks.get()); });
            readCopies(folder, file, lesson);
            lessons.push_back(std::move(lesson));
        }
    }
}

void School::readCopies(const Installation::Folder& folder, const std::string& file,
                        LessonProgress& progress) {
    const std::string base = file.substr(0, file.rfind('.')) + "_";
    auto name = std::lower_bound(folder.files.begin(), folder.files.end(), base);
    for (; name != folder.files.end() && name->starts_with(base); ++name) {
        if (!isLessonFile(*name, static_cast<int32_t>(LessonTypes::Student)))
            continue;
        checkInterrupted();
        const std::string id = name->substr(base.size(), name->rfind('.') - base.size());
        const Ref<Student>* student = installation.students->StudentMembers->find(id);
        if (!student || studentCopyName(file, (*student)->StudentID) != *name) {
            faults.push_back({folder.path + *name, "a lesson of " + id + ", who is not in the roster"});
            continue;
        }
        auto copy = New<Lesson>();
        if (loads(faults, folder.path + *name, [&] { return copy->Load(folder.path + *name, nullptr); }) &&
            hasBegun(*copy))
            progress.copies[(*student)->StudentID] = copy->CalcLessonComplete();
    }
}

void School::readMenus() {
    std::string directories;
    for (const Installation::Folder& folder : installation.folders())
        directories += (directories.empty() ? "" : ";") + folder.path;
    for (const Installation::Folder& folder : installation.folders()) {
        const auto rows = New<LessonMenu>()->GetLessonMenus(folder.path);
        for (const Ref<TitleFilename>& row : *rows) {
            const std::string path = folder.path + row->Filename;
            MenuProgress progress{New<LessonMenu>(), {}};
            loads(faults, path,
                  [&] { return progress.menu->Load(path, directories, installation.tasks.get(), "", ""); });
            for (const Ref<Tutorial>& tutorial : *progress.menu->Tutorials) {
                if (tutorial->Spacer)
                    continue;
                MenuProgress::Part part{tutorial->Title, {}};
                for (const Ref<Lesson>& lesson : *tutorial->Lessons) {
                    const auto found =
                        std::find_if(lessons.begin(), lessons.end(), [&](const LessonProgress& one) {
                            return one.path.ends_with("/" + lesson->LessonFilename);
                        });
                    if (found != lessons.end())
                        part.lessons.push_back(&*found);
                }
                progress.parts.push_back(std::move(part));
            }
            menus.push_back(std::move(progress));
        }
    }
}

void School::formClasses() {
    // By course and section as the roster spells them; the courses give the order and the names.
    std::map<std::pair<std::string, std::string>, std::vector<Ref<Student>>> members;
    for (const Ref<Student>& student : *installation.students->StudentMembers)
        members[{student->Course, student->Section}].push_back(student);
    const auto take = [&](const std::string& course, const std::string& section,
                          const std::string& courseName, const std::string& sectionName) {
        const auto found = members.find({course, section});
        if (found == members.end())
            return;
        ClassResult result{courseName, sectionName, {}};
        for (const Ref<Student>& student : found->second)
            result.students.push_back({student});
        fillClass(result, course, section);
        classes.push_back(std::move(result));
        members.erase(found);
    };
    for (const Ref<Course>& course : *installation.courses->CourseMembers) {
        for (const Ref<CourseSection>& section : *course->Sections)
            take(course->ID, section->ID, course->Name, section->Name);
        take(course->ID, "", course->Name, "");
    }
    while (!members.empty()) {
        const auto [course, section] = members.begin()->first;
        take(course, section, course.empty() ? "Without a course" : "Course " + course,
             section.empty() ? "" : "Section " + section);
    }
}

void School::fillClass(ClassResult& result, const std::string& courseID, const std::string& sectionID) const {
    std::vector<const ExamResults*> ownExams;
    for (const ExamResults& exam : exams) {
        const auto& assignments = *exam.exam->ExamAssignments;
        const bool assigned =
            std::any_of(assignments.begin(), assignments.end(), [&](const auto& assignment) {
                return isAssigned(courseID, sectionID, assignment->ClassRef, assignment->SectionRef);
            });
        const bool begun =
            std::any_of(result.students.begin(), result.students.end(), [&](const StudentResult& row) {
                return exam.outcomes.contains(row.student->StudentID);
            });
        if (assigned || begun)
            ownExams.push_back(&exam);
    }
    std::vector<const LessonProgress*> ownLessons;
    for (const LessonProgress& lesson : lessons) {
        const auto& assignments = *lesson.lesson->LessonAssignments;
        const bool assigned =
            std::any_of(assignments.begin(), assignments.end(), [&](const auto& assignment) {
                return isAssigned(courseID, sectionID, assignment->CourseID, assignment->SectionID);
            });
        const bool begun =
            std::any_of(result.students.begin(), result.students.end(), [&](const StudentResult& row) {
                return lesson.copies.contains(row.student->StudentID);
            });
        if (assigned || begun)
            ownLessons.push_back(&lesson);
    }
    result.exams = ownExams.size();
    result.lessons = ownLessons.size();
    for (StudentResult& row : result.students) {
        const std::string& id = row.student->StudentID;
        bool begun = false;
        std::vector<double> percentages;
        for (const ExamResults* exam : ownExams) {
            const auto outcome = exam->outcomes.find(id);
            begun = begun || outcome != exam->outcomes.end();
            if (outcome != exam->outcomes.end() && outcome->second.finished)
                percentages.push_back(outcome->second.percentage);
        }
        for (const LessonProgress* lesson : ownLessons) {
            const auto copy = lesson->copies.find(id);
            begun = begun || copy != lesson->copies.end();
            row.lessonsDone += copy != lesson->copies.end() && copy->second;
        }
        row.examsFinished = percentages.size();
        row.average = meanOf(percentages);
        const bool done = row.examsFinished == result.exams && row.lessonsDone == result.lessons;
        row.standing = !begun ? Standing::NotBegun : done ? Standing::Done : Standing::Begun;
    }
}

size_t School::attempts() const {
    size_t sum = 0;
    for (const ExamResults& exam : exams)
        sum += exam.files;
    return sum;
}

size_t School::count(Standing standing) const {
    size_t sum = 0;
    for (const ClassResult& result : classes)
        sum += result.count(standing);
    return sum;
}

std::optional<double> School::average() const {
    std::vector<double> all;
    for (const ClassResult& result : classes) {
        const auto averages = averagesOf(result);
        all.insert(all.end(), averages.begin(), averages.end());
    }
    return meanOf(all);
}

size_t School::below(double percentage) const {
    size_t sum = 0;
    for (const ClassResult& result : classes)
        sum += result.below(percentage);
    return sum;
}

} // namespace norvakavlor::kavlor
