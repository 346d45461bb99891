; The set-up program for Windows: a wizard for the player who installs the game, and the update that the game fetches
; and starts. scripts/package-windows-setup builds it and gives it VERSION, VERSION_NUMBERS, OUTPUT, PACKAGE (the
; folder with the game) and WORK (the folder with words.nsh, files.nsh, license.txt, side.bmp and attempt.dll).
;
;   setup.nsi         the program: its modes, its language, its pages in their order
;   setup_place.nsh   which folder the game is in, or goes to
;   setup_pages.nsh   what the pages show
;   setup_files.nsh   how files are replaced, all or none
;
; Options: /S asks nothing and shows nothing, /FOLDER=PATH names the place, /PATIENCE=SECONDS tells how long a running
; game is waited for. Exit codes:
!define IS_DONE 0
!define ANOTHER_RUNS 3
!define NO_SUCH_FOLDER 4
!define NO_ROOM 5
!define GAME_RUNS 6
!define NOT_WRITTEN_TO 7

Unicode true
Target amd64-unicode
RequestExecutionLevel user
ManifestDPIAware true
ManifestLongPathAware true
ManifestSupportedOS Win10
SetCompressor lzma ; each file by itself: all as one go through a file in TEMP, whose room nobody has counted
SetDateSave off ; or the archive would hold the time of each file
CRCCheck force

Name "Orlavane"
OutFile "${OUTPUT}"
Caption "$(TITLE)"
BrandingText "Orlavane ${VERSION}"
MiscButtonText "$(BACK)" "$(NEXT)" "$(CANCEL)" "$(FINISH)"
InstallButtonText "$(INSTALL)"
CompletedText "$(DONE)"
ShowInstDetails show
AutoCloseWindow true ; a failure has a page of its own

VIProductVersion "${VERSION_NUMBERS}"
VIAddVersionKey /LANG=0 "ProductName" "Orlavane"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "CompanyName" "Orlavane"
VIAddVersionKey /LANG=0 "LegalCopyright" "the Orlavane team"
VIAddVersionKey /LANG=0 "FileDescription" "Orlavane Setup"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!addplugindir /amd64-unicode "${WORK}"

Var IsUpdate     ; 1 in a set-up program that the game has fetched and started
Var Failure      ; an exit code
Var FailureText  ; what the player reads about it
Var Patience     ; tenths of a second
Var DesktopLink
Var MenuLink

!define PROGRAM "Orlavane.exe"
!define LEFT_BEHIND "Orlavane-setup.exe" ; the copy of this program that the game compares with the update server's
!define UPDATE_NAME "Orlavane-setup-update.exe" ; as the game calls what it has fetched

; --- Pages

!define MUI_ICON "${REPOSITORY}/packaging/icons/orlavane.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${WORK}/side.bmp"
!define MUI_CUSTOMFUNCTION_GUIINIT MarkWindow

!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipInUpdate
!define MUI_PAGE_CUSTOMFUNCTION_SHOW ShowWelcome
!define MUI_WELCOMEPAGE_TITLE "$(WELCOME)"
!define MUI_WELCOMEPAGE_TITLE_3LINES
!define MUI_WELCOMEPAGE_TEXT "$(INTRODUCTION)$\r$\n$\r$\n$(START_HINT)"
!insertmacro MUI_PAGE_WELCOME

!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipInUpdate
!define MUI_PAGE_CUSTOMFUNCTION_SHOW ShowLicense
!define MUI_PAGE_HEADER_TEXT "$(LICENSE_TITLE)"
!define MUI_PAGE_HEADER_SUBTEXT "$(LICENSE_LANGUAGE)"
!define MUI_LICENSEPAGE_TEXT_TOP " "
!define MUI_LICENSEPAGE_TEXT_BOTTOM " "
!define MUI_LICENSEPAGE_BUTTON "$(NEXT)"
!define MUI_LICENSEPAGE_CHECKBOX
!define MUI_LICENSEPAGE_CHECKBOX_TEXT "$(ALLOW_TERMS)"
!insertmacro MUI_PAGE_LICENSE "${WORK}/license.txt"

Page custom ShowLocation LeaveLocation

!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipOnTheWayBack
!define MUI_PAGE_CUSTOMFUNCTION_SHOW ShowInstall
!define MUI_PAGE_HEADER_TEXT "$(COPYING_FILES)"
!define MUI_PAGE_HEADER_SUBTEXT " "
!define MUI_INSTFILESPAGE_FINISHHEADER_TEXT "$(COPYING_FILES)"
!define MUI_INSTFILESPAGE_FINISHHEADER_SUBTEXT " "
!define MUI_INSTFILESPAGE_ABORTHEADER_TEXT "$(FAILED)"
!define MUI_INSTFILESPAGE_ABORTHEADER_SUBTEXT " "
!insertmacro MUI_PAGE_INSTFILES

