#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The file names of exams: authored ones end in "_kvqm.xml"; an attempt is the exam's base name, "_", the
/// student's identifier, "_", the attempt's number and ".xml".
namespace norvakavlor {

/// Which exam files a listing selects.
enum class ExamTypes : int32_t {
    ExamAll = -1,    ///< authored exams and attempts
    ExamRaw = 1,     ///< authored exams
    ExamStudent = 2, ///< attempts
};

/// Where an exam came from; an exam keeps any 16-bit value.
enum class ExamSources : int16_t {
    ExamSourceUnknown = 0,
    ExamSourceLocal = 1,
    ExamSourceServer = 2,
    ExamSourceExternal = 3
};

/// Does a file name belong to a type of exam? Its end is compared exactly, the rest in any letter case. An
/// unknown type selects nothing.
[[gnu::visibility("default")]] bool isExamFile(std::string_view fileName, int32_t examType);

/// "algebra_kvqm", "SID00001", 3 -> "algebra_kvqm_SID00001_03.xml".
[[gnu::visibility("default")]] std::string attemptFileName(std::string_view examBase,
                                                           std::string_view studentID, int16_t attempt);

/// Where a student's attempt lies: beside the exam, whose ".xml" is dropped.
[[gnu::visibility("default")]] std::string attemptLocation(std::string_view examLocation,
                                                           std::string_view studentID, int16_t attempt);

/// The number in an attempt's file name; 0 for other names and if it is not a 16-bit number.
[[gnu::visibility("default")]] int16_t attemptNumber(std::string_view fileName);

/// A part of the file names of a student's attempts: "_kvqm_SID00001_".
std::string attemptMark(std::string_view studentID);

} // namespace norvakavlor
