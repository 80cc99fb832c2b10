using System;
using Braxel.Vesk;

// An observer that throws, and a call after the end.
internal sealed class Misuse : ILoginObserver
{
    public void OnLogin(LoginRet ret) { }
    public void OnBase(BaseRet ret) { throw new Exception(ret.RetCode + " " + ret.RetMsg); }
    public void OnQrCode(QrCodeRet ret) { }

    private static void Main()
    {
        string heard = "";
        VeskLogin.ObserverFailed += failure => heard += failure.Message;
        VeskLogin.SetObserver(new Misuse());
        VeskLogin.Logout(); // nothing is held: answered inside the call
        VeskLogin.Uninstall();
        try
        {
            VeskLogin.AutoLogin();
        }
        catch (InvalidOperationException)
        {
            Console.WriteLine("\n" + heard);
        }
    }
}