Page custom ShowFailure

!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipInUpdate
!define MUI_PAGE_CUSTOMFUNCTION_SHOW ShowFinish
!define MUI_FINISHPAGE_TITLE "$(INSTALLED)"
!define MUI_FINISHPAGE_TITLE_3LINES
!define MUI_FINISHPAGE_TEXT "$(COPIED_TO)$\r$\n$\r$\n$INSTDIR"
!define MUI_FINISHPAGE_TEXT_LARGE
!define MUI_FINISHPAGE_BUTTON "$(FINISH)"
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "$(START_GAME)"
!define MUI_FINISHPAGE_RUN_FUNCTION StartGame
!define MUI_FINISHPAGE_NOREBOOTSUPPORT
!insertmacro MUI_PAGE_FINISH

; --- Languages

!macro SETUP_LANGUAGE index name
    !insertmacro MUI_LANGUAGE "${name}"
    !define LANGUAGE_${index} ${LANG_${name}}
!macroend
!include "${WORK}/words.nsh"

; The fonts that these files name are those of old systems.
SetFont /LANG=${LANG_SIMPCHINESE} "Microsoft YaHei UI" 9
SetFont /LANG=${LANG_JAPANESE} "Yu Gothic UI" 9

!macro LANGUAGE_IF_CHOSEN index
    ${If} $0 = ${index}
        StrCpy $LANGUAGE ${LANGUAGE_${index}}
    ${EndIf}
!macroend

; The player's choice in the game; Windows' language, which the engine has taken, if there is none.
Function ChooseLanguage
    ClearErrors
    FileOpen $1 "$APPDATA\Orlavane\Orlavane\settings.ini" r
    IfErrors done
    StrCpy $0 -1
    next_line:
        FileRead $1 $2
        IfErrors end_of_file
        StrCpy $3 $2 9
        ${If} $3 == "language="
            StrCpy $0 $2 "" 9
            IntOp $0 $0 + 0 ; without the end of the line
        ${EndIf}
        Goto next_line
    end_of_file:
    FileClose $1
    !insertmacro LANGUAGE_IF_CHOSEN 0
    !insertmacro LANGUAGE_IF_CHOSEN 1
    !insertmacro LANGUAGE_IF_CHOSEN 2
    !insertmacro LANGUAGE_IF_CHOSEN 3
    !insertmacro LANGUAGE_IF_CHOSEN 4
    !insertmacro LANGUAGE_IF_CHOSEN 5
    !insertmacro LANGUAGE_IF_CHOSEN 6
    !insertmacro LANGUAGE_IF_CHOSEN 7
    !insertmacro LANGUAGE_IF_CHOSEN 8
    !insertmacro LANGUAGE_IF_CHOSEN 9
    !insertmacro LANGUAGE_IF_CHOSEN 10
    !insertmacro LANGUAGE_IF_CHOSEN 11
    !insertmacro LANGUAGE_IF_CHOSEN 12
    !insertmacro LANGUAGE_IF_CHOSEN 13
    done:
FunctionEnd

; --- One at a time

!define WINDOW_MARK "Orlavane.setup"

Function MarkWindow
    System::Call 'user32::SetPropW(p $HWNDPARENT, w "${WINDOW_MARK}", p 1)'
    Call ShowIcon
FunctionEnd

; In a window that runs from right to left the icon beside the titles has no width.
Function ShowIcon
    ${If} $(^RTL) = 0
        Return
    ${EndIf}
    GetDlgItem $0 $HWNDPARENT 1039
    System::Call 'user32::GetWindowRect(p r0, @ r1)'
    System::Call 'user32::MapWindowPoints(p 0, p $HWNDPARENT, p r1, i 1)'
    System::Call '*$1(i .r2, i .r3)'
    System::Call 'user32::GetSystemMetrics(i 11) i .r4' ; SM_CXICON
    IntOp $2 $2 - $4
    System::Call 'user32::MoveWindow(p r0, i r2, i r3, i r4, i r4, i 1)'
FunctionEnd

