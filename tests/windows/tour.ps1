# Walks through the window as tests/e2e/tour does under Wine, and keeps a picture of every step. There are no sample
# servers here, so it ends where the connection is tested.
# usage: tour.ps1 -Built FOLDER -Pictures FOLDER
param([Parameter(Mandatory)]$Built, [Parameter(Mandatory)]$Pictures)
. "$PSScriptRoot\common.ps1"
. "$PSScriptRoot\sample.ps1"
Add-Type -AssemblyName System.Drawing, System.Windows.Forms

$pictureFolder = (New-Item -ItemType Directory -Force $Pictures).FullName
function TakePicture($name) {
    Start-Sleep -Milliseconds 500  # the desktop shows what was drawn a moment later
    $screen = [Windows.Forms.SystemInformation]::VirtualScreen
    $bitmap = New-Object Drawing.Bitmap $screen.Width, $screen.Height
    [Drawing.Graphics]::FromImage($bitmap).CopyFromScreen($screen.Location, [Drawing.Point]::Empty, $screen.Size)
    $bitmap.Save("$pictureFolder\$name.png")
}

Seed
$env:TAVRIN_SEED = "$env:TEMP\seed.reg"
$start = New-Object Diagnostics.ProcessStartInfo (Resolve-Path "$Built\tests\tour.exe").Path
$start.UseShellExecute = $false
$start.RedirectStandardInput = $start.RedirectStandardOutput = $true
$walk = [Diagnostics.Process]::Start($start)
while ($null -ne ($line = $walk.StandardOutput.ReadLine())) {
    if ($line -match '^picture (.+)$') {
        TakePicture $Matches[1]
        $walk.StandardInput.WriteLine('taken')
    } else { $line }
}
$walk.WaitForExit()
exit $walk.ExitCode
