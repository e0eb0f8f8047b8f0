#include "demo.h"

#include <norvakavlor/config/check_setup.h>
#include <norvakavlor/config/registry.h>
#include <norvakavlor/modules/module_disc_manager.h>
#include <norvakavlor/platform/settings.h>
#include <norvakavlor/results/live_ex_results.h>

using namespace norvakavlor;

void demo::liveExercise(const Places& places) {
    say("Live exercise");
    auto registry = New<Registry>();
    registry->Key = registry->HKEY_LOCAL_MACHINE();
    registry->SubKey = "Software\\Norvalis\\Kavlor\\Lumio";
    registry->Value = "resultsDir";
    registry->Data = places.local("live");
    registry->WriteValue();

    auto results = New<LiveExResults>();
    require(results->Load(places.local("live/letter.xml")), "loading a record");
    // The gradebook's launch waits in a file; here it learns the address of this run's server.
    Ref<GradiumLiveEx> launch = results->GetGradiumLiveEx();
    require(static_cast<bool>(launch), "finding the launch that waits");
    launch->SubmitHost = places.web("gradebook");
    launch->SubmitBackupHost = places.web("gradebook-backup");
    require(launch->Save(places.local("live/GradiumLiveEx_X-LETTER.xml")), "storing the launch");
    require(results->Save(places.local("live/letter_done.xml"), false), "submitting the exercise");
    require(!results->GetGradiumLiveEx(), "the launch is gone once the gradebook has accepted");
    say("  result accepted, record stored: " + places.local("live/letter_done.xml"));

    auto discs = New<ModuleDiscManager>();
    require(discs->LoadConfigFile(places.local("modules.xml")), "loading the module discs");
    say("  Spreadsheets come from " + discs->GetFileForModule("Spreadsheets"));

    platform::writeSetting("Kavlor Demo", "Paths", "XMLDir", places.local("curriculum"));
    platform::writeSetting("Kavlor Demo", "Paths", "QuestionPoolDir", places.web("curriculum"));
    platform::writeSetting("Kavlor Demo", "Paths", "TestResultsDir", places.local("nowhere"));
    say("  the installation check says: " + New<CheckSetup>()->Check("Kavlor Demo", "Paths"));
    platform::deleteSetting("Kavlor Demo", "Paths", "TestResultsDir");
    require(New<CheckSetup>()->Check("Kavlor Demo", "Paths").empty(), "a sound installation");
}
