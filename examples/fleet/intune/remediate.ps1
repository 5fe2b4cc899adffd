# Remediation script for detect.ps1, with the same desired state. Ends with 0 if the agent is in this state afterwards.
# Do not let it run with the logged-on user's credentials: it needs SYSTEM.
$OutputEncoding = [System.Text.UTF8Encoding]::new($false)
$desired = @'
{
  "schema": 1,
  "configurations": {
    "Tavrin Agent": { "values": { "ServerList": "alpha.example,beta.example:5001", "Interval": 30 } }
  }
}
'@
$desired | & "$env:ProgramW6432\Tavrin Configuration\tavrinctl.exe" apply -
if ($LASTEXITCODE -ne 0) { exit 1 }
exit 0
