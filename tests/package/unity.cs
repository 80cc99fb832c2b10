using System;
using System.Net;
using System.Reflection;
using System.Threading;
using Braxel.Vesk;
using Braxel.Vesk.Editor;
using Braxel.Vesk.Samples;
using UnityEditor.Build.Reporting;
using UnityEngine;

// Does with the Unity package what the editor and a game would: loads scripts and builds, if told so,
// else plays the sample in frames.
internal static class Unity
{
    private static readonly LoginScreen Screen = new LoginScreen();
    private static string code; // the newest one's address

    private static void Main(string[] arguments)
    {
        if (arguments.Length > 0)
        {
            Send(new VeskFiles(), "ServeTheEditor");
            BuildReport report = new BuildReport();
            report.summary.platform = UnityEditor.BuildTarget.StandaloneWindows64;
            report.summary.outputPath = "built/Game.exe";
            new VeskFiles().OnPostprocessBuild(report);
            return;
        }
        VeskLogin.QrCodeReady += ret => code = ret.QrCodeUrl;
        Send(Screen, "OnEnable");
        Expect("Steam", "Welcome, ");
        Expect("Log out", "Good bye");
        Expect("Ferno", "Scan the code with Ferno");
        Expect("Back", "Who are you?");
        Scan("confirm", "Welcome, ");
        Expect("Log out", "Good bye");
        Scan("deny", VeskLogin.Describe(VeskError.ChannelLoginFailed, -1).Remedy);
        Array.ForEach(new[] { "OnApplicationQuit", "OnDisable", "OnDestroy" }, message => Send(Screen, message));
        VeskLogin.Update(); // throws, as the SDK has ended
    }

    private static void Send(object target, string message)
    {
        target.GetType().GetMethod(message, BindingFlags.NonPublic | BindingFlags.Instance
            | BindingFlags.Static).Invoke(target, null);
    }

    // Presses the button; the screen then says that within ten seconds.
    private static void Expect(string button, string text)
    {
        GUILayout.Press = button;
        for (int frame = 0; GUILayout.Press != "" || !GUILayout.Text.Contains(text); ++frame)
        {
            Check(frame < 1000, "not said: " + text + ", but: " + GUILayout.Text);
            Send(Screen, "Update");
            Send(Screen, "OnGUI");
            Thread.Sleep(10);
        }
    }

    // The picture comes; the player does that, and it goes.
    private static void Scan(string button, string text)
    {
        Expect("Ferno", "Scan the code with Ferno");
        Texture picture = GUI.Picture;
        Check(picture.width > 100 && picture.width == picture.height, "no picture of a code");
        WebClient page = new WebClient();
        page.Headers["Content-Type"] = "application/json";
        page.UploadString(code.Replace("/qr/", "/sessions/").Replace(".png", "/press"),
            "{\"button\":\"" + button + "\"}");
        Expect("", text);
        Check(picture.width == 0, "the picture is still there");
    }

    private static void Check(bool good, string message)
    {
        if (!good)
        {
            throw new Exception(message);
        }
    }
}
