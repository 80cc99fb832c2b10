using System;
using System.Collections.Concurrent;
using Braxel.Vesk;

// A game's use of the SDK in one page: set an observer, log in, look at the login, log out, end.
// Usage: Visit.exe [CHANNEL], with the library and its files beside it.
internal sealed class Visit : ILoginObserver
{
    // From the SDK's threads to the main one. A game with a main loop takes results out each frame.
    private readonly BlockingCollection<BaseRet> results = new BlockingCollection<BaseRet>();

    public void OnLogin(LoginRet ret) { results.Add(ret); }
    public void OnBase(BaseRet ret) { results.Add(ret); }
    public void OnQrCode(QrCodeRet ret) { results.Add(ret); }

    // The next result of one kind; QR codes that come before it are shown.
    private T WaitFor<T>() where T : BaseRet
    {
        BaseRet ret;
        while (results.TryTake(out ret, 20000))
        {
            QrCodeRet code = ret as QrCodeRet;
            if (code != null)
            {
                Console.WriteLine("scan " + code.QrCodeUrl);
                continue;
            }
            if (ret.RetCode != VeskError.Success)
            {
                throw new Exception("code " + ret.RetCode + ": " + ret.RetMsg + ret.ThirdMsg);
            }
            return (T)ret;
        }
        throw new TimeoutException("no result came");
    }

    private void Run(string channel)
    {
        VeskLogin.ObserverFailed += failure => Console.WriteLine(failure);
        VeskLogin.SetObserver(this);
        VeskLogin.Login(channel);
        LoginRet login = WaitFor<LoginRet>();
        Console.WriteLine("\nlogged in: " + login.Openid + " through " + login.Channel);

        LoginRet held;
        if (!VeskLogin.GetLoginRet(out held) || held.Token != login.Token || held.PfKey != login.PfKey)
        {
            throw new Exception("the login is not held");
        }
        VeskLogin.Logout();
        WaitFor<BaseRet>();
        if (VeskLogin.GetLoginRet(out held) || held.RetCode != VeskError.NoStoredLogin)
        {
            throw new Exception("the login is still held");
        }
        VeskLogin.Uninstall();
    }

    private static void Main(string[] arguments)
    {
        new Visit().Run(arguments.Length > 0 ? arguments[0] : "Steam");
        Console.WriteLine("\nlogged in, looked, logged out"); // the SDK prints, without line ends
    }
}
