; The installer, made by packaging/windows/installer, which defines VERSION, FOLDER (with all that is installed),
; PREPARED (what is made for the installer alone) and OUTPUT.
;
; It installs for all users of the computer, because only an administrator may enter the file type: the system keeps
; what an ordinary user's program writes below HKEY_LOCAL_MACHINE\Software for that user, but not the classes there.
; It writes nothing below Software\Kivora, which is the notes' place.

Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel admin
ManifestDPIAware true
ManifestSupportedOS all

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include WinVer.nsh
!include WinMessages.nsh

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kivora"
!define RUN "Software\Microsoft\Windows\CurrentVersion\Run"
!define CLASSES "Software\Classes"
!define TYPE "${CLASSES}\Kivora.Export"

Name "Kivora"
OutFile "${OUTPUT}"
BrandingText "Kivora ${VERSION}"
InstallDir "$PROGRAMFILES32\Kivora"
InstallDirRegKey HKLM "${UNINSTALL}" "InstallLocation"

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=1031 "ProductName" "Kivora"
VIAddVersionKey /LANG=1031 "CompanyName" "Kivora"
VIAddVersionKey /LANG=1031 "FileDescription" "Kivora installieren"
VIAddVersionKey /LANG=1031 "LegalCopyright" "MIT-Lizenz"
VIAddVersionKey /LANG=1031 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1031 "ProductVersion" "${VERSION}"

!define MUI_ICON "${PREPARED}/kivora.ico"
!define MUI_UNICON "${PREPARED}/kivora.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PREPARED}/side.bmp"
!define MUI_ABORTWARNING
!define MUI_PAGE_CUSTOMFUNCTION_PRE KeepFolder
!insertmacro MUI_PAGE_DIRECTORY
!define MUI_COMPONENTSPAGE_NODESC
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TITLE "Kivora ist installiert"
!define MUI_FINISHPAGE_TEXT "Das Symbol im Infobereich der Taskleiste öffnet sein Menü."
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "Kivora jetzt starten"
!define MUI_FINISHPAGE_RUN_FUNCTION StartAsUser
!insertmacro MUI_PAGE_FINISH
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Kivora wird von diesem Computer entfernt. Die Notizen aller Benutzer bleiben \
    erhalten; eine spätere Installation zeigt sie wieder."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "German"

!macro WorkWithRunningCopy prefix

; $0 is 1 while the program is in use, be it by another user, and cannot be replaced.
Function ${prefix}IsInUse
    StrCpy $0 0
    ${If} ${FileExists} "$INSTDIR\kivora.exe"
        ClearErrors
        FileOpen $1 "$INSTDIR\kivora.exe" a
        ${If} ${Errors}
            StrCpy $0 1
        ${Else}
            FileClose $1
        ${EndIf}
    ${EndIf}
FunctionEnd

; Asks the user's copy to end as the system does when the user logs off: it saves and goes. Then waits for it.
Function ${prefix}AskToEnd
    System::Call 'user32::FindWindowW(w "Kivora.Notification", p 0) p .r0'
    System::Call 'user32::GetWindowThreadProcessId(p r0, *i 0 r1) i'
    StrCpy $2 0
    StrCpy $4 0
    ${Do}
        ; Any of the program's windows may be the one that passes it on.
        System::Call 'user32::FindWindowExW(p 0, p r2, p 0, p 0) p .r2'
        System::Call 'user32::GetWindowThreadProcessId(p r2, *i 0 r3) i'
        ${If} $1 <> 0
        ${AndIf} $1 = $3
            SendMessage $2 ${WM_QUERYENDSESSION} 0 0 /TIMEOUT=2000
            SendMessage $2 ${WM_ENDSESSION} 1 0 /TIMEOUT=2000
        ${EndIf}
        ; Bounded, because windows that come and go meanwhile can make the way endless.
        IntOp $4 $4 + 1
        ${If} $4 > 5000
            StrCpy $2 0
        ${EndIf}
    ${LoopUntil} $2 P= 0
FunctionEnd

Function ${prefix}EndRunningCopy
    Call ${prefix}IsInUse
    ${If} $0 = 0
        Return
    ${EndIf}
    MessageBox MB_OKCANCEL|MB_ICONINFORMATION "Kivora läuft und wird jetzt beendet. Die Notizen sind gespeichert; \
        was Sie gerade schreiben, kommt in den Papierkorb von Kivora." /SD IDOK IDOK +2
    Abort
    ${Do}
        Call ${prefix}AskToEnd
        StrCpy $5 0
        ${Do}
            Call ${prefix}IsInUse
            ${If} $0 = 0
                Return
            ${EndIf}
            Sleep 100
            IntOp $5 $5 + 1
        ${LoopUntil} $5 = 100
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Kivora läuft noch, vielleicht bei einem anderen angemeldeten \
            Benutzer.$\r$\n$\r$\nBeenden Sie es dort mit dem Befehl „Beenden“ seines Menüs und versuchen Sie es \
            dann erneut." /SD IDCANCEL IDRETRY +2
        Abort
    ${Loop}
FunctionEnd

!macroend
!insertmacro WorkWithRunningCopy ""
!insertmacro WorkWithRunningCopy "un."

!macro TellShell
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

Function .onInit
    SetShellVarContext all
    ${IfNot} ${AtLeastWin7}
        MessageBox MB_OK|MB_ICONSTOP "Kivora braucht Windows 7 oder neuer." /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    ; With the system's questions switched off, nobody was asked for an administrator's rights.
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != "Admin"
        MessageBox MB_OK|MB_ICONSTOP "Kivora wird für alle Benutzer installiert. Das darf nur ein Administrator." \
            /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