; Leaves the player with the set-up program that runs already.
Function RefuseToBeSecond
    System::Call 'kernel32::CreateMutexW(p 0, i 0, w "Orlavane-setup") p .r0 ?e'
    Pop $0
    ${If} $0 <> 183 ; ERROR_ALREADY_EXISTS
        Return
    ${EndIf}
    StrCpy $0 0
    ${Do}
        FindWindow $0 "#32770" "" 0 $0
        System::Call 'user32::GetPropW(p r0, w "${WINDOW_MARK}") p .r1'
        ${If} $1 P<> 0
            ShowWindow $0 ${SW_RESTORE}
            System::Call 'user32::SetForegroundWindow(p r0)'
            ${Break}
        ${EndIf}
    ${LoopUntil} $0 P= 0
    SetErrorLevel ${ANOTHER_RUNS}
    Quit
FunctionEnd

; --- Begin and end

!include "${REPOSITORY}/packaging/windows/setup_files.nsh"
!include "${REPOSITORY}/packaging/windows/setup_place.nsh"
!include "${REPOSITORY}/packaging/windows/setup_pages.nsh"

; $1: "/NAME="; $0: the value, which may stand in quotes, with the name or without; empty if the option is not given.
Function ReadOption
    StrLen $2 $1
    ${GetParameters} $0
    StrCpy $4 " "
    ${Do} ; to the begin of the value; $4 is what stands before the name
        ${If} $0 == ""
            Return
        ${EndIf}
        StrCpy $3 $0 $2
        ${If} $3 == $1
            StrCpy $0 $0 "" $2
            ${Break}
        ${EndIf}
        StrCpy $4 $0 1
        StrCpy $0 $0 "" 1
    ${Loop}
    StrCpy $3 $0 1
    ${If} $3 == '"'
        StrCpy $4 '"'
        StrCpy $0 $0 "" 1
    ${ElseIf} $4 != '"'
        StrCpy $4 " "
    ${EndIf}
    StrCpy $2 0
    ${Do} ; to its end
        StrCpy $3 $0 1 $2
        ${If} $3 == $4
        ${OrIf} $3 == ""
            ${Break}
        ${EndIf}
        IntOp $2 $2 + 1
    ${Loop}
    StrCpy $0 $0 $2
FunctionEnd

Function .onInit
    Call ChooseLanguage
    Call RefuseToBeSecond

    ; Where the game's removal looks for them.
    ReadEnvStr $0 USERPROFILE
    StrCpy $DesktopLink "$0\Desktop\Orlavane.lnk"
    ReadEnvStr $0 APPDATA
    StrCpy $MenuLink "$0\Microsoft\Windows\Start Menu\Programs\Orlavane.lnk"

    ; A plugin that finds no room when it is needed would end the section itself.
    InitPluginsDir
    File "/oname=$PLUGINSDIR\attempt.dll" "${WORK}/attempt.dll"

    StrCpy $Failure ${IS_DONE}
    StrCpy $WithDesktopLink ${BST_CHECKED}
    StrCpy $WithMenuLink ${BST_CHECKED}

    StrCpy $1 "/PATIENCE="
    Call ReadOption
    ${If} $0 == ""
        StrCpy $0 60
    ${EndIf}
    IntOp $Patience $0 * 10

    Call FindGame
    ${If} $INSTDIR != ""
        Call Heal
        StrCpy $IsUpdate 0
        ${If} $EXEFILE == "${UPDATE_NAME}"
            StrCpy $IsUpdate 1
        ${EndIf}
    ${Else}
        StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Orlavane"
    ${EndIf}

    StrCpy $1 "/FOLDER="
    Call ReadOption
    ${If} $0 != ""
        StrCpy $IsUpdate 0
        Call SettleFolder
        ${If} $0 == ""
            SetErrorLevel ${NO_SUCH_FOLDER}
            Quit
        ${EndIf}
        StrCpy $INSTDIR $0
    ${ElseIf} ${Silent}
    ${AndIf} $EXEFILE == "${UPDATE_NAME}"
    ${AndIf} $IsUpdate = 0
        SetErrorLevel ${NO_SUCH_FOLDER}
        Quit
    ${EndIf}
FunctionEnd

Section
    Call Install
    SetErrorLevel $Failure
SectionEnd

Function StartGame
    SetOutPath $INSTDIR
    Exec '"$INSTDIR\${PROGRAM}"'
    SetOutPath $TEMP ; or nobody could remove the folder
FunctionEnd

; The player had the game before the update and has it again, in the old version after a failure.
Function StartAgain
    ${If} $IsUpdate = 1
    ${AndIf} $Failure <> ${GAME_RUNS}
        Call StartGame
    ${EndIf}
FunctionEnd

Function .onInstSuccess
    Call StartAgain
FunctionEnd
