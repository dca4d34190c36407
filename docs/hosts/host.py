"""A host in Python: opens a screen and runs its message loop until that is closed.

    python host.py CONNECTION-STRING

It takes Windows and pywin32. ./test compiles this file; it was never run there.

The hooks need a service object with an interface of its own (platform/windows/host_service.idl),
which Python alone cannot serve; without one captions are their keys, and messages appear in the
platform's message box.
"""

import sys
import time

import pythoncom
import win32gui
from win32com.client import VARIANT, Dispatch


def screen_is_open():
    try:
        return bool(win32gui.FindWindow("Velk_OpnImp.Form", None))
    except win32gui.error:  # there is no such window
        return False


def main(connection_string):
    connection = Dispatch("ADODB.Connection")
    connection.Open(connection_string)
    component = Dispatch("Velk_OpnImp.Velk_ClsOpnImp")
    no_icon = VARIANT(pythoncom.VT_DISPATCH, None)
    component.ImportBankBranchOpening(connection, no_icon)
    while screen_is_open():
        pythoncom.PumpWaitingMessages()
        time.sleep(0.01)
    connection.Close()


if __name__ == "__main__":
    main(sys.argv[1])
