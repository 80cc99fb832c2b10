namespace Braxel.Vesk
{
    /// <summary>
    /// The game's side: hears results. Each method runs on the thread that has produced the result,
    /// which is seldom the main one, and two may run at once: put the record into a queue and take
    /// it out in your main loop (in Unity: in Update). Calling VeskLogin from here is allowed. An
    /// exception goes to VeskLogin.ObserverFailed.
    /// </summary>
    public interface ILoginObserver
    {
        /// <summary>A login ended; only the newest one is answered.</summary>
        void OnLogin(LoginRet ret);

        /// <summary>A logout ended (117).</summary>
        void OnBase(BaseRet ret);

        /// <summary>Show this code to the player; it may come again with a fresh address.</summary>
        void OnQrCode(QrCodeRet ret);
    }
}
