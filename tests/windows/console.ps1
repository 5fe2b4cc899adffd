# What tavrinctl writes on a console, under several code pages. A window of its own gives the console; what it shows is
# read back from its buffer.
# usage: console.ps1 -Built FOLDER
param([Parameter(Mandatory)]$Built, [int]$CodePage, $Shown)
. "$PSScriptRoot\common.ps1"
. "$PSScriptRoot\sample.ps1"
$city = "Z$([char]0xFC)rich"

function ReadBuffer {
    $ui = $Host.UI.RawUI
    $area = New-Object Management.Automation.Host.Rectangle 0, 0, ($ui.BufferSize.Width - 1), $ui.CursorPosition.Y
    $cells = $ui.GetBufferContents($area)
    for ($row = 0; $row -lt $cells.GetLength(0); ++$row) {
        -join (0..($cells.GetLength(1) - 1) | ForEach-Object { $cells[$row, $_].Character })
    }
}

if ($Shown) {
    # In that window.
    & chcp.com $CodePage | Out-Null
    & $tavrinctl show 'Tavrin Agent'
    $after = (& chcp.com) -replace '\D', ''
    @("code page $after") + (ReadBuffer) | Set-Content -Encoding UTF8 $Shown
    exit
}

Seed
Set-ItemProperty $agentKey AgentDomain $city
foreach ($page in 437, 1252, 65001) {
    $file = "$env:TEMP\console-$page.txt"
    $words = "-NoProfile -ExecutionPolicy Bypass -File `"$PSCommandPath`" -Built `"$Built`" -CodePage $page -Shown `"$file`""
    Run powershell.exe $words | Out-Null
    $lines = Get-Content -Encoding UTF8 $file
    Expect "console, code page ${page}: the value" ([bool]($lines -match "AgentDomain.*$city\s*$")) $true
    Expect "console, code page ${page}: stays" $lines[0] "code page $page"
}
