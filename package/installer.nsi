; The installer, and the program that removes what it installed.
; script/package calls makensis with VERSION, NUMBERS (four, with dots), KILOBYTES, STAGE (the folder with what is
; packed), FILES (a list of Install instructions, sorted), ICON and OUTPUT; with SIGN, a command that signs a file.
;
; Options: /S asks nothing; /SAMPLE registers the sample; /NOPATH leaves the PATH alone; /D=FOLDER, at the end and without
; quotes.
; Exit codes: 0 done, 1 cancelled, 2 failed, 3 a program is running and nothing was changed, 4 the MSI is installed.
; No plug-in is used: a setup that runs as SYSTEM would unpack it into a folder that others can reach for a moment.
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel admin
ManifestDPIAware true
XPStyle on
CRCCheck force
; A file that cannot be written ends the installation, also with /S: one that was left out would look like success.
AllowSkipFiles off

!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh
!include installer_path.nsh

!define NAME "Tavrin Configuration"
!define PROGRAM "$INSTDIR\tavrinconfig.exe"
!define COMMAND_LINE "$INSTDIR\tavrinctl.exe"
!define LINK "$SMPROGRAMS\${NAME}.lnk"
!define GUIDE_LINK "$SMPROGRAMS\${NAME} Guide.lnk"
!define SAMPLE_FILE "$INSTDIR\sample\sample.spec"
!define PROGRAMS "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define ENTRY "${PROGRAMS}\TavrinConfiguration"
; With this key, "Run" finds the window without its folder.
!define APP_PATH "Software\Microsoft\Windows\CurrentVersion\App Paths\tavrinconfig.exe"
; The program's own key; a value in it is a spec file.
!define LIST "SOFTWARE\Tavrin\TRConfig"
; A value for each file that was installed, with the version that installed it. Nothing else is deleted: the folder may
; have been somebody's before.
!define INSTALLED "${ENTRY}\Files"
!define SAMPLE_NAME "Tavrin Sample"
!define SAMPLE_KEY "SOFTWARE\Tavrin\Sample"

Name "${NAME}"
Caption "${NAME} ${VERSION}"
UninstallCaption "Remove ${NAME} ${VERSION}"
BrandingText " "
OutFile "${OUTPUT}"
Icon "${ICON}"
UninstallIcon "${ICON}"
InstallDir "$PROGRAMFILES64\${NAME}"
InstallDirRegKey HKLM "${ENTRY}" "InstallLocation"
ShowInstDetails show
ShowUninstDetails show
!ifdef SIGN
    !uninstfinalize '"${SIGN}" "%1"' = 0
!endif

VIProductVersion "${NUMBERS}"
VIFileVersion "${NUMBERS}"
VIAddVersionKey ProductName "${NAME}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installs ${NAME}"
VIAddVersionKey CompanyName "The tavrinconfig authors"
VIAddVersionKey LegalCopyright "Copyright (c) 2026 The tavrinconfig authors. MIT License."

Page components
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

ComponentText "The program edits the settings of the Tavrin Agent on this computer." "" "Choose what to install:"
DirText "${NAME} is installed in the following folder." "Folder"
UninstallText "The program, its guide, its entries in the Start menu and the sample are removed. The agent, its settings and the spec files that you registered yourself are kept." "Folder:"

