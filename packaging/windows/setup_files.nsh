; How files are replaced, all or none. The new ones are unpacked into a folder inside the game's; then the old ones are
; set aside into another, the program first, and the new ones renamed into their place, the program last. So whoever
; starts the game gets a whole one or none.
;
; Wherever a run is cut off, the next one knows what lies where: an entry that the folder NEW lacks is already in its
; place, and once the program is, the rest is clearing up.

!define NEW "Orlavane-setup-new"
!define OLD "Orlavane-setup-old"

; EACH_ENTRY (for all but the program and the copy of this one), UNPACK, ENTRY_STEP and BYTES_NEEDED
!include "${WORK}/files.nsh"

Var WithDesktopLink
Var WithMenuLink
Var MadeDesktopLink ; 1 if it was not there before
Var MadeMenuLink

; What the player sees of the work. The engine's own words stay away.
!macro SAY text
    SetDetailsPrint both
    DetailPrint "${text}"
    SetDetailsPrint none
!macroend

!macro FAIL code text
    StrCpy $Failure ${code}
    StrCpy $FailureText "${text}"
!macroend

!macro RETURN_AFTER_FAILURE
    ${If} $Failure <> ${IS_DONE}
        Return
    ${EndIf}
!macroend

; $0 becomes $1. Virus scanners hold new files for moments. The error flag tells of a failure.
Function Move
    StrCpy $2 50
    ${Do}
        ClearErrors
        Rename $0 $1
        ${IfNot} ${Errors} ; which clears the flag
            Return
        ${EndIf}
        Sleep 100
        IntOp $2 $2 - 1
    ${LoopUntil} $2 = 0
    SetErrors
FunctionEnd

; $3: an entry. One that this program itself runs from keeps its place: it is the same.
!macro RETURN_IF_RUNNING_FROM_IT
    ${If} "$INSTDIR\$3" == $EXEPATH
        Return
    ${EndIf}
!macroend

Function SetAside
    !insertmacro RETURN_AFTER_FAILURE
    !insertmacro RETURN_IF_RUNNING_FROM_IT
    ${If} ${FileExists} "$INSTDIR\$3"
        StrCpy $0 "$INSTDIR\$3"
        StrCpy $1 "$INSTDIR\${OLD}\$3"
        Call Move
        Call NoteMove
    ${EndIf}
FunctionEnd

Function MoveIn
    !insertmacro RETURN_AFTER_FAILURE
    !insertmacro RETURN_IF_RUNNING_FROM_IT
    StrCpy $0 "$INSTDIR\${NEW}\$3"
    StrCpy $1 "$INSTDIR\$3"
    Call Move
    Call NoteMove
FunctionEnd

Function NoteMove
    ${If} ${Errors}
        StrCpy $WordArgument $3
        !insertmacro FAIL ${NOT_WRITTEN_TO} "$(NOT_WRITTEN)$\r$\n$INSTDIR"
    ${EndIf}
FunctionEnd

Function MoveOut
    !insertmacro RETURN_IF_RUNNING_FROM_IT
    ${IfNot} ${FileExists} "$INSTDIR\${NEW}\$3"
    ${AndIf} ${FileExists} "$INSTDIR\$3"
        StrCpy $0 "$INSTDIR\$3"
        StrCpy $1 "$INSTDIR\${NEW}\$3"
        Call Move
    ${EndIf}
FunctionEnd

Function PutBack
    ${If} ${FileExists} "$INSTDIR\${OLD}\$3"
        StrCpy $0 "$INSTDIR\${OLD}\$3"
        StrCpy $1 "$INSTDIR\$3"
        Call Move
    ${EndIf}
FunctionEnd

!macro WITH function entry
    StrCpy $3 "${entry}"
    Call ${function}
!macroend

