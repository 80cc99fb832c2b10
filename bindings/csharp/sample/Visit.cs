using System;
using System.Threading;
using System.Threading.Tasks;
using Braxel.Vesk;

// A game's use of the SDK in one page: log in, look at the login, log out, end.
// Usage: Visit.exe [CHANNEL], with the library and its files beside it.
internal static class Visit
{
    private static async Task Run(string channel)
    {
        // Who does not scan within 20 seconds goes back to the title screen.
        CancellationTokenSource back = new CancellationTokenSource(20000);
        LoginRet login = Checked(await VeskLogin.LoginAsync(channel, back.Token));
        Console.WriteLine("\nlogged in: " + login.Openid + " through " + login.Channel);

        LoginRet held;
        if (!VeskLogin.GetLoginRet(out held) || held.Token != login.Token
            || held.PfKey != login.PfKey || VeskLogin.Status.Openid != login.Openid)
        {
            throw new Exception("the login is not held");
        }
        Checked(await VeskLogin.LogoutAsync());
        if (VeskLogin.State != LoginState.SignedOut)
        {
            throw new Exception("the login is still held");
        }
    }

    private static T Checked<T>(T ret) where T : BaseRet
    {
        if (ret.RetCode != VeskError.Success)
        {
            Advice advice = VeskLogin.Describe(ret.RetCode, ret.ThirdCode);
            throw new Exception("code " + ret.RetCode + ": " + advice.Meaning + ": " + advice.Remedy);
        }
        return ret;
    }

    private static void Main(string[] arguments)
    {
        VeskLogin.QrCodeReady += code => Console.WriteLine("scan " + code.QrCodeUrl);
        Task visit = Run(arguments.Length > 0 ? arguments[0] : "Steam");
        while (!visit.IsCompleted) // the game's loop
        {
            VeskLogin.Update();
            Thread.Sleep(16);
        }
        visit.GetAwaiter().GetResult(); // throws what the visit has thrown
        VeskLogin.WaitIdle(3000); // for the logout to reach the backend
        VeskLogin.Uninstall();
        Console.WriteLine("\nlogged in, looked, logged out"); // the SDK prints, without line ends
    }
}
