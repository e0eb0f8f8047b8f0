Sub SetPath(name, place)
    Dim registry
    Set registry = CreateObject("NorvaKavlor.Registry")
    registry.Key = registry.HKEY_CURRENT_USER
    registry.SubKey = "Software\VB and VBA Program Settings\Kavlor Demo\Paths"
    registry.Value = name
    registry.Data = place
    registry.WriteValue
End Sub

Sub Show_live_exercise
    Dim registry, results, launch, discs, setup
    Say "Live exercise"
    Set registry = CreateObject("NorvaKavlor.Registry")
    registry.Key = registry.HKEY_LOCAL_MACHINE
    registry.SubKey = "Software\Norvalis\Kavlor\Lumio"
    registry.Value = "resultsDir"
    registry.Data = folder & "live"
    registry.WriteValue

    Set results = CreateObject("NorvaKavlor.LiveExResults")
    Require results.Load(folder & "live/letter.xml"), "loading a record"
    ' The gradebook's launch waits in a file; here it learns the address of this run's server.
    Set launch = results.GetGradiumLiveEx
    Require Not launch Is Nothing, "finding the launch that waits"
    launch.SubmitHost = server & "gradebook"
    launch.SubmitBackupHost = server & "gradebook-backup"
    Require launch.Save(folder & "live/GradiumLiveEx_X-LETTER.xml"), "storing the launch"
    Require results.Save(folder & "live/letter_done.xml", False), "submitting the exercise"
    Set launch = results.GetGradiumLiveEx
    Require launch Is Nothing, "the launch is gone once the gradebook has accepted"
    Say "  result accepted, record stored: " & folder & "live/letter_done.xml"

    Set discs = CreateObject("NorvaKavlor.ModuleDiscManager")
    Require discs.LoadConfigFile(folder & "modules.xml"), "loading the module discs"
    Say "  Spreadsheets come from " & discs.GetFileForModule("Spreadsheets")

    SetPath "XMLDir", folder & "curriculum"
    SetPath "QuestionPoolDir", server & "curriculum"
    SetPath "TestResultsDir", folder & "nowhere"
    Set setup = CreateObject("NorvaKavlor.CheckSetup")
    Say "  the installation check says: " & setup.CheckSetup("Kavlor Demo", "Paths")
    SetPath "TestResultsDir", ""
    Require setup.CheckSetup("Kavlor Demo", "Paths") = "", "a sound installation"
End Sub
