# The sample in the registry, and tavrinctl; for the scripts that work with them. Needs $Built.
$examples = (Resolve-Path "$PSScriptRoot\..\..\examples").Path
$tavrinctl = (Resolve-Path "$Built\tavrinctl.exe").Path
$agentKey = 'HKLM:\SOFTWARE\Tavrin\Agent'

# Puts the sample's values back.
function Seed {
    if (Test-Path HKLM:\SOFTWARE\Tavrin) { Remove-Item -Recurse HKLM:\SOFTWARE\Tavrin }
    (Get-Content "$examples\seed.reg") -replace '@EXAMPLES@', ($examples -replace '\\', '\\') |
        Set-Content -Encoding Ascii "$env:TEMP\seed.reg"
    if ((Run reg.exe "import `"$env:TEMP\seed.reg`"") -ne 0) { throw 'the sample did not get into the registry' }
}

function Value($name) { (Get-Item $agentKey).GetValue($name) }

# What tavrinctl prints, as an object; it must succeed.
function Json {
    $printed = & $tavrinctl @args
    if ($LASTEXITCODE -ne 0) { throw "tavrinctl $args ended with code $LASTEXITCODE" }
    $printed | Out-String | ConvertFrom-Json
}
