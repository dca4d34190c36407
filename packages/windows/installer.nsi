; The installer of one bitness, called by scripts/package:
;   makensis -DBITS=x64|x86 -DVERSION=1.2.3 -DSTAGE=FOLDER -DUNINSTALL_LIST=FILE -DRESULT=FILE installer.nsi
; It asks for whom, for all users or the current one (/AllUsers, /CurrentUser; silent with /S), and
; registers the class for the same.
!if "${BITS}" == x64
  Target amd64-unicode
  !define MULTIUSER_USE_PROGRAMFILES64
!else
  Target x86-unicode
!endif
SetCompressor /SOLID lzma
ManifestDPIAware true
; A file that cannot be written ends the installation, also without windows.
AllowSkipFiles off

!define NAME "Opening import ${BITS}"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\OpeningImport-${BITS}"
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR "${NAME}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME InstallLocation
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh

Name "${NAME}"
OutFile "${RESULT}"
BrandingText "${NAME} ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${NAME}"
VIAddVersionKey FileDescription "Installer of ${NAME}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey LegalCopyright "MIT licence"

!insertmacro MUI_PAGE_LICENSE "${STAGE}/LICENSE"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; Ends with status 2, and with a message where there are windows.
!macro stop MESSAGE
  MessageBox MB_OK|MB_ICONSTOP "${MESSAGE}" /SD IDOK
  SetErrorLevel 2
  Quit
!macroend

; A program or DLL in use cannot be opened for writing: nothing is taken away or replaced then.
!macro stopIfUsed FILE
  ${If} ${FileExists} "$INSTDIR\${FILE}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${FILE}" a
    ${If} ${Errors}
      !insertmacro stop "$INSTDIR\${FILE} is in use, or may not be changed. Close the programs that use it, and try again."
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend
!macro stopIfAnyUsed
  !insertmacro stopIfUsed Velk_OpnImp.dll
  !insertmacro stopIfUsed opnimp.exe
  !insertmacro stopIfUsed opnimp_host.exe
!macroend

; The registration takes the scope's name from here: "machine" or "user".
!macro findScope
  StrCpy $1 machine
  ${If} $MultiUser.InstallMode == CurrentUser
    StrCpy $1 user
  ${EndIf}
!macroend

Function .onInit
  ; Only /D=FOLDER has set it by now, and the next line would forget it.
  StrCpy $3 $INSTDIR
  !insertmacro MULTIUSER_INIT
  ${If} $3 != ""
    StrCpy $INSTDIR $3
  ${EndIf}
FunctionEnd

; What is removed is the installation that this program lies in, whoever else has one.
Function un.onInit
  StrCpy $3 $INSTDIR
  !insertmacro MULTIUSER_UNINIT
  ReadRegStr $2 HKCU "${UNINSTALL_KEY}" InstallLocation
  ${If} $2 == $3
    Call un.MultiUser.InstallMode.CurrentUser
  ${EndIf}
  StrCpy $INSTDIR $3
FunctionEnd

Section
  !insertmacro findScope
  !insertmacro stopIfAnyUsed
  ; What an earlier version had and this one has not is not to stay.
  ReadRegStr $2 SHCTX "${UNINSTALL_KEY}" InstallLocation
  ${If} $2 != ""
  ${AndIf} ${FileExists} "$2\uninstall.exe"
    ExecWait '"$2\uninstall.exe" /S /$MultiUser.InstallMode _?=$2' $0
    ${If} $0 != 0
      !insertmacro stop "The version in $2 could not be removed. Close the programs that use it, and try again."
    ${EndIf}
    Delete "$2\uninstall.exe"
    RMDir "$2"
  ${EndIf}

  SetOutPath "$INSTDIR"
  File /r "${STAGE}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "${NAME}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\opnimp_host.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "The authors of Opening import"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
  SectionGetSize 0 $0
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize $0

  ExecWait '"$SYSDIR\regsvr32.exe" /s /n /i:$1 "$INSTDIR\Velk_OpnImp.dll"' $0
  ${If} $0 != 0
    !insertmacro stop "The files are installed, but the class could not be registered (regsvr32: $0)."
  ${EndIf}
SectionEnd

Section Uninstall
  !insertmacro findScope
  !insertmacro stopIfAnyUsed
  ; Without the file all else can go, and come again.
  ${If} ${FileExists} "$INSTDIR\Velk_OpnImp.dll"
    ExecWait '"$SYSDIR\regsvr32.exe" /s /u /n /i:$1 "$INSTDIR\Velk_OpnImp.dll"' $0
    ${If} $0 != 0
      !insertmacro stop "The class could not be taken out of the registry (regsvr32: $0)."
    ${EndIf}
  ${EndIf}
  !include "${UNINSTALL_LIST}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  ${If} $1 == user
    ; The user may have had none before.
    DeleteRegKey /ifempty HKCU Software\Microsoft\Windows\CurrentVersion\Uninstall
  ${EndIf}
  ; This program runs as a copy, which Windows takes away at its next start; its folder is to go then, too.
  ${If} $EXEDIR != $INSTDIR
    RMDir /REBOOTOK "$EXEDIR"
  ${EndIf}
SectionEnd