FunctionEnd

Function un.onInit
    SetShellVarContext all
FunctionEnd

; A newer version goes where the older one is.
Function KeepFolder
    ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
    ${If} $0 != ""
    ${AndIf} ${FileExists} "$0\kivora.exe"
        StrCpy $INSTDIR $0
        Abort
    ${EndIf}
FunctionEnd

; Started by the administrator's installer itself, the program would see the administrator's notes. The user's shell
; starts it as the user.
Function StartAsUser
    Exec '"$WINDIR\explorer.exe" "$INSTDIR\kivora.exe"'
FunctionEnd

; What the program enters itself at each start, if it may. No quotation marks: the program takes the rest of the line
; as it is.
!macro Class key text
    WriteRegStr HKLM "${CLASSES}\${key}" "" "${text}"
!macroend

; Orders the firewall of Windows and does not mind when there is none: ADD or DELETE and what follows. Of the name
; there is only one rule, the installer's own.
!macro Firewall order
    nsExec::Exec '"$SYSDIR\netsh.exe" advfirewall firewall ${order}'
    Pop $0
!macroend
!define RULE 'rule name="Kivora (Notizen empfangen)"'

; Nothing is left out in silence.
AllowSkipFiles off

Section "Kivora"
    SectionIn RO
    Call EndRunningCopy
    ; Pages that a newer version has no more.
    ${If} ${FileExists} "$INSTDIR\deinstallieren.exe"
        Delete "$INSTDIR\hilfe\*.html"
        Delete "$INSTDIR\hilfe\bilder\*.png"
    ${EndIf}

    SetOutPath "$INSTDIR"
    File /r "${FOLDER}/*"
    WriteUninstaller "$INSTDIR\deinstallieren.exe"
    CreateShortcut "$SMPROGRAMS\Kivora.lnk" "$INSTDIR\kivora.exe" "" "" 0 "" "" "Notizzettel für den Bildschirm"

    !insertmacro Class ".kvr" "Kivora.Export"
    !insertmacro Class "Kivora.Export" "Exportierte Kivora-Notizen"
    !insertmacro Class "Kivora.Export\DefaultIcon" "$INSTDIR\kivora.exe,0"
    !insertmacro Class "Kivora.Export\shell" "open"
    !insertmacro Class "Kivora.Export\shell\open" "Notizen importieren"
    !insertmacro Class "Kivora.Export\shell\open\command" "$INSTDIR\kivora.exe /%1"
    !insertmacro Class "Kivora.Export\shell\print" "Notizen drucken..."
    !insertmacro Class "Kivora.Export\shell\print\command" "$INSTDIR\kivora.exe /[print] /%1"
    !insertmacro TellShell

    WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "Kivora"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayIcon" "$INSTDIR\kivora.exe,0"
    WriteRegStr HKLM "${UNINSTALL}" "Publisher" "Kivora"
    WriteRegStr HKLM "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\deinstallieren.exe"'
    WriteRegStr HKLM "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\deinstallieren.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD HKLM "${UNINSTALL}" "EstimatedSize" "$0"
SectionEnd

; Without it Windows asks at the first start, and only an administrator's answer counts.
Section "Notizen aus privaten Netzwerken empfangen (Regel der Windows-Firewall)"
    !insertmacro Firewall 'delete ${RULE}'
    !insertmacro Firewall 'add ${RULE} dir=in action=allow program="$INSTDIR\kivora.exe" protocol=TCP \
        localport=5998 profile=private,domain'
SectionEnd

Section Uninstall
    Call un.EndRunningCopy
    !insertmacro Firewall 'delete ${RULE}'

    ; Entries that name another copy of the program are that one's.
    ReadRegStr $0 HKLM "${TYPE}\shell\open\command" ""
    ${If} $0 == "$INSTDIR\kivora.exe /%1"
        DeleteRegKey HKLM "${TYPE}"
        ReadRegStr $0 HKLM "${CLASSES}\.kvr" ""
        ${If} $0 == "Kivora.Export"
            DeleteRegValue HKLM "${CLASSES}\.kvr" ""
            DeleteRegKey /ifempty HKLM "${CLASSES}\.kvr"
        ${EndIf}
        !insertmacro TellShell
    ${EndIf}
    ReadRegStr $0 HKLM "${RUN}" "Kivora"
    ${If} $0 == "$INSTDIR\kivora.exe"
        DeleteRegValue HKLM "${RUN}" "Kivora"
    ${EndIf}
    ; Those of the user who removes it; what other users have entered for themselves is out of reach.
    ReadRegStr $0 HKCU "${RUN}" "Kivora"
    ${If} $0 == '"$INSTDIR\kivora.exe"'
        DeleteRegValue HKCU "${RUN}" "Kivora"
    ${EndIf}
    ReadRegStr $0 HKCU "${TYPE}\shell\open\command" ""
    ${If} $0 == "$INSTDIR\kivora.exe /%1"
        DeleteRegKey HKCU "${TYPE}"
        DeleteRegValue HKCU "${CLASSES}\.kvr" ""
        DeleteRegKey /ifempty HKCU "${CLASSES}\.kvr"
    ${EndIf}

    ; By their names: the folder may hold what is not the program's.
    Delete "$SMPROGRAMS\Kivora.lnk"
    !include "${PREPARED}/delete.nsh"
    Delete "$INSTDIR\deinstallieren.exe"
    RMDir "$INSTDIR"
    DeleteRegKey HKLM "${UNINSTALL}"
SectionEnd
