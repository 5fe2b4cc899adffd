; The machine's PATH, for installer.nsi. The value OnPath of the installer's entry says which folder it put there; no
; other is touched.
!include WinMessages.nsh

!define ENVIRONMENT "SYSTEM\CurrentControlSet\Control\Session Manager\Environment"

; $0: folders with semicolons between; $1: a folder -> $2: the same without it, with or without a backslash at its end.
!macro DefineWithoutFolder UN
Function ${UN}WithoutFolder
    StrCpy $0 "$0;"
    StrCpy $2 ""
    ${DoWhile} $0 != ""
        StrCpy $3 0
        ${Do}
            StrCpy $4 $0 1 $3
            IntOp $3 $3 + 1
        ${LoopUntil} $4 == ";"
        IntOp $4 $3 - 1
        StrCpy $4 $0 $4
        StrCpy $0 $0 "" $3
        ${If} $4 != $1
        ${AndIf} $4 != "$1\"
            StrCpy $2 "$2$4;"
        ${EndIf}
    ${Loop}
    StrCpy $2 $2 -1
FunctionEnd
!macroend
!insertmacro DefineWithoutFolder ""
!insertmacro DefineWithoutFolder "un."

; Reads the PATH into $0; leaves an error if it has no room for ROOM characters more. A setup's texts hold fewer than
; NSIS_MAX_STRLEN characters and lose the rest: written back, such a text would leave the machine without half its PATH.
!macro ReadPath ROOM
    ClearErrors
    ReadRegStr $0 HKLM "${ENVIRONMENT}" "Path"
    StrLen $3 $0
    IntOp $3 $3 + ${ROOM}
    ${If} $3 >= ${NSIS_MAX_STRLEN}
        SetErrors
    ${EndIf}
!macroend

; Programs that are started from now on see it.
!macro WritePath TEXT
    WriteRegExpandStr HKLM "${ENVIRONMENT}" "Path" "${TEXT}"
    SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=1000
!macroend

; Takes the folder off the PATH that an installation put there.
!macro LeavePath UN
    ReadRegStr $1 HKLM "${ENTRY}" "OnPath"
    !insertmacro ReadPath 1
    ${IfNot} ${Errors}
    ${AndIf} $1 != ""
        Call ${UN}WithoutFolder
        !insertmacro WritePath "$2"
    ${EndIf}
    DeleteRegValue HKLM "${ENTRY}" "OnPath"
!macroend

; Puts $INSTDIR behind the folders on the PATH, unless it is one of them.
!macro JoinPath
    StrCpy $1 $INSTDIR
    StrLen $5 "$INSTDIR;;"
    !insertmacro ReadPath $5
    ${If} ${Errors}
        DetailPrint "The PATH of this machine is too long for this setup. Add $INSTDIR to it yourself."
    ${Else}
        StrCpy $5 $0
        Call WithoutFolder
        ${If} $2 == $5
            !insertmacro WritePath "$5;$INSTDIR"
            WriteRegStr HKLM "${ENTRY}" "OnPath" "$INSTDIR"
        ${EndIf}
    ${EndIf}
!macroend
