' What registration writes and its removal takes away. The second argument says which of them came before.
Dim shell, key, there, made, expected
expected = (WScript.Arguments(1) = "registered")
Set shell = CreateObject("WScript.Shell")
On Error Resume Next
For Each key In Array("NorvaKavlor.TextBooks\", "NorvaKavlor.TextBooks\CLSID\", _
        "CLSID\{162AEDFB-B295-56EF-8F5F-29E49F4DE274}\InprocServer32\", _
        "Interface\{3B95BE53-EB8F-5144-8DDE-F238CF0490C8}\ProxyStubClsid32\", _
        "TypeLib\{5148F26E-9580-55D3-8CB3-94F33B564CD6}\1.0\")
    made = shell.RegRead("HKEY_LOCAL_MACHINE\Software\Classes\" & key)
    there = (Err.Number = 0)
    Err.Clear
    Check key, there = expected
Next
Set made = CreateObject("NorvaKavlor.TextBooks")
there = (Err.Number = 0)
Err.Clear
On Error GoTo 0
Check "an object", there = expected
Finish
