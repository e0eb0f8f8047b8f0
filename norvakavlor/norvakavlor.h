#pragma once

/// Everything that a client needs: all public classes, creation by programmatic identifier, late-bound calls,
/// errors and conversions. A client that uses few classes may include their headers alone.

#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/assessment/exam_list.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/config/check_setup.h>
#include <norvakavlor/config/diagnostics.h>
#include <norvakavlor/config/registry.h>
#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/curriculum/objectives.h>
#include <norvakavlor/curriculum/task_pool.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/lessons/lesson_files.h>
#include <norvakavlor/lessons/lesson_menu.h>
#include <norvakavlor/modules/module_disc_manager.h>
#include <norvakavlor/platform/message_box.h>
#include <norvakavlor/results/file_system_object_handle.h>
#include <norvakavlor/results/gradium_exam.h>
#include <norvakavlor/results/gradium_lesson.h>
#include <norvakavlor/results/live_ex_results.h>
#include <norvakavlor/results/security.h>
#include <norvakavlor/runtime/dictionary.h>
#include <norvakavlor/runtime/log.h>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/store/title_filename.h>
#include <norvakavlor/students/students.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/version.h>
