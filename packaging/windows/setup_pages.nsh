; What the pages show.

Var FolderBox
Var DesktopBox
Var MenuBox
Var OnTheWayBack ; 1 while the player goes from the failure to the page before the installation

; The step of the wizard stands in the window's title.
!macro TITLE_OF_STEP step
    SendMessage $HWNDPARENT ${WM_SETTEXT} 0 "STR:$(TITLE) - $(${step})"
!macroend

Function SkipInUpdate
    ${If} $IsUpdate = 1
        Abort
    ${EndIf}
FunctionEnd

Function SkipOnTheWayBack
    ${If} $OnTheWayBack = 1
        Abort
    ${EndIf}
FunctionEnd

Function ShowWelcome
    !insertmacro TITLE_OF_STEP STEP_WELCOME
FunctionEnd

; The text is English: it runs from left to right in a window that does not, too.
Function ShowLicense
    !insertmacro TITLE_OF_STEP STEP_LICENSE
    System::Call 'user32::GetWindowLongPtrW(p $mui.LicensePage.LicenseText, i ${GWL_EXSTYLE}) p .r0'
    ; WS_EX_RIGHT, WS_EX_RTLREADING, WS_EX_LEFTSCROLLBAR and WS_EX_LAYOUTRTL
    IntOp $0 $0 & 0xFFBF8FFF
    System::Call 'user32::SetWindowLongPtrW(p $mui.LicensePage.LicenseText, i ${GWL_EXSTYLE}, p r0)'
    System::Call 'user32::GetWindowLongPtrW(p $mui.LicensePage.LicenseText, i ${GWL_STYLE}) p .r0'
    IntOp $0 $0 & 0xFFFFFFFD ; ES_RIGHT
    System::Call 'user32::SetWindowLongPtrW(p $mui.LicensePage.LicenseText, i ${GWL_STYLE}, p r0)'
    ; A PARAFORMAT that says PFM_ALIGNMENT and PFM_RTLPARA, for all of the text: PFA_LEFT
    System::Call '*(i 156, i 0x10008, &i2 0, &i2 0, i 0, i 0, i 0, &i2 1, &i2 0, &i128 0) p .r0'
    SendMessage $mui.LicensePage.LicenseText ${EM_SETSEL} 0 -1
    SendMessage $mui.LicensePage.LicenseText 0x0447 0 $0 ; EM_SETPARAFORMAT
    SendMessage $mui.LicensePage.LicenseText ${EM_SETSEL} 0 0
    System::Free $0
    ; It gets the room of the two texts around it, which say nothing.
    ShowWindow $mui.LicensePage.TopText ${SW_HIDE}
    ShowWindow $mui.LicensePage.Text ${SW_HIDE}
    System::Call 'user32::GetClientRect(p $mui.LicensePage, @ r1)'
    System::Call '*$1(i, i, i .r2, i .r3)'
    IntOp $3 $3 * 85
    IntOp $3 $3 / 100
    System::Call 'user32::MoveWindow(p $mui.LicensePage.LicenseText, i 0, i 0, i r2, i r3, i 1)'
FunctionEnd

Function ShowLocation
    Call SkipInUpdate
    StrCpy $OnTheWayBack 0
    !insertmacro TITLE_OF_STEP STEP_LOCATION
    !insertmacro MUI_HEADER_TEXT "$(CHOOSE_LOCATION)" " "
    nsDialogs::Create 1018
    Pop $0
    nsDialogs::SetRTL $(^RTL)

    ${NSD_CreateLabel} 0 0 100% 10u "$(INSTALL_INTO)"
    Pop $0
    ${NSD_CreateText} 0 12u 100% 13u $INSTDIR
    Pop $FolderBox
    ${NSD_CreateButton} 0 29u 110u 15u "$(CHANGE_LOCATION)"
    Pop $0
    ${NSD_OnClick} $0 ChangeLocation
    ; In tenths of a megabyte, of which nsis has no fractions.
    IntOp $0 ${MEGABYTE_TENTHS} / 10
    IntOp $1 ${MEGABYTE_TENTHS} % 10
    StrCpy $WordArgument "$0.$1"
    ${NSD_CreateLabel} 0 52u 100% 10u "$(SPACE_NEEDED)"
    Pop $0
    ${NSD_CreateCheckBox} 0 76u 100% 12u "$(DESKTOP_SHORTCUT)"
    Pop $DesktopBox
    ${NSD_SetState} $DesktopBox $WithDesktopLink
    ${NSD_CreateCheckBox} 0 92u 100% 12u "$(START_MENU)"
    Pop $MenuBox
    ${NSD_SetState} $MenuBox $WithMenuLink

    nsDialogs::Show
FunctionEnd

Function ChangeLocation
    Pop $0
    ${NSD_GetText} $FolderBox $1
    nsDialogs::SelectFolderDialog "$(CHOOSE_LOCATION)" $1
    Pop $0
    ${If} $0 != "error"
        Call SettleFolder
        ${If} $0 != ""
            ${NSD_SetText} $FolderBox $0
        ${Else}
            Call RefuseFolder
        ${EndIf}
    ${EndIf}
FunctionEnd

Function RefuseFolder
    ${NSD_GetText} $FolderBox $1
    MessageBox MB_OK|MB_ICONEXCLAMATION "$(NO_FOLDER)$\r$\n$1"
FunctionEnd

Function LeaveLocation
    ${NSD_GetState} $DesktopBox $WithDesktopLink
    ${NSD_GetState} $MenuBox $WithMenuLink
    ${NSD_GetText} $FolderBox $0
    Call SettleFolder
    ${If} $0 == ""
        Call RefuseFolder
        Abort
    ${EndIf}
    StrCpy $INSTDIR $0
FunctionEnd

Function ShowInstall
    !insertmacro TITLE_OF_STEP STEP_INSTALL
FunctionEnd

Function ShowFailure
    Call SkipInUpdate
    ${If} $Failure = ${IS_DONE}
        Abort
    ${EndIf}
    !insertmacro TITLE_OF_STEP STEP_INSTALL
    !insertmacro MUI_HEADER_TEXT "$(FAILED)" " "
    nsDialogs::Create 1018
    Pop $0
    nsDialogs::SetRTL $(^RTL)
    ${NSD_CreateLabel} 0 0 100% 100% $FailureText
    Pop $0
    ${NSD_AddStyle} $0 ${SS_NOPREFIX} ; a path may hold a "&"
    ${NSD_OnBack} LeaveFailure
    EnableWindow $mui.Button.Back 1
    EnableWindow $mui.Button.Next 0
    nsDialogs::Show
FunctionEnd

Function LeaveFailure
    StrCpy $OnTheWayBack 1
FunctionEnd

Function ShowFinish
    !insertmacro TITLE_OF_STEP FINISH
    ${NSD_AddStyle} $mui.FinishPage.Text ${SS_NOPREFIX}
    EnableWindow $mui.Button.Back 0 ; what is installed is installed
FunctionEnd
