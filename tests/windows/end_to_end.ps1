# Drives the finished window from outside, on this desktop. What needs sample servers skips itself.
# usage: end_to_end.ps1 -Built FOLDER
param([Parameter(Mandatory)]$Built)
. "$PSScriptRoot\common.ps1"
. "$PSScriptRoot\sample.ps1"

Seed
$env:TAVRIN_SEED = "$env:TEMP\seed.reg"
& "$Built\tests\e2e_tests.exe" --gtest_brief=1
exit $LASTEXITCODE
