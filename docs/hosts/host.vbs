' A host in VBScript: opens the customers' opening balances, and arranges the screen in the hooks of its service
' object, OpeningHost.Service. That has the interface of platform/windows/host_service.idl, which a script cannot
' have, and hands each call on to the object in its Handler.
'   cscript //nologo host.vbs CONNECTION-STRING FILE
' The screen lives in the message loop of the box that is shown at the end.
Option Explicit

Class Hooks
  Public File

  Public Sub ScreenStarting(screen)
    WScript.Echo "Starting " & screen.Name
  End Sub

  ' What forms of the platform have, a screen has.
  Public Sub ScreenReady(screen, flag)
    WScript.Echo "Ready " & screen.Caption & " " & flag
    Dim control, names
    For Each control In screen.Controls
      names = names & " " & control.Name
    Next
    WScript.Echo screen.Controls.Count & " controls:" & names
    With screen.cmdExit
      .Move 1500, 7600, 2000
      .Tag = "moved by the host"
      .TabIndex = 0
      .Font.Bold = True
      .Font.Name = "Courier New"
      WScript.Echo .Tag & ": " & .Left & " " & .Top & " " & .Width & " " & .TabIndex & " " & .Font.Name
    End With
    Set screen.Icon = service.Picture
    WScript.Echo "Icon set: " & (screen.Icon Is service.Picture)
    screen.Hide
    WScript.Echo "Visible: " & screen.Visible
    screen.Show
    ' The file is chosen already; its user has to press View and Import only.
    screen.TxtFileName.Text = File
    screen.cmdview.Enabled = True
    screen.CmdBrowse.Enabled = False
    screen.cmdview.SetFocus
    TryWhatIsNotThere screen
  End Sub

  Public Function CaptionText(application, category, key)
    CaptionText = key
  End Function

  ' To the console instead of a box.
  Public Function ShowMessage(prompt, style)
    WScript.Echo "Message " & style & ": " & prompt
    ShowMessage = vbOK
  End Function

  Private Sub TryWhatIsNotThere(screen)
    On Error Resume Next
    screen.ZOrder
    WScript.Echo "ZOrder " & Err.Number
    Err.Clear
    screen.cmdExit.Hide
    WScript.Echo "Hide of a button " & Err.Number
    Err.Clear
    screen.CmdBrowse.SetFocus
    WScript.Echo "SetFocus where it cannot be " & Err.Number
  End Sub
End Class

Dim service, handler, connection, component
Set service = WScript.CreateObject("OpeningHost.Service")
Set handler = New Hooks
handler.File = WScript.Arguments(1)
Set service.Handler = handler

Set connection = WScript.CreateObject("ADODB.Connection")
connection.Open WScript.Arguments(0)
Set component = WScript.CreateObject("Velk_OpnImp.Velk_ClsOpnImp")
component.FileName = WScript.Arguments(1)
component.MoveNext
WScript.Echo component.Count & " fields, the first: " & component.Fields(0)
component.ImportCustomerOpening connection, service.Picture
MsgBox "Press OK when the import is done.", vbInformation, "A host in VBScript"
connection.Close
WScript.Echo "Closed " & connection.State