Function Swap
    !insertmacro RETURN_AFTER_FAILURE
    !insertmacro SAY "$(FINISHING)"
    CreateDirectory "$INSTDIR\${OLD}"
    !insertmacro WITH SetAside "${PROGRAM}"
    !insertmacro EACH_ENTRY SetAside
    !insertmacro WITH SetAside "${LEFT_BEHIND}"
    !insertmacro EACH_ENTRY MoveIn
    !insertmacro WITH MoveIn "${LEFT_BEHIND}"
    !insertmacro WITH MoveIn "${PROGRAM}"
FunctionEnd

; As it was before the swap.
Function SwapBack
    !insertmacro WITH MoveOut "${PROGRAM}"
    !insertmacro EACH_ENTRY MoveOut
    !insertmacro WITH MoveOut "${LEFT_BEHIND}"
    !insertmacro EACH_ENTRY PutBack
    !insertmacro WITH PutBack "${LEFT_BEHIND}"
    !insertmacro WITH PutBack "${PROGRAM}"
FunctionEnd

; Only what is not needed any more may lie in them.
Function ClearUp
    ${IfNot} ${FileExists} "$INSTDIR\${OLD}\${PROGRAM}"
    ${OrIf} ${FileExists} "$INSTDIR\${PROGRAM}"
        RMDir /r "$INSTDIR\${OLD}"
        RMDir /r "$INSTDIR\${NEW}"
    ${EndIf}
FunctionEnd

; After a failure.
Function TakeBack
    SetOutPath $TEMP ; nobody can remove the folder that a program works in
    ${If} ${FileExists} "$INSTDIR\${OLD}\*.*"
        Call SwapBack
    ${EndIf}
    Call ClearUp
    ${If} $MadeDesktopLink = 1
        Delete $DesktopLink
    ${EndIf}
    ${If} $MadeMenuLink = 1
        Delete $MenuLink
    ${EndIf}
    RMDir $INSTDIR ; if nothing is in it
FunctionEnd

; Ends what an earlier run has begun.
Function Heal
    ${If} ${FileExists} "$INSTDIR\${OLD}\*.*"
        ${IfNot} ${FileExists} "$INSTDIR\${PROGRAM}"
        ${OrIf} ${FileExists} "$INSTDIR\${NEW}\${PROGRAM}"
            Call SwapBack
        ${EndIf}
    ${EndIf}
    Call ClearUp
FunctionEnd

Function MakeFolder
    CreateDirectory $INSTDIR
    ${IfNot} ${FileExists} "$INSTDIR\*.*"
        !insertmacro FAIL ${NOT_WRITTEN_TO} "$(NO_FOLDER)$\r$\n$INSTDIR"
    ${EndIf}
FunctionEnd

Function CheckRoom
    !insertmacro RETURN_AFTER_FAILURE
    System::Call 'kernel32::GetDiskFreeSpaceExW(w "$INSTDIR", *l .r0, p 0, p 0) i .r1'
    ${If} $1 <> 0
    ${AndIf} $0 L< ${BYTES_NEEDED}
        StrCpy $WordArgument "${PROGRAM}"
        !insertmacro FAIL ${NO_ROOM} "$(DISK_FULL)"
    ${EndIf}
FunctionEnd

; $3: an entry, before and after it is unpacked.
!macro BEGIN_ENTRY entry
    StrCpy $WordArgument "${entry}"
    !insertmacro SAY "${entry}: $(COPYING)"
    ClearErrors
!macroend

!macro END_ENTRY entry
    ${If} ${Errors}
        !insertmacro FAIL ${NOT_WRITTEN_TO} "$(NOT_WRITTEN)$\r$\n$INSTDIR"
        Return
    ${EndIf}
    !insertmacro SAY "${entry}: $(DONE)"
    ; The engine moves its bar, which is 30000 long, at the end of the section alone.
    SendMessage $mui.InstFilesPage.ProgressBar 0x0403 ${ENTRY_STEP} 0 ; PBM_DELTAPOS
!macroend

