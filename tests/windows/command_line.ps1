# tavrinctl with the real registry, service manager and file system: values, the agent's restart, backups, planted DLLs.
# usage: command_line.ps1 -Built FOLDER      with the programs, the sample agent and the tests
param([Parameter(Mandatory)]$Built)
. "$PSScriptRoot\common.ps1"
. "$PSScriptRoot\sample.ps1"

$agent = (Resolve-Path "$Built\sample_agent.exe").Path
$notes = "$env:SystemRoot\Temp\sample_agent_notes.txt"
$data = "$env:ProgramData\Tavrin"
$administratorsAlone = 'S-1-5-18:2032127 S-1-5-32-544:2032127'

Seed
$state = Json show --json
Expect 'show: every configuration' ($state.configurations.PSObject.Properties.Name -join ', ') `
    'Legacy Agent, Legacy Archive, Tavrin Agent, Tray Icon'
& $agent install --notes $notes
Start-Service TavrinAgent

# A value that differs is written, and the agent restarted.
$report = Json set 'Tavrin Agent' Interval=61 --json
Expect 'set: changed' $report.changed $true
Expect 'set: restarted' ($report.configurations.'Tavrin Agent'.restarted) $true
Expect 'set: in the registry' (Value Interval) '61'
Expect 'set: service' (Get-Service TavrinAgent).Status 'Running'
Expect 'set: what the agent noted' ((Get-Content $notes | Where-Object { $_ -notlike 'setting *' }) -join ' ') `
    'started stopping stopped started'
Expect 'set again: changed' (Json set 'Tavrin Agent' Interval=61 --json).changed $false

# The backup: where only administrators write, and as it was.
Expect 'backup: is there' (Test-Path $report.backup) $true
Expect 'backup: in its folder' (Split-Path $report.backup) "$data\Backup"
Expect 'backup: rights of Tavrin' (Rights $data) $administratorsAlone
Expect 'backup: rights of Backup' (Rights "$data\Backup") $administratorsAlone
foreach ($folder in $data, "$data\Backup") {
    $owner = (Get-Acl -LiteralPath $folder).GetOwner([Security.Principal.SecurityIdentifier])
    Expect "backup: owner of $folder" $owner.Value 'S-1-5-32-544'
}
Expect 'backup: imported' (Run reg.exe "import `"$($report.backup)`"") 0
Expect 'backup: brings the value back' (Value Interval) '60'

# A folder that somebody else owns is not used.
$change = 'set "Tavrin Agent" Interval=62'
Move-Item $data "$data.ours"
$null = New-Item -ItemType Directory $data
& icacls.exe $data /setowner 'NT AUTHORITY\LOCAL SERVICE' | Out-Null
Expect 'backup: refuses a foreign folder' ((Run $tavrinctl $change) -ne 0) $true
Expect 'backup: nothing was written' (Value Interval) '60'
Remove-Item -Recurse $data
# A folder that is a link is not used either.
$null = New-Item -ItemType Junction $data -Target $env:SystemRoot\Temp
Expect 'backup: refuses a junction' ((Run $tavrinctl $change) -ne 0) $true
Expect 'backup: still nothing was written' (Value Interval) '60'
(Get-Item $data).Delete()
# One that was left open to every user is closed, with the lock file that somebody put into it.
$null = New-Item -ItemType Directory $data
& icacls.exe $data /setowner '*S-1-5-32-544' | Out-Null
& icacls.exe $data /grant '*S-1-5-32-545:(OI)(CI)M' | Out-Null
Set-Content "$data\lock" planted
Expect 'backup: uses an open folder' (Run $tavrinctl $change) 0
Expect 'backup: closes it' (Rights $data) $administratorsAlone
$others = (Get-Acl -LiteralPath "$data\lock").Access | Where-Object { $_.IdentityReference -like '*\Users' }
Expect 'backup: closes what is in it' @($others).Count 0
Remove-Item -Recurse $data
Move-Item "$data.ours" $data

# A disabled service is left alone, with a message.
Stop-Service TavrinAgent
Set-Service TavrinAgent -StartupType Disabled
Expect 'disabled agent: values are written' (Json set 'Tavrin Agent' Interval=63 --json).changed $true
Expect 'disabled agent: service' (Get-Service TavrinAgent).Status 'Stopped'
& $agent remove

# DLLs beside the programs. The careless program shows that the planted one is taken when a program lets it.
$planted = (New-Item -ItemType Directory "$env:TEMP\planted").FullName
Copy-Item "$Built\tests\planted.dll" "$planted\iphlpapi.dll"
Copy-Item "$Built\tests\careless.exe", $tavrinctl $planted
Run "$planted\careless.exe" ' ' | Out-Null
Expect 'planted DLL: taken by a careless program' (Test-Path "$planted\iphlpapi.dll.loaded") $true
Remove-Item "$planted\iphlpapi.dll.loaded"
foreach ($words in '--version', 'show', 'set "Tavrin Agent" Interval=64 --what-if') {
    Expect "planted DLL: exit code of $words" (Run "$planted\tavrinctl.exe" $words) 0
}
Expect 'planted DLL: not taken by tavrinctl' (Test-Path "$planted\iphlpapi.dll.loaded") $false
