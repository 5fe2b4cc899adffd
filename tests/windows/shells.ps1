# tavrinctl in a pipe, with errors that end the script, and on another machine. Run it with each PowerShell.
# usage: shells.ps1 -Built FOLDER
param([Parameter(Mandatory)]$Built)
. "$PSScriptRoot\common.ps1"
. "$PSScriptRoot\sample.ps1"
Write-Host "PowerShell $($PSVersionTable.PSVersion)"

# Not in this file as it is: PowerShell 5.1 would read it in the machine's code page.
$city = "Z$([char]0xFC)rich"

function Domain($state) { $state.configurations.'Tavrin Agent'.values.AgentDomain.value }

Seed
& $tavrinctl set 'Tavrin Agent' "AgentDomain=$city" --restart never
Expect 'argument: in the registry' (Value AgentDomain) $city
Expect 'output: read by PowerShell' (Domain (Json show --json)) $city

# What show prints, apply takes, and finds nothing to do.
& $tavrinctl show --json | & $tavrinctl apply - --exit-code --restart never
Expect 'pipe: nothing differs' $LASTEXITCODE 0
# One value changed on the way; the others stay.
(& $tavrinctl show --json) -replace '"web1"', '"web3"' | & $tavrinctl apply - --exit-code --restart never
Expect 'pipe: one value differed' $LASTEXITCODE 3
Expect 'pipe: changed value' (Value AgentName) 'web3'
Expect 'pipe: other value' (Value AgentDomain) $city

# Success must need no word on the standard error stream: here each would end the script.
$all = & $tavrinctl set 'Tavrin Agent' Interval=64 --restart never --json 2>&1
Expect 'standard error: empty after success' ($all | Where-Object { $_ -is [Management.Automation.ErrorRecord] }) $null

# The own machine, as if it were another.
Enable-PSRemoting -Force -SkipNetworkProfileCheck | Out-Null
$there = Invoke-Command -ComputerName localhost { & $using:tavrinctl show --json }
Expect 'remoting: read' (Domain ($there | Out-String | ConvertFrom-Json)) $city
$state = '{"schema": 1, "configurations": {"Tavrin Agent": {"values": {"Interval": 65}}}}'
$code = Invoke-Command -ComputerName localhost {
    $ErrorActionPreference = 'Stop'
    $using:state | & $using:tavrinctl apply - --restart never | Out-Null
    $LASTEXITCODE
}
Expect 'remoting: applied' $code 0
Expect 'remoting: in the registry' (Value Interval) '65'
