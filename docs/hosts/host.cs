// A host in C#: opens a screen, and arranges it in the hooks of its service object.
//   csc host.cs          (mcs host.cs)
//   host.exe CONNECTION-STRING
// ./test compiles this file; it was never run there, as that takes Windows with .NET Framework.
using System;
using System.Runtime.InteropServices;

/// The host's service object as the component calls it: platform/windows/host_service.idl.
[ComVisible(true), Guid("933F88D2-CDF9-4DB4-B132-010EF65ACC1F"), InterfaceType(ComInterfaceType.InterfaceIsDual)]
public interface IVelkHostService
{
    [DispId(1)] void ScreenReady([MarshalAs(UnmanagedType.IDispatch)] object screen,
                                 [MarshalAs(UnmanagedType.VariantBool)] bool flag);
    [DispId(2)] object Caption(string application, string category, string key);
    [DispId(3)] void ScreenStarting([MarshalAs(UnmanagedType.IDispatch)] object screen);
    [DispId(4)] string CaptionText(string application, string category, string key);
    [DispId(5)] object ShowMessage(string prompt, object style, [Optional] object caption,
                                   [Optional] object helpFile, [Optional] object context);
    [DispId(6)] string MessageText(
        string text, [MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_VARIANT)] ref object[] list);
}

[ComVisible(true), Guid("2F54E293-7499-4B89-9A2E-E78342007F59"), ClassInterface(ClassInterfaceType.None)]
public class HostService : IVelkHostService
{
    public void ScreenStarting(object screen) {}

    public void ScreenReady(object screen, bool flag)
    {
        dynamic form = screen;
        foreach (dynamic control in form.Controls) Console.WriteLine(control.Name);
        form.cmdExit.TabIndex = 0;
        form.cmdExit.Font.Bold = true;
        form.Move(600, 600);
    }

    public object Caption(string application, string category, string key) { return key; }
    public string CaptionText(string application, string category, string key) { return key; }
    public string MessageText(string text, ref object[] list) { return text; }

    public object ShowMessage(string prompt, object style, object caption, object helpFile, object context)
    {
        string title = caption as string ?? "A host in C#";
        return Native.MessageBoxW(Native.GetActiveWindow(), prompt, title, Convert.ToUInt32(style));
    }
}

internal static class Native
{
    [StructLayout(LayoutKind.Sequential)]
    internal struct Message
    {
        public IntPtr window;
        public uint number;
        public IntPtr wParam, lParam;
        public uint time;
        public int x, y;
    }

    [DllImport("user32", CharSet = CharSet.Unicode)]
    internal static extern int MessageBoxW(IntPtr owner, string text, string title, uint style);
    [DllImport("user32")] internal static extern IntPtr GetActiveWindow();
    [DllImport("user32", CharSet = CharSet.Unicode)]
    internal static extern IntPtr FindWindowW(string windowClass, string title);
    [DllImport("user32")]
    internal static extern int GetMessageW(out Message message, IntPtr window, uint first, uint last);
    [DllImport("user32")] internal static extern bool TranslateMessage(ref Message message);
    [DllImport("user32")] internal static extern IntPtr DispatchMessageW(ref Message message);
}

internal static class Program
{
    private static dynamic Create(string name)
    {
        return Activator.CreateInstance(Type.GetTypeFromProgID(name, true));
    }

    // The screens live in this thread's message loop, which therefore is a single-threaded apartment.
    [STAThread]
    private static void Main(string[] arguments)
    {
        // For this process only: no registration is needed.
        var services = new RegistrationServices();
        int cookie = services.RegisterTypeForComClients(typeof(HostService), RegistrationClassContext.InProcessServer,
                                                        RegistrationConnectionType.MultipleUse);
        dynamic connection = Create("ADODB.Connection");
        connection.Open(arguments[0]);
        dynamic component = Create("Velk_OpnImp.Velk_ClsOpnImp");
        // A null of an object's type: no icon of the host's own.
        component.ImportVendorOpening(connection, new DispatchWrapper(null));
        Native.Message message;
        while (Native.FindWindowW("Velk_OpnImp.Form", null) != IntPtr.Zero &&
               Native.GetMessageW(out message, IntPtr.Zero, 0, 0) > 0)
        {
            Native.TranslateMessage(ref message);
            Native.DispatchMessageW(ref message);
        }
        connection.Close();
        services.UnregisterTypeForComClients(cookie);
    }
}