Function UnpackFiles
    SetOverwrite try ; a file that cannot be opened is a failure of ours and no question of the engine's
    !insertmacro UNPACK
    !insertmacro BEGIN_ENTRY "${LEFT_BEHIND}"
    System::Call 'kernel32::CopyFileW(w "$EXEPATH", w "$INSTDIR\${NEW}\${LEFT_BEHIND}", i 0) i .r0 ?e'
    Pop $1
    ${If} $0 = 0
        ${If} $1 = 112 ; ERROR_DISK_FULL
            Abort
        ${EndIf}
        SetErrors
    ${EndIf}
    !insertmacro END_ENTRY "${LEFT_BEHIND}"
FunctionEnd

Function Unpack
    !insertmacro RETURN_AFTER_FAILURE
    GetFunctionAddress $0 UnpackFiles
    attempt::Call $0
    ${If} ${Errors} ; the engine has ended it, because a file could not be written to its end.
        !insertmacro FAIL ${NO_ROOM} "$(DISK_FULL)"
    ${EndIf}
    SetOutPath $TEMP
FunctionEnd

; Nobody can write to the file of a program that runs.
Function WaitForGame
    !insertmacro RETURN_AFTER_FAILURE
    StrCpy $2 $Patience
    ${Do}
        ; GENERIC_WRITE, shared with everybody, OPEN_EXISTING
        System::Call 'kernel32::CreateFileW(w "$INSTDIR\${PROGRAM}", i 0x40000000, i 7, p 0, i 3, i 0, p 0) p .r0 ?e'
        Pop $1
        ${If} $0 P<> -1
            System::Call 'kernel32::CloseHandle(p r0)'
        ${EndIf}
        ${If} $1 <> 32 ; ERROR_SHARING_VIOLATION
            Return
        ${EndIf}
        ${If} $2 = $Patience
            !insertmacro SAY "$(WAITING)"
        ${EndIf}
        IntOp $2 $2 - 1
        Sleep 100
    ${LoopUntil} $2 < 0
    !insertmacro FAIL ${GAME_RUNS} "$(CLOSE_GAME)"
FunctionEnd

; $0: a shortcut to make; $1 is 1 if it is new.
Function MakeLink
    StrCpy $1 1
    ${If} ${FileExists} $0
        StrCpy $1 0
    ${EndIf}
    ${GetParent} $0 $2
    CreateDirectory $2
    SetOutPath $INSTDIR ; where the shortcut starts the game
    ClearErrors
    CreateShortCut $0 "$INSTDIR\${PROGRAM}"
    ${If} ${Errors}
        StrCpy $1 0
        StrCpy $WordArgument "Orlavane.lnk"
        !insertmacro FAIL ${NOT_WRITTEN_TO} "$(NOT_WRITTEN)$\r$\n$2"
    ${EndIf}
    SetOutPath $TEMP
FunctionEnd

Function MakeLinks
    !insertmacro RETURN_AFTER_FAILURE
    ${If} $IsUpdate = 1 ; the player has them or has thrown them away
        Return
    ${EndIf}
    !insertmacro SAY "$(CREATING_SHORTCUTS)"
    ${If} $WithDesktopLink = ${BST_CHECKED}
        StrCpy $0 $DesktopLink
        Call MakeLink
        StrCpy $MadeDesktopLink $1
    ${EndIf}
    !insertmacro RETURN_AFTER_FAILURE
    ${If} $WithMenuLink = ${BST_CHECKED}
        StrCpy $0 $MenuLink
        Call MakeLink
        StrCpy $MadeMenuLink $1
    ${EndIf}
FunctionEnd

Function Install
    SetDetailsPrint none
    StrCpy $Failure ${IS_DONE}
    StrCpy $MadeDesktopLink 0
    StrCpy $MadeMenuLink 0
    Call MakeFolder
    Call Heal
    Call CheckRoom
    Call Unpack
    Call WaitForGame
    Call Swap
    Call MakeLinks
    ${If} $Failure = ${IS_DONE}
        Call ClearUp
        !insertmacro SAY "$(DONE)"
    ${Else}
        Call TakeBack
    ${EndIf}
FunctionEnd
