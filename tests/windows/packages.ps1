# Installs, upgrades, repairs and removes both packages on this machine.
# usage: packages.ps1 -Older FOLDER -Newer FOLDER [-Signed]      FOLDERs with a setup and an MSI; the older is 0.0.9
param([Parameter(Mandatory)]$Older, [Parameter(Mandatory)]$Newer, [switch]$Signed)
. "$PSScriptRoot\common.ps1"

$place = "$env:ProgramFiles\Tavrin Configuration"
$elsewhere = "$env:SystemDrive\Tavrin Elsewhere"
$entry = 'HKLM:\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\TavrinConfiguration'
$appPath = 'HKLM:\SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\tavrinconfig.exe'
$pathBefore = MachinePath
$msiRefuses = 1603
$administratorsAlone = 'S-1-5-18:2032127 S-1-5-32-544:2032127 S-1-5-32-545:1179817'

function Setup($folder, $options) { Run (Resolve-Path "$folder\*-setup.exe").Path "/S $options" }
function Msi($folder, $order, $options) {
    Run msiexec "$order `"$((Resolve-Path "$folder\*.msi").Path)`" /qn /norestart /l*v `"$env:TEMP\msi.log`" $options"
}
function RemoveSetup($folder) {
    Expect 'setup: removed' (Run "$folder\uninstall.exe" "/S _?=$folder") 0
    Remove-Item -Recurse $folder
}
function Versions($folder) {
    ('tavrinconfig.exe', 'tavrinctl.exe' | ForEach-Object {
        if (Test-Path "$folder\$_") { (Get-Item "$folder\$_").VersionInfo.FileVersionRaw } else { 'missing' }
    }) -join ' '
}
$wanted = (Get-Item (Resolve-Path "$Newer\*-setup.exe")).VersionInfo.FileVersionRaw
$old, $new = '0.0.9.0 0.0.9.0', "$wanted $wanted"

if ($Signed) {
    foreach ($file in Resolve-Path "$Newer\*-setup.exe", "$Newer\*.msi") {
        Expect "signed: $file" (Get-AuthenticodeSignature $file.Path).Status 'Valid'
    }
}

# The setup: installed, upgraded, and nothing beside it.
Expect 'setup: older version installed' (Setup $Older '/SAMPLE') 0
Expect 'setup: older programs' (Versions $place) $old
Expect 'MSI: refuses beside the setup' (Msi $Newer '/i') $msiRefuses
Expect 'MSI: says why' ([bool](Select-String -Quiet 'was installed by its setup program' "$env:TEMP\msi.log")) $true
Expect 'setup: upgraded' (Setup $Newer) 0
Expect 'setup: newer programs' (Versions $place) $new
Expect 'setup: its folder is on the PATH once' (MachinePath) "$pathBefore;$place"
Expect 'setup: App Paths' (Get-Item $appPath).GetValue('') "$place\tavrinconfig.exe"
Expect 'command line: version' (& "$place\tavrinctl.exe" --version) "tavrinctl $($wanted.ToString(3))"
if ($Signed) {
    foreach ($name in 'tavrinconfig', 'tavrinctl', 'uninstall') {
        Expect "signed: $name" (Get-AuthenticodeSignature "$place\$name.exe").Status 'Valid'
    }
}

# Nothing is replaced while a program runs.
$start = New-Object Diagnostics.ProcessStartInfo "$place\tavrinctl.exe", 'apply -'
$start.UseShellExecute, $start.RedirectStandardInput = $false, $true
$waiting = [Diagnostics.Process]::Start($start)
Expect 'setup: stops while tavrinctl runs' (Setup $Older) 3
$waiting.StandardInput.Close()
$waiting.WaitForExit()
$window = Start-Process "$place\tavrinconfig.exe" -PassThru
for ($tries = 0; $tries -lt 300 -and -not $window.MainWindowTitle; ++$tries) {
    Start-Sleep -Milliseconds 100
    $window.Refresh()
}
Expect 'window: title' $window.MainWindowTitle 'Tavrin Configuration'
Expect 'setup: stops while the window is open' (Setup $Older) 3
$null = $window.CloseMainWindow()
$window.WaitForExit()
Expect 'window: exit code' $window.ExitCode 0
Expect 'setup: nothing was replaced' (Versions $place) $new
RemoveSetup $place
Expect 'setup: entry is gone' (Test-Path $entry) $false
Expect 'setup: App Paths are gone' (Test-Path $appPath) $false
Expect 'setup: PATH is as it was' (MachinePath) $pathBefore

# In a folder that takes its rights from the disk's root.
Expect 'setup: installed elsewhere' (Setup $Newer "/NOPATH /D=$elsewhere") 0
Expect 'setup: only administrators write there' (Rights $elsewhere) $administratorsAlone
Expect 'setup: PATH left alone' (MachinePath) $pathBefore
RemoveSetup $elsewhere

# The MSI: installed, upgraded, repaired, not downgraded, and nothing beside it.
Expect 'MSI: older version installed' (Msi $Older '/i') 0
Expect 'MSI: older programs' (Versions $place) $old
Expect 'MSI: upgraded' (Msi $Newer '/i') 0
Expect 'MSI: newer programs' (Versions $place) $new
Expect 'MSI: only administrators write to its folder' (Rights $place) $administratorsAlone
Expect 'MSI: its folder is on the PATH once' (MachinePath) "$pathBefore;$place\"
Expect 'MSI: App Paths' (Get-Item $appPath).GetValue('') "$place\tavrinconfig.exe"
Remove-Item "$place\tavrinctl.exe"
Expect 'MSI: repaired' (Msi $Newer '/f') 0
Expect 'MSI: repaired programs' (Versions $place) $new
Expect 'MSI: refuses a downgrade' (Msi $Older '/i') $msiRefuses
Expect 'setup: refuses beside the MSI' (Setup $Newer) 4
Expect 'MSI: programs after that' (Versions $place) $new
Expect 'MSI: removed' (Msi $Newer '/x') 0
Expect 'MSI: folder is gone' (Test-Path $place) $false
Expect 'MSI: App Paths are gone' (Test-Path $appPath) $false
Expect 'MSI: PATH is as it was' (MachinePath) $pathBefore

# In a folder of the administrator's choice.
Expect 'MSI: installed elsewhere' (Msi $Newer '/i' "INSTALLDIR=`"$elsewhere`" ADDLOCAL=Program") 0
Expect 'MSI: only administrators write there' (Rights $elsewhere) $administratorsAlone
Expect 'MSI: PATH left alone' (MachinePath) $pathBefore
Expect 'MSI: removed from there' (Msi $Newer '/x') 0
Expect 'MSI: that folder is gone' (Test-Path $elsewhere) $false
