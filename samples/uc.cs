// A UC client: starts Seldial, sets Ctrl+Alt+D, and prints each call until Ctrl-C or SIGTERM.
// Mono.Unix is part of mono; for .NET it is the package Mono.Unix.
using System;
using System.Diagnostics;
using System.IO;
using System.Net.Sockets;
using System.Runtime.Serialization.Json;
using System.Text;
using System.Threading;
using System.Xml;
using System.Xml.Linq;
using Mono.Unix;
using Mono.Unix.Native;

static class UcClient
{
    // virtualkey 2 is the D key of a US keyboard.
    const string SetHotKey = "{\"command\":\"SetHotKey\",\"modifierCtrl\":true,\"modifierAlt\":true,"
        + "\"virtualkey\":2,\"readdelay\":500}";

    // One connection carries one command; its end ends the command.
    static void Send(string path, string command)
    {
        using (var socket = new Socket(AddressFamily.Unix, SocketType.Stream, ProtocolType.Unspecified))
        {
            socket.Connect(new UnixEndPoint(path));
            socket.Send(Encoding.UTF8.GetBytes(command));
        }
    }

    // Prints a message; false if it is a refusal.
    static bool Received(string line)
    {
        var reader = JsonReaderWriterFactory.CreateJsonReader(
            Encoding.UTF8.GetBytes(line), XmlDictionaryReaderQuotas.Max);
        var message = XElement.Load(reader);
        Func<string, string> text = key => (string)message.Element(key);
        if (text("command") == "MakeCall") Console.WriteLine("call: " + text("number"));
        else if (text("result") == "true") Console.WriteLine("hot key is set");
        else
        {
            Console.Error.WriteLine("refused: " + (text("failreason") ?? text("message")));
            return false;
        }
        return true;
    }

    static int Run(string program, string path)
    {
        var start = new ProcessStartInfo(program, "-log \"dialerpipename=" + path + "\"")
        {
            UseShellExecute = false,
            RedirectStandardOutput = true,
            StandardOutputEncoding = new UTF8Encoding(false),
        };
        using (var seldial = Process.Start(start))
        {
            // Process.Kill() would send SIGKILL, which leaves the socket file behind.
            Action end = () => Syscall.kill(seldial.Id, Signum.SIGTERM);
            var signals = new[] { new UnixSignal(Signum.SIGINT), new UnixSignal(Signum.SIGTERM) };
            var waiting = new Thread(() => { UnixSignal.WaitAny(signals); end(); });
            waiting.IsBackground = true;
            waiting.Start();
            string line;
            while ((line = seldial.StandardOutput.ReadLine()) != null)
            {
                if (line.StartsWith("{", StringComparison.Ordinal) && !Received(line)) end();
                else if (line.Contains("Unix socket server listen failed")) end();
                else if (line.Contains("Unix socket server listen ok")) Send(path, SetHotKey);
            }
            seldial.WaitForExit();
            return seldial.ExitCode;
        }
    }

    static int Main(string[] arguments)
    {
        var place = Environment.GetEnvironmentVariable("XDG_RUNTIME_DIR") ?? Path.GetTempPath();
        var folder = Path.Combine(place, "uc-" + Guid.NewGuid().ToString("N"));
        Syscall.mkdir(folder, FilePermissions.S_IRWXU);
        try { return Run(arguments.Length > 0 ? arguments[0] : "seldial", folder + "/dialer"); }
        finally { Directory.Delete(folder, true); }
    }
}
