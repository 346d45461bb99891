; Which folder the game is in, or goes to. It is called "Orlavane", in that case: the game removes no other.

!define FOLDER_NAME "Orlavane"

; $0: a path; without the separators at its end.
Function StripPath
    ${Do}
        StrCpy $2 $0 1 -1
        ${If} $2 != "\"
        ${AndIf} $2 != "/"
            ${Break}
        ${EndIf}
        StrCpy $0 $0 -1
    ${Loop}
FunctionEnd

; $0: a path; empty unless it is the folder of a game, or of one whose replacement was cut off.
Function KeepGameFolder
    Call StripPath
    ${GetFileName} $0 $2
    ${If} $2 S== "${FOLDER_NAME}"
        ${If} ${FileExists} "$0\${PROGRAM}"
        ${OrIf} ${FileExists} "$0\${OLD}\${PROGRAM}"
            Return
        ${EndIf}
    ${EndIf}
    StrCpy $0 ""
FunctionEnd

!define CLSID_ShellLink {00021401-0000-0000-C000-000000000046}
!define IID_IShellLinkW {000214F9-0000-0000-C000-000000000046}
!define IID_IPersistFile {0000010B-0000-0000-C000-000000000046}

; $0: a shortcut; the folder that it starts its program in, or empty. Its target would not do: that is kept in a form
; that loses letters.
Function ReadLink
    StrCpy $2 $0
    StrCpy $0 ""
    System::Call 'ole32::CoCreateInstance(g "${CLSID_ShellLink}", p 0, i 1, g "${IID_IShellLinkW}", *p .r3) i .r5'
    ${If} $5 <> 0
        Return
    ${EndIf}
    System::Call '$3->0(g "${IID_IPersistFile}", *p .r4) i .r5' ; QueryInterface
    ${If} $5 = 0
        System::Call '$4->5(w r2, i 0) i .r5' ; Load
        ${If} $5 = 0
            System::Call '$3->8(w .r0, i ${NSIS_MAX_STRLEN})' ; GetWorkingDirectory
        ${EndIf}
        System::Call '$4->2()' ; Release
    ${EndIf}
    System::Call '$3->2()'
FunctionEnd

; $INSTDIR: the folder of the player's game, or empty. The game names its own when it starts an update.
Function FindGame
    ReadEnvStr $0 ORLAVANE_FOLDER
    Call KeepGameFolder
    ${If} $0 == ""
        StrCpy $0 $MenuLink
        Call ReadLink
        Call KeepGameFolder
    ${EndIf}
    ${If} $0 == ""
        StrCpy $0 $DesktopLink
        Call ReadLink
        Call KeepGameFolder
    ${EndIf}
    ${If} $0 == ""
        StrCpy $0 "$LOCALAPPDATA\Programs\${FOLDER_NAME}"
        Call KeepGameFolder
    ${EndIf}
    StrCpy $INSTDIR $0
FunctionEnd

; $0: an existing folder; $2 is 1 if something lies in it that is nobody's but the player's.
Function HoldsOtherThings
    StrCpy $2 0
    ${If} ${FileExists} "$0\${PROGRAM}"
    ${OrIf} ${FileExists} "$0\${NEW}\*.*" ; a set-up that was cut off
        Return
    ${EndIf}
    FindFirst $3 $4 "$0\*.*"
    ${DoUntil} $4 == ""
        ${If} $4 != "."
        ${AndIf} $4 != ".."
            StrCpy $2 1
        ${EndIf}
        FindNext $3 $4
    ${Loop}
    FindClose $3
FunctionEnd

; $0: what the player typed or chose; the folder that the game goes to, or empty if it cannot. The removal takes that
; folder whole, so that nothing else may be in it.
Function SettleFolder
    StrCpy $2 $0 1 1
    StrCpy $3 $0 2
    ${If} $2 != ":"
    ${AndIf} $3 != "\\"
        StrCpy $0 ""
        Return
    ${EndIf}
    System::Call 'kernel32::GetFullPathNameW(w r0, i ${NSIS_MAX_STRLEN}, w .r0, p 0)'
    Call StripPath
    ${GetFileName} $0 $2
    ${If} $2 == "${FOLDER_NAME}"
        ${GetParent} $0 $0
    ${EndIf}
    StrCpy $0 "$0\${FOLDER_NAME}"
    Call HoldsOtherThings
    ${If} $2 = 1
        StrCpy $0 ""
    ${EndIf}
FunctionEnd
