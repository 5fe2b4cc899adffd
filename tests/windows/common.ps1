# What the scripts of this folder share. Each prints a line for every check, and ends with the first that fails.
$ErrorActionPreference = 'Stop'
# Exit codes are checked where they matter.
$PSNativeCommandUseErrorActionPreference = $false

function Expect($what, $found, $wanted) {
    if ($found -cne $wanted) { throw "FAILED  ${what}: '$found' instead of '$wanted'" }
    Write-Host "ok      $what"
}

# Runs a program of any kind to its end; returns its exit code.
function Run($program, $arguments) {
    (Start-Process -FilePath $program -ArgumentList $arguments -Wait -PassThru).ExitCode
}

# Who may do what with a folder, by rules of its own (not inherited): "SID:rights", sorted. 2032127 is everything,
# 1179817 to read and run.
function Rights($folder) {
    $acl = Get-Acl -LiteralPath $folder
    if (-not $acl.AreAccessRulesProtected) { return "$folder inherits its rights" }
    $rules = $acl.GetAccessRules($true, $true, [Security.Principal.SecurityIdentifier])
    ($rules | ForEach-Object { "$($_.IdentityReference):$([int]$_.FileSystemRights)" } | Sort-Object) -join ' '
}

# The machine's PATH as it is stored.
function MachinePath {
    $key = Get-Item 'HKLM:\SYSTEM\CurrentControlSet\Control\Session Manager\Environment'
    $key.GetValue('Path', '', [Microsoft.Win32.RegistryValueOptions]::DoNotExpandEnvironmentNames)
}