; Windows lets nobody write to the file of a running program. Stops without any change, unless the user closes the program.
!macro StopWhileRunning FILE PROBLEM WHAT
    ${DoWhile} ${FileExists} "${FILE}"
        ClearErrors
        FileOpen $0 "${FILE}" a
        ${IfNot} ${Errors}
            FileClose $0
            ${ExitDo}
        ${EndIf}
        DetailPrint "${PROBLEM}."
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "${PROBLEM}, maybe in another person's session, and cannot be ${WHAT} meanwhile.$\r$\n$\r$\nClose it and press Retry, or press Cancel to leave everything as it is." /SD IDCANCEL IDCANCEL`
            SetErrorLevel 3
            Quit
        ${EndIf}
    ${Loop}
!macroend

!macro StopWhileAnyRuns WHAT
    !insertmacro StopWhileRunning "${PROGRAM}" "${NAME} is open" "${WHAT}"
    !insertmacro StopWhileRunning "${COMMAND_LINE}" "The command line, tavrinctl, is running" "${WHAT}"
!macroend

!macro Setup
    SetRegView 64
    SetShellVarContext all
!macroend

; Installs one file of the stage, given by its path there.
!macro Install FOLDER FILE
    SetOutPath "$INSTDIR${FOLDER}"
    File "${STAGE}/all/${FILE}"
    WriteRegStr HKLM "${INSTALLED}" `${FILE}` "${VERSION}"
!macroend

; Deletes what was installed, but for what VERSION installed, and the folders that are empty then.
!macro DeleteInstalled KEPT
    StrCpy $0 0
    ${Do}
        EnumRegValue $1 HKLM "${INSTALLED}" $0
        ${If} $1 == ""
            ${ExitDo}
        ${EndIf}
        ReadRegStr $2 HKLM "${INSTALLED}" $1
        ${If} $2 == "${KEPT}"
            IntOp $0 $0 + 1
            ${Continue}
        ${EndIf}
        Delete "$INSTDIR\$1"
        ${If} ${FileExists} "$INSTDIR\$1"
            ; Somebody has it open. It stays on the list.
            IntOp $0 $0 + 1
            ${Continue}
        ${EndIf}
        DeleteRegValue HKLM "${INSTALLED}" $1
        ${GetParent} "$INSTDIR\$1" $2
        ${DoWhile} $2 != $INSTDIR
            RMDir $2
            ${GetParent} $2 $2
        ${Loop}
    ${Loop}
!macroend

; A folder outside of the programs' own takes its rights from where it is made, and users may write to most of them.
!macro MakeFolder
    StrLen $0 "$PROGRAMFILES64\"
    StrCpy $0 "$INSTDIR" $0
    ${If} $0 != "$PROGRAMFILES64\"
    ${AndIfNot} ${FileExists} "$INSTDIR\*.*"
        CreateDirectory "$INSTDIR"
        ; Inherited rights (all but those that are named) go. SYSTEM and administrators may do all, users read and run.
        ExecWait '"$SYSDIR\icacls.exe" "$INSTDIR" /inheritance:r /grant:r *S-1-5-18:(OI)(CI)F *S-1-5-32-544:(OI)(CI)F *S-1-5-32-545:(OI)(CI)RX' $0
        ${If} $0 <> 0
            RMDir "$INSTDIR"
            Abort "The rights of the folder $INSTDIR cannot be set ($0). Choose another folder."
        ${EndIf}
    ${EndIf}
!macroend

Section "The program and its guide" ProgramSection
    SectionIn RO
    !insertmacro StopWhileAnyRuns "replaced"
    ReadRegStr $0 HKLM "${ENTRY}" "InstallLocation"
    ${If} $0 != $INSTDIR
        ; What is on the list lies elsewhere and stays there.
        DeleteRegKey HKLM "${INSTALLED}"
    ${EndIf}
    !insertmacro MakeFolder
    !include "${FILES}"
    ; Another version may have had other files.
    !insertmacro DeleteInstalled "${VERSION}"
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortCut "${LINK}" "${PROGRAM}"
    CreateShortCut "${GUIDE_LINK}" "$INSTDIR\guide.html"

    WriteRegStr HKLM "${APP_PATH}" "" "${PROGRAM}"

    WriteRegStr HKLM "${ENTRY}" "DisplayName" "${NAME}"
    WriteRegStr HKLM "${ENTRY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${ENTRY}" "Publisher" "The tavrinconfig authors"
    WriteRegStr HKLM "${ENTRY}" "DisplayIcon" "${PROGRAM}"
    WriteRegStr HKLM "${ENTRY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${ENTRY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${ENTRY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${ENTRY}" "EstimatedSize" ${KILOBYTES}
    WriteRegDWORD HKLM "${ENTRY}" "NoModify" 1
    WriteRegDWORD HKLM "${ENTRY}" "NoRepair" 1
SectionEnd

Section "tavrinctl on the PATH" PathSection
SectionEnd

Section "-PATH"
    StrCpy $0 ""
    ${If} ${SectionIsSelected} ${PathSection}
        StrCpy $0 $INSTDIR
    ${EndIf}
    ReadRegStr $1 HKLM "${ENTRY}" "OnPath"
    ${If} $0 != $1
        !insertmacro LeavePath ""
        ${If} ${SectionIsSelected} ${PathSection}
            !insertmacro JoinPath
        ${EndIf}
    ${EndIf}
SectionEnd

Section /o "Sample settings to try the program on" SampleSection
    SetOutPath "$INSTDIR\sample"
    File "${STAGE}\sample\sample.spec"
    ; A file that is already registered under this name stays registered.
    ReadRegStr $0 HKLM "${LIST}" "${SAMPLE_NAME}"
    ${If} $0 == ""
        ClearErrors
        EnumRegValue $1 HKLM "${LIST}" 0
        ${If} ${Errors}
            WriteRegDWORD HKLM "${ENTRY}" "MadeList" 1
        ${EndIf}
        WriteRegStr HKLM "${LIST}" "${SAMPLE_NAME}" "${SAMPLE_FILE}"
    ${EndIf}
    ClearErrors
    EnumRegValue $1 HKLM "${SAMPLE_KEY}" 0
    ${If} ${Errors}
        WriteRegDWORD HKLM "${ENTRY}" "MadeSample" 1
        WriteRegStr HKLM "${SAMPLE_KEY}" "Text" "Hello"
        WriteRegStr HKLM "${SAMPLE_KEY}" "Number" "42"
        WriteRegStr HKLM "${SAMPLE_KEY}" "Question" "true"
        WriteRegStr HKLM "${SAMPLE_KEY}" "Choice" "green"
        WriteRegStr HKLM "${SAMPLE_KEY}" "Folder" "$WINDIR"
    ${EndIf}
SectionEnd

; The two packages would overwrite and remove each other's files.
!macro StopBesideWindowsInstaller
    StrCpy $0 0
    ${Do}
        EnumRegKey $1 HKLM "${PROGRAMS}" $0
        ReadRegStr $2 HKLM "${PROGRAMS}\$1" "DisplayName"
        ReadRegDWORD $3 HKLM "${PROGRAMS}\$1" "WindowsInstaller"
        ${If} $2 == "${NAME}"
        ${AndIf} $3 = 1
            ReadRegStr $2 HKLM "${PROGRAMS}\$1" "DisplayVersion"
            MessageBox MB_OK|MB_ICONEXCLAMATION "${NAME} $2 was installed from its MSI package. Remove it in the list of installed programs, then start this setup again." /SD IDOK
            SetErrorLevel 4
            Quit
        ${EndIf}
        IntOp $0 $0 + 1
    ${LoopUntil} $1 == ""
!macroend

Function .onInit
    !insertmacro Setup
    !insertmacro StopBesideWindowsInstaller
    ReadRegStr $0 HKLM "${ENTRY}" "DisplayVersion"
    ReadRegStr $1 HKLM "${ENTRY}" "OnPath"
    ${GetParameters} $2
    ClearErrors
    ${GetOptions} $2 "/NOPATH" $3
    ; An upgrade leaves it as it was.
    ${If} $0 != ""
    ${AndIf} $1 == ""
    ${OrIfNot} ${Errors}
        !insertmacro UnselectSection ${PathSection}
    ${EndIf}
    ClearErrors
    ${GetOptions} $2 "/SAMPLE" $3
    ${IfNot} ${Errors}
    ${OrIf} ${FileExists} "${SAMPLE_FILE}"
        !insertmacro SelectSection ${SampleSection}
    ${EndIf}
FunctionEnd

Function un.onInit
    !insertmacro Setup
FunctionEnd

Section Uninstall
    !insertmacro StopWhileAnyRuns "removed"
    ReadRegStr $0 HKLM "${LIST}" "${SAMPLE_NAME}"
    ${If} $0 == "${SAMPLE_FILE}"
        DeleteRegValue HKLM "${LIST}" "${SAMPLE_NAME}"
    ${EndIf}
    ReadRegDWORD $0 HKLM "${ENTRY}" "MadeSample"
    ${If} $0 = 1
        DeleteRegKey HKLM "${SAMPLE_KEY}"
    ${EndIf}
    ReadRegDWORD $0 HKLM "${ENTRY}" "MadeList"
    ${If} $0 = 1
        DeleteRegKey /ifempty HKLM "${LIST}"
        DeleteRegKey /ifempty HKLM "SOFTWARE\Tavrin"
    ${EndIf}
    !insertmacro LeavePath "un."
    ReadRegStr $0 HKLM "${APP_PATH}" ""
    ${If} $0 == "${PROGRAM}"
        DeleteRegKey HKLM "${APP_PATH}"
    ${EndIf}
    !insertmacro DeleteInstalled ""
    DeleteRegKey HKLM "${ENTRY}"
    Delete "${LINK}"
    Delete "${GUIDE_LINK}"
    Delete "${SAMPLE_FILE}"
    RMDir "$INSTDIR\sample"
    Delete "$INSTDIR\uninstall.exe"
    ; Stays when somebody keeps files of their own in it.
    RMDir "$INSTDIR"
SectionEnd
