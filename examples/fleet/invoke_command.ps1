# Applies the desired state in agent.json to machines, over PowerShell remoting:
#
#     .\invoke_command.ps1 -ComputerName web1, web2
#
# Ends with 1 unless every machine was reached and tavrinctl ended with 0 there.
param([string[]] $ComputerName, [string] $State = "$PSScriptRoot\agent.json")
$desired = Get-Content -Raw -Encoding UTF8 $State
$done = Invoke-Command -ComputerName $ComputerName -ArgumentList $desired -ScriptBlock {
    param($desired)
    $OutputEncoding = [System.Text.UTF8Encoding]::new($false)
    $output = $desired | & "$env:ProgramW6432\Tavrin Configuration\tavrinctl.exe" apply -
    [pscustomobject]@{ ExitCode = $LASTEXITCODE; Output = $output -join "`n" }
}
$done | Format-Table -Wrap PSComputerName, ExitCode, Output
if (@($done | Where-Object ExitCode -eq 0).Count -ne $ComputerName.Count) { exit 1 }
