using System;
using System.Diagnostics;
using System.IO;
using System.Threading;
using System.Threading.Tasks;
using Braxel.Vesk;

// Script domains come and go while the library stays, as in an editor: each logs in, and is unloaded
// while a QR code waits for its player and a thread is inside the frame's call. Then a handler
// throws, and the end comes while tasks run.
internal static class Domains
{
    private static readonly string Script =
        Path.Combine(AppDomain.CurrentDomain.BaseDirectory, "ferno_sim.ini");

    private static void Main()
    {
        TimeSpan longest = TimeSpan.Zero;
        for (int i = 0; i < 20; ++i)
        {
            AppDomain domain = AppDomain.CreateDomain("script");
            domain.DoCallBack(Play);
            Stopwatch unload = Stopwatch.StartNew();
            AppDomain.Unload(domain);
            longest = unload.Elapsed > longest ? unload.Elapsed : longest;
        }
        Console.WriteLine("\nlongest unload: " + longest);
        Check(longest < TimeSpan.FromSeconds(5), "an unload took too long");
        File.Delete(Script);
        Misuse();
    }

    private static void Play()
    {
        File.WriteAllText(Script, "on_qrcode=1:qr:https://somebody.example,1:success\n");
        Check(VeskLogin.State != LoginState.WaitingForScan, "the unloaded domain's login goes on");
        int logins = 0;
        VeskLogin.LoginEnded += ret => ++logins;
        foreach (string channel in new[] { "Steam", "Ferno" })
        {
            Task<LoginRet> login = VeskLogin.LoginAsync(channel);
            Frames(() => login.IsCompleted);
            Check(login.Result.RetCode == VeskError.Success
                && VeskLogin.Status.Openid == login.Result.Openid, channel + login.Result.RetMsg);
        }
        File.WriteAllText(Script, "on_qrcode=1:qr:https://nobody.example\n");
        CancellationTokenSource back = new CancellationTokenSource();
        Task<LoginRet> cancelled = VeskLogin.LoginAsync("Ferno", back.Token);
        VeskLogin.LoginAsync("Nobody"); // is refused, and the other one goes on
        back.CancelAfter(10);
        Frames(() => cancelled.IsCompleted);
        Check(cancelled.IsCanceled && logins == 4, logins + " logins, " + cancelled.Status);

        string code = "";
        VeskLogin.QrCodeReady += ret => code = ret.QrCodeUrl;
        VeskLogin.LoginAsync("Ferno");
        Frames(() => code == "https://nobody.example");
        new Thread(() => Frames(() => false)).Start();
    }

    private static void Misuse()
    {
        Task<BaseRet> logout = VeskLogin.LogoutAsync(); // nothing is held
        VeskLogin.LogoutEnded += ret => throw new Exception(ret.RetCode + " " + ret.RetMsg);
        string heard = "";
        try
        {
            Frames(() => false);
        }
        catch (Exception failure)
        {
            heard = failure.Message;
        }
        Task<LoginRet> login = VeskLogin.LoginAsync("Steam");
        VeskLogin.Uninstall();
        Check(logout.IsCompleted && login.IsCanceled, "a task has not ended");
        Console.WriteLine("\n" + heard);
    }

    private static void Frames(Func<bool> until)
    {
        while (!until())
        {
            VeskLogin.Update();
            Thread.Sleep(1);
        }
    }

    private static void Check(bool good, string message)
    {
        if (!good)
        {
            throw new Exception(message);
        }
    }
}
